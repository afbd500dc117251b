// SPDX-License-Identifier: MIT
// Which frames come at rest, and what they show: shares of pixels known from geometry.
#include "host/view/window/refinement.h"

#include <QPainter>
#include <QTest>

#include "GL/glwidget.h"
#include "GL/glwindow.h"
#include <gtest/gtest.h>

namespace host {
namespace {

/// How often others repaint before the rest; whether it is allowed, and worth it; how many
/// milliseconds each frame takes; in which, counted from 1, something changes (0: in none); how
/// many are drawn in all; and of the pixels that the square covers in part the right ones and the
/// upper ones, of 200.
struct RefinementCase {
    int repaints;
    bool allowed, worth;
    qint64 takes;
    int interruptedIn, frames, right, upper;
};

const RefinementCase refinementCases[] = {
    {1, true, true, 0, 0, 9, 50, 125},   {3, true, true, 0, 0, 11, 50, 125},
    {1, false, true, 0, 0, 1, 0, 200},   {1, true, false, 0, 0, 1, 0, 200},
    {1, true, true, 700, 0, 5, 50, 100}, {1, true, true, 0, 4, 12, 50, 125},
};

/// Draws a square from the lower left corner to pixel 20.25 and 30.625, and paints a pixel over it.
class Host : public QObject {
    Q_OBJECT
public:
    Host(QGLWindow &window, const RefinementCase &row)
        : window_(window),
          row_(row),
          refinement(&window, [this] { return row_.allowed; },
                     {0, 0, 2000, [this] { return time_ += row_.takes; }})
    {
    }

    int frames = 0;
    QImage seen;

public slots:
    void Draw3D(GLW *)
    {
        if (++frames == row_.interruptedIn)
            refinement.interrupt();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        std::optional<Refinement::Shift> shift;
        if (row_.worth)
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
        glGetError(); // the window's own call that is none
        refinement.finish();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
    void PaintForeground(GLW *, QPainter *painter)
    {
        painter->fillRect(0, 39, 1, 1, QColor(1, 2, 3));
        painter->beginNativePainting();
        seen = window_.grabFrameBuffer();
        painter->endNativePainting();
    }

private:
    QGLWindow &window_;
    const RefinementCase &row_;
    qint64 time_ = 0;

public:
    Refinement refinement;
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
        for (int i = 0; i < row.repaints; ++i)
            window.repaint();
        ASSERT_TRUE(QTest::qWaitFor([&] { return host.refinement.isAtRest(); }, 20000));
        QCoreApplication::processEvents();
        EXPECT_EQ(host.frames, row.frames) << &row - refinementCases;
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
