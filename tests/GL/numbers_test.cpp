// SPDX-License-Identifier: MIT
// Numbers beyond any screen: conversions and sums end at their limits.
#include "utils/numbers.h"

#include <climits>

#include <QtGlobal>

#include "GL/camera.h"
#include "GL/mouse.h"
#include "table.h"

namespace {

TEST(NumbersTest, RoundAsQtDoesWhereQtCan)
{
    for (double v : {-1e9, -2.5, -2.4, -0.5, -0.49999999999999994, 0.0, 0.5, 2.5, 7.6, 1e9})
        EXPECT_EQ(bounded::round(v), qRound(v)) << v;
}

struct Conversion {
    const char *name;
    double from;
    int to;
};
const Conversion conversions[] = {
    {"TowardsZero", 2.9, 2},          {"TowardsZeroBelow", -2.9, -2},
    {"Last", 2147483647.9, INT_MAX},  {"FirstAbove", 2147483648.0, INT_MAX},
    {"Huge", 1e300, INT_MAX},         {"FirstBelow", -2147483649.0, INT_MIN},
    {"Infinite", -INFINITY, INT_MIN}, {"NotANumber", NAN, 0},
};
TABLE(TruncateTest, testing::Test, Conversion, conversions);

TEST_P(TruncateTest, StaysWithinAnInt)
{
    EXPECT_EQ(bounded::truncate(GetParam().from), GetParam().to);
}

TEST(NumbersTest, TheRecordEndsAtTheLimits)
{
    Mouse m;
    m.update(INT_MIN, INT_MAX, LONG_MIN, 0, 0);
    m.update(10, -10, LONG_MAX, 0, 0);
    EXPECT_EQ(m.dx, INT_MIN);
    EXPECT_EQ(m.dy, INT_MAX);
    EXPECT_EQ(m.dt, LONG_MAX);
    EXPECT_EQ(m.dx0(), INT_MIN);
    EXPECT_EQ(m.sub(INT_MIN, INT_MIN).x, INT_MAX);
    EXPECT_EQ(m.y, INT_MAX - 9);
    EXPECT_EQ(m.add(0, INT_MAX).y, INT_MAX);
}

TEST(NumbersTest, EdgesOfTheLowestRegionFollow)
{
    GL::Viewport v;
    EXPECT_EQ(v.Left(INT_MIN, 0), 1073741824.0f);
    v.align = GL::Viewport::AlignBottom;
    EXPECT_EQ(v.Right(INT_MIN, 0), -2147483648.0f);
    EXPECT_EQ(v.Cursor(0, 0, 1, INT_MIN).y, 0.0f);
}

} // namespace
