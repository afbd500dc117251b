// SPDX-License-Identifier: MIT
// The window's routing of events to the bindings of the object under the pointer.
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include "table.h"
#include "testing.h"

namespace {

constexpr quint32 everything = 0xFFFFFFFF;
constexpr quint32 shift = 0x02000000;

class Input : public WindowTest {
protected:
    /// Straight to the handlers, so that fractions of a pixel arrive there.
    void deliver(QEvent &&event)
    {
        event.setAccepted(false);
        static_cast<QObject *>(window)->event(&event);
        EXPECT_TRUE(event.isAccepted());
    }
    void pointer(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held,
                 Qt::KeyboardModifiers modifiers = {})
    {
        deliver(QMouseEvent(type, at, at, QPointF(100, 100) + at, button, held, modifiers));
    }
    void wheel(QPointF at, QPoint delta, Qt::KeyboardModifiers modifiers = {})
    {
        deliver(QWheelEvent(at, at, {}, delta, {}, modifiers, Qt::NoScrollPhase, false));
    }
    void key(QEvent::Type type, int code, Qt::KeyboardModifiers modifiers = {}, bool again = false)
    {
        deliver(QKeyEvent(type, code, modifiers, QString(), again));
    }
    /// Binds the host's State to every pointer event on the object and keeps the record it saw.
    GLWidget *watched(const char *name, const QRectF &rect = QRectF(0, 0, 1, 1))
    {
        GLWidget *object = add(name, rect);
        object->NewMouseAction(0, everything, "all", &host, SLOT(State(GLW *, bool)));
        for (const char *slot : {".Press", ".Release"})
            host.on[name + QString(slot)] = [this] { seen = window->mouse; };
        return object;
    }

