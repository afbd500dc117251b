// SPDX-License-Identifier: MIT
#include "host/ui/metrics.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

struct Factors {
    double length = 1;
    double type = 1;
};

Factors &factors()
{
    static Factors all;
    return all;
}

bool usable(double value)
{
    return std::isfinite(value) && value > 0;
}

} // namespace

void Metrics::set(double scale, double typePixels)
{
    if (usable(scale) && usable(typePixels))
        factors() = {scale, typePixels / usualType};
}

double Metrics::px(double usual)
{
    return usual * factors().length;
}

double Metrics::type(double usual)
{
    return usual * factors().type;
}

QFont Metrics::font(int usual, bool bold)
{
    QFont font;
    font.setPixelSize(std::max(1, int(std::lround(type(usual)))));
    font.setBold(bold);
    return font;
}

} // namespace host
