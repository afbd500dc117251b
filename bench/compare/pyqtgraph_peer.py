# SPDX-License-Identifier: MIT
# pyqtgraph's GLViewWidget for each tile, measured as main.cpp measures the others.
# usage: pyqtgraph_peer.py ROWS all|one|rest STARTED
import math
import os
import resource
import sys
import time

os.environ['PYQTGRAPH_QT_LIB'] = 'PyQt5'
import numpy
import pyqtgraph.opengl as gl
from PyQt5.QtCore import QTimer
from PyQt5.QtGui import QImage
from PyQt5.QtWidgets import QApplication, QGridLayout, QWidget
from pyqtgraph.opengl import shaders

SIDE = 1000


def torus():
    """The mesh of scene.h, turned so that z points up, as pyqtgraph has it."""
    around, across = 32, 16
    points, normals, faces = [], [], []
    for i in range(around):
        a = 2 * math.pi * i / around
        for j in range(across):
            b = 2 * math.pi * j / across
            ring = 0.75 + 0.35 * math.cos(b)
            points.append((ring * math.sin(a), 0.35 * math.sin(b), ring * math.cos(a)))
            p, q = i * across + j, (i + 1) % around * across + j
            r = (i + 1) % around * across + (j + 1) % across
            s = i * across + (j + 1) % across
            faces += [(p, q, r), (p, r, s)]
    return gl.MeshData(vertexes=numpy.array(points), faces=numpy.array(faces))


lit = shaders.ShaderProgram('lit', [
    shaders.VertexShader('''varying vec3 normal;
        void main() {
            normal = gl_NormalMatrix * gl_Normal;
            gl_FrontColor = gl_Color;
            gl_Position = ftransform();
        }'''),
    shaders.FragmentShader('''varying vec3 normal;
        void main() {
            gl_FragColor = vec4(vec3(0.2 + 0.8 * max(normalize(normal).z, 0.0)), 1.0);
        }''')])


def cpu():
    usage = resource.getrusage(resource.RUSAGE_SELF)
    return usage.ru_utime + usage.ru_stime


class Peer:
    def __init__(self, rows):
        self.window = QWidget()
        grid = QGridLayout(self.window)
        grid.setContentsMargins(0, 0, 0, 0)
        grid.setSpacing(0)
        self.tiles = []
        mesh = torus()
        for i in range(rows * rows):
            tile = gl.GLViewWidget()
            tile.setMinimumSize(1, 1)
            tile.setBackgroundColor('k')
            tile.opts.update(distance=4, fov=35, elevation=20)
            tile.addItem(gl.GLMeshItem(meshdata=mesh, smooth=True, shader=lit))
            grid.addWidget(tile, i // rows, i % rows)
            self.tiles.append(tile)

    def turn(self, tile, azimuth):
        self.tiles[tile].opts['azimuth'] = azimuth

    def draw(self, tiles):
        swapped = []
        last = self.tiles[tiles[-1]]
        hear = lambda: swapped.append(True)
        last.frameSwapped.connect(hear)
        for tile in tiles:
            self.tiles[tile].update()
        while not swapped:
            QApplication.processEvents()
        last.frameSwapped.disconnect(hear)


def print_frames(frame):
    for i in range(5):
        frame(i)
    start, before, count = time.perf_counter(), cpu(), 0
    while time.perf_counter() - start < 1.5 and count < 2000:
        frame(5 + count)
        count += 1
    print('wall', (time.perf_counter() - start) * 1000 / count)
    print('cpu', (cpu() - before) * 1000 / count)


def print_rest(app):
    QTimer.singleShot(500, app.quit)
    app.exec_()
    before = cpu()
    QTimer.singleShot(2000, app.quit)
    app.exec_()
    print('cpu', (cpu() - before) * 500)


def print_picture(app):
    image = app.primaryScreen().grabWindow(0, 0, 0, SIDE, SIDE).toImage()
    image = image.convertToFormat(QImage.Format_Grayscale8)
    bits = image.constBits()
    bits.setsize(image.sizeInBytes())
    grey = numpy.frombuffer(bits, numpy.uint8)
    grey = grey[grey > 20]
    print('lit', len(grey))
    print('grey', grey.mean() if len(grey) else 0)


def main():
    rows, work, started = int(sys.argv[1]), sys.argv[2], float(sys.argv[3])
    app = QApplication(sys.argv[:1])
    peer = Peer(rows)
    every = list(range(rows * rows))

    def turn_all(by):
        for i in every:
            peer.turn(i, i * 360 / len(every) + by)
    turn_all(0)
    peer.window.setFixedSize(SIDE, SIDE)
    peer.window.move(0, 0)
    peer.window.show()
    while not peer.window.windowHandle().isExposed():
        app.processEvents()
    peer.draw(every)
    print('first', time.time() * 1000 - started / 1e6)
    app.processEvents()

    def all_turned(i):
        turn_all(i * 3)
        peer.draw(every)

    def one_turned(i):
        peer.turn(i % len(every), i * 7)
        peer.draw([i % len(every)])
    if work == 'all':
        print_frames(all_turned)
    elif work == 'one':
        print_frames(one_turned)
    else:
        print_rest(app)
    with open('/proc/self/statm') as statm:
        print('memory', int(statm.read().split()[1]) * resource.getpagesize() / 1048576)
    turn_all(0)
    peer.draw(every)
    app.processEvents()
    print_picture(app)
    sys.stdout.flush()
    os._exit(0)  # what the toolkit does at the end is not measured


main()
