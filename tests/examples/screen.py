# SPDX-License-Identifier: MIT
"""Starting a program on the screen, using it with the pointer, and looking at what it shows."""
import os
import shutil
import subprocess
import time
import unittest

from PyQt5.QtGui import QImage
from PyQt5.QtWidgets import QApplication

application = QApplication(["test"])
SOURCE, BUILD, SCRATCH, MODULE = (os.environ[n] for n in ("SOURCE", "BUILD", "SCRATCH", "MODULE"))
BACKGROUND = (28, 36, 48)


def installed():
    """The prefix of a fresh installation of the module and its headers."""
    prefix = os.path.join(SCRATCH, "prefix")
    shutil.rmtree(prefix, ignore_errors=True)
    for component in ("glwindow", "glwindow-dev"):
        subprocess.run([os.environ["CMAKE"], "--install", BUILD, "--prefix", prefix,
                        "--component", component], check=True, stdout=subprocess.DEVNULL)
    return prefix


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
        subprocess.run(command + ["--timeout", "2", "--picture", file],
                       check=True, timeout=120)
        image = QImage(file)
        self.assertEqual((image.width(), image.height()), (800, 600))
        return image

    def start(self, command):
        """Starts the program and waits for its window."""
        process = self.process = subprocess.Popen(command)
        self.addCleanup(self.stop)
        found = self.xdotool("search", "--sync", "--onlyvisible", "--pid", str(process.pid),
                             "--name", ".")
        self.window = int(found.split()[0])

    def stop(self):
        self.process.terminate()
        self.process.wait()

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