    Mouse seen;
};

TEST_F(Input, PointerIsRoundedAndCountedFromTheBottom)
{
    watched("a");
    frozenClock = 5000000;
    window->mouse.t = frozenClock - 40;
    pointer(QEvent::MouseButtonPress, {10.5, 20.4}, Qt::LeftButton,
            Qt::LeftButton | Qt::RightButton, Qt::ControlModifier);
    EXPECT_EQ(host.take(), "a.Press");
    EXPECT_EQ(seen.x, 11);
    EXPECT_EQ(seen.y, 80);
    EXPECT_EQ(seen.dt, 40);
    EXPECT_EQ(seen.button, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(seen.modifier, int(Qt::ControlModifier));
    pointer(QEvent::MouseButtonPress, {0, 0}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(seen.y, 100) << "the height, not the height minus one";
}

TEST_F(Input, MotionKeepsTheButtonsOfTheRecord)
{
    watched("a");
    pointer(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton, Qt::LeftButton);
    window->mouse.button = 5;
    host.log.clear();
    pointer(QEvent::MouseMove, {30.5, 40.5}, Qt::NoButton, Qt::LeftButton, Qt::AltModifier);
    EXPECT_EQ(host.take(), "a.Press");
    EXPECT_EQ(seen.x, 31);
    EXPECT_EQ(seen.y, 59);
    EXPECT_EQ(seen.x0, 10);
    EXPECT_EQ(seen.dx, -21);
    EXPECT_EQ(seen.button, 5);
    EXPECT_EQ(seen.last_button, 5);
    EXPECT_EQ(seen.modifier, int(Qt::AltModifier));
}

TEST_F(Input, ReleaseFiresWhatWasHeldBefore)
{
    GLWidget *a = add("a");
    a->NewMouseAction(0x1, 0, "left", &host, SLOT(State(GLW *, bool)));
    a->NewMouseAction(0x2, 0, "right", &host, SLOT(Fired(GLW *)));
    pointer(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton, Qt::LeftButton);
    pointer(QEvent::MouseButtonRelease, {10, 20}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(host.take(), "a.Press a.Release");
}

TEST_F(Input, DoubleClickShowsUntilItsReleaseIsDispatched)
{
    GLWidget *a = add("a");
    a->NewMouseAction(0x101, 0, "double", &host, SLOT(State(GLW *, bool)));
    a->NewMouseAction(0x1, 0, "single", &host, SLOT(Fired(GLW *)));
    const auto click = [this](QEvent::Type press) {
        pointer(press, {10, 20}, Qt::LeftButton, Qt::LeftButton);
        const QString pressed = host.take();
        pointer(QEvent::MouseButtonRelease, {10, 20}, Qt::LeftButton, Qt::NoButton);
        return pressed + ' ' + host.take();
    };
    EXPECT_EQ(click(QEvent::MouseButtonPress), "a.Fired ");
    EXPECT_EQ(window->mouse.double_click, 0);
    EXPECT_EQ(click(QEvent::MouseButtonDblClick), "a.Press a.Release");
    EXPECT_EQ(window->mouse.double_click, 1);
    EXPECT_EQ(window->mouse.double_press, 0);
    pointer(QEvent::MouseMove, {10, 20}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(window->mouse.double_click, 0);
}

struct WheelCase {
    const char *name;
    int before;
    QPoint delta;
    int during, after;
};

const WheelCase wheelCases[] = {
    {"Up", 0, {0, 120}, 0x8, 0},
    {"Down", 0, {0, -120}, 0x10, 0},
    {"ZeroCountsAsDown", 0, {0, 0}, 0x10, 0},
    {"SidewaysCountsAsDown", 0, {120, 0}, 0x10, 0},
    {"HeldButtonStays", 0x1, {0, 1}, 0x9, 0x1},
    {"UpKeepsTheOtherBit", 0x10, {0, 120}, 0x18, 0x10},
    {"DownKeepsTheOtherBit", 0x8, {0, -120}, 0x18, 0x8},
    {"UpEndsItsOwnBit", 0x8, {0, 120}, 0x8, 0},
    {"HighBitsAreDropped", 0x301, {0, -120}, 0x11, 0x1},
};

TABLE(Wheel, Input, WheelCase, wheelCases);

TEST_P(Wheel, SetsItsBitForOneDispatch)
{
    watched("a");
    window->mouse.button = GetParam().before;
    frozenClock = 5000000;
    host.on["a.Press"] = [this] {
        seen = window->mouse;
        frozenClock += 30;
    };
    wheel({10.9, 20.9}, GetParam().delta, Qt::ShiftModifier);
    EXPECT_EQ(host.take(), "a.Press") << "once, and no release";
    EXPECT_EQ(seen.button, GetParam().during);
    EXPECT_EQ(seen.last_button, GetParam().before);
    EXPECT_EQ(seen.x, 10) << "truncated";
    EXPECT_EQ(seen.y, 80);
    EXPECT_EQ(seen.modifier, int(shift));
    EXPECT_EQ(window->mouse.button, GetParam().after);
    EXPECT_EQ(window->mouse.last_button, GetParam().during);
    EXPECT_EQ(window->mouse.modifier, int(shift));
    EXPECT_EQ(window->mouse.dt, 30) << "the second update has its own time";
    EXPECT_EQ(window->mouse.dx, 0);
}

struct ClampCase {
    const char *name;
    bool clamp;
    QPointF at;
    Qt::MouseButtons held;
    QPoint record, cursor; // the cursor on the screen, at (700, 700) before
};

const ClampCase clampCases[] = {
    {"OutToTheLeft", true, {-20.4, 50}, Qt::LeftButton, {0, 50}, {100, 150}},
    {"OutAtTheTop", true, {50, -7}, Qt::RightButton, {50, 100}, {150, 100}},
    {"SecondMoveCancelsTheFirst", true, {230, 130}, Qt::LeftButton, {200, 0}, {330, 200}},
    {"EdgesAreInside", true, {200, 100}, Qt::LeftButton, {200, 0}, {700, 700}},
    {"NoButton", true, {-20, 50}, Qt::NoButton, {-20, 50}, {700, 700}},
    {"SwitchedOff", false, {-20, 50}, Qt::LeftButton, {-20, 50}, {700, 700}},
};

TABLE(Clamp, Input, ClampCase, clampCases);

TEST_P(Clamp, KeepsADragInTheFrame)
{
    window->setProperty("clampMouseToFrame", GetParam().clamp);
    pointer(QEvent::MouseMove, GetParam().at, Qt::NoButton, GetParam().held);
    EXPECT_EQ(window->mouse.x, GetParam().record.x());
    EXPECT_EQ(window->mouse.y, GetParam().record.y());
    EXPECT_EQ(QCursor::pos().x(), GetParam().cursor.x());
    EXPECT_EQ(QCursor::pos().y(), GetParam().cursor.y());
}

struct HitCase {
    const char *name;
    QPoint at; // from the top
    const char *reached;
};

const HitCase hitCases[] = {
    {"TopOnly", {150, 10}, "top.Press top.Release"},
    {"EdgeBelongsToIt", {150, 25}, "top.Press top.Release"},
    {"BelowTheTop", {150, 26}, ""},
    {"EarlierWinsTheOverlap", {50, 10}, "top.Press top.Release"},
    {"LeftBelowTheTop", {50, 90}, "left.Press left.Release"},
    {"PixelsFromTheFarCorner", {150, 90}, "corner.Press corner.Release"},
};

TABLE(Hit, Input, HitCase, hitCases);

TEST_P(Hit, ReachesTheObjectThatIsDrawnThere)
{
    watched("disabled")->setProperty("enabled", false);
    watched("hidden")->setProperty("visible", false);
    watched("broken")->QObject::setProperty("visible", QVariant());
    watched("top", {0, 0, 1, 0.25});
    watched("left", {0, 0, 0.5, 1});
    watched("corner", {-20, -10, 60, 40});
    QTest::mouseClick(window, Qt::LeftButton, {}, GetParam().at);
    EXPECT_EQ(host.take(), GetParam().reached);
}

struct ShiftCase {
    const char *name;
    QRectF rect;
    QPoint at, corner; // from the top; the object's lower-left corner, from the bottom
};

const ShiftCase shiftCases[] = {
    {"Whole", {0, 0, 1, 1}, {50, 40}, {0, 0}},
    {"RightHalf", {0.5, 0, 0.5, 1}, {150, 40}, {100, 0}},
    {"TopQuarter", {0, 0, 1, 0.25}, {150, 20}, {0, 75}},
    {"FractionsFromTheFarCorner", {-0.25, -0.5, 0.25, 0.5}, {120, 30}, {100, 50}},
    {"PixelsFromTheFarCorner", {-10, -10, 100, 50}, {100, 50}, {90, 10}},
    {"Truncated", {0.333, 0, 0.333, 0.333}, {70, 20}, {66, 66}},
    {"TruncatedTowardsZero", {0, 0, 300, 150.5}, {70, 20}, {0, -50}},
};

TABLE(Shift, Input, ShiftCase, shiftCases);

TEST_P(Shift, ActionsSeeThePointerInTheObjectsFrame)
{
    const auto [name, rect, at, corner] = GetParam();
    GLWidget *object = watched("a", rect);
    object->NewKeyAction("K", "key", &host, SLOT(Fired(GLW *)));
    object->camera.radius = 10;
    tick();
    host.log.clear();
    pointer(QEvent::MouseMove, {1, 99}, Qt::NoButton, Qt::NoButton);
    host.log.clear();
    GL::Camera expected = object->camera;
    const QPoint local(at.x() - corner.x(), 100 - at.y() - corner.y());
    ASSERT_EQ(expected.Unproject(float(local.x()), float(local.y())), 1);
    Vector ray;
    host.on["a.Press"] = [&] {
        seen = window->mouse;
        ray = object->camera.unproj;
    };
    pointer(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(host.take(), "a.Press");
    EXPECT_EQ(QPoint(seen.x, seen.y), local);
    EXPECT_EQ(QPoint(seen.x0, seen.y0), QPoint(1, 1) - corner);
    EXPECT_EQ(ray, expected.unproj) << "unprojected before the action";
    EXPECT_EQ(QPoint(window->mouse.x, window->mouse.y), QPoint(at.x(), 100 - at.y()));
    EXPECT_EQ(QPoint(window->mouse.x0, window->mouse.y0), QPoint(1, 1));

    object->camera.unproj.zero();
    host.on["a.Fired"] = [&] { seen = window->mouse; };
    seen = Mouse();
    key(QEvent::KeyPress, Qt::Key_K);
    EXPECT_EQ(host.take(), "a.Fired");
    EXPECT_EQ(QPoint(seen.x, seen.y), local);
    EXPECT_TRUE(!object->camera.unproj) << "keys do not unproject";
    EXPECT_EQ(QPoint(window->mouse.x, window->mouse.y), QPoint(at.x(), 100 - at.y()));
}

struct KeyCase {
    const char *name;
    QEvent::Type type;
    int code;
    Qt::KeyboardModifiers state; // as the window system tells it, before the key
    bool again;
    const char *log;
};

// Qt flips the bit of a modifier key itself, so the state before a release makes a bare key.
const KeyCase keyCases[] = {
    {"Press", QEvent::KeyPress, Qt::Key_K, {}, false, "a.KeyDown"},
    {"AutoRepeat", QEvent::KeyPress, Qt::Key_K, {}, true, "a.KeyAgain"},
    {"Release", QEvent::KeyRelease, Qt::Key_K, {}, false, "a.KeyUp"},
    {"WithModifier", QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, false, "a.Fired"},
    {"WithoutItsModifier", QEvent::KeyPress, Qt::Key_S, {}, false, ""},
    {"UnboundKey", QEvent::KeyPress, Qt::Key_X, {}, false, ""},
    {"BareShiftReleased", QEvent::KeyRelease, Qt::Key_Shift, Qt::ShiftModifier, false,
     "a.Release 1"},
    {"BareAltReleased", QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier, false, "a.Release 1"},
    {"BareMetaPressed", QEvent::KeyPress, Qt::Key_Meta, Qt::MetaModifier, false, "a.Press 1"},
    {"ShiftWithItsBit", QEvent::KeyPress, Qt::Key_Shift, {}, false, ""},
    {"BoundModifierStops", QEvent::KeyPress, Qt::Key_Control, Qt::ControlModifier, false, "Plain"},
    {"CapsLockIsNone", QEvent::KeyRelease, Qt::Key_CapsLock, {}, false, ""},
};

TABLE(Keys, Input, KeyCase, keyCases);

TEST_P(Keys, GoToTheObjectUnderThePointer)
{
    GLWidget *a = add("a", QRectF(0, 0, 0.5, 1));
    GLWidget *b = add("b", QRectF(0.5, 0, 0.5, 1));
    for (GLWidget *o : {a, b})
        o->NewKeyAction("K", "key", &host, SLOT(Repeat(GLW *, bool, bool)));
    a->NewKeyAction("Ctrl+S", "save", &host, SLOT(Fired(GLW *)));
    qobject_cast<KeyAction *>(a->NewKeyAction("", "modifier", &host, SLOT(Plain())))
        ->setKey(QKeySequence(Qt::Key_Control));
    a->NewMouseAction(0, everything, "all", &host, SLOT(State(GLW *, bool)));
    pointer(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton, Qt::LeftButton);
    window->mouse.last_button = 0;
    host.log.clear();
    for (const char *entry : {"a.Press", "a.Release"})
        host.on[entry] = [this] { host.log << QString::number(window->mouse.last_button); };
    key(GetParam().type, GetParam().code, GetParam().state, GetParam().again);
    EXPECT_EQ(host.take(), GetParam().log);
    EXPECT_EQ(window->mouse.x, 10);
    EXPECT_EQ(window->mouse.modifier,
              int(QKeyEvent(GetParam().type, GetParam().code, GetParam().state).modifiers()));
}

TEST_F(Input, LeavingUpdatesTheRecordOnly)
{
    watched("a");
    pointer(QEvent::MouseButtonPress, {10, 20}, Qt::LeftButton, Qt::LeftButton, Qt::AltModifier);
    host.log.clear();
    QCursor::setPos(390, 130);
    deliver(QEvent(QEvent::Leave));
    EXPECT_EQ(host.take(), "");
    EXPECT_EQ(window->mouse.x, 290);
    EXPECT_EQ(window->mouse.y, 70);
    EXPECT_EQ(window->mouse.dx, -280);
    EXPECT_EQ(window->mouse.button, 1);
    EXPECT_EQ(window->mouse.modifier, int(Qt::AltModifier));
}

} // namespace
