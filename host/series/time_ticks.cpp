// SPDX-License-Identifier: MIT
#include "host/series/ticks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include <QDate>
#include <QLocale>

namespace host {
namespace {

constexpr double secondsPerDay = 86400;
constexpr qint64 epochJulianDay = 2440588; // 1970-01-01

enum class Unit { Second, Day, Month, Year };

struct Step {
    Unit unit;
    double count;
    double seconds; // length; of months and years the shortest
};

const Step steps[] = {
    {Unit::Second, 1, 1},           {Unit::Second, 2, 2},         {Unit::Second, 5, 5},
    {Unit::Second, 10, 10},         {Unit::Second, 15, 15},       {Unit::Second, 30, 30},
    {Unit::Second, 60, 60},         {Unit::Second, 120, 120},     {Unit::Second, 300, 300},
    {Unit::Second, 600, 600},       {Unit::Second, 900, 900},     {Unit::Second, 1800, 1800},
    {Unit::Second, 3600, 3600},     {Unit::Second, 7200, 7200},   {Unit::Second, 10800, 10800},
    {Unit::Second, 21600, 21600},   {Unit::Second, 43200, 43200}, {Unit::Day, 1, 86400},
    {Unit::Day, 2, 2 * 86400},      {Unit::Day, 7, 7 * 86400},    {Unit::Month, 0.5, 14 * 86400},
    {Unit::Month, 1, 28 * 86400},   {Unit::Month, 3, 90 * 86400}, {Unit::Month, 6, 181 * 86400},
    {Unit::Year, 1, 365 * 86400.0},
};

Step stepFor(double seconds)
{
    if (seconds < 1) {
        const double fraction = roundStep(seconds);
        return {Unit::Second, fraction, fraction};
    }
    const auto step = std::find_if(std::begin(steps), std::end(steps),
                                   [seconds](const Step &s) { return s.seconds >= seconds; });
    if (step != std::end(steps))
        return *step;
    const double years = roundStep(seconds / (365 * secondsPerDay));
    return {Unit::Year, years, years * 365 * secondsPerDay};
}

qint64 dayOf(double seconds)
{
    return qint64(std::floor(seconds / secondsPerDay));
}
QDate dateOf(double seconds)
{
    return QDate::fromJulianDay(dayOf(seconds) + epochJulianDay);
}

double midnight(const QDate &date)
{
    return double(date.toJulianDay() - epochJulianDay) * secondsPerDay;
}

// The day numbers (0 is 1970-01-01) at which a step of days puts a tick.
bool isTickDay(const Step &step, qint64 day)
{
    if (step.count == 7)
        return (day - 4) % 7 == 0; // 1970-01-05 was a Monday
    const int dayOfMonth = QDate::fromJulianDay(day + epochJulianDay).day();
    // Every second day begins anew with each month; the 31st would touch the 1st.
    return step.count == 1 || (dayOfMonth % 2 == 1 && dayOfMonth < 31);
}

std::vector<double> secondTicks(const Step &step, double low, double high)
{
    std::vector<double> values;
    const double perSecond = std::round(1 / step.count); // exact where the step itself is not
    for (double k = std::ceil(low / step.count - 1e-6); k <= high / step.count + 1e-6; ++k)
        values.push_back(step.count < 1 ? k / perSecond : k * step.count);
    return values;
}

std::vector<double> dayTicks(const Step &step, double low, double high)
{
    std::vector<double> values;
    for (qint64 day = dayOf(low); double(day) * secondsPerDay <= high; ++day)
        if (double(day) * secondsPerDay >= low && isTickDay(step, day))
            values.push_back(double(day) * secondsPerDay);
    return values;
}

// Ticks every `months` months, counted from January of year 0, and on the 15th too if `halves`.
std::vector<double> monthTicks(int months, bool halves, double low, double high)
{
    std::vector<double> values;
    const auto add = [&](const QDate &date) {
        if (midnight(date) >= low && midnight(date) <= high)
            values.push_back(midnight(date));
    };
    const QDate from = dateOf(low);
    for (int month = (from.year() * 12 + from.month() - 1) / months * months;; month += months) {
        if (month < 12)
            continue; // a year 0 that dates do not know
        const QDate first(month / 12, month % 12 + 1, 1);
        add(first);
        if (halves)
            add(QDate(month / 12, month % 12 + 1, 15));
        if (month / 12 > 9999 || midnight(first) > high)
            return values;
    }
}

std::vector<double> tickValues(const Step &step, double low, double high)
{
    switch (step.unit) {
    case Unit::Second:
        return secondTicks(step, low, high);
    case Unit::Day:
        return dayTicks(step, low, high);
    case Unit::Month:
        return monthTicks(std::max(1, int(step.count)), step.count < 1, low, high);
    case Unit::Year:
        return monthTicks(12 * int(step.count), false, low, high);
    }
    return {};
}

QString clock(double seconds, double step)
{
    const int decimals = step < 1 ? int(std::ceil(-std::log10(step) - 1e-6)) : 0;
    const double rounding = std::pow(10.0, decimals); // before the split, lest 59.999 become 60.00
    const double ofDay =
        std::round((seconds - double(dayOf(seconds)) * secondsPerDay) * rounding) / rounding;
    const int minutes = int(ofDay / 60);
    QString text = QStringLiteral("%1:%2")
                       .arg(minutes / 60, 2, 10, QLatin1Char('0'))
                       .arg(minutes % 60, 2, 10, QLatin1Char('0'));
    if (step < 60)
        text += QStringLiteral(":%1").arg(ofDay - 60 * minutes, decimals > 0 ? decimals + 3 : 2,
                                          'f', decimals, QLatin1Char('0'));
    return text;
}

Tick tickAt(double value, const Step &step)
{
    const QDate date = dateOf(value);
    const QLocale english = QLocale::c(); // whatever the system speaks: the viewer's own language
    switch (step.unit) {
    case Unit::Second:
        return {value, clock(value, step.count), english.toString(date, "d MMM yyyy")};
    case Unit::Day:
        return {value, english.toString(date, "d MMM"), QString::number(date.year())};
    case Unit::Month:
        return {value, english.toString(date, step.count < 1 ? "d MMM" : "MMM"),
                QString::number(date.year())};
    case Unit::Year:
        break;
    }
    return {value, QString::number(date.year()), {}};
}

} // namespace

QString timeText(double seconds)
{
    const double rounded = std::round(seconds * 1000) / 1000;
    const double ofMinute = std::fmod(rounded, 60);
    QString text = dateOf(rounded).toString(Qt::ISODate);
    if (std::fmod(rounded, secondsPerDay) != 0)
        text += ' ' + clock(rounded, ofMinute == 0                      ? 60
                                     : ofMinute == std::floor(ofMinute) ? 1
                                                                        : 1e-3);
    return text;
}

std::vector<Tick> timeTicks(double low, double high, double pixels, double spacing)
{
    if (!(low < high) || !(pixels > 0) || !(spacing > 0))
        return {};
    const double size = (high - low) * std::min(1.0, spacing / pixels);
    low = std::max(low, midnight(QDate(1, 1, 1)));
    high = std::min(high, midnight(QDate(9999, 12, 31)));
    const double largest = std::max(std::abs(low), std::abs(high));
    const double years9999 = 9999 * 366 * secondsPerDay;
    if (!(low < high) || size > years9999 ||
        size < 8 * std::numeric_limits<double>::epsilon() * largest)
        return {};
    const Step step = stepFor(size);
    std::vector<Tick> ticks;
    QString context;
    for (const double value : tickValues(step, low, high)) {
        ticks.push_back(tickAt(value, step));
        if (ticks.back().context == context)
            ticks.back().context.clear();
        else
            context = ticks.back().context;
    }
    return ticks;
}

} // namespace host
