# SPDX-License-Identifier: MIT
"""The smallest host, built against an installation in an empty prefix and nothing else."""
import os
import shutil
import subprocess
import unittest

from screen import BACKGROUND, SCRATCH, SOURCE, ScreenTest, colour, installed, near

TOP, LEFT, RIGHT = (400, 170), (275, 300), (480, 350)


def build():
    """Installs the module, moves a copy of the example away and builds it there."""
    example, out = (os.path.join(SCRATCH, folder) for folder in ("minimal", "out"))
    for folder in (example, out):
        shutil.rmtree(folder, ignore_errors=True)
    cmake = os.environ["CMAKE"]
    run = lambda *command: subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    shutil.copytree(os.path.join(SOURCE, "examples", "minimal"), example)
    run(cmake, "-S", example, "-B", out, "-G", "Ninja", "-DCMAKE_PREFIX_PATH=" + installed(),
        "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wshadow -Werror")
    run(cmake, "--build", out)
    return os.path.join(out, "minimal")


class Minimal(ScreenTest):
    @classmethod
    def setUpClass(cls):
        cls.program = build()

    def test_is_small(self):
        with open(os.path.join(SOURCE, "examples", "minimal", "main.cpp")) as file:
            self.assertLessEqual(len(file.readlines()), 80)

    def test_draws_a_lit_cube(self):
        image = self.picture_of([self.program])
        for corner in ((5, 5), (5, 595), (795, 595), (100, 300), (700, 300)):
            self.assertEqual(colour(image, corner), BACKGROUND)
        top, left, right = (colour(image, p) for p in (TOP, LEFT, RIGHT))
        self.assertGreater(top[0], right[0] + 15)
        self.assertGreater(right[0], left[0] + 15)
        for red, green, blue in (top, left, right):
            self.assertTrue(red > 1.5 * green > 1.5 * blue, "not coral")

    def test_orbits_on_drag(self):
        """The pointer takes the near side along: rightwards and down."""
        self.start([self.program])
        before = self.eventually(lambda image: colour(image, (100, 300)) == BACKGROUND
                                 and colour(image, LEFT)[0] < colour(image, RIGHT)[0] - 15)
        self.pointer((400, 300), "mousedown", "1")
        self.pointer((500, 300), "mouseup", "1")
        self.eventually(lambda image: near(colour(image, RIGHT), colour(before, LEFT)))
        self.pointer((400, 300), "mousedown", "1")
        self.pointer((400, 420), "mouseup", "1")
        self.eventually(lambda image: near(colour(image, (400, 300)), colour(before, TOP)))

    def test_survives_without_gl(self):
        done = subprocess.run([self.program, "--timeout", "1"], timeout=120,
                              env=dict(os.environ, QT_XCB_GL_INTEGRATION="none"))
        self.assertEqual(done.returncode, 0)

    def test_fails_when_it_cannot_save_its_picture(self):
        done = subprocess.run([self.program, "--timeout", "1", "--picture", "/no/such/folder.png"],
                               timeout=120)
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
