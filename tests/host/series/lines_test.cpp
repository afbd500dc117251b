// SPDX-License-Identifier: MIT
// What a line of many samples is drawn from: extents, decimation, clipping; the nearest sample; and
// the ticks of axes.
#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include <QDateTime>
#include <QLineF>
#include <gtest/gtest.h>

#include "host/series/decimate.h"
#include "host/series/line_clip.h"
#include "host/series/nearest.h"
#include "host/series/ticks.h"

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
    EXPECT_TRUE(decimate(few, few.columns[0], 0, 7, 0).points.empty() &&
                decimate(few, few.columns[0], 2, 2, 10).points.empty());
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

double valueOf(const QString &word) // a number or a moment in UTC
{
    auto time = QDateTime::fromString(word, Qt::ISODateWithMs);
    time.setTimeSpec(Qt::UTC);
    return time.isValid() ? double(time.toMSecsSinceEpoch()) / 1000 : word.toDouble();
}

// Low, high and pixels of an axis of numbers or, behind @, of time; then its labels, each with its
// context, if any, behind a slash. At the end dates below their precision, and in thirty million
// years.
const char *const axes = R"(
0 10 1000 => 0 1 2 3 4 5 6 7 8 9 10
0.5 10 800 => 2 4 6 8 10
-12 12 600 => -10 -5 0 5 10
3.14 3.2 600 => 3.14 3.15 3.16 3.17 3.18 3.19 3.20
9999990 9999999.5 200 => 9999990 9999995
-0.5 3 300 => 0 2
0 3e7 600 => 0 5.0e6 1.0e7 1.5e7 2.0e7 2.5e7 3.0e7
0 2e-7 200 => 0 1e-7 2e-7
0 2e-6 200 => 0.000000 0.000001 0.000002
5 5 200 =>
0 1 0 =>
-inf 1 200 =>
0 nan 200 =>
1 1.0000000000000004 1000 =>
@2012-01-01T00:00:59.700 2012-01-01T00:01:00.200 600 => 00:00:59.7/1 Jan 2012 00:00:59.8 00:00:59.9 00:01:00.0 00:01:00.1 00:01:00.2
@2012-01-01T23:59:50 2012-01-02T00:00:10 500 => 23:59:50/1 Jan 2012 23:59:55 00:00:00/2 Jan 2012 00:00:05 00:00:10
@2012-06-01T10:01:00 2012-06-01T10:59:00 450 => 10:15/1 Jun 2012 10:30 10:45
@2011-12-31T20:00:00 2012-01-01T13:00:00 400 => 00:00/1 Jan 2012 06:00 12:00
@2011-12-30T12:00:00 2012-01-02T12:00:00 400 => 31 Dec/2011 1 Jan/2012 2 Jan
@2012-02-26T00:00:00 2012-03-04T00:00:00 500 => 27 Feb/2012 29 Feb 1 Mar 3 Mar
@2012-02-20T00:00:00 2012-03-20T00:00:00 500 => 20 Feb/2012 27 Feb 5 Mar 12 Mar 19 Mar
@2012-02-02T00:00:00 2012-04-15T00:00:00 550 => 15 Feb/2012 1 Mar 15 Mar 1 Apr 15 Apr
@2011-11-15T00:00:00 2012-02-15T00:00:00 400 => Dec/2011 Jan/2012 Feb
@2012-01-01T00:00:00 2013-02-01T00:00:00 500 => Jan/2012 Apr Jul Oct Jan/2013
@1955-05-01T00:00:00 1991-05-01T00:00:00 400 => 1960 1970 1980 1990
@0001-01-01T00:00:00 9999-12-31T00:00:00 400 => 5000
@1969-12-31T23:00:00 1970-01-01T01:00:00 250 => 23:00/31 Dec 1969 00:00/1 Jan 1970 01:00
@0 inf 500 =>
@0 1 0 =>
@1000000000 1000000000.0000001 500 =>
@1e15 1000000001e6 500 =>)";

TEST(Ticks, AreRoundAndSayWhereTheyAre)
{
    for (const QString &row : QString(axes).split('\n', Qt::SkipEmptyParts)) {
        const bool time = row[0] == '@';
        const QStringList axis = row.section(" =>", 0, 0).remove('@').split(' ');
        const double low = valueOf(axis[0]), high = valueOf(axis[1]);
        QString labels;
        for (const Tick &tick :
             (time ? timeTicks : numberTicks)(low, high, axis[2].toDouble(), 100)) {
            labels += ' ' + tick.label + (tick.context.isEmpty() ? "" : '/' + tick.context);
            const double said = time ? tick.value : tick.label.toDouble();
            EXPECT_NEAR(said, tick.value, (high - low) * 1e-9);
        }
        EXPECT_EQ(labels.toStdString(), row.section(" =>", 1).toStdString()) << row.toStdString();
    }
    EXPECT_TRUE(numberTicks(0, 1, 100, 0).empty());
}

TEST(TimeText, IsADateWithTheTimeOfDay)
{
    const std::pair<double, const char *> rows[] = {
        {0, "1970-01-01"},           {90060, "1970-01-02 01:01"},
        {59, "1970-01-01 00:00:59"}, {59.25, "1970-01-01 00:00:59.250"},
        {-86400, "1969-12-31"},      {86399.9999, "1970-01-02"}};
    for (const auto &[moment, text] : rows)
        EXPECT_EQ(timeText(moment).toStdString(), text);
}

} // namespace
} // namespace host
