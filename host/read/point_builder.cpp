// SPDX-License-Identifier: MIT
#include "host/read/point_builder.h"

#include <algorithm>
#include <cmath>

#include "host/read/left_out.h"
#include "host/read/point_order.h"

namespace host {
namespace {

/// From here on a float no longer tells hundredths.
constexpr double farAway = 1e5;

quint8 byteOf(double value)
{
    return value > 0 ? quint8(std::lround(std::min(value, 255.0))) : quint8(0); // 0 for NaN
}

/// Coordinates far from zero are counted from near the first point.
std::array<double, 3> originFor(const PointSample &point)
{
    std::array<double, 3> origin{};
    for (std::size_t k = 0; k < 3; ++k) {
        if (std::abs(point.at[k]) >= farAway && std::abs(point.at[k]) < 1e12)
            origin[k] = std::round(point.at[k] / 1000) * 1000;
    }
    return origin;
}

} // namespace

void PointBuilder::reserve(std::size_t points)
{
    mesh_.positions.reserve(points * 3);
    if (shade_ == Shade::Intensity)
        intensities_.reserve(points);
    if (shade_ != Shade::None)
        mesh_.colours.reserve(points * 4);
}

bool PointBuilder::add(const PointSample &point)
{
    const auto isUsable = [](double v) { return std::abs(v) <= double(Mesh::maxCoordinate); };
    const std::array<double, 3> origin = mesh_.positions.empty() ? originFor(point) : mesh_.origin;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!isUsable(point.at[k]) || !isUsable(point.at[k] - origin[k])) { // NaN is not
            ++leftOut_;
            return true;
        }
    }
    if (count() >= limits_.vertices)
        return false;
    mesh_.origin = origin;
    for (std::size_t k = 0; k < 3; ++k)
        mesh_.positions.push_back(float(point.at[k] - mesh_.origin[k]));
    if (shade_ == Shade::Colour)
        mesh_.colours.insert(mesh_.colours.end(), {byteOf(point.colour[0]), byteOf(point.colour[1]),
                                                   byteOf(point.colour[2]), quint8(255)});
    else if (shade_ == Shade::Intensity)
        intensities_.push_back(float(point.intensity));
    return true;
}

/// The darkest grey is not black, and the lightest not white: both would be lost on a background.
void PointBuilder::shadeByIntensity()
{
    float low = 0, high = 0;
    bool any = false;
    for (const float v : intensities_) {
        if (!std::isfinite(v))
            continue;
        low = any ? std::min(low, v) : v;
        high = any ? std::max(high, v) : v;
        any = true;
    }
    if (!(high > low))
        return;
    for (const float v : intensities_) {
        const quint8 grey = byteOf(30 + 195 * ((double(v) - low) / (double(high) - low)));
        mesh_.colours.insert(mesh_.colours.end(), {grey, grey, grey, quint8(255)});
    }
}

Imported PointBuilder::finish(const QString &name, FileAxes::Axis up)
{
    if (count() == 0)
        return {{}, leftOut_ > 0 ? noUsablePoints() : QStringLiteral("there are no points in it")};
    shadeByIntensity();
    const PointOrder order(count());
    order.apply(mesh_.positions, 3);
    if (!mesh_.colours.empty())
        order.apply(mesh_.colours, 4);
    MeshPart part;
    part.name = name.isEmpty() ? QStringLiteral("points") : name.left(MeshNode::longestName);
    part.kind = MeshPart::Kind::Points;
    part.vertexCount = quint32(count());
    mesh_.parts.push_back(part);
    mesh_.findBounds();
    mesh_.standOn(up);
    if (leftOut_ > 0)
        mesh_.notes << pointsLeftOut(leftOut_);
    return {std::move(mesh_), {}};
}

} // namespace host
