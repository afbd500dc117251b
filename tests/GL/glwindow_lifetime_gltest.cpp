// SPDX-License-Identifier: MIT
// Slots that delete what the window is busy with. The sanitizers see what a survivor reads.
#include <cstring>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include "table.h"
#include "testing.h"

namespace {

enum Cause { Tick, Press, Move, Key, Wheel };
enum Victim { Itself, Other, Window, Removed, Action };

struct LifeCase {
    const char *name;
    Cause cause;
    const char *entry; // the slot in which it happens
    Victim victim;
    const char *log;
};

// Two objects, a in front of b; bindings fire Plain, Fired, Flag and then State or Repeat.
const LifeCase lifeCases[] = {
    {"PickItself", Tick, "a.Pick3D", Itself,
     "a.Pick3D b.Pick3D b.Pick2D b.Draw3D b.Draw2D b.PaintForeground"},
    {"PickOther", Tick, "a.Pick2D", Other, "a.Pick3D a.Pick2D a.Draw3D a.Draw2D a.PaintForeground"},
    {"PickWindow", Tick, "a.Pick3D", Window, "a.Pick3D"},
    {"PickRemoved", Tick, "a.Pick3D", Removed,
     "a.Pick3D b.Pick3D b.Pick2D b.Draw3D b.Draw2D b.PaintForeground"},
    {"DrawItself", Tick, "a.Draw3D", Itself,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D b.Draw3D b.Draw2D b.PaintForeground"},
    {"DrawOther", Tick, "a.Draw2D", Other,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D a.Draw2D a.PaintForeground"},
    {"DrawWindow", Tick, "a.Draw3D", Window, "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D"},
    {"FlatWindow", Tick, "b.Draw2D", Window,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D a.Draw2D b.Draw3D b.Draw2D"},
    {"ForegroundItself", Tick, "a.PaintForeground", Itself,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D a.Draw2D b.Draw3D b.Draw2D "
     "a.PaintForeground b.PaintForeground"},
    {"ForegroundOther", Tick, "a.PaintForeground", Other,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D a.Draw2D b.Draw3D b.Draw2D "
     "a.PaintForeground"},
    {"ForegroundWindow", Tick, "a.PaintForeground", Window,
     "a.Pick3D a.Pick2D b.Pick3D b.Pick2D a.Draw3D a.Draw2D b.Draw3D b.Draw2D "
     "a.PaintForeground"},
    {"PressItself", Press, "a.Fired", Itself, "Plain a.Fired"},
    {"PressOther", Press, "a.Fired", Other, "Plain a.Fired Flag a.Press"},
    {"PressWindow", Press, "Plain", Window, "Plain"},
    {"PressAction", Press, "Plain", Action, "Plain"},
    {"PressStateItself", Press, "Flag", Itself, "Plain a.Fired Flag"},
    {"PressStateWindow", Press, "Flag", Window, "Plain a.Fired Flag"},
    {"MoveWindow", Move, "a.Press", Window, "Plain a.Fired Flag a.Press"},
    {"KeyItself", Key, "a.Fired", Itself, "Plain a.Fired"},
    {"KeyWindow", Key, "a.Fired", Window, "Plain a.Fired"},
    {"KeyAction", Key, "Plain", Action, "Plain"},
    {"KeyStateAction", Key, "Flag", Action, "Plain a.Fired Flag"},
    {"WheelWindow", Wheel, "a.Fired", Window, "Plain a.Fired"},
    {"WheelItself", Wheel, "a.Press", Itself, "Plain a.Fired Flag a.Press"},
};

TABLE(Lifetime, WindowTest, LifeCase, lifeCases);

TEST_P(Lifetime, NothingIsTouchedAfterItsDeath)
{
    QPointer<GLWidget> a = add("a", QRectF(0.1, 0, 0.5, 1)), b = add("b");
    QPointer<QAction> key = a->NewKeyAction("K", "key", &host, SLOT(Plain()));
    QPointer<QAction> mouse = a->NewMouseAction(0, 0xFFFFFFFF, "mouse", &host, SLOT(Plain()));
    for (QAction *action : {key.data(), mouse.data()}) {
        QObject::connect(action, SIGNAL(triggered(GLW *)), &host, SLOT(Fired(GLW *)));
        QObject::connect(action, SIGNAL(triggered(bool)), &host, SLOT(Flag(bool)));
    }
    QObject::connect(key, SIGNAL(triggered(GLW *, bool, bool)), &host,
                     SLOT(Repeat(GLW *, bool, bool)));
    QObject::connect(mouse, SIGNAL(triggered(GLW *, bool)), &host, SLOT(State(GLW *, bool)));
    host.on[GetParam().entry] = [&] {
        switch (GetParam().victim) {
        case Itself:
            delete a;
            break;
        case Other:
            delete b;
            break;
        case Window:
            delete window;
            break;
        case Removed:
            window->RemoveGLWidget(a);
            break;
        case Action:
            delete (GetParam().cause == Key ? key : mouse);
            break;
        }
    };
    const QPointF at(50, 20);
    window->mouse.update(50, 80, 1, 0, 0);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_K, Qt::NoModifier);
    QMouseEvent motion(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QWheelEvent turn(at, at, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    switch (GetParam().cause) {
    case Tick:
        tick();
        break;
    case Press:
        QTest::mousePress(window, Qt::LeftButton, {}, at.toPoint());
        break;
    case Move:
        QCoreApplication::sendEvent(window, &motion);
        break;
    case Key:
        QCoreApplication::sendEvent(window, &letter);
        break;
    case Wheel:
        QCoreApplication::sendEvent(window, &turn);
        break;
    }
    EXPECT_EQ(host.take(), GetParam().log);
    ASSERT_EQ(window.isNull(), GetParam().victim == Window);
    if (!window)
        return;
    EXPECT_EQ(QPoint(window->mouse.x, window->mouse.y), QPoint(50, 80)) << "shifted back";
    // What is left of the list keeps working.
    host.on.clear();
    window->resize(150, 90);
    QTest::mousePress(window, Qt::LeftButton, {}, at.toPoint());
    host.log.clear();
    tick();
    EXPECT_EQ(host.log.contains("a.Draw3D"), a && a->gl);
    EXPECT_EQ(host.log.contains("b.Draw3D"), bool(b));
}

/// Counts the passes that reach it.
class Counter : public GLWidget {
public:
    Counter() : GLWidget(nullptr, "counter") {}
    void pickGL() override { ++picks; }
    int picks = 0;
};

using DeadEntry = WindowTest;

TEST_F(DeadEntry, IsNeverReadAndANewObjectInItsPlaceIsAlive)
{
    alignas(Counter) unsigned char place[sizeof(Counter)];
    auto *first = new (place) Counter;
    window->AddGLWidget(first);
    first->~Counter();
    std::memset(place, 0xDB, sizeof place); // a pointer read from here leads nowhere
    tick();
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(50, 20));
    emit window->Resized(3, 4);
    EXPECT_EQ(window->glwidgets.size(), 1);
    auto *second = new (place) Counter;
    tick();
    EXPECT_EQ(second->picks, 0) << "not in the window";
    window->AddGLWidget(second);
    EXPECT_EQ(window->glwidgets.size(), 1);
    tick();
    EXPECT_EQ(second->picks, 1);
    window->RemoveGLWidget(second);
    second->~Counter();
}

TEST(InitTest, MayDeleteTheObjects)
{
    QGLWindow window(nullptr, nullptr);
    Host host;
    QPointer<GLWidget> a = new GLWidget(nullptr, "a"), b = new GLWidget(nullptr, "b");
    for (const auto &object : {b, a}) {
        window.AddGLWidget(object);
        object->Connect(&host);
    }
    host.on["a.Init"] = [&] {
        delete b;
        delete a;
    };
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(host.take(), "a.Init");
}

} // namespace
