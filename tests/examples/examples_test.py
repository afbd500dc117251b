# SPDX-License-Identifier: MIT
"""The guide's steps, built to the letter, and the examples, as their readers meet them: started and
used with the pointer; each shows what it promises."""
import itertools
import os
import re
import subprocess
import sys
import time
import unittest

from PyQt5.QtGui import QImage
from PyQt5.QtWidgets import QApplication

SOURCE, SCRATCH, MODULE = (os.environ[name] for name in ("SOURCE", "SCRATCH", "MODULE"))
PYTHON = os.path.join(SOURCE, "examples", "python")
sys.path.append(PYTHON)
import glwindow

application = QApplication(["test"])
BLACK, BACKGROUND, FRAME, SELECTED = (0, 0, 0), (28, 36, 48), (76, 89, 102), (255, 204, 76)
# In a window of 800 x 600: the middle of each tile's solid, a point on its frame, its hue.
TILES = {1: ((200, 150), (200, 8), (1, 0.47, 0.33)), 2: ((600, 200), (600, 8), (0.98, 0.75, 0.30)),
         3: ((200, 470), (200, 304), (0.25, 0.72, 0.66)), 4: ((600, 460), (600, 304), (0.53, 0.54, 0.95))}
MIDDLES = [(202, 152), (598, 152), (202, 448), (598, 448)]  # of the guide's tiles


def program(name, *arguments):
    """The command of a program of the documents, built against an installation, or of an example in Python."""
    if name.endswith(".py"):
        return [sys.executable, "-B", os.path.join(PYTHON, name), "--module", MODULE]
    return [os.path.join(SCRATCH, "hosts", name, name), *arguments]


def colour(image, point):
    return image.pixelColor(*point).getRgb()[:3]


def near(a, b, tolerance=6):
    return all(abs(x - y) <= tolerance for x, y in zip(a, b))


def lit(image, point):
    return colour(image, point) not in (BLACK, BACKGROUND)


def has_hue(image, point, hue):
    """Whether the pixel is that colour in some light."""
    pixel = colour(image, point)
    light = max(pixel) / max(hue)
    return light > 60 and near(pixel, [light * part for part in hue], 40)


def framed(image, *shade):
    """The tiles whose frame is of that shade, or of their solid's hue."""
    return [tile for tile, (_, frame, hue) in TILES.items()
            if near(colour(image, frame), shade or [255 * part for part in hue])]


