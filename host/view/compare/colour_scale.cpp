// SPDX-License-Identifier: MIT
#include "host/view/compare/colour_scale.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/measure/deviation.h"

namespace host {

namespace {

/// K. Moreland, "Diverging Color Maps for Scientific Visualization", 2009: its cool to warm map.
constexpr QRgb colours[] = {0x3B4CC0, 0x4E68D7, 0x6282EA, 0x779AF7, 0x8DB0FE, 0xA3C2FE,
                            0xB8D0F9, 0xCCD9EE, 0xDDDDDD, 0xECD3C5, 0xF5C4AD, 0xF7B194,
                            0xF49A7B, 0xEC7F63, 0xDE614C, 0xCB3E38, 0xB40426};
/// From one end, 0, to the other, 1.
QRgb colourAt(double share)
{
    constexpr std::size_t last = std::size(colours) - 1;
    const double at = std::clamp(share, 0.0, 1.0) * last;
    const std::size_t low = std::min(std::size_t(at), last - 1);
    const double rest = at - double(low);
    const auto mix = [rest](int a, int b) { return int(std::lround(a + (b - a) * rest)); };
    const QRgb a = colours[low], b = colours[low + 1];
    return qRgb(mix(qRed(a), qRed(b)), mix(qGreen(a), qGreen(b)), mix(qBlue(a), qBlue(b)));
}

QRgb colourOf(const ColourScale &scale, double distance)
{
    return colourAt((distance / scale.end + 1) / 2);
}

} // namespace

QColor ColourScale::at(double distance) const
{
    return QColor(colourOf(*this, distance));
}

std::vector<quint8> ColourScale::colours(const std::vector<float> &distances) const
{
    std::vector<quint8> all;
    all.reserve(distances.size() * 4);
    for (const float distance : distances) {
        const QRgb c = distance == Deviation::unknown ? qRgb(128, 138, 150)
                                                      : colourOf(*this, double(distance));
        all.insert(all.end(), {quint8(qRed(c)), quint8(qGreen(c)), quint8(qBlue(c)), 255});
    }
    return all;
}

double ColourScale::roundUp(double value)
{
    if (!(value > 0))
        return 1;
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= value * (1 - 1e-6))
            return factor * power;
    return 10 * power;
}

double ColourScale::step(double value, bool up)
{
    return roundUp(value * (up ? 1.5 : 0.35));
}

} // namespace host
