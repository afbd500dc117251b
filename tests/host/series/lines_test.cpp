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
    std::uniform_real_distribution<double> position(0, 1000);
    std::normal_distribution<double> step;
    std::vector<double> x(rows);
    std::vector<double> y(rows);
    std::generate(x.begin(), x.end(), [&] { return position(random); });
    std::sort(x.begin(), x.end());
    double walk = 0;
    std::size_t gap = 0;
    for (double &value : y) {
        walk += step(random);
        gap = random() % 2000 == 0 ? random() % 500 : gap - (gap > 0);
        value = gap > 0 || random() % 50 == 0 ? none : walk;
    }
    return tableOf(std::move(x), std::move(y));
}

Extent bruteExtent(const std::vector<double> &values, std::size_t first, std::size_t last)
{
    Extent extent;
    for (std::size_t i = first; i < last; ++i) {
        extent.min = std::fmin(extent.min, values[i]);
        extent.max = std::fmax(extent.max, values[i]);
    }
    return extent;
}

TEST(MinMaxPyramidTest, EveryRunHasItsExtent)
{
    std::mt19937 random(5);
    for (const std::size_t rows : {0u, 1u, 15u, 16u, 17u, 256u, 4097u}) {
        const Table table = randomTable(rows, 1 + unsigned(rows));
        const Column &column = table.columns[0];
        for (int i = 0; i < 300; ++i) {
            const std::size_t first = random() % (rows + 1);
            const std::size_t last = first + random() % (rows + 1 - first);
            const Extent extent = column.pyramid.extent(column.values, first, last);
            const Extent brute = bruteExtent(column.values, first, last);
            ASSERT_TRUE(extent.min == brute.min && extent.max == brute.max)
                << rows << " rows, " << first << " to " << last;
        }
    }
}

TEST(DecimateTest, HasTheExtentOfEveryPixelColumn)
{
    const Table table = randomTable(200000, 7);
    const Column &column = table.columns[0];
    const struct {
        double low, high;
        int pixels;
    } ranges[] = {
        {0, 1000, 500}, {300, 600, 777}, {100, 900, 1}, {-500, 1500, 400}, {999, 9000, 300}};
    for (const auto &c : ranges) {
        SCOPED_TRACE(testing::Message() << c.low << " to " << c.high << " on " << c.pixels);
        const Polyline line = decimate(table, column, c.low, c.high, c.pixels);
        EXPECT_LE(line.points.size(), std::size_t(c.pixels) * 4 + 2);
        std::vector<Extent> drawn(std::size_t(c.pixels)), brute(std::size_t(c.pixels));
        const auto add = [&](std::vector<Extent> &to, double x, double y) {
            const double width = (c.high - c.low) / c.pixels;
            if (x >= c.low && x < c.high)
                to[std::min(to.size() - 1, std::size_t((x - c.low) / width))].add(y);
        };
        for (const QPointF &point : line.points)
            add(drawn, point.x(), point.y());
        for (std::size_t row = 0; row < table.rows(); ++row)
            add(brute, table.x[row], column.values[row]);
        for (std::size_t i = 0; i < drawn.size(); ++i)
            EXPECT_TRUE(drawn[i].min == brute[i].min && drawn[i].max == brute[i].max) << i;
        for (std::size_t strip = 0; strip < line.strips(); ++strip) {
            EXPECT_LT(line.starts[strip], line.end(strip));
            for (std::size_t i = line.starts[strip] + 1; i < line.end(strip); ++i)
                ASSERT_LE(line.points[i - 1].x(), line.points[i].x()) << "the line turns back";
        }
    }
}

TEST(DecimateTest, FewSamplesAreExactWithOneBeyondEachEnd)
{
    const Table table = tableOf({0, 1, 2, 3, 4, 5, 6}, {0, 10, 20, none, 40, 50, 60});
    const Polyline line = decimate(table, table.columns[0], 1.5, 4.5, 100);
    EXPECT_EQ(line.points, (std::vector<QPointF>{{1, 10}, {2, 20}, {4, 40}, {5, 50}}));
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(decimate(table, table.columns[0], 0, 7, 0).points.size(), 0u);
    EXPECT_EQ(decimate(table, table.columns[0], 2, 2, 10).points.size(), 0u);
}

