// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include <QDateTime>
#include <gtest/gtest.h>

#include "host/series/ticks.h"

namespace host {
namespace {

const double infinity = std::numeric_limits<double>::infinity();

std::string labels(const std::vector<Tick> &ticks)
{
    QStringList list;
    for (const Tick &tick : ticks)
        list << (tick.context.isEmpty() ? tick.label : tick.label + '/' + tick.context);
    return list.join(' ').toStdString();
}

const struct {
    double low, high;
    double pixels; // with ticks at least 50 pixels apart
    const char *labels;
} numbers[] = {
    {0, 10, 500, "0 1 2 3 4 5 6 7 8 9 10"},
    {0.5, 10, 400, "2 4 6 8 10"},
    {-12, 12, 300, "-10 -5 0 5 10"},
    {-0.25, 0.25, 300, "-0.2 -0.1 0.0 0.1 0.2"},
    {-0.05, 0.25, 150, "0.0 0.1 0.2"},
    {3.14, 3.2, 300, "3.14 3.15 3.16 3.17 3.18 3.19 3.20"},
    {0, 6000, 200, "0 2000 4000 6000"},
    {0, 9e6, 100, "0 5000000"},
    {0, 3e7, 300, "0 5.0e6 1.0e7 1.5e7 2.0e7 2.5e7 3.0e7"},
    {0, 2e-8, 100, "0 1e-8 2e-8"},
    {0, 2e-6, 100, "0.000000 0.000001 0.000002"},
    {0.1, 0.9, 20, ""},
    {5, 5, 100, ""},
    {5, 4, 100, ""},
    {0, 1, 0, ""},
    {-infinity, 1, 100, ""},
    {0, std::nan(""), 100, ""},
    {1, 1 + 4e-16, 500, ""},
};

TEST(NumberTicks, AreRoundAndLabelled)
{
    for (const auto &c : numbers) {
        const auto ticks = numberTicks(c.low, c.high, c.pixels, 50);
        EXPECT_EQ(labels(ticks), c.labels);
        for (const Tick &tick : ticks) // a label says where the tick is
            EXPECT_NEAR(tick.label.toDouble(), tick.value, (c.high - c.low) * 1e-9);
    }
    EXPECT_TRUE(numberTicks(0, 1, 100, 0).empty());
}

const struct {
    const char *low, *high; // ISO date-times
    double pixels;          // with ticks at least 100 pixels apart
    const char *labels;
} times[] = {
    {"2012-01-01T00:00:59.700", "2012-01-01T00:01:00.200", 600,
     "00:00:59.7/1 Jan 2012 00:00:59.8 00:00:59.9 00:01:00.0 00:01:00.1 00:01:00.2"},
    {"2012-01-01T23:59:50", "2012-01-02T00:00:10", 500,
     "23:59:50/1 Jan 2012 23:59:55 00:00:00/2 Jan 2012 00:00:05 00:00:10"},
    {"2012-06-01T10:01:00", "2012-06-01T10:59:00", 450, "10:15/1 Jun 2012 10:30 10:45"},
    {"2011-12-31T20:00:00", "2012-01-01T13:00:00", 400, "00:00/1 Jan 2012 06:00 12:00"},
    {"2011-12-30T12:00:00", "2012-01-02T12:00:00", 400, "31 Dec/2011 1 Jan/2012 2 Jan"},
    {"2012-02-26T00:00:00", "2012-03-04T00:00:00", 500, "27 Feb/2012 29 Feb 1 Mar 3 Mar"},
    {"2012-01-28T00:00:00", "2012-02-04T00:00:00", 500, "29 Jan/2012 1 Feb 3 Feb"},
    {"2012-02-20T00:00:00", "2012-03-20T00:00:00", 500, "20 Feb/2012 27 Feb 5 Mar 12 Mar 19 Mar"},
    {"2012-02-02T00:00:00", "2012-04-15T00:00:00", 550, "15 Feb/2012 1 Mar 15 Mar 1 Apr 15 Apr"},
    {"2011-11-15T00:00:00", "2012-02-15T00:00:00", 400, "Dec/2011 Jan/2012 Feb"},
    {"2012-01-01T00:00:00", "2013-02-01T00:00:00", 500, "Jan/2012 Apr Jul Oct Jan/2013"},
    {"1998-05-01T00:00:00", "2001-05-01T00:00:00", 350, "1999 2000 2001"},
    {"1955-05-01T00:00:00", "1991-05-01T00:00:00", 400, "1960 1970 1980 1990"},
    {"0001-01-01T00:00:00", "9999-12-31T00:00:00", 400, "5000"},
    {"1969-12-31T23:00:00", "1970-01-01T01:00:00", 250, "23:00/31 Dec 1969 00:00/1 Jan 1970 01:00"},
};

TEST(TimeTicks, FollowTheCalendar)
{
    const auto seconds = [](const char *iso) {
        auto time = QDateTime::fromString(iso, Qt::ISODateWithMs);
        time.setTimeSpec(Qt::UTC);
        return double(time.toMSecsSinceEpoch()) / 1000;
    };
    for (const auto &c : times) {
        const double low = seconds(c.low), high = seconds(c.high);
        const auto ticks = timeTicks(low, high, c.pixels, 100);
        EXPECT_EQ(labels(ticks), c.labels);
    }
    const double none[][3] = {{5, 5, 500},
                              {std::nan(""), 5, 500},
                              {0, infinity, 500},
                              {0, 1, 0},
                              {1e9, 1e9 + 1e-7, 500},   // below the precision of dates
                              {1e15, 1e15 + 1e6, 500}}; // some thirty million years on
    for (const auto &[low, high, pixels] : none)
        EXPECT_TRUE(timeTicks(low, high, pixels, 100).empty()) << low;
}

TEST(TimeText, IsADateWithTheTimeOfDay)
{
    const std::pair<double, const char *> rows[] = {
        {0, "1970-01-01"},
        {-86400, "1969-12-31"},
        {86400 + 3600 + 60, "1970-01-02 01:01"},
        {59, "1970-01-01 00:00:59"},
        {59.25, "1970-01-01 00:00:59.250"},
        {86399.9999, "1970-01-02"},
    };
    for (const auto &[moment, text] : rows)
        EXPECT_EQ(timeText(moment).toStdString(), text);
}

} // namespace
} // namespace host
