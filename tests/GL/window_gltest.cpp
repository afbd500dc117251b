// SPDX-License-Identifier: MIT
// The window: its list, when it paints, its timer and what it measures.
#include <cstring>

#include <QAbstractEventDispatcher>
#include <QFontMetrics>

#include "tests/support/window.h"

namespace {

const char *const listScripts = R"(
Inserted: window.InsertGLWidget -1 a; list; window.InsertGLWidget 1 a; list => a b,c,a a b,a,c
BeyondTheEnd: window.InsertGLWidget 99 a; list => a b,c,a
Added: window.AddGLWidget c; list => c c,a,b
Removed: window.AddGLWidget owner; window.RemoveGLWidget owner; window.RemoveGLWidget b; window.RemoveGLWidget b; list => null 0 1 0 a,c
EachPassAnew: on Pick3D:a window.AddGLWidget b; on Draw2D:a window.RemoveGLWidget a; window.RemoveGLWidget b; window.RemoveGLWidget c; frame => 1 1 Pick3D:a b Pick2D:a Draw3D:b Draw2D:b Draw3D:a Draw2D:a 1 PaintForeground:b
Order: window.RemoveGLWidget c; frame => 1 Pick3D:a Pick2D:a Pick3D:b Pick2D:b Draw3D:a Draw2D:a Draw3D:b Draw2D:b PaintForeground:a PaintForeground:b
DeadKeepsItsEntry: delete a; delete b; frame => Pick3D:c Pick2D:c Draw3D:c Draw2D:c PaintForeground:c
)";
SCRIPTS(List, WindowTest, "add a; add b; add c", listScripts)

// What a frame does by a tick of the timer, by an expose, and by a tick after that.
const char *const gateScripts = R"(
TickPaints: tick; tick => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
IdleTickPicksOnly: set window timer false; tick => Pick3D:a Pick2D:a
UnreadableTimerCountsAsFalse: set window timer none; tick => Pick3D:a Pick2D:a
UpdateServesOne: set window timer false; window.Update; window.Update; tick; expose => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
UpdateIsServedOnce: set window timer false; window.Update; tick; delete a; tick => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
TenPixelsEitherWay: resize 10x200; window.Update; tick; resize 200x10; window.Update; tick => 
ElevenPixelsSquare: resize 11x11; tick => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
HostPaintsWhenIdle: set window timer false; frame => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
)";
SCRIPTS(Gates, WindowTest, "add a", gateScripts)

class Rate : public WindowTest {
protected:
    Rate()
    {
        using W = const Words &;
        verbs["texts"] = [this](W) {
            QString all = window->last_fps;
            for (const char *name : {"fpsString", "cpuString"})
                all += ';' + window->property(name).toString();
            host.log << all.replace(' ', '_');
        };
        verbs["timer"] = [this](W) { // its interval, if it runs
            for (const auto &t : QAbstractEventDispatcher::instance()->registeredTimers(window))
                host.log << QString::number(t.timerId == window->timerID ? t.interval : -1);
            host.log << (window->timerID ? "on" : "off");
        };
        verbs["renderer"] = [](W w) { machine.renderer = w.join(' ').toUtf8(); };
    }
};

// The texts, and what became of the period, its work and the last frame's time.
const char *const textScripts = R"(
Sixty: set window start 1400000 sum 72000 last_draw 1983333; frame; texts; get window start sum last_draw => __60_fps_12%gfx;__60_fps;12% 2e+06 0 2e+06
SlowHasOneDecimal: set window start 1400000 sum 6000 last_draw 1839000; frame; texts => _6.2_fps__1%gfx;_6.2_fps;_1%
TenHasNone: set window start 1400000 sum 6000 last_draw 1900000; frame; texts => __10_fps__1%gfx;__10_fps;_1%
NoTimePassed: set window start 1400000 sum 0 last_draw 2000000; frame; texts => 1000000_fps__0%gfx;1000000_fps;_0%
FullLoadIsNotClamped: set window start 1400000 sum 1200000 last_draw 1995000; frame; texts => _200_fps_200%gfx;_200_fps;200%
HalfASecondIsTooEarly: set window start 1500000 sum 72000 last_draw 1983333; frame; texts; get window start sum last_draw => _0.0_fps__0%gfx;_0.0_fps;_0% 1.5e+06 72000 2e+06
AndOneMoreIsNot: set window start 1499999 sum 0 last_draw 1980000; frame; texts; get window start => __50_fps__0%gfx;__50_fps;_0% 2e+06
Timer: set window fps 60; timer; set window fps 0; timer; get window fps; set window fps -5; timer; set window fps 2000; timer; get window fps => 16 on off 60 off 0 on 2000
TimerIsTruncated: set window fps 7; timer; set window fps 0.5; timer; set window fps 1e-9; timer => 142 on 2000 on 2147483647 on
Software: renderer A Software Rasterizer; context; frame; get window swRendering => 1
CaseMatters: renderer software pipe; context; frame; get window swRendering => 0
SoftwareStays: set window swRendering true; context; frame; get window swRendering => 1
Defaults: view 0; get view stale pressed doublePress enabled visible flags pick3d pick2d draw3d draw2d drawbg drawfg rows cols spacing padding header footer enableSelection; get window verbose timer drawfps swRendering clampMouseToFrame; view.AddTile 1; get 1 enabled visible flags sizeHint selected padding => 0 -1 0 1 1 0 1 1 1 1 1 1 1 1 2 0 0 0 1 0 1 1 0 1 Init:1 TileAdded:1 1 1 1 0 1,1 0 20
)";
SCRIPTS(Texts, Rate, "clock 2000000", textScripts)

