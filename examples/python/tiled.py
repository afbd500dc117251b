#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A tiled view of four solids. Click selects a tile, Control-click more of them, a double click
shows one alone; A selects all or none, V shows only the selected ones or all again."""
import sys

from OpenGL.GL import *
from OpenGL.GLU import gluCylinder, gluDisk, gluNewQuadric, gluSphere
from PyQt5.QtCore import QObject, pyqtSlot
from PyQt5.QtWidgets import QApplication

import glwindow

CORAL, AMBER = (1, 0.47, 0.33), (0.98, 0.75, 0.30)
TEAL, VIOLET = (0.25, 0.72, 0.66), (0.53, 0.54, 0.95)


def ball(quadric):
    gluSphere(quadric, 1.1, 48, 32)


def cone(quadric):
    glTranslatef(0, 0, -1)
    gluCylinder(quadric, 1.1, 0, 2.1, 48, 16)


def drum(quadric):
    glTranslatef(0, 0, -0.8)
    gluCylinder(quadric, 1, 1, 1.6, 48, 16)
    glTranslatef(0, 0, 1.6)
    gluDisk(quadric, 0, 1, 48, 16)


def lens(quadric):
    glScalef(1.2, 1.2, 0.45)
    gluSphere(quadric, 1, 48, 32)


SOLIDS = {1: (CORAL, ball), 2: (AMBER, cone), 3: (TEAL, drum), 4: (VIOLET, lens)}


class Solids(QObject):
    """The slots take no tile, which could not cross. Tiles are drawn in ascending order of their
    ids, after the signal DrawEvent: so the tile is counted."""

    def begin(self):
        glGetError()  # each frame leaves GL_INVALID_ENUM, which PyOpenGL would raise
        self.visible = iter(self.grid.GetVisible())

    @pyqtSlot()
    def Init(self):
        glClearColor(0.11, 0.14, 0.19, 1)
        self.quadric = gluNewQuadric()

    @pyqtSlot()
    def Draw3D(self):
        self.tile = next(self.visible)
        colour, draw = SOLIDS[self.tile]
        glLoadIdentity()
        glTranslatef(0, 0, -3.4)
        glRotatef(24, 1, 0, 0)
        for switch in (GL_DEPTH_TEST, GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE):
            glEnable(switch)
        glLightfv(GL_LIGHT0, GL_POSITION, (-3, 6, 5, 0))
        glMaterialfv(GL_FRONT, GL_AMBIENT_AND_DIFFUSE, colour + (1,))
        glRotatef(-90, 1, 0, 0)
        draw(self.quadric)
        glDisable(GL_LIGHTING)
        glDisable(GL_DEPTH_TEST)

    @pyqtSlot()
    def Draw2D(self):
        """A frame in the tile's pixels, which count from its top-left corner."""
        _, _, width, height = glGetIntegerv(GL_VIEWPORT)
        selected = self.tile in self.grid.GetSelected()
        glColor3fv(SOLIDS[self.tile][0] if selected else (0.22, 0.27, 0.35))
        glBegin(GL_LINE_LOOP)
        for x, y in ((0, 0), (width - 1, 0), (width - 1, height - 1), (0, height - 1)):
            glVertex2f(x, y)
        glEnd()


def main():
    options = glwindow.arguments()
    app = QApplication(sys.argv[:1])
    module = glwindow.Module(options.module)
    solids = Solids()
    window = module.make("GLWindow", module, "window")
    solids.grid = grid = module.make("GLMultiWidget", solids, "grid")
    window.AddGLWidget(grid)
    grid.setProperty("spacing", 8)
    grid.DrawEvent.connect(solids.begin)
    grid.Connect(solids)
    for tile in SOLIDS:
        grid.AddTile(tile)
    grid.NewKeyAction("A", b"all", grid, b"1SelectAll()")
    grid.NewKeyAction("V", b"show", grid, b"1ToggleVisible()")
    return glwindow.run(window, options)


if __name__ == "__main__":
    sys.exit(main())
