#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""One view: a lit cube. Drag to orbit."""
import sys

from OpenGL.GL import *
from PyQt5.QtCore import QObject, Qt, pyqtSlot
from PyQt5.QtGui import QCursor
from PyQt5.QtWidgets import QApplication

import glwindow

# Each face by its axis, its side and its corners in counter-clockwise order.
FACES = [(axis, side, [(-1, -side), (1, -side), (1, side), (-1, side)])
         for axis in range(3) for side in (-1, 1)]


class Cube(QObject):
    elevation, azimuth = 26, 35  # degrees
    last = None  # where the pointer was, while it drags

    @pyqtSlot()
    def Init(self):
        glClearColor(0.11, 0.14, 0.19, 1)

    @pyqtSlot()
    def Draw3D(self):
        glGetError()  # each frame leaves GL_INVALID_ENUM, which PyOpenGL would raise
        # The module's camera is out of reach: its projection stays, the view is set here.
        glLoadIdentity()
        glTranslatef(0, 0, -4)
        glRotatef(self.elevation, 1, 0, 0)
        glRotatef(self.azimuth, 0, 1, 0)
        # Every frame: the text that was drawn over the last one switched these off.
        for switch in (GL_DEPTH_TEST, GL_LIGHTING, GL_LIGHT0):
            glEnable(switch)
        glLightfv(GL_LIGHT0, GL_POSITION, (-3, 6, 5, 0))
        glMaterialfv(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, (1, 0.47, 0.33, 1))
        glBegin(GL_QUADS)
        for axis, side, corners in FACES:
            normal = [0, 0, 0]
            normal[axis] = side
            glNormal3f(*normal)
            for u, v in corners:
                point = [side, u, v]
                glVertex3f(*(point[(i - axis) % 3] for i in range(3)))
        glEnd()
        glDisable(GL_LIGHTING)

    @pyqtSlot(bool)
    def Orbit(self, held):
        here = QCursor.pos()
        if held and self.last:
            self.azimuth += (here - self.last).x() * 0.5
            self.elevation += (here - self.last).y() * 0.5
        self.last = here if held else None


def main():
    options = glwindow.arguments()
    app = QApplication(sys.argv[:1])
    module = glwindow.Module(options.module)
    cube = Cube()
    window = module.make("GLWindow", module, "window")
    view = module.make("GLWidget", cube, "view")
    window.AddGLWidget(view)
    view.Connect(cube)
    view.NewMouseAction(Qt.LeftButton, 0, b"orbit", cube, b"1Orbit(bool)")
    return glwindow.run(window, options)


if __name__ == "__main__":
    sys.exit(main())