class Documents(unittest.TestCase):
    def start(self, *command):
        """Starts the program, in place of the one before, and waits for its window."""
        self.doCleanups()
        process = subprocess.Popen(command)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        search, found = ("xdotool", "search", "--onlyvisible", "--pid", str(process.pid), "--name", "."), []
        while not found and process.poll() is None:  # a window that goes meanwhile ends a search
            found = subprocess.run(search, stdout=subprocess.PIPE, text=True).stdout.split()
        self.window = found[0]

    def xdotool(self, *arguments):
        return subprocess.check_output(("xdotool",) + arguments, timeout=120, text=True)

    def pointer(self, point, *then):
        self.xdotool("mousemove", "--window", self.window, *map(str, point), *then)

    def key(self, name):
        self.xdotool("key", "--window", self.window, name)

    def image(self):
        return application.primaryScreen().grabWindow(int(self.window)).toImage()

    def drag(self, button, begin, end):
        """Drags from a place within a pixel of where it should begin. A host may ask where the pointer is now,
        so that it has to have heard the press before the way begins: what is drawn follows the pointer then."""
        before = self.image().copy(200, 100, 400, 400)  # without the frame rate
        self.pointer(begin, "mousedown", button)
        aside = itertools.cycle((1, 0))
        self.eventually(lambda image: image.copy(200, 100, 400, 400) != before
                        or self.pointer((begin[0] + next(aside), begin[1])))
        self.pointer(end, "mouseup", button)

    def eventually(self, shows):
        """Waits until the window shows what it should, and returns that image."""
        for _ in range(1200):
            image = self.image()
            if shows(image):
                return image
            time.sleep(0.05)
        image.save(self.id() + "-failed.png")
        self.fail(f"the window never showed it; see {os.getcwd()}/{self.id()}-failed.png")

    def test_step_1_and_promises(self):
        said = subprocess.run(program("step1"), stderr=subprocess.PIPE, text=True, check=True, timeout=120).stderr
        self.assertEqual(re.findall("^qobject (.*)$", said, re.MULTILINE), [
            "KeyAction", "MouseAction", "GLWidget", "GLMultiWidget", "GLWindow"])
        subprocess.run(program("promises"), check=True, timeout=120)

    def test_readme_and_steps_2_and_3(self):
        for name, background, point, shade in (("readme", BLACK, (400, 350), (255, 255, 255)),
                                               ("step2", BLACK, (400, 350), BLACK),
                                               ("step3", BACKGROUND, (339, 530), (255, 102, 76))):
            with self.subTest(name):
                self.start(*program(name))
                self.eventually(lambda image: colour(image, (5, 300)) == background
                                and near(colour(image, point), shade)
                                and any(colour(image, (x, 8))[0] > 128 for x in range(700, 800)))

    def test_step_4(self):
        self.start(*program("step4"))
        tip, side = (400, 190), (430, 330)  # the tip's is just below it
        # The first frame is of 640 x 480 pixels.
        first = self.eventually(lambda image: colour(image, (5, 595)) == BACKGROUND and lit(image, tip))
        self.drag("3", (400, 300), (500, 300))
        self.eventually(lambda image: not near(colour(image, side), colour(first, side), 12))
        self.xdotool("click", "--repeat", "8", "5")
        self.eventually(lambda image: not lit(image, tip))
        self.key("r")
        self.eventually(lambda image: near(colour(image, side), colour(first, side)) and lit(image, tip))
        self.xdotool("click", "--repeat", "4", "4")
        self.eventually(lambda image: lit(image, (400, 130)))

    def test_steps_5_and_6(self):
        for name, text in (("step5", False), ("step6", True)):
            with self.subTest(name):
                self.start(*program(name))
                self.eventually(lambda image: all(lit(image, middle) for middle in MIDDLES)
                                and len(framed(image, *FRAME)) == 4 and colour(image, (400, 300)) == BACKGROUND)
                self.pointer(MIDDLES[1], "click", "1")
                image = self.eventually(lambda image: framed(image, *SELECTED) == [2])
                self.assertEqual(text, any(colour(image, (x, y))[0] > 200
                                           for x in range(20, 40) for y in range(18, 32)))

    def test_a_lit_cube_follows_the_pointer(self):
        # Points on its upper, left and right face.
        for name, *faces in (("minimal", (400, 170), (275, 300), (480, 350)),
                             ("single.py", (420, 180), (290, 300), (480, 350))):
            with self.subTest(name):
                self.start(*program(name))

                def cube(image):
                    top, left, right = (colour(image, face)[0] for face in faces)
                    return colour(image, (100, 300)) == BACKGROUND and left + 15 < right < top - 15 and all(
                        has_hue(image, face, TILES[1][2]) for face in faces)
                before = self.eventually(cube)
                self.drag("1", (400, 300), (500, 300))
                self.eventually(lambda image: near(colour(image, faces[2]), colour(before, faces[1])))
                self.drag("1", (400, 300), (400, 420))
                self.eventually(lambda image: near(colour(image, (400, 300)), colour(before, faces[0])))

    def test_tiles_are_driven_by_pointer_and_keys(self):
        self.start(*program("tiled.py"))
        self.eventually(lambda image: not framed(image)
                        and all(has_hue(image, middle, hue) for middle, _, hue in TILES.values()))
        self.pointer(TILES[2][0], "click", "1")
        self.eventually(lambda image: framed(image) == [2])
        self.pointer(TILES[3][0], "keydown", "ctrl", "click", "1", "keyup", "ctrl")
        self.eventually(lambda image: framed(image) == [2, 3])
        self.key("a")
        self.eventually(lambda image: framed(image) == [1, 2, 3, 4])
        self.pointer(TILES[4][0], "click", "--repeat", "2", "--delay", "5", "1")
        self.eventually(lambda image: has_hue(image, (400, 300), TILES[4][2]))

    def test_the_smallest_host_ends_by_itself(self):
        for arguments, integration, code in ((["--picture", "minimal.png"], "xcb_glx", 0),
                                             (["--picture", "/no/such/folder.png"], "xcb_glx", 1), ([], "none", 0)):
            done = subprocess.run(program("minimal", "--timeout", "1", *arguments), timeout=120,
                                  env=dict(os.environ, QT_XCB_GL_INTEGRATION=integration))
            self.assertEqual(done.returncode, code, arguments)
        self.assertEqual(QImage("minimal.png").rect().getRect(), (0, 0, 800, 600))

    def test_lists_cross_both_ways(self):
        module, heard = glwindow.Module(MODULE), []
        grid = module.make("GLMultiWidget", module, "grid")
        grid.ValueChanged.connect(heard.append)
        for tile in (3, 1):
            grid.AddTile(tile)
        grid.SetVisible([3], False)
        grid.SetOrder([3, 1])
        grid.SelectAll()
        self.assertEqual((heard, grid.GetVisible(), grid.property("order")), ([grid.GetSelected()], [1], [3, 1]))


if __name__ == "__main__":
    unittest.main()
