# SPDX-License-Identifier: MIT
"""Starting a program on the screen, using it with the pointer, and looking at what it shows."""
import os
import subprocess
import time
import unittest

from PyQt5.QtGui import QGuiApplication, QImage

application = QGuiApplication(["test"])
SOURCE, BUILD, SCRATCH, MODULE = (os.environ[n] for n in ("SOURCE", "BUILD", "SCRATCH", "MODULE"))
BACKGROUND = (28, 36, 48)


def environment():
    """The programs' surroundings: the sanitizer's runtime in front, where the module needs it."""
    if not os.environ["PRELOAD"]:
        return dict(os.environ)
    return dict(os.environ, LD_PRELOAD=os.environ["PRELOAD"], ASAN_OPTIONS="detect_leaks=0")


def colour(image, point):
    return image.pixelColor(*point).getRgb()[:3]


def near(a, b, tolerance=6):
    return all(abs(x - y) <= tolerance for x, y in zip(a, b))


class ScreenTest(unittest.TestCase):
    def picture_of(self, command):
        """What the program saves when its time is over."""
        file = os.path.join(SCRATCH, self.id() + ".png")
        if os.path.exists(file):
            os.remove(file)
        subprocess.run(command + ["--timeout", "2", "--picture", file], env=environment(),
                       check=True, timeout=120)
        image = QImage(file)
        self.assertEqual((image.width(), image.height()), (800, 600))
        return image

    def start(self, command):
        """Starts the program. Returns the place of its window on the screen."""
        process = subprocess.Popen(command, env=environment())
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        found = self.xdotool("search", "--sync", "--onlyvisible", "--pid", str(process.pid),
                             "--name", ".")
        self.window = int(found.split()[0])

    def xdotool(self, *arguments):
        return subprocess.run(("xdotool",) + arguments, check=True, timeout=60, text=True,
                              stdout=subprocess.PIPE).stdout

    def pointer(self, point, *then):
        x, y = point
        self.xdotool("mousemove", "--sync", "--window", str(self.window), str(x), str(y), *then)

    def eventually(self, shows):
        """Waits until the window shows what it should, and returns that image."""
        for _ in range(200):
            image = application.primaryScreen().grabWindow(self.window).toImage()
            if shows(image):
                return image
            time.sleep(0.1)
        image.save(os.path.join(SCRATCH, self.id() + "-failed.png"))
        self.fail("the window never showed it; see " + self.id() + "-failed.png")
