// SPDX-License-Identifier: MIT
// Which frames come at rest, and what they show: shares of pixels known from geometry.
#include "host/view/window/refinement.h"

#include <QPainter>
#include <QTest>

#include "GL/glwidget.h"
#include "GL/glwindow.h"
#include "host/view/window/late_clear.h"
#include <gtest/gtest.h>

namespace host {
namespace {

/// How often others repaint before the rest; after how many frames it is allowed no more; whether
/// it is worth it; how many milliseconds each frame takes; in which, counted from 1, something
/// changes (0: in none); how many are drawn in all; and of the pixels that the square covers in
/// part the right ones and the upper ones, of 200.
struct RefinementCase {
    int repaints, allowed;
    bool worth;
    qint64 takes;
    int interruptedIn, frames, right, upper;
};

const RefinementCase refinementCases[] = {
    {1, 99, true, 0, 0, 9, 50, 125},   {3, 99, true, 0, 0, 11, 50, 125},
    {1, 0, true, 0, 0, 1, 0, 200},     {1, 99, false, 0, 0, 1, 0, 200},
    {1, 99, true, 700, 0, 5, 50, 100}, {1, 99, true, 0, 4, 12, 50, 125},
    {1, 4, true, 0, 0, 4, 67, 133},
};

/// Draws a square from the lower left corner to pixel 20.25 and 30.625, and paints a pixel over it.
class Host : public QObject {
    Q_OBJECT
public:
    QGLWindow &window;
    const RefinementCase &row;
    qint64 time = 0;
    int frames = 0;
    QImage seen;
    Refinement refinement{&window,
                          [this] { return frames < row.allowed; },
                          {0, 0, 2000, [this] { return time += row.takes; }}};

    Host(QGLWindow &w, const RefinementCase &r) : window(w), row(r) {}

public slots:
    void Draw3D(GLW *)
    {
        if (++frames == row.interruptedIn)
            refinement.interrupt();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        std::optional<Refinement::Shift> shift;
        if (row.worth)
            shift.emplace(refinement);
        glLoadIdentity(); // of the mode that was
        glColor3ub(200, 200, 200);
        glRectd(-1, -1, 20.25 / 24 - 1, 30.625 / 20 - 1);
        shift.reset();
        glColor3ub(100, 100, 100); // what is drawn after it stays where it is
        glRectd(30.0 / 24 - 1, 20.25 / 20 - 1, 1, 22.25 / 20 - 1);
    }
    void Draw2D(GLW *)
    {
        glGetError();                     // the window's own call that is none
        glPushAttrib(GL_ALL_ATTRIB_BITS); // in a state in which nothing would be seen
        glEnable(GL_DEPTH_TEST), glDepthFunc(GL_NEVER), glColorMask(0, 0, 0, 0);
        glPolygonMode(GL_FRONT_AND_BACK, GL_POINT), glViewport(0, 0, 9, 9);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_ADD);
        refinement.finish();
        glEnable(GL_SCISSOR_TEST), glScissor(0, 0, 1, 1), glDepthMask(0), glClearDepth(.25);
        LateClear::clearDepths();
        float depth = 0;
        glReadPixels(9, 9, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
        EXPECT_TRUE(std::abs(depth - .25f) < 1e-3f && glIsEnabled(GL_SCISSOR_TEST)) << depth;
        glPopAttrib();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
    void PaintForeground(GLW *, QPainter *painter)
    {
        painter->fillRect(0, 39, 1, 1, QColor(1, 2, 3));
        painter->beginNativePainting();
        seen = window.grabFrameBuffer();
        painter->endNativePainting();
    }
};

TEST(RefinementTest, SmoothsWhatStaysAndThenRests)
{
    for (const RefinementCase &row : refinementCases) {
        QGLWindow window(nullptr, "window");
        window.fps(0);
        window.resize(48, 40);
        window.setProperty("drawfps", false);
        GLWidget scene(nullptr, "scene");
        window.AddGLWidget(&scene);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        QCoreApplication::processEvents();
        window.makeCurrent();
        Host host(window, row);
        scene.Connect(&host);
        bool rested = true;
        for (int i = 0; i < row.repaints; ++i, window.repaint())
            host.refinement.interrupt(), rested = rested && host.refinement.isAtRest();
        ASSERT_TRUE(QTest::qWaitFor([&] { return host.refinement.isAtRest(); }, 20000));
        QCoreApplication::processEvents();
        EXPECT_EQ(host.frames, row.frames) << &row - refinementCases;
        EXPECT_TRUE(rested && host.refinement.gaveUp() == (row.allowed == 4));
        const auto grey = [&](int x, int y) { return qRed(host.seen.pixel(x, 39 - y)); };
        EXPECT_NEAR(grey(20, 10), row.right, 1);
        EXPECT_NEAR(grey(10, 30), row.upper, 1);
        EXPECT_EQ(grey(21, 10) + grey(10, 31) + grey(35, 19), 0);
        EXPECT_TRUE(grey(10, 10) == 200 && grey(35, 20) == 100);
        EXPECT_EQ(host.seen.pixelColor(0, 39), QColor(1, 2, 3));
        window.RemoveGLWidget(&scene);
    }
}

} // namespace
} // namespace host

#include "refinement_gltest.moc"
