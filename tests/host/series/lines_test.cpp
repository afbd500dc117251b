// SPDX-License-Identifier: MIT
// What a line of many samples is drawn from: extents, decimation, clipping; and the nearest sample.
#include <algorithm>
#include <cmath>
#include <random>

#include <QLineF>
#include <gtest/gtest.h>

#include "host/series/decimate.h"
#include "host/series/line_clip.h"
#include "host/series/nearest.h"

namespace host {
namespace {

const double none = std::numeric_limits<double>::quiet_NaN();

Table tableOf(std::vector<double> x, std::vector<double> y)
{
    Table table;
    table.x = std::move(x);
    table.columns.emplace_back("y", std::move(y));
    return table;
}

// A random walk over unevenly spaced x in [0, 1000), with single missing values and long gaps.
Table randomTable(std::size_t rows, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<double> x(rows), y(rows);
    for (double &value : x)
        value = std::uniform_real_distribution<double>(0, 1000)(random);
    std::sort(x.begin(), x.end());
    double walk = 0;
    for (std::size_t i = 0; i < rows; ++i) {
        walk += std::normal_distribution<double>()(random);
        y[i] = random() % 50 == 0 || i / 300 % 10 == 7 ? none : walk;
    }
    return tableOf(std::move(x), std::move(y));
}

TEST(DecimateTest, HasTheExtentOfEveryPixelColumn)
{
    const double ranges[][4] = {
        // rows, from, to, pixels
        {200000, 0, 1000, 500},    {200000, 300, 600, 777},  {200000, 100, 900, 1},
        {200000, -500, 1500, 400}, {200000, 999, 9000, 300}, {4097, 0, 1000, 1},
        {256, 0, 1000, 1},         {17, 0, 1000, 1},         {0, 0, 1, 1}};
    for (const auto &[rows, low, high, pixels] : ranges) {
        const Table table = randomTable(std::size_t(rows), 7);
        const Column &column = table.columns[0];
        const Polyline line = decimate(table, column, low, high, int(pixels));
        EXPECT_LE(double(line.points.size()), pixels * 4 + 2);
        std::vector<Extent> drawn(rows >= 0 ? std::size_t(pixels) : 0), brute = drawn;
        const auto add = [&, low = low, width = (high - low) / pixels](auto &to, double x,
                                                                       double y) {
            if (const double i = std::floor((x - low) / width); i >= 0 && i < double(to.size()))
                to[std::size_t(i)].add(y);
        };
        for (const QPointF &point : line.points)
            add(drawn, point.x(), point.y());
        for (std::size_t row = 0; row < table.rows(); ++row)
            add(brute, table.x[row], column.values[row]);
        for (std::size_t i = 0; i < drawn.size(); ++i)
            EXPECT_TRUE(drawn[i].min == brute[i].min && drawn[i].max == brute[i].max) << i;
        for (std::size_t strip = 0; strip < line.strips(); ++strip)
            for (std::size_t i = line.starts[strip] + 1; i < line.end(strip); ++i)
                ASSERT_LE(line.points[i - 1].x(), line.points[i].x()) << "the line turns back";
    }
}

// Few samples are exact, with one beyond each end. Of 1000 rows on 10 pixel columns, rows 200 to
// 400 are missing, and the stroke of each begins where the line comes from.
TEST(DecimateTest, GapsCutTheLine)
{
    const Table few = tableOf({0, 1, 2, 3, 4, 5, 6}, {0, 10, 20, none, 40, 50, 60});
    Polyline line = decimate(few, few.columns[0], 1.5, 4.5, 100);
    EXPECT_EQ(line.points, (std::vector<QPointF>{{1, 10}, {2, 20}, {4, 40}, {5, 50}}));
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 2}));
    EXPECT_TRUE(decimate(few, few.columns[0], 0, 7, 0).points.empty());
    EXPECT_TRUE(decimate(few, few.columns[0], 2, 2, 10).points.empty());
    std::vector<double> x(1000), y(1000);
    for (std::size_t i = 0; i < x.size(); ++i)
        x[i] = double(i), y[i] = i >= 200 && i < 400 ? none : double(i % 3);
    const Table many = tableOf(std::move(x), std::move(y));
    line = decimate(many, many.columns[0], 0, 1000, 10);
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 4}));
    line.points.resize(6);
    EXPECT_EQ(line.points,
              (std::vector<QPointF>{{50, 0}, {50, 2}, {150, 2}, {150, 0}, {450, 0}, {450, 2}}));
}

TEST(LineClipTest, CutsToTheEdges)
{
    const QLineF lines[][2] = {// the whole and what is left of it, nothing where all is outside
                               {{-50, 20, 150, 20}, {0, 20, 100, 20}},
                               {{-10, -10, 20, 20}, {0, 0, 20, 20}},
                               {{30, 90, 30, -40}, {30, 50, 30, 0}},
                               {{60, 40, 120, 100}, {60, 40, 70, 50}},
                               {{0, 50, 100, 50}, {0, 50, 100, 50}},
                               {{-20, 10, 10, -30}, {}},
                               {{-5, -5, -5, 60}, {}},
                               {{10, 51, 20, 51}, {}}};
    for (const auto &[whole, left] : lines) {
        QPointF a = whole.p1(), b = whole.p2();
        EXPECT_EQ(clipSegment({0, 0, 100, 50}, a, b), !left.isNull());
        EXPECT_EQ(QLineF(a, b), left.isNull() ? whole : left);
    }
}

TEST(NearestTest, EqualsBruteForce)
{
    const Table table = randomTable(5000, 3);
    const Column &column = table.columns[0];
    std::mt19937 random(11);
    std::uniform_real_distribution<double> x(-200, 1200), y(-150, 150);
    const QSizeF scales[] = {{1, 1}, {0.01, 30}, {100, 0.02}};
    for (int i = 0; i < 300; ++i) {
        const QPointF point(x(random), y(random));
        const QSizeF scale = scales[i % 3];
        const auto distance = [&](std::size_t row) {
            return std::hypot((table.x[row] - point.x()) * scale.width(),
                              (column.values[row] - point.y()) * scale.height());
        };
        double closest = 1e300;
        for (std::size_t row = 0; row < table.rows(); ++row)
            closest = std::fmin(closest, distance(row)); // fmin passes over a missing value
        const auto nearest = nearestRow(table, column, point, scale, closest * 1.001);
        ASSERT_TRUE(nearest && nearest->distance <= closest * 1.0000001);
        EXPECT_NEAR(distance(nearest->row), closest, 1e-9 * (1 + closest));
        EXPECT_FALSE(nearestRow(table, column, point, scale, closest * 0.999));
    }
    for (const Table &empty : {tableOf({1, 2}, {none, none}), tableOf({}, {})})
        EXPECT_FALSE(nearestRow(empty, empty.columns[0], {1, 1}, {1, 1}));
}

} // namespace
} // namespace host
