# SPDX-License-Identifier: MIT
"""Starting a program on the screen, using it with the pointer, and looking at what it shows."""
import itertools
import os
import subprocess
import time
import unittest

from PyQt5.QtWidgets import QApplication

application = QApplication(["test"])
SOURCE, SCRATCH, MODULE = (os.environ[name] for name in ("SOURCE", "SCRATCH", "MODULE"))
BACKGROUND = (28, 36, 48)


def program(name):
    """A program of the documents, built against an installation."""
    return os.path.join(SCRATCH, "hosts", name, name)


def colour(image, point):
    return image.pixelColor(*point).getRgb()[:3]


def near(a, b, tolerance=6):
    return all(abs(x - y) <= tolerance for x, y in zip(a, b))


class ScreenTest(unittest.TestCase):
    def start(self, *command):
        """Starts the program, in place of the one before, and waits for its window."""
        self.doCleanups()
        process = subprocess.Popen(command)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        found = self.xdotool("search", "--sync", "--onlyvisible", "--pid", str(process.pid),
                             "--name", ".")
        self.window = found.split()[0]

    def xdotool(self, *arguments):
        return subprocess.run(("xdotool",) + arguments, check=True, timeout=120, text=True,
                              stdout=subprocess.PIPE).stdout

    def pointer(self, point, *then):
        self.xdotool("mousemove", "--window", self.window, *map(str, point), *then)

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

    def key(self, name):
        self.xdotool("key", "--window", self.window, name)

    def eventually(self, shows):
        """Waits until the window shows what it should, and returns that image."""
        for _ in range(1200):
            image = self.image()
            if shows(image):
                return image
            time.sleep(0.05)
        image.save(self.id() + "-failed.png")
        self.fail(f"the window never showed it; see {os.getcwd()}/{self.id()}-failed.png")
