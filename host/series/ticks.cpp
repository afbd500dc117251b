// SPDX-License-Identifier: MIT
#include "host/series/ticks.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {
namespace {

// The exponent of the power of ten in a step made by roundStep(); 1e-5 may be a little less.
int decade(double step)
{
    return int(std::floor(std::log10(step) + 1e-6));
}

QString numberLabel(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

// As "2.5e6": without the sign and zeros that fill an exponent up.
QString exponentLabel(double value, int digits)
{
    if (value == 0)
        return QStringLiteral("0");
    QString text = QString::number(value, 'e', digits);
    const int e = text.indexOf('e');
    return text.left(e + 1) + QString::number(text.mid(e + 1).toInt());
}

} // namespace

double roundStep(double size)
{
    const double power = std::pow(10.0, std::floor(std::log10(size)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= size * (1 - 1e-9))
            return factor * power;
    return 10 * power;
}

std::vector<Tick> numberTicks(double low, double high, double pixels, double spacing)
{
    if (!(low < high) || !std::isfinite(high - low) || !(pixels > 0) || !(spacing > 0))
        return {};
    const double step = roundStep((high - low) * std::min(1.0, spacing / pixels));
    const double largest = std::max(std::abs(low), std::abs(high));
    if (step < 8 * std::numeric_limits<double>::epsilon() * largest || step == 0)
        return {};
    const int exponent = decade(step);
    const bool withExponent = largest >= 1e7 || exponent < -6;
    const int digits = std::max(0, int(std::floor(std::log10(largest))) - exponent);
    const double slack = 1e-6; // of a step, so that a bound that is itself round is marked
    std::vector<Tick> ticks;
    for (double k = std::ceil(low / step - slack); k <= std::floor(high / step + slack); ++k) {
        const double value = exponent < 0 ? k / (1 / step) : k * step;
        ticks.push_back({value,
                         withExponent ? exponentLabel(value, digits)
                                      : numberLabel(value, std::max(0, -exponent)),
                         {}});
    }
    return ticks;
}

} // namespace host
