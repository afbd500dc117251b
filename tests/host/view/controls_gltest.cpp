// SPDX-License-Identifier: MIT
// Gestures on a real window: which steering comes of them, and with which pixels.
#include <QTest>
#include <QWheelEvent>

#include "GL/glwindow.h"
#include "host/view/controls.h"
#include "tests/GL/table.h"

namespace host {
namespace {

/// Writes down what it is told.
class Recorder : public Steering {
public:
    QStringList log;

    bool advance(GLW *, double) override { return false; }
    void fit(GLW *) override { log << "fit"; }
    void home(GLW *) override { log << "home"; }
    void lookFrom(GLW *, Side side) override { log << QString("from %1").arg(int(side)); }
    void toggleProjection(GLW *) override { log << "projection"; }
    void beginDrag(GLW *, Drag kind, const QPointF &at) override
    {
        log << QString("grab %1 at %2").arg(word(kind), place(at));
    }
    void drag(GLW *, Drag kind, const QPointF &from, const QPointF &to) override
    {
        log << QString("%1 from %2 to %3").arg(word(kind), place(from), place(to));
    }
    void zoom(GLW *, const QPointF &at, float steps, Qt::KeyboardModifiers) override
    {
        log << QString("zoom %1 at %2").arg(steps).arg(place(at));
    }
    void focus(GLW *, const QPointF &at) override { log << "focus " + place(at); }

private:
    static QString word(Drag kind)
    {
        return kind == Drag::Orbit ? "orbit" : kind == Drag::Pan ? "pan" : "roll";
    }
    static QString place(const QPointF &p) { return QString("%1,%2").arg(p.x()).arg(p.y()); }
};

/// A window of 400 x 300 pixels. The object with the controls is 200 x 100 pixels large and stands
/// 150 pixels from the left, 20 from the top.
class ControlsTest : public testing::Test {
protected:
    QGLWindow window{nullptr, "window"};
    GLWidget scene{nullptr, "scene"};
    Recorder item;
    Controls controls{&scene, [this](GLW *) { return &item; }, true, nullptr};
    QStringList menus;

    ControlsTest()
    {
        window.fps(0);
        window.resize(400, 300);
        scene.setGeometry(QRectF(150, 20, 200, 100));
        window.AddGLWidget(&scene);
        QObject::connect(&controls, &Controls::menuAsked,
                         [this](GLW *glw) { menus << glw->objectName(); });
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        window.setProperty("clampMouseToFrame", false);
    }
    ~ControlsTest() override { window.RemoveGLWidget(&scene); }

    using Buttons = Qt::MouseButtons;
    using Modifiers = Qt::KeyboardModifiers;

