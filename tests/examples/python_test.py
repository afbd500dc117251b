# SPDX-License-Identifier: MIT
"""The hosts in Python, run by Debian's Python on the module as it was just built."""
import os
import sys
import unittest

from PyQt5 import sip
from PyQt5.QtCore import pyqtSlot
from PyQt5.QtGui import QKeySequence

from screen import BACKGROUND, MODULE, SOURCE, ScreenTest, colour, near

sys.path.append(os.path.join(SOURCE, "examples", "python"))
import glwindow

module = glwindow.Module(MODULE)
# In a window of 800 x 600: the middle of each tile's solid, a point on its frame, its hue.
TILES = {1: ((200, 150), (200, 8), (1, 0.47, 0.33)), 2: ((600, 200), (600, 8), (0.98, 0.75, 0.30)),
         3: ((200, 470), (200, 304), (0.25, 0.72, 0.66)),
         4: ((600, 460), (600, 304), (0.53, 0.54, 0.95))}
DARK = (56, 69, 89)


def command(name):
    program = os.path.join(SOURCE, "examples", "python", name)
    return [sys.executable, "-B", program, "--module", MODULE]


def has_hue(image, point, hue):
    """Whether the pixel is that colour in some light."""
    pixel = colour(image, point)
    light = max(pixel) / max(hue)
    return light > 60 and near(pixel, [light * part for part in hue], 40)


def selected(image):
    return [tile for tile, (_, frame, hue) in TILES.items()
            if near(colour(image, frame), [255 * part for part in hue])]


class Single(ScreenTest):
    def test_draws_a_lit_cube(self):
        image = self.picture_of(command("single.py"))
        for corner in ((5, 5), (5, 595), (795, 595)):
            self.assertEqual(colour(image, corner), BACKGROUND)
        top, left, right = (colour(image, p) for p in ((420, 180), (290, 300), (480, 350)))
        self.assertTrue(top[0] > right[0] + 15 > left[0] + 30, (top, left, right))

    def test_orbits_on_drag(self):
        self.start(command("single.py"))
        top = (420, 180)
        self.eventually(lambda image: has_hue(image, top, TILES[1][2]))
        self.pointer((400, 300), "mousedown", "1")
        self.pointer((400, 200), "mouseup", "1")
        self.eventually(lambda image: colour(image, (400, 130)) == BACKGROUND)


class Tiled(ScreenTest):
    def shown(self, image):
        return [t for t, (middle, _, hue) in TILES.items() if has_hue(image, middle, hue)]

    def test_draws_four_solids(self):
        image = self.picture_of(command("tiled.py"))
        self.assertEqual(self.shown(image), [1, 2, 3, 4])
        for tile, (_, frame, _) in TILES.items():
            self.assertTrue(near(colour(image, frame), DARK), tile)
        self.assertEqual(colour(image, (400, 300)), BACKGROUND)

    def test_is_driven_by_pointer_and_keys(self):
        self.start(command("tiled.py"))
        self.eventually(lambda image: self.shown(image) == [1, 2, 3, 4])
        self.pointer(TILES[2][0], "click", "1")
        self.eventually(lambda image: selected(image) == [2])
        self.pointer(TILES[3][0], "keydown", "ctrl", "click", "1", "keyup", "ctrl")
        self.eventually(lambda image: selected(image) == [2, 3])
        self.xdotool("key", "--window", str(self.window), "a")
        self.eventually(lambda image: selected(image) == [1, 2, 3, 4])
        self.pointer(TILES[4][0], "click", "--repeat", "2", "--delay", "40", "1")
        self.eventually(lambda image: has_hue(image, (400, 300), TILES[4][2])
                        and self.shown(image) != [1, 2, 3, 4])


class Crossing(unittest.TestCase):
    """What the guide says about calls from Python into the module and back."""

    def setUp(self):
        self.grid = module.make("GLMultiWidget", module, "grid")
        self.addCleanup(sip.delete, self.grid)
        for tile in (3, 1):
            self.grid.AddTile(tile)

    def test_lists_of_ids_cross_both_ways(self):
        self.assertEqual(self.grid.GetVisible(), [1, 3])
        self.grid.SetVisible([3], False)
        self.assertEqual(self.grid.GetVisible(), [1])
        self.grid.SetOrder([3, 1])
        self.assertEqual(self.grid.property("order"), [3, 1])

    def test_signals_reach_functions(self):
        heard = []
        self.grid.TileAdded.connect(heard.append)
        self.grid.ValueChanged.connect(heard.append)
        self.grid.AddTile(2)
        self.grid.SelectAll()
        self.assertEqual(heard, [2, [1, 2, 3]])

    def test_a_text_names_the_action(self):
        action = self.grid.NewKeyAction("A", b"all", self.grid, b"1SelectAll()")
        self.assertEqual((action.objectName(), action.property("key")), ("all", QKeySequence("A")))
        self.assertTrue(self.grid.DeleteAction(b"all"))

    def test_records_and_drawables_do_not_cross(self):
        for refused in (lambda: pyqtSlot("GLW*"), lambda: self.grid.SetTarget((1, 2, 3)),
                        self.grid.Widgets, lambda: self.grid.Draw3D):
            self.assertRaises(TypeError, refused)


if __name__ == "__main__":
    unittest.main()
