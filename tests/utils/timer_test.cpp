// SPDX-License-Identifier: MIT
#include "utils/timer.h"

#include <gtest/gtest.h>

namespace {

TEST(LoadTimerTest, AddsOnlyPositiveWork)
{
    LoadTimer timer;
    timer.Update(30);
    timer.Update(-100);
    timer.Update(12);
    EXPECT_EQ(timer.sum, 42);
}

TEST(LoadTimerTest, StartBeginsAnEmptyPeriodNow)
{
    LoadTimer timer;
    timer.Update(30);
    const time_t before = timer();
    timer.Start();
    EXPECT_GE(timer.start, before);
    EXPECT_LE(timer.start, timer());
    EXPECT_EQ(timer.sum, 0);
    EXPECT_GT(before, time_t(1600000000) * 1000000) << "microseconds since the epoch";
}

TEST(LoadTimerTest, RatioIsWorkOverWallClock)
{
    LoadTimer timer;
    timer.start = 0;
    timer.sum = timer() / 4;
    EXPECT_NEAR(timer.GetRatio(), 0.25, 1e-4);
    timer.sum *= 8;
    EXPECT_NEAR(timer.GetRatio(), 2, 1e-3) << "not clamped";
    timer.start = timer() + 1000000000;
    EXPECT_EQ(timer.GetRatio(), 0) << "the clock stepped back";
}

} // namespace