TEST_F(Rate, IsShownAndMeasuresTheWorkWithoutTheSwap)
{
    add("a");
    machine.clock = window->timer.start = time_t(2000000000) * 1000000;
    window->timer.sum = 0;
    window->last_fps = "##";
    host.on["Draw3D:a"] = [] { glColor3f(0.5f, 0, 0), machine.clock += 700; };
    GLint depth = -1;
    host.on["PaintForeground:a"] = [&] { glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth); };
    frame();
    EXPECT_EQ(depth, 0) << "what was set for the text is put back";
    EXPECT_EQ(window->timer.sum, 700);
    const QString left = QString::number(200 - 6 - window->fontMetrics().horizontalAdvance("##"));
    EXPECT_EQ(machine.texts.join(' '), left + ",12,##,3");
    run("set window timer false; frame; set window timer true; set window drawfps false; frame");
    EXPECT_EQ(machine.texts.size(), 1);
    EXPECT_EQ(error, GLenum(GL_INVALID_ENUM)) << "kept as it stands";
    for (const QString verbose : {"2", "0", "loud"}) {
        testing::internal::CaptureStdout();
        run("set window verbose " + verbose + "; tick");
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  verbose == "2" ? "window # timerEvent()\n" : "");
    }
}

TEST(DefaultsTest, OfTheWidgetAndItsFields)
{
    QGLWindow w(nullptr, nullptr);
    const auto timer = QAbstractEventDispatcher::instance()->registeredTimers(&w)[0];
    EXPECT_TRUE(timer.interval == 33 && timer.timerType == Qt::PreciseTimer);
    EXPECT_EQ(w.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(w.sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    EXPECT_TRUE(w.hasMouseTracking() && !w.autoFillBackground());
    EXPECT_EQ(w.update + int(w.last_draw) + w.timer_event, 0);
    EXPECT_TRUE(w.property("fpsString").isValid() && w.property("cpuString").isValid());
}

/// A scene object that hears of its window and counts the passes that reach it.
class Listener : public GLWidget {
    Q_OBJECT

public:
    Listener() : GLWidget(nullptr, "listener") {}
    void pickGL() override { log << "pick"; }
    QStringList log;

public Q_SLOTS:
    void Connected() { log << (gl ? "Connected" : "no window"); }
    void Resize(int w, int h) { log << QString("%1x%2").arg(w).arg(h); }
};

using Dead = WindowTest;

TEST_F(Dead, EntryIsNeverReadAndANewObjectInItsPlaceIsAlive)
{
    alignas(Listener) unsigned char place[sizeof(Listener)];
    auto *first = new (place) Listener;
    window->AddGLWidget(first);
    window->AddGLWidget(first);
    emit window->Resized(3, 4);
    EXPECT_EQ(first->log.join(' '), "Connected Connected 3x4") << "inserted again, it hears once";
    first->~Listener();
    std::memset(place, 0xDB, sizeof place); // a pointer read from here leads nowhere
    run("frame; click 50,20");
    emit window->Resized(3, 4);
    auto *second = new (place) Listener;
    frame();
    EXPECT_EQ(second->log.join(' '), "") << "not in the window";
    window->AddGLWidget(second);
    EXPECT_EQ(window->glwidgets.size(), 1);
    frame();
    EXPECT_EQ(second->log.join(' '), "Connected pick");
    window->RemoveGLWidget(second);
    EXPECT_EQ(second->gl, nullptr);
    window->glwidgets << second; // put there by a host itself
    frame();
    EXPECT_EQ(second->log.join(' '), "Connected pick pick");
    window->RemoveGLWidget(second);
    second->~Listener();
}

} // namespace

#pragma GCC diagnostic ignored "-Wshadow" // moc's parameter _id, GLW's member
#include "window_gltest.moc"
