// SPDX-License-Identifier: MIT
// The record of the pointer, the load timer, and numbers beyond any screen, which end at limits.
#include <climits>
#include <cmath>

#include "tests/support/window.h"
#include "utils/numbers.h"

namespace {

// An area, what happens, and what becomes of x=1 y=2 t=3 dx=4 dy=5 dt=6, area, x0=8, and so on
// to 15.
const std::tuple<int, void (*)(Mouse &), const char *> events[] = {
    {0, [](Mouse &m) { m = Mouse(); }, "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0"},
    {0, [](Mouse &m) { m.update(50, 60); }, "1 2 60 0 0 57 0 8 9 10 11 50 12 14 0"},
    {0, [](Mouse &m) { m.update(31, 52, 73, 90, 80); },
     "31 52 73 -30 -50 70 0 1 2 90 10 80 12 14 0"},
    {7, [](Mouse &m) { m.update(31, 52, 2, 90, 80); }, "31 52 2 -30 -50 -1 7 8 9 90 10 80 12 14 0"},
    {0, [](Mouse &m) { m.update_double(1, 1); }, "1 2 3 4 5 6 0 8 9 10 11 12 13 15 15"},
    {0, [](Mouse &m) { m.update_double(6, 0); }, "1 2 3 4 5 6 0 8 9 10 11 12 13 8 6"},
    {0, [](Mouse &m) { m.update_double(1, 0); }, "1 2 3 4 5 6 0 8 9 10 11 12 13 14 0"},
    {0, [](Mouse &m) { m.add(10, 20).x += 100; }, "111 22 3 4 5 6 0 18 29 10 11 12 13 14 15"},
    {0, [](Mouse &m) { m.sub(10, 20).x += 100; }, "91 -18 3 4 5 6 0 -2 -11 10 11 12 13 14 15"},
};

TEST(MouseTest, FollowsItsEvents)
{
    for (const auto &[area, act, record] : events) {
        Mouse m{1, 2, 3, 4, 5, 6, area, 8, 9, 10, 11, 12, 13, 14, 15};
        EXPECT_EQ(m.dx0() * 10 + m.dy0(), 77);
        act(m);
        EXPECT_EQ(QString::asprintf("%d %d %ld %d %d %ld %d %d %d %d %d %d %d %d %d", m.x, m.y, m.t,
                                    m.dx, m.dy, m.dt, m.area, m.x0, m.y0, m.button, m.last_button,
                                    m.modifier, m.last_modifier, m.double_press, m.double_click),
                  record);
    }
}

TEST(NumbersTest, EndAtTheLimits)
{
    for (const double v : {-1e9, -2.5, -2.4, -0.5, -0.49999999999999994, 0.0, 0.5, 2.5, 7.6, 1e9})
        EXPECT_EQ(bounded::round(v), qRound(v)) << v;
    for (const QString &row : QString("2.9=2 -2.9=-2 2147483647.9=2147483647 2147483648=2147483647 "
                                      "1e300=2147483647 -2147483648.9=-2147483648 "
                                      "-2147483649=-2147483648 -inf=-2147483648 nan=0")
                                  .split(' '))
        EXPECT_EQ(bounded::truncate(row.section('=', 0, 0).toDouble()), row.section('=', 1).toInt())
            << row.toStdString();
    Mouse m;
    m.update(INT_MIN, INT_MAX, LONG_MIN, 0, 0);
    m.update(10, -10, LONG_MAX, 0, 0);
    EXPECT_TRUE(m.dx == INT_MIN && m.dy == INT_MAX && m.dt == LONG_MAX && m.dx0() == INT_MIN);
    EXPECT_TRUE(m.sub(INT_MIN, INT_MIN).x == INT_MAX && m.y == INT_MAX - 9);
    EXPECT_EQ(m.add(0, INT_MAX).y, INT_MAX);
    GL::Viewport v;
    EXPECT_EQ(v.Left(INT_MIN, 0), 1073741824.0f);
    v.align = GL::Viewport::AlignBottom;
    EXPECT_EQ(v.Right(INT_MIN, 0), -2147483648.0f);
    EXPECT_EQ(v.Cursor(0, 0, 1, INT_MIN).y, 0.0f);
}

TEST(LoadTimerTest, TakesTheShareOfTheWallClock)
{
    machine.clock = 1700000000123456;
    LoadTimer timer;
    EXPECT_EQ(timer.start + timer.sum, 0);
    for (const time_t busy : {30, -100, 1, 11})
        timer.Update(busy);
    EXPECT_EQ(timer.sum, 42) << "a clock that stepped back adds nothing";
    timer.Start();
    EXPECT_TRUE(timer.start == 1700000000123456 && timer.sum == 0);
    timer.Update(30);
    const std::pair<int, float> ratios[] = {{-5, 0}, {0, 0}, {1, 30}, {120, 0.25f}};
    for (const auto &[elapsed, ratio] : ratios) {
        machine.clock = timer.start + elapsed;
        EXPECT_EQ(timer.GetRatio(), ratio) << elapsed;
    }
    machine.clock = 0;
}

} // namespace
