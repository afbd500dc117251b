// SPDX-License-Identifier: MIT
// On a real window: which steering comes of gestures, and with which pixels; and which frames come
// at rest, and what they show.
#include <QPainter>
#include <gtest/gtest.h>

#include "GL/glwindow.h"
#include "hand.h"
#include "host/view/controls.h"
#include "host/view/window/late_clear.h"
#include "host/view/window/refinement.h"

namespace host {
namespace {

/// Writes down what it is told.
class Recorder : public Steering {
public:
    QStringList log;

    bool advance(GLW *, double) override { return false; }
    void fit(GLW *) override { log << "fit"; }
    void home(GLW *) override { log << "home"; }
    void lookFrom(GLW *, Side side) override { add("from", double(side)); }
    void toggleProjection(GLW *) override { log << "projection"; }
    void beginDrag(GLW *, Drag kind, const QPointF &at) override { add("grab", kind, at); }
    void drag(GLW *, Drag kind, const QPointF &a, const QPointF &b) override { add(kind, a, b); }
    void zoom(GLW *, const QPointF &at, float steps, Qt::KeyboardModifiers modifiers) override
    {
        add(modifiers ? "bent zoom" : "zoom", double(steps), at);
    }
    void focus(GLW *, const QPointF &at) override { add("focus", at); }

private:
    template <typename... Words> void add(const Words &...words)
    {
        log << QStringList{word(words)...}.join(' ');
    }
    static QString word(const char *text) { return text; }
    static QString word(double n) { return QString::number(n); }
    static QString word(const QPointF &p) { return word(p.x()) + ',' + word(p.y()); }
    static QString word(Drag kind) { return QStringList{"orbit", "pan", "roll"}[int(kind)]; }
};

/// A window of 400 x 300 pixels. The object with the controls is 200 x 100 pixels large and stands
/// 150 pixels from the left, 20 from the top; in front of its left half stands another.
struct Hands {
    QGLWindow window{nullptr, "window"};
    GLWidget scene{nullptr, "scene"}, front{nullptr, "front"};
    Recorder item;
    std::unique_ptr<Controls> controls;

    explicit Hands(bool single)
    {
        window.fps(0);
        window.resize(400, 300);
        scene.setGeometry(QRectF(150, 20, 200, 100));
        front.setGeometry(QRectF(150, 20, 20, 100));
        window.AddGLWidget(&scene);
        window.AddGLWidget(&front);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.setProperty("clampMouseToFrame", false);
        controls = std::make_unique<Controls>(
            &scene, [this](GLW *) { return &item; }, single, nullptr);
        const auto log = [this](const char *word) {
            return [this, word](GLW *glw) { item.log << word + glw->objectName(); };
        };
        QObject::connect(controls.get(), &Controls::menuAsked, log("menu "));
        QObject::connect(controls.get(), &Controls::areaEnded, log("area "));
        QObject::connect(controls.get(), &Controls::clicked, log("click "));
        QObject::connect(controls.get(), &Controls::pressed, log("press "));
    }
};

TEST(ControlsTest, SteerTheItemInItsOwnPixels)
{
    const struct {
        const char *script, *steering;
        bool single = true;
    } rows[] = {
        // The motion from far away to the press is none of the drag, nor is one after the release.
        {"10,290 move 180,30 left down 190,35 move up 195,40 move",
         "grab orbit 30.5,89.5; press scene; orbit 30.5,89.5 40.5,84.5"},
        {"180,30 middle down 183,35 move up", "grab pan 30.5,89.5; pan 30.5,89.5 33.5,84.5"},
        {"180,30 shift down 183,35 move up", "grab pan 30.5,89.5; pan 30.5,89.5 33.5,84.5"},
        {"180,30 ctrl down 183,35 move up",
         "grab roll 30.5,89.5; press scene; roll 30.5,89.5 33.5,84.5"},
        {"180,30 ctrl down 183,35 move up", "", false},
        {"180,30 alt down 183,35 move up", ""},
        {"180,30 down 10,290 up 190,30 down",
         "grab orbit 30.5,89.5; press scene; grab orbit 40.5,89.5; press scene"},
        {"180,30 down 190,30 move 160,30 up 190,30 left none move",
         "grab orbit 30.5,89.5; press scene; orbit 30.5,89.5 40.5,89.5"},
        {"180,30 down 182,31 move up",
         "grab orbit 30.5,89.5; press scene; orbit 30.5,89.5 32.5,88.5; click scene"},
        {"180,30 down 182,32 move 180,30 move up 160,30 up",
         "grab orbit 30.5,89.5; press scene; orbit 30.5,89.5 32.5,87.5; orbit 32.5,87.5 30.5,89.5"},
        {"160,30 down 180,30 up", ""},
        {"180,30 shift right down 200,50 move 10,290 move up", "area scene"},
        {"180,30 shift right down 200,50 move none up", "area scene"},
        {"180,30 shift right down 200,50 move right move move", "area scene"}, // it is up
        {"200,50 move +R left down 200,51 move -R 200,52 move 200,53 move",
         "grab roll 50.5,69.5; press scene; roll 50.5,69.5 50.5,68.5; grab orbit 50.5,67.5; orbit "
         "50.5,67.5 50.5,66.5"},
        {"200,50 move +R 10,290 move -R 200,50 move down", "grab orbit 50.5,69.5; press scene",
         false},
        {"349,119 wheel 180,20 back 149,140 wheel shift 349,119 wheel",
         "zoom 1 199.5,0.5; zoom -1 30.5,99.5; bent zoom 1 199.5,0.5"},
        {"400,70 move F 250,0 move F 250,300 move F", "fit; fit; fit"},
        {"250,70 twice 252,70 move up", "focus 100.5,49.5"},
        {"250,70 right down up", "menu scene"},
        {"250,70 move F Home 1 2 3 4 5 6 O",
         "fit; home; from 0; from 1; from 2; from 3; from 4; from 5; projection"},
        {"10,10 move F Left", "", false},
        {"390,10 move Left Up",
         "grab orbit 100,50; orbit 100,50 93.75,50; grab orbit 100,50; orbit 100,50 100,56.25"},
        {"250,70 move shift Right Down",
         "grab pan 100,50; pan 100,50 106.25,50; grab pan 100,50; pan 100,50 100,43.75"},
        {"250,70 move + = - none", "zoom 1 100,50; zoom 1 100,50; zoom -1 100,50"}};
    for (const auto &row : rows) {
        Hands hands(row.single);
        steer(
            &hands.window, row.script, [] {}, [](const QString &) { return std::nullopt; });
        EXPECT_EQ(hands.item.log.join("; ").toStdString(), row.steering) << row.script;
    }
}

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
    {1, 4, true, 0, 0, 4, 67, 133}};

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
    }
}

} // namespace
} // namespace host

#include "gestures_and_rest_gltest.moc"
