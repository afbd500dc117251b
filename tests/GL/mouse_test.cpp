// SPDX-License-Identifier: MIT
#include "GL/mouse.h"

#include <gtest/gtest.h>

namespace {

TEST(MouseTest, PointerUpdateKeepsWhatWasBefore)
{
    Mouse m;
    m.update(30, 40, 5000, 1, 0x02000000);
    EXPECT_EQ(m.dx, -30) << "measured from zero";
    EXPECT_EQ(m.dt, 5000);
    m.update(20, 70, 4000, 2, 0x04000000);
    EXPECT_EQ(m.dx, 10) << "positive to the left";
    EXPECT_EQ(m.dy, -30) << "positive downwards";
    EXPECT_EQ(m.dt, -1000) << "a clock that stepped back is tolerated";
    EXPECT_EQ(m.x0, 30);
    EXPECT_EQ(m.y0, 40);
    EXPECT_EQ(m.button, 2);
    EXPECT_EQ(m.last_button, 1);
    EXPECT_EQ(m.modifier, 0x04000000);
    EXPECT_EQ(m.last_modifier, 0x02000000);
}

TEST(MouseTest, AreaFreezesTheReference)
{
    Mouse m;
    m.update(10, 10, 1, 1, 0);
    m.update(11, 12, 2, 1, 0);
    m.area = 1;
    m.update(50, 60, 3, 1, 0);
    m.update(70, 80, 4, 1, 0);
    EXPECT_EQ(m.x0, 10);
    EXPECT_EQ(m.y0, 10);
    EXPECT_EQ(m.dx, -20);
}

TEST(MouseTest, KeyboardUpdateLeavesPositionAndButtons)
{
    Mouse m;
    m.update(30, 40, 1000, 3, 0x02000000);
    m.update_double(1, 1);
    m.update_double(1, 0);
    m.update_double(2, 1);
    m.update(0x04000000, 1500);
    EXPECT_EQ(m.x, 30);
    EXPECT_EQ(m.x0, 0);
    EXPECT_EQ(m.dx, 0);
    EXPECT_EQ(m.dy, 0);
    EXPECT_EQ(m.dt, 500);
    EXPECT_EQ(m.button, 3);
    EXPECT_EQ(m.last_button, 0);
    EXPECT_EQ(m.modifier, 0x04000000);
    EXPECT_EQ(m.last_modifier, 0x02000000);
    EXPECT_EQ(m.double_click, 0);
    EXPECT_EQ(m.double_press, 2) << "a press in progress stays";
}

TEST(MouseTest, ReleaseEndsTheDoubleClickOfItsButtonOnly)
{
    Mouse m;
    m.update_double(1, 1);
    m.update_double(4, 1);
    m.update_double(2, 0);
    EXPECT_EQ(m.double_click, 0) << "that button was pressed once";
    m.update_double(1, 0);
    EXPECT_EQ(m.double_click, 1);
    EXPECT_EQ(m.double_press, 4);
    m.update(1, 1, 1, 0, 0);
    EXPECT_EQ(m.double_click, 0) << "it shows for one event";
}

TEST(MouseTest, ShiftMovesPositionAndReference)
{
    Mouse m;
    m.update(30, 40, 1, 0, 0);
    m.update(50, 60, 2, 0, 0);
    m.sub(5, 6).add(1, 2);
    EXPECT_EQ(m.x, 46);
    EXPECT_EQ(m.y, 56);
    EXPECT_EQ(m.x0, 26);
    EXPECT_EQ(m.y0, 36);
    EXPECT_EQ(m.dx, -20) << "the motion is no position";
}

} // namespace
