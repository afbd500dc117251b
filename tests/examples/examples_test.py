# SPDX-License-Identifier: MIT
"""The examples: the smallest host, built against an installation, and the hosts in Python."""
import os
import subprocess
import sys
import unittest

from PyQt5.QtGui import QImage

from screen import BACKGROUND, MODULE, SOURCE, ScreenTest, colour, near, program

PYTHON = os.path.join(SOURCE, "examples", "python")
sys.path.append(PYTHON)
import glwindow

# In a window of 800 x 600: the middle of each tile's solid, a point on its frame, its hue.
TILES = {1: ((200, 150), (200, 8), (1, 0.47, 0.33)), 2: ((600, 200), (600, 8), (0.98, 0.75, 0.30)),
         3: ((200, 470), (200, 304), (0.25, 0.72, 0.66)),
         4: ((600, 460), (600, 304), (0.53, 0.54, 0.95))}
# A lit cube: the program, and points on its upper, left and right face.
CUBES = [([program("minimal")], (400, 170), (275, 300), (480, 350)),
         (["single.py"], (420, 180), (290, 300), (480, 350))]


def command(name):
    return [sys.executable, "-B", os.path.join(PYTHON, name), "--module", MODULE]


def has_hue(image, point, hue):
    """Whether the pixel is that colour in some light."""
    pixel = colour(image, point)
    light = max(pixel) / max(hue)
    return light > 60 and near(pixel, [light * part for part in hue], 40)


def shown(image):
    return [tile for tile, (middle, _, hue) in TILES.items() if has_hue(image, middle, hue)]


def selected(image):
    return [tile for tile, (_, frame, hue) in TILES.items()
            if near(colour(image, frame), [255 * part for part in hue])]


class Examples(ScreenTest):
    def test_a_lit_cube_follows_the_pointer(self):
        for name, top, left, right in CUBES:
            with self.subTest(name):
                self.start(*(command(name[0]) if name[0].endswith(".py") else name))

                def lit(image):
                    faces = [colour(image, p) for p in (left, right, top)]
                    return colour(image, (100, 300)) == BACKGROUND and all(
                        has_hue(image, p, TILES[1][2]) for p in (left, right, top)) and \
                        faces[0][0] + 15 < faces[1][0] < faces[2][0] - 15
                before = self.eventually(lit)
                self.drag("1", (400, 300), (500, 300))
                self.eventually(lambda image: near(colour(image, right), colour(before, left)))
                self.drag("1", (400, 300), (400, 420))
                self.eventually(lambda image: near(colour(image, (400, 300)), colour(before, top)))

    def test_tiles_are_driven_by_pointer_and_keys(self):
        self.start(*command("tiled.py"))
        self.eventually(lambda image: shown(image) == [1, 2, 3, 4] and not selected(image)
                        and colour(image, (400, 300)) == BACKGROUND)
        self.pointer(TILES[2][0], "click", "1")
        self.eventually(lambda image: selected(image) == [2])
        self.pointer(TILES[3][0], "keydown", "ctrl", "click", "1", "keyup", "ctrl")
        self.eventually(lambda image: selected(image) == [2, 3])
        self.key("a")
        self.eventually(lambda image: selected(image) == [1, 2, 3, 4])
        self.pointer(TILES[4][0], "click", "--repeat", "2", "--delay", "5", "1")
        self.eventually(lambda image: has_hue(image, (400, 300), TILES[4][2]))

    def test_the_smallest_host_ends_by_itself(self):
        with open(os.path.join(SOURCE, "examples", "minimal", "main.cpp")) as file:
            self.assertLessEqual(len(file.readlines()), 80)
        for arguments, integration, code in ((["--picture", "minimal.png"], "xcb_glx", 0),
                                             (["--picture", "/no/such/folder.png"], "xcb_glx", 1),
                                             ([], "none", 0)):
            done = subprocess.run([program("minimal"), "--timeout", "1", *arguments], timeout=120,
                                  env=dict(os.environ, QT_XCB_GL_INTEGRATION=integration))
            self.assertEqual(done.returncode, code, arguments)
        self.assertEqual(QImage("minimal.png").rect().getRect(), (0, 0, 800, 600))

    def test_lists_cross_both_ways(self):
        module, heard = glwindow.Module(MODULE), []
        grid = module.make("GLMultiWidget", module, "grid")
        grid.TileAdded.connect(heard.append)
        grid.ValueChanged.connect(heard.append)
        for tile in (3, 1):
            grid.AddTile(tile)
        grid.SetVisible([3], False)
        grid.SetOrder([3, 1])
        grid.SelectAll()
        self.assertEqual((heard, grid.GetVisible(), grid.property("order")),
                         ([3, 1, grid.GetSelected()], [1], [3, 1]))


if __name__ == "__main__":
    unittest.main()
