// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_TICKS_H
#define HOST_SERIES_TICKS_H

#include <vector>

#include <QString>

namespace host {

/// A marked value of an axis.
struct Tick {
    double value;
    QString label;
    /// What the label leaves out, such as the year of "3 Jan": given for the first tick of an axis
    /// and wherever it changes; a second line below the label. Empty for numbers.
    QString context;
};

/// The smallest 1, 2 or 5 times a power of ten that is not below @p size. Expects size > 0.
double roundStep(double size);

/// Round numbers within [@p low, @p high], rising, evenly spaced by 1, 2 or 5 times a power of ten.
/// The axis is @p pixels long and neighbours are at least @p spacing pixels apart. Labels have the
/// decimals that the step needs; from ten million on, and for steps below a millionth, they have an
/// exponent. Empty when low >= high, when either is not finite, when there is no room or
/// when the numbers are too close together to be told apart.
std::vector<Tick> numberTicks(double low, double high, double pixels, double spacing);

/// As numberTicks(), for seconds since 1970-01-01 00:00 UTC: round seconds, minutes, hours, days,
/// Mondays, months or years of the calendar, shown in UTC. Only the years 1 to 9999 are marked.
std::vector<Tick> timeTicks(double low, double high, double pixels, double spacing);

/// A moment (seconds since 1970-01-01 00:00 UTC) as an ISO date, with the time of day, in UTC to
/// the millisecond, unless that is midnight.
QString timeText(double seconds);

} // namespace host

#endif
