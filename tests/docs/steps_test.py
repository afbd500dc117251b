# SPDX-License-Identifier: MIT
"""The guide's steps, built to the letter: each shows what it promises, and the tables hold."""
import os
import re
import subprocess
import sys
import unittest

sys.path.append(os.path.join(os.environ["SOURCE"], "tests", "examples"))
from screen import BACKGROUND, ScreenTest, colour, near, program

BLACK = (0, 0, 0)
FRAME, SELECTED = (76, 89, 102), (255, 204, 76)
TILES = [(202, 152), (598, 152), (202, 448), (598, 448)]
FRAMES = [(202, 8), (598, 8), (202, 304), (598, 304)]


def lit(image, point):
    return colour(image, point) not in (BLACK, BACKGROUND)


def framed(image, shade):
    return [near(colour(image, point), shade) for point in FRAMES]


class Steps(ScreenTest):
    def test_step_1_and_promises(self):
        said = subprocess.run([program("step1")], stderr=subprocess.PIPE, text=True, check=True,
                              timeout=120).stderr
        self.assertEqual(re.findall("^qobject (.*)$", said, re.MULTILINE), [
            "KeyAction", "MouseAction", "GLWidget", "GLMultiWidget", "GLWindow"])
        subprocess.run([program("promises")], check=True, timeout=120)

    def test_readme_and_steps_2_and_3(self):
        for name, background, point, shade in (("readme", BLACK, (400, 350), (255, 255, 255)),
                                               ("step2", BLACK, (400, 350), BLACK),
                                               ("step3", BACKGROUND, (339, 530), (255, 102, 76))):
            with self.subTest(name):
                self.start(program(name))
                self.eventually(lambda image: colour(image, (5, 300)) == background
                                and near(colour(image, point), shade)
                                and any(colour(image, (x, 8))[0] > 128 for x in range(700, 800)))

    def test_step_4(self):
        self.start(program("step4"))
        tip, side = (400, 190), (430, 330)  # the tip's is just below it
        first = self.eventually(lambda image: lit(image, tip))
        self.drag("3", (400, 300), (500, 300))
        self.eventually(lambda image: not near(colour(image, side), colour(first, side), 12))
        self.xdotool("click", "--repeat", "8", "5")
        self.eventually(lambda image: not lit(image, tip))
        self.key("r")
        self.eventually(lambda image: near(colour(image, side), colour(first, side))
                        and lit(image, tip))
        self.xdotool("click", "--repeat", "4", "4")
        self.eventually(lambda image: lit(image, (400, 130)))

    def test_steps_5_and_6(self):
        for name, text in (("step5", False), ("step6", True)):
            with self.subTest(name):
                self.start(program(name))
                self.eventually(lambda image: all(lit(image, tile) for tile in TILES)
                                and all(framed(image, FRAME))
                                and colour(image, (400, 300)) == BACKGROUND)
                self.pointer(TILES[1], "click", "1")
                image = self.eventually(
                    lambda image: framed(image, SELECTED) == [False, True, False, False])
                self.assertEqual(text, any(colour(image, (x, y))[0] > 200
                                           for x in range(20, 40) for y in range(18, 32)))


if __name__ == "__main__":
    unittest.main()