// 1000 rows on 10 pixel columns, of which rows 200 to 400 are missing, and the stroke of each
// begins where the line comes from: it rises from the row before, at the highest, and so on.
TEST(DecimateTest, AWideGapCutsTheLine)
{
    std::vector<double> x(1000), y(1000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = double(i);
        y[i] = i >= 200 && i < 400 ? none : double(i % 3);
    }
    const Table table = tableOf(std::move(x), std::move(y));
    const Polyline line = decimate(table, table.columns[0], 0, 1000, 10);
    EXPECT_EQ(line.starts, (std::vector<std::size_t>{0, 4}));
    const std::vector<QPointF> begin(line.points.begin(), line.points.begin() + 6);
    EXPECT_EQ(begin,
              (std::vector<QPointF>{{50, 0}, {50, 2}, {150, 2}, {150, 0}, {450, 0}, {450, 2}}));
}

TEST(LineClipTest, CutsToTheEdges)
{
    const struct {
        QPointF a, b, cutA, cutB;
    } lines[] = {
        {{10, 10}, {20, 20}, {10, 10}, {20, 20}}, {{-50, 20}, {150, 20}, {0, 20}, {100, 20}},
        {{30, 90}, {30, -40}, {30, 50}, {30, 0}}, {{0, 50}, {100, 50}, {0, 50}, {100, 50}},
        {{-10, -10}, {20, 20}, {0, 0}, {20, 20}}, {{60, 40}, {120, 100}, {60, 40}, {70, 50}},
    };
    for (auto c : lines) {
        EXPECT_TRUE(clipSegment({0, 0, 100, 50}, c.a, c.b));
        EXPECT_LT((c.a - c.cutA).manhattanLength() + (c.b - c.cutB).manhattanLength(), 1e-9);
    }
    const QLineF outside[] = {
        {-20, 10, 10, -30}, {-5, -5, -5, 60}, {110, 10, 110, 20}, {10, 51, 20, 51}};
    for (const QLineF &line : outside) {
        QPointF a = line.p1(), b = line.p2();
        EXPECT_FALSE(clipSegment({0, 0, 100, 50}, a, b));
        EXPECT_EQ(QLineF(a, b), line);
    }
}

TEST(NearestTest, EqualsBruteForce)
{
    const Table table = randomTable(5000, 3);
    const Column &column = table.columns[0];
    const Extent extent = bruteExtent(column.values, 0, table.rows());
    std::mt19937 random(11);
    std::uniform_real_distribution<double> atX(-200, 1200);
    std::uniform_real_distribution<double> atY(extent.min - 50, extent.max + 50);
    const QSizeF scales[] = {{1, 1}, {0.01, 30}, {100, 0.02}};
    for (int i = 0; i < 300; ++i) {
        const QPointF point(atX(random), atY(random));
        const QSizeF scale = scales[i % 3];
        const auto distance = [&](std::size_t row) {
            return std::hypot((table.x[row] - point.x()) * scale.width(),
                              (column.values[row] - point.y()) * scale.height());
        };
        double closest = std::numeric_limits<double>::infinity();
        for (std::size_t row = 0; row < table.rows(); ++row)
            closest = std::fmin(closest, distance(row)); // fmin passes over a missing value
        const auto nearest = nearestRow(table, column, point, scale);
        ASSERT_TRUE(nearest);
        EXPECT_NEAR(nearest->distance, closest, 1e-9 * (1 + closest));
        EXPECT_NEAR(distance(nearest->row), closest, 1e-9 * (1 + closest));
        EXPECT_FALSE(nearestRow(table, column, point, scale, closest * 0.999));
    }
    for (const Table &empty : {tableOf({1, 2}, {none, none}), tableOf({}, {})})
        EXPECT_FALSE(nearestRow(empty, empty.columns[0], {1, 1}, {1, 1}));
}

} // namespace
} // namespace host
