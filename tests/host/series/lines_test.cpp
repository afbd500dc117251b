// SPDX-License-Identifier: MIT
// What a line of many samples is drawn from: extents, decimation, clipping; and the nearest sample.
#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include <QLineF>
#include <gtest/gtest.h>

#include "host/series/decimate.h"
#include "host/series/line_clip.h"
#include "host/series/nearest.h"

namespace host {
namespace {

const double missing = std::numeric_limits<double>::quiet_NaN();

Table lineOf(std::vector<double> x, std::vector<double> y)
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
        y[i] = random() % 50 == 0 || i / 300 % 10 == 7 ? missing : walk;
    }
    return lineOf(std::move(x), std::move(y));
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
        const double width = (high - low) / pixels;
        std::map<double, std::pair<Extent, Extent>> extents; // of what is drawn, and of all
        for (const QPointF &point : line.points)
            extents[std::floor((point.x() - low) / width)].first.add(point.y());
        for (std::size_t row = 0; row < table.rows(); ++row)
            extents[std::floor((table.x[row] - low) / width)].second.add(column.values[row]);
        for (const auto &[i, of] : extents)
            EXPECT_TRUE(i < 0 || i >= pixels ||
                        (of.first.min == of.second.min && of.first.max == of.second.max));
        for (std::size_t strip = 0; strip < line.strips(); ++strip)
            for (std::size_t i = line.starts[strip] + 1; i < line.end(strip); ++i)
                ASSERT_LE(line.points[i - 1].x(), line.points[i].x()) << "the line turns back";
    }
}

// Few samples are exact, with one beyond each end. Of 1000 rows on 10 pixel columns, rows 200 to
// 400 are missing, and the stroke of each begins where the line comes from.
TEST(DecimateTest, GapsCutTheLine)
{
    const Table few = lineOf({0, 1, 2, 3, 4, 5, 6}, {0, 10, 20, missing, 40, 50, 60});
    using Points = std::vector<QPointF>;
    Polyline line = decimate(few, few.columns[0], 1.5, 4.5, 100);
    EXPECT_EQ(line.points, (Points{{1, 10}, {2, 20}, {4, 40}, {5, 50}}));
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 2}));
    EXPECT_TRUE(decimate(few, few.columns[0], 0, 7, 0).points.empty());
    EXPECT_TRUE(decimate(few, few.columns[0], 2, 2, 10).points.empty());
    std::vector<double> x(1000), y(1000);
    for (std::size_t i = 0; i < x.size(); ++i)
        x[i] = double(i), y[i] = i >= 200 && i < 400 ? missing : double(i % 3);
    const Table many = lineOf(std::move(x), std::move(y));
    line = decimate(many, many.columns[0], 0, 1000, 10);
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 4}));
    line.points.resize(6);
    EXPECT_EQ(line.points, (Points{{50, 0}, {50, 2}, {150, 2}, {150, 0}, {450, 0}, {450, 2}}));
}

TEST(LineClipTest, CutsToTheEdges)
{
    // Of each line, from x, y to x, y, the share that is left: from, to; none where all is outside.
    const double lines[][6] = {{-50, 20, 150, 20, 0.25, 0.75}, {-10, -10, 30, 30, 0.25, 1},
                               {30, 100, 30, -100, 0.25, 0.5}, {60, 40, 140, 120, 0, 0.125},
                               {0, 50, 100, 50, 0, 1},         {-20, 10, 10, -30, 0, 0},
                               {-5, -5, -5, 60, 0, 0},         {10, 51, 20, 51, 0, 0}};
    for (const auto &[x1, y1, x2, y2, from, to] : lines) {
        const QLineF whole(x1, y1, x2, y2);
        QPointF a = whole.p1(), b = whole.p2();
        EXPECT_EQ(clipSegment({0, 0, 100, 50}, a, b), to > 0);
        EXPECT_EQ(QLineF(a, b), to > 0 ? QLineF(whole.pointAt(from), whole.pointAt(to)) : whole);
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
    for (const Table &empty : {lineOf({1, 2}, {missing, missing}), lineOf({}, {})})
        EXPECT_FALSE(nearestRow(empty, empty.columns[0], {1, 1}, {1, 1}));
}

} // namespace
} // namespace host
