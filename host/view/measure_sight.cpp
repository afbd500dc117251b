// SPDX-License-Identifier: MIT
#include "host/view/measure_sight.h"

#include <algorithm>
#include <cmath>

#include <Eigen/Geometry>

#include "host/ui/metrics.h"

namespace host {

namespace {

/// The place of a triangle that is nearest to @p place, which is on it but for the rounding of
/// floats: what a flat face has exactly its points have, too.
Vec onTriangle(const Mesh &mesh, quint32 triangle, const Vec &place)
{
    const Vec a = cornerOf(mesh, triangle, 0), n = normalOf(mesh, triangle);
    const Vec u = cornerOf(mesh, triangle, 1) - a, v = cornerOf(mesh, triangle, 2) - a;
    const double square = n.squaredNorm();
    if (!(square > 0))
        return place;
    const double s = n.dot((place - a).cross(v)) / square;
    const double t = n.dot(u.cross(place - a)) / square;
    return a + std::clamp(s, 0.0, 1.0) * u + std::clamp(t, 0.0, 1.0) * v;
}

} // namespace

MeasureSight::MeasureSight(const ModelItem &item, const GLW *glw)
    : item_(item), geometry_(CameraSteering::geometryOf(glw)), parallel_(glw->camera.ortho != 0)
{
}

QVector3D MeasureSight::world(const Vec &place) const
{
    const Vec from = (place - toVec(item_.centre())) * double(item_.scale());
    return {float(from.x()), float(from.y()), float(from.z())};
}

Seen MeasureSight::seen(const Vec &place) const
{
    const QVector3D at = world(place);
    return {geometry_.pixel(at), parallel_ ? 1 : double(geometry_.depth(at))};
}

std::optional<SurfacePoint> MeasureSight::hit(const QPointF &pixel) const
{
    const Ray ray = geometry_.ray(pixel);
    const auto found = item_.hit(ray);
    if (!found)
        return {};
    const Vec origin = toVec(ray.origin) / double(item_.scale()) + toVec(item_.centre());
    return SurfacePoint{
        found->triangle,
        onTriangle(item_.mesh(), found->triangle, origin + toVec(ray.direction) * found->distance)};
}

/// Whether nothing stands before a place. What is on the outline may be missed by its own line of
/// sight, by a hair.
bool MeasureSight::isSeen(const Vec &place) const
{
    const auto found = hit(seen(place).pixel);
    if (!found)
        return true;
    const float reach = 2e-3f; // of the world's size: what rounding moves a line of sight by
    return geometry_.depth(world(found->at)) > geometry_.depth(world(place)) - reach;
}

std::optional<Snap> MeasureSight::snap(const QPointF &pixel, const MeshTopology *topology,
                                       SnapTo to) const
{
    const double reach = Metrics::px(10);
    const auto under = hit(pixel);
    std::vector<quint32> met;
    if (under)
        met.push_back(under->triangle);
    for (int i = 0; to != SnapTo::Faces && i < 8; ++i) {
        const double angle = i * 45 / degrees;
        const auto found = hit(pixel + reach * QPointF(std::cos(angle), std::sin(angle)));
        if (found && std::find(met.begin(), met.end(), found->triangle) == met.end())
            met.push_back(found->triangle);
    }
    return snapTo(
        {item_.mesh(), topology, to, reach}, met, under, pixel,
        [this](const Vec &place) { return seen(place); },
        [this](const Vec &place) { return isSeen(place); });
}

std::optional<QLineF> MeasureSight::line(const Vec &a, const Vec &b) const
{
    QVector3D from = world(a), to = world(b);
    if (!parallel_) {
        constexpr float nearest = 1e-4f;
        float depth = geometry_.depth(from), depthTo = geometry_.depth(to);
        if (depth < nearest && depthTo < nearest)
            return {};
        if (depth < nearest)
            from = to + (from - to) * ((depthTo - nearest) / (depthTo - depth));
        else if (depthTo < nearest)
            to = from + (to - from) * ((depth - nearest) / (depth - depthTo));
    }
    return QLineF(geometry_.pixel(from), geometry_.pixel(to));
}

} // namespace host
