# SPDX-License-Identifier: MIT
"""Loads glwindow.so without bindings: ctypes opens it, PyQt5 reaches what its factories make.

Slots, signals and properties of the objects are then found by name, as if they were Python's:
window.AddGLWidget(view), grid.ValueChanged.connect(f), view.setProperty("visible", False).
"""
import argparse
import ctypes
import sysconfig

from PyQt5 import sip
from PyQt5.QtCore import QObject, QTimer, pyqtSlot
from PyQt5.QtWidgets import QApplication

INSTALLED = f"/usr/lib/{sysconfig.get_config_var('MULTIARCH')}/glwindow/glwindow.so"


class Module(QObject):
    """The module and its factories. Raises OSError if it cannot be loaded."""

    Factory = ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_void_p, ctypes.c_char_p)

    def __init__(self, path=INSTALLED):
        super().__init__()
        self.factories = {}
        init = ctypes.CDLL(path).init
        init.argtypes = [ctypes.c_void_p]
        init(sip.unwrapinstance(self))

    @pyqtSlot("const char*", "const char*", "void*")
    def Register(self, kind, name, factory):
        self.factories[name.decode()] = self.Factory(int(factory))

    def make(self, class_name, parent, name):
        """Makes an object. Qt deletes it with its parent; a window's parent only holds its name."""
        address = self.factories[class_name](sip.unwrapinstance(parent), name.encode())
        return sip.wrapinstance(address, QObject)


def arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--module", default=INSTALLED, metavar="FILE", help="glwindow.so")
    parser.add_argument("--timeout", type=float, metavar="SECONDS", help="quit after this time")
    parser.add_argument("--picture", metavar="FILE", help="before that, save what is shown")
    return parser.parse_args()


def run(window, options):
    """Shows the window until it is closed or its time is over. Returns the exit code."""

    def leave():
        saved = not options.picture or window.screen().grabWindow(window.winId()).save(
            options.picture)
        QApplication.exit(0 if saved else 1)

    window.resize(800, 600)
    window.show()
    if options.timeout:
        QTimer.singleShot(int(options.timeout * 1000), leave)
    code = QApplication.exec_()
    sip.delete(window)
    return code
