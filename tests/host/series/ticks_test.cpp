// SPDX-License-Identifier: MIT
#include "host/series/ticks.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace host {
namespace {

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
0 9e6 200 => 0 5000000
0 3e7 600 => 0 5.0e6 1.0e7 1.5e7 2.0e7 2.5e7 3.0e7
0 2e-8 200 => 0 1e-8 2e-8
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