    /// Pixels of the window from its upper left corner.
    void event(QEvent::Type type, int x, int y, Qt::MouseButton button, Buttons held,
               Modifiers modifiers = {})
    {
        QMouseEvent e(type, QPointF(x, y), window.mapToGlobal(QPoint(x, y)), button, held,
                      modifiers);
        QCoreApplication::sendEvent(&window, &e);
    }
    void press(int x, int y, Qt::MouseButton button, Modifiers modifiers = {})
    {
        event(QEvent::MouseButtonPress, x, y, button, button, modifiers);
    }
    void move(int x, int y, Buttons held = {}, Modifiers modifiers = {})
    {
        event(QEvent::MouseMove, x, y, Qt::NoButton, held, modifiers);
    }
    void release(int x, int y, Qt::MouseButton button, Modifiers modifiers = {})
    {
        event(QEvent::MouseButtonRelease, x, y, button, Qt::NoButton, modifiers);
    }
    void wheel(int x, int y, int delta)
    {
        QWheelEvent e(QPointF(x, y), window.mapToGlobal(QPoint(x, y)), {}, {0, delta}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window, &e);
    }
    QString take()
    {
        const QString text = item.log.join("; ");
        item.log.clear();
        return text;
    }
};

struct GestureCase {
    const char *name;
    Qt::MouseButton button;
    int modifiers;
    const char *kind; // empty: nothing happens
};

const GestureCase gestureCases[] = {
    {"LeftOrbits", Qt::LeftButton, Qt::NoModifier, "orbit"},
    {"MiddlePans", Qt::MiddleButton, Qt::NoModifier, "pan"},
    {"ShiftLeftPans", Qt::LeftButton, Qt::ShiftModifier, "pan"},
    {"ControlLeftRolls", Qt::LeftButton, Qt::ControlModifier, "roll"},
    {"RightDragsNothing", Qt::RightButton, Qt::NoModifier, ""},
    {"AltIsFree", Qt::LeftButton, Qt::AltModifier, ""},
};

TABLE(DragGesture, ControlsTest, GestureCase, gestureCases);

TEST_P(DragGesture, ReachesTheItemInItsOwnPixels)
{
    const GestureCase &c = GetParam();
    const Qt::KeyboardModifiers modifiers(c.modifiers);
    move(10, 290); // far away: the press itself must not count as a motion from here
    press(160, 30, c.button, modifiers);
    move(163, 35, c.button, modifiers);
    release(163, 35, c.button, modifiers);
    const QString kind = c.kind;
    EXPECT_EQ(take().toStdString(), kind.isEmpty() ? std::string()
                                                   : ("grab " + kind + " at 10.5,89.5; " + kind +
                                                      " from 10.5,89.5 to 13.5,84.5")
                                                         .toStdString());
    move(170, 40);
    EXPECT_EQ(take(), "") << "the drag goes on after its release";
}

TEST_F(ControlsTest, ALateReleaseDoesNotJumpIntoTheNextDrag)
{
    press(200, 50, Qt::LeftButton);
    release(10, 290, Qt::LeftButton); // outside of the object: it hears nothing of it
    take();
    press(300, 100, Qt::LeftButton);
    EXPECT_EQ(take(), "grab orbit at 150.5,19.5");
}

TEST_F(ControlsTest, RTurnsALeftDragIntoARoll)
{
    move(200, 50);
    QTest::keyPress(&window, Qt::Key_R);
    press(200, 50, Qt::LeftButton);
    move(200, 51, Qt::LeftButton);
    EXPECT_EQ(take(), "grab roll at 50.5,69.5; roll from 50.5,69.5 to 50.5,68.5");
    QTest::keyRelease(&window, Qt::Key_R);
    move(200, 52, Qt::LeftButton);
    move(200, 53, Qt::LeftButton);
    EXPECT_EQ(take(), "grab orbit at 50.5,67.5; orbit from 50.5,67.5 to 50.5,66.5");
}

TEST_F(ControlsTest, WheelZoomsWhereThePointerIs)
{
    wheel(349, 119, 120);
    EXPECT_EQ(take(), "zoom 1 at 199.5,0.5");
    wheel(150, 20, -120);
    EXPECT_EQ(take(), "zoom -1 at 0.5,99.5");
    wheel(149, 140, 120);
    EXPECT_EQ(take(), "") << "outside of the object";
}

TEST_F(ControlsTest, DoubleClickFocusesOnce)
{
    press(250, 70, Qt::LeftButton);
    release(250, 70, Qt::LeftButton);
    take();
    event(QEvent::MouseButtonDblClick, 250, 70, Qt::LeftButton, Qt::LeftButton);
    move(252, 70, Qt::LeftButton);
    release(252, 70, Qt::LeftButton);
    EXPECT_EQ(take(), "focus 100.5,49.5");
}

TEST_F(ControlsTest, MenuComesWithTheReleaseOfTheRightButton)
{
    press(250, 70, Qt::RightButton);
    EXPECT_TRUE(menus.isEmpty());
    release(250, 70, Qt::RightButton);
    EXPECT_EQ(menus, QStringList{"scene"});
}

struct KeyCase {
    const char *name;
    Qt::Key key;
    const char *steering;
};

const KeyCase keyCases[] = {
    {"Fit", Qt::Key_F, "fit"},
    {"Home", Qt::Key_Home, "home"},
    {"Front", Qt::Key_1, "from 0"},
    {"Back", Qt::Key_2, "from 1"},
    {"Left", Qt::Key_3, "from 2"},
    {"Right", Qt::Key_4, "from 3"},
    {"Top", Qt::Key_5, "from 4"},
    {"Bottom", Qt::Key_6, "from 5"},
    {"Projection", Qt::Key_O, "projection"},
};

TABLE(KeyBinding, ControlsTest, KeyCase, keyCases);

TEST_P(KeyBinding, SteersTheItemUnderThePointer)
{
    move(250, 70);
    QTest::keyClick(&window, GetParam().key);
    EXPECT_EQ(take(), GetParam().steering);
    move(10, 10);
    QTest::keyClick(&window, GetParam().key);
    EXPECT_EQ(take(), "") << "the pointer is elsewhere";
}

TEST_F(ControlsTest, PeersMoveAlong)
{
    GLWidget other(nullptr, "other");
    controls.setPeers([&](GLW *glw) { return QList<GLW *>{glw, &other}; });
    QStringList steered;
    QObject::connect(&controls, &Controls::steered,
                     [&](GLW *glw) { steered << glw->objectName(); });
    move(250, 70);
    QTest::keyClick(&window, Qt::Key_F);
    EXPECT_EQ(take(), "fit; fit");
    EXPECT_EQ(steered.join(' '), "scene other");
}

} // namespace
} // namespace host
