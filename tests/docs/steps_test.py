# SPDX-License-Identifier: MIT
"""The guide's steps, followed to the letter: each must build, and show what it promises."""
import os
import re
import shutil
import subprocess
import sys
import unittest

import guide
sys.path.append(os.path.join(guide.SOURCE, "tests", "examples"))
from screen import BACKGROUND, SCRATCH, ScreenTest, colour, installed, near

BLACK = (0, 0, 0)
FRAME, SELECTED = (76, 89, 102), (255, 204, 76)
TILES = [(202, 152), (598, 152), (202, 448), (598, 448)]
FRAMES = [(202, 8), (598, 8), (202, 304), (598, 304)]


def lit(image, point):
    return colour(image, point) not in (BLACK, BACKGROUND)


class Steps(ScreenTest):
    @classmethod
    def setUpClass(cls):
        cls.prefix = installed()

    def setUp(self):
        self.folder, self.out = (os.path.join(SCRATCH, name) for name in ("first", "first-build"))
        for folder in (self.folder, self.out):
            shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(self.folder)

    def build(self, files):
        for name, content in files.items():
            with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
                file.write(content)
        cmake = os.environ["CMAKE"]
        configure = [cmake, "-S", self.folder, "-B", self.out, "-G", "Ninja",
                     "-DCMAKE_PREFIX_PATH=" + self.prefix,
                     "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wshadow -Werror"]
        configured = os.path.exists(os.path.join(self.out, "build.ninja"))
        for command in [configure] * (not configured) + [[cmake, "--build", self.out]]:
            done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
            self.assertEqual(done.returncode, 0, done.stdout)
        return os.path.join(self.out, "first")

    def test_each_step_does_what_it_says(self):
        steps = dict(guide.steps())
        self.assertEqual(len(steps), 6)
        for heading, files in steps.items():
            with self.subTest(heading):
                program = self.build(files)
                getattr(self, "step" + heading.split(":")[0].split()[1])(program)

    def test_the_readme_s_host(self):
        _, files = list(guide.steps())[0]
        code = re.search(r"^```cpp\n(.*?)^```$", guide.text("../README.md"), re.DOTALL | re.MULTILINE)
        self.start([self.build({"CMakeLists.txt": files["CMakeLists.txt"], "main.cpp": code[1]})])
        self.eventually(lambda image: colour(image, (400, 350)) == (255, 255, 255)
                        and colour(image, (100, 100)) == BLACK)

    def test_helpers(self):
        """The headers that the guide gives compile, and its binding words are right."""
        _, files = list(guide.steps())[0]
        helpers = guide.helpers()
        self.assertEqual(sorted(helpers), ["binding.h", "menu.h", "pixels.h"])
        rows = [row for row in guide.tables(guide.sections(3)["Bindings"]) if "Call" in row]
        self.assertGreater(len(rows), 5)
        words = [f"static_assert({row['Call']} == {row['Binding']});" for row in rows]
        words += [f"static_assert({row['Mask']} <= anyModifier);" for row in rows]
        includes = [f'#include "{name}"' for name in helpers]
        main = "\n".join(includes + words + ["int main() {}", ""])
        cmake = files["CMakeLists.txt"].replace("main.cpp", "main.cpp menu.h")
        self.build({**helpers, "CMakeLists.txt": cmake, "main.cpp": main})

    def step1(self, program):
        done = subprocess.run([program], stderr=subprocess.PIPE, text=True,
                              check=True, timeout=60)
        for name in ("KeyAction", "MouseAction", "GLWidget", "GLMultiWidget", "GLWindow"):
            self.assertIn("qobject " + name + "\n", done.stderr)

    def step2(self, program):
        self.start([program])
        self.eventually(lambda image: image.width() == 800 and colour(image, (400, 300)) == BLACK
                        and any(colour(image, (x, 8))[0] > 128 for x in range(700, 800)))
        self.stop()

    def step3(self, program):
        self.start([program])
        self.eventually(lambda image: colour(image, (5, 300)) == BACKGROUND
                        and lit(image, (400, 300)))
        self.stop()

    def step4(self, program):
        self.start([program])
        edge = (400, 190)  # just below the tip
        first = self.eventually(lambda image: lit(image, edge))
        self.pointer((400, 300), "mousedown", "3")
        self.pointer((500, 300), "mouseup", "3")
        self.eventually(lambda image: not near(colour(image, (430, 330)),
                                               colour(first, (430, 330)), 12))
        self.xdotool("click", "--repeat", "8", "5")
        self.eventually(lambda image: not lit(image, edge))
        self.xdotool("key", "--window", str(self.window), "r")
        self.eventually(lambda image: near(colour(image, (430, 330)), colour(first, (430, 330)))
                        and lit(image, edge))
        self.xdotool("click", "--repeat", "4", "4")
        self.eventually(lambda image: lit(image, (400, 130)))
        self.stop()

    def step5(self, program):
        self.start([program])
        self.eventually(lambda image: all(lit(image, tile) for tile in TILES)
                        and all(near(colour(image, p), FRAME) for p in FRAMES)
                        and colour(image, (400, 300)) == BACKGROUND)
        self.pointer(TILES[1], "click", "1")
        self.eventually(lambda image: [near(colour(image, p), SELECTED) for p in FRAMES]
                        == [False, True, False, False])
        self.stop()

    def step6(self, program):
        self.start([program])
        self.pointer(TILES[1], "click", "1")
        image = self.eventually(
            lambda image: any(colour(image, (x, y))[0] > 200 for x in range(20, 40)
                              for y in range(18, 32)) and near(colour(image, FRAMES[1]), SELECTED))
        image.save(os.path.join(SCRATCH, "guide.png"))
        self.stop()


if __name__ == "__main__":
    unittest.main()
