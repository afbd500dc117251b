// SPDX-License-Identifier: MIT
#include "scene.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <QScreen>
#include <QTest>
#include <QWindow>

namespace host {

namespace {

void draw3D(GLW *, float scale)
{
    glEnable(GL_DEPTH_TEST);
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i <= 12; ++i) {
        glColor3f(float(i % 3) / 2, float(i % 4) / 3, 1 - float(i) / 12);
        glVertex3f(float(i) / 4 - 1.5f, i % 2 ? 0.9f : -0.7f, float(i) / 12 - 1.6f);
    }
    glEnd();
    glColor3f(1, 1, 0);
    glLineWidth(9 * scale);
    constexpr float corners[4][2] = {{-1.3f, -1}, {1.3f, -1}, {1.3f, 1}, {-1.3f, 1}};
    glBegin(GL_LINE_LOOP);
    for (const float *corner : corners)
        glVertex2fv(corner);
    glEnd();
    glPointSize(13 * scale);
    glBegin(GL_POINTS);
    for (int i = 0; i < 40; ++i)
        glVertex3f(float(i % 8) / 3 - 1.2f, float(i / 8) / 2.5f - 0.8f, 0);
    glEnd();
}

void draw2D(GLW *, float scale)
{
    glDisable(GL_DEPTH_TEST);
    glColor3f(0, 1, 1);
    glLineWidth(3 * scale);
    glBegin(GL_LINES);
    glVertex2f(-40, 0);
    glVertex2f(40, 0);
    glVertex2f(0, -30);
    glVertex2f(0, 30);
    glEnd();
}

} // namespace

Scene::Scene() : window(std::make_unique<QGLWindow>(nullptr, "scene"))
{
    window->fps(0);
    window->setProperty("drawfps", false);
    window->setGeometry(100, 100, 320, 200);
    inset.setGeometry({200, 20, 100, 80});
    for (GLWidget *object : {&main, &inset}) {
        window->InsertGLWidget(-1, object);
        object->camera.radius = 3;
        object->camera.rot = Vector(20, 30, 0);
        object->camera.Update(0);
        QObject::connect(object, &GLWidget::Draw3D, [](GLW *glw) { draw3D(glw, 1); });
        QObject::connect(object, &GLWidget::Draw2D, [](GLW *glw) { draw2D(glw, 1); });
    }
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->makeCurrent();
}

Scene::~Scene() = default;

PictureRequest Scene::request() const
{
    PictureRequest r;
    r.window = r.size = window->size();
    r.objects.resize(2);
    r.objects[0].glw = const_cast<GLWidget *>(&main);
    r.objects[0].rect = QRectF(0, 0, 320, 200);
    r.objects[1].glw = const_cast<GLWidget *>(&inset);
    r.objects[1].rect = QRectF(200, 20, 100, 80);
    for (PictureObject &object : r.objects) {
        object.draw3D = draw3D;
        object.draw2D = draw2D;
    }
    return r;
}

QImage Scene::shown()
{
    window->repaint();
    glFinish();
    return window->screen()->grabWindow(window->winId()).toImage();
}

FileSizeLimit::FileSizeLimit(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
}

FileSizeLimit::~FileSizeLimit()
{
    setrlimit(RLIMIT_FSIZE, &before_);
}

int differing(const QImage &a, const QImage &b, int tolerance)
{
    if (a.size() != b.size())
        return a.width() * a.height() + b.width() * b.height();
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            const int most =
                std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                          std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
            count += most > tolerance;
        }
    return count;
}

} // namespace host
