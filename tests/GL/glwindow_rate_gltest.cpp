// SPDX-License-Identifier: MIT
// The window's frame timer and its measurement of rate and load.
#include <QAbstractEventDispatcher>
#include <QFontMetrics>

#include "table.h"
#include "testing.h"

namespace {

using FrameRate = WindowTest;

struct TextPixelCase {
    const char *name;
    bool drawfps, timer, shown;
};

const TextPixelCase textPixelCases[] = {
    {"Shown", true, true, true},
    {"Off", false, true, false},
    {"HiddenWhenIdle", true, false, false},
};

TABLE(FrameRateText, WindowTest, TextPixelCase, textPixelCases);

TEST_P(FrameRateText, EndsSixPixelsFromTheTopRightCorner)
{
    window->setProperty("drawfps", GetParam().drawfps);
    window->setProperty("timer", GetParam().timer);
    window->last_fps = "####";
    frozenClock = window->timer() + 1;
    window->timer.start = frozenClock; // the text stays
    window->repaint();
    const QImage image = screen();
    QRect lit;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) > 100)
                lit |= QRect(x, y, 1, 1);
    EXPECT_EQ(!lit.isEmpty(), GetParam().shown);
    if (!GetParam().shown)
        return;
    const QFontMetrics metrics = window->fontMetrics();
    EXPECT_NEAR(lit.right() + 1 + metrics.rightBearing('#'), 200 - 6, 1);
    EXPECT_NEAR(lit.left() - metrics.leftBearing('#'), 200 - 6 - metrics.horizontalAdvance("####"),
                1);
    EXPECT_NEAR(lit.bottom() + 1, 12, 1);
}

struct TextCase {
    const char *name;
    time_t interval, period, sum; // microseconds: since the last frame, of the period, worked in it
    const char *text, *fps, *cpu;
};

const TextCase textCases[] = {
    {"Sixty", 16667, 600000, 72000, "  60 fps 12%gfx", "  60 fps", "12%"},
    {"SlowHasOneDecimal", 161000, 600000, 6000, " 6.2 fps  1%gfx", " 6.2 fps", " 1%"},
    {"NoTimePassed", 0, 600000, 0, "1000000 fps  0%gfx", "1000000 fps", " 0%"},
    {"FullLoadIsNotClamped", 5000, 600000, 1200000, " 200 fps 200%gfx", " 200 fps", "200%"},
    {"HalfASecondIsTooEarly", 16667, 500000, 72000, "old", "", ""},
};

TABLE(FrameTexts, WindowTest, TextCase, textCases);

TEST_P(FrameTexts, AreRefreshed)
{
    const TextCase &c = GetParam();
    frozenClock = time_t(2000000000) * 1000000;
    window->setProperty("fpsString", QString());
    window->setProperty("cpuString", QString());
    window->last_fps = "old";
    window->last_draw = size_t(frozenClock - c.interval);
    window->timer.start = frozenClock - c.period;
    window->timer.sum = c.sum;
    tick();
    EXPECT_EQ(window->last_fps, c.text);
    EXPECT_EQ(window->property("fpsString"), QVariant(QString(c.fps)));
    EXPECT_EQ(window->property("cpuString"), QVariant(QString(c.cpu)));
    EXPECT_EQ(time_t(window->last_draw), frozenClock);
    const bool refreshed = window->last_fps != "old";
    EXPECT_EQ(window->timer.start == frozenClock, refreshed);
    EXPECT_EQ(window->timer.sum, refreshed ? 0 : c.sum);
}

TEST_F(FrameRate, FirstFrameRefreshesTheTexts)
{
    EXPECT_EQ(window->last_fps, " 0.0 fps  0%gfx") << "the fixture's window has been exposed";
}

TEST_F(FrameRate, MeasuresTheWorkWithoutTheSwap)
{
    frozenClock = time_t(2000000000) * 1000000;
    window->timer.start = frozenClock;
    window->timer.sum = 0;
    add("a");
    host.on["a.Draw3D"] = [] { frozenClock += 700; };
    tick();
    EXPECT_EQ(window->timer.sum, 700);
}

struct RateCase {
    const char *name;
    QList<float> rates;
    int interval; // milliseconds, -1 for none
    float kept;
};

const RateCase rateCases[] = {
    {"AtStart", {}, 33, 30},     {"Truncated", {60}, 16, 60}, {"StoppedKeepsTheRate", {0}, -1, 30},
    {"Negative", {-5}, -1, 30},  {"Fast", {2000}, 0, 2000},   {"Restarted", {0, 7}, 142, 7},
    {"Slow", {0.5f}, 2000, 0.5},
};

TABLE(FrameTimer, testing::Test, RateCase, rateCases);

TEST_P(FrameTimer, RunsPrecisely)
{
    QGLWindow window(nullptr, nullptr);
    for (const float rate : GetParam().rates)
        window.setProperty("fps", rate);
    EXPECT_EQ(window.property("fps").toFloat(), GetParam().kept);
    const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&window);
    ASSERT_EQ(timers.size(), GetParam().interval < 0 ? 0 : 1);
    EXPECT_EQ(window.timerID > 0, !timers.isEmpty());
    if (timers.isEmpty())
        return;
    EXPECT_EQ(timers[0].interval, GetParam().interval);
    EXPECT_EQ(timers[0].timerId, window.timerID);
    EXPECT_EQ(timers[0].timerType, Qt::PreciseTimer);
}

} // namespace
