// SPDX-License-Identifier: MIT
// The window: its list, when it paints, its timer and what it measures.
#include <cstring>

#include <QAbstractEventDispatcher>
#include <QFontMetrics>

#include "tests/GL/fixture.h"

namespace {

const char *const listScripts = R"(
Inserted: window.InsertGLWidget -1 a; list; window.InsertGLWidget 1 a; list => a b,c,a a b,a,c
BeyondTheEnd: window.InsertGLWidget 99 a; list => a b,c,a
Added: window.AddGLWidget c; list => c c,a,b
NoObject: window.AddGLWidget owner; window.RemoveGLWidget owner; list => null 0 a,b,c
Removed: window.RemoveGLWidget b; window.RemoveGLWidget b; list => 1 0 a,c
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
ExposePaintsWhenIdle: set window timer false; expose => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
HostPaintsWhenIdle: set window timer false; frame => Pick3D:a Pick2D:a Draw3D:a Draw2D:a PaintForeground:a
)";
SCRIPTS(Gates, WindowTest, "add a", gateScripts)

TEST_F(Gates, DependOnTheSize)
{
    add("a");
    host.hear(window);
    for (const auto &[size, paints] :
         {std::pair(QSize(10, 200), false), {QSize(200, 10), false}, {QSize(11, 11), true}}) {
        window->update = machine.swaps = 0;
        host.log.clear();
        window->resize(size);
        EXPECT_EQ(host.log.filter("Resized").join(' '), "Resized:" + wordOf(size));
        EXPECT_EQ(run("window.Update; tick").contains("Draw3D:a"), paints);
        EXPECT_EQ(machine.swaps, paints);
        EXPECT_EQ(window->update, !paints);
    }
    EXPECT_FALSE(window->timer_event);
    window->hide();
    EXPECT_EQ(run("tick"), "");
}

struct TextCase {
    const char *name;
    time_t interval, period, sum; // microseconds: since the last frame, of the period, worked in it
    const char *text, *fps, *cpu;
};

const TextCase textCases[] = {
    {"Sixty", 16667, 600000, 72000, "  60 fps 12%gfx", "  60 fps", "12%"},
    {"SlowHasOneDecimal", 161000, 600000, 6000, " 6.2 fps  1%gfx", " 6.2 fps", " 1%"},
    {"TenHasNone", 100000, 600000, 6000, "  10 fps  1%gfx", "  10 fps", " 1%"},
    {"NoTimePassed", 0, 600000, 0, "1000000 fps  0%gfx", "1000000 fps", " 0%"},
    {"FullLoadIsNotClamped", 5000, 600000, 1200000, " 200 fps 200%gfx", " 200 fps", "200%"},
    {"HalfASecondIsTooEarly", 16667, 500000, 72000, "old", "", ""},
    {"AndOneMoreIsNot", 20000, 500001, 0, "  50 fps  0%gfx", "  50 fps", " 0%"},
};

using Rate = WindowTest;

TEST_F(Rate, TextsAreRefreshed)
{
    EXPECT_EQ(window->last_fps, " 0.0 fps  0%gfx") << "by the first frame";
    machine.clock = time_t(2000000000) * 1000000;
    for (const TextCase &c : textCases) {
        SCOPED_TRACE(c.name);
        run("set window fpsString ; set window cpuString ");
        window->last_fps = "old";
        window->last_draw = size_t(machine.clock - c.interval);
        window->timer = {machine.clock - c.period, c.sum};
        frame();
        EXPECT_EQ(window->last_fps, c.text);
        EXPECT_EQ(window->property("fpsString").toString(), c.fps);
        EXPECT_EQ(window->property("cpuString").toString(), c.cpu);
        EXPECT_EQ(time_t(window->last_draw), machine.clock);
        const bool refreshed = window->last_fps != "old";
        EXPECT_EQ(window->timer.start == machine.clock, refreshed);
        EXPECT_EQ(window->timer.sum, refreshed ? 0 : c.sum);
    }
}

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
    const std::pair<const char *, const char *> traces[] = {
        {"2", "window # timerEvent()\n"}, {"0", ""}, {"loud", ""}};
    for (const auto &[verbose, trace] : traces) {
        testing::internal::CaptureStdout();
        run(QString("set window verbose %1; tick").arg(verbose));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), trace);
    }
}

TEST_F(Rate, TimerRunsPrecisely)
{
    const struct {
        float rate;
        int interval;
        float kept;
    } rows[] = {// milliseconds, -1 for none
                {60, 16, 60},
                {0, -1, 60},
                {-5, -1, 60},
                {2000, 0, 2000},
                {7, 142, 7},
                {0.5f, 2000, 0.5f},
                {1e-9f, 2147483647, 1e-9f},
                {NAN, -1, 1e-9f},
                {30, 33, 30}};
    for (const auto &row : rows) {
        window->setProperty("fps", row.rate);
        EXPECT_EQ(window->property("fps").toFloat(), row.kept);
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(window);
        ASSERT_EQ(timers.size(), row.interval >= 0);
        EXPECT_EQ(window->timerID, timers.isEmpty() ? 0 : timers[0].timerId);
        if (!timers.isEmpty()) {
            EXPECT_EQ(timers[0].interval, row.interval);
            EXPECT_EQ(timers[0].timerType, Qt::PreciseTimer);
        }
    }
    EXPECT_EQ(QAbstractEventDispatcher::instance()
                  ->registeredTimers(new QGLWindow(window, nullptr))[0]
                  .interval,
              33);
}

TEST_F(Rate, RendererIsToldWithTheContext)
{
    const std::pair<const char *, const char *> rows[] = {
        {"A Software Rasterizer", "1"}, {"software pipe", "0"}, {"A Graphics Card", "0"}};
    for (const auto &[renderer, software] : rows) {
        machine.renderer = renderer;
        EXPECT_EQ(run("set window swRendering false; context; frame; get window swRendering"),
                  software);
    }
}

std::string defaults(const QObject &o)
{
    QStringList words;
    for (const QByteArray &name : o.dynamicPropertyNames())
        words << name + '=' + wordOf(o.property(name));
    return words.join(' ').toStdString();
}

TEST(DefaultsTest, AreSetInTheirOrder)
{
    QGLWindow w(nullptr, nullptr);
    EXPECT_EQ(
        defaults(w),
        "verbose=0 timer=1 drawfps=1 fpsString= cpuString= swRendering=0 clampMouseToFrame=1");
    EXPECT_EQ(w.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(w.sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    EXPECT_TRUE(w.hasMouseTracking() && !w.autoFillBackground());
    EXPECT_EQ(w.update + int(w.last_draw) + w.timer_event, 0);
    const std::string drawable = "enabled=1 visible=1 flags=0 pick3d=1 pick2d=1 draw3d=1 draw2d=1";
    GLMultiWidget view(nullptr, nullptr);
    EXPECT_EQ(defaults(view), drawable + " drawbg=1 drawfg=1 rows=1 cols=1 spacing=2 padding=0 "
                                         "header=0 footer=0 enableSelection=1");
    EXPECT_EQ(view.updateLayout * 100 + view.tilePressed * 10 + view.doublePress, -10);
    EXPECT_EQ(defaults(*view.AddTile(1)), drawable + " sizeHint=1,1 selected=0 padding=20");
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
