// SPDX-License-Identifier: MIT
#include "host/item/framing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/item/camera_geometry.h"

namespace host {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

} // namespace

Framing frameAll(const GL::Camera &camera, const QSizeF &size, const QVector3D &middle,
                 const std::vector<QVector3D> &points, float margin)
{
    if (points.empty())
        return {middle, 0};
    const CameraGeometry geometry(camera, size);
    const float room = 1 - margin;
    const float slope = float(std::tan(camera.fov * 0.5 * radiansPerDegree));
    const float vertical = camera.ortho ? 0 : slope * room;
    const float horizontal = vertical * float(size.width() / size.height());
    // Each side of the picture is a plane through the eye that leans outwards with the depth. Of
    // all parallel ones that hold the points, find the innermost: its offset where depth is zero.
    constexpr float none = std::numeric_limits<float>::lowest();
    float rightmost = none, leftmost = none, top = none, bottom = none;
    for (const QVector3D &point : points) {
        const QVector3D v = point - middle;
        const float x = QVector3D::dotProduct(v, geometry.right());
        const float y = QVector3D::dotProduct(v, geometry.up());
        const float nearer = -QVector3D::dotProduct(v, geometry.forward());
        rightmost = std::max(rightmost, x + horizontal * nearer);
        leftmost = std::max(leftmost, -x + horizontal * nearer);
        top = std::max(top, y + vertical * nearer);
        bottom = std::max(bottom, -y + vertical * nearer);
    }
    const float halfWidth = (rightmost + leftmost) / 2, halfHeight = (top + bottom) / 2;
    const QVector3D target = middle + geometry.right() * ((rightmost - leftmost) / 2) +
                             geometry.up() * ((top - bottom) / 2);
    if (!camera.ortho)
        return {target, std::max(halfWidth / horizontal, halfHeight / vertical)};
    const float aspect = float(size.width() / size.height());
    return {target, radiusShowing(camera, std::max(halfWidth / aspect, halfHeight) / room)};
}

namespace {

/// Points that hold what @p points pass through when they turn about the vertical line through the
/// origin: circles, a little too wide since they are drawn as corners, at both ends of each of some
/// layers.
std::vector<QVector3D> swept(const std::vector<QVector3D> &points)
{
    constexpr int layers = 48, corners = 64;
    const auto [low, high] =
        std::minmax_element(points.begin(), points.end(),
                            [](const QVector3D &a, const QVector3D &b) { return a.y() < b.y(); });
    const float bottom = low->y(), height = high->y() - low->y();
    std::vector<float> widest(layers, -1);
    for (const QVector3D &p : points) {
        const int layer = height > 0 ? int((p.y() - bottom) / height * layers) : 0;
        float &most = widest[std::size_t(std::min(layer, layers - 1))];
        most = std::max(most, std::hypot(p.x(), p.z()));
    }
    std::vector<QVector3D> circles;
    for (int i = 0; i < layers; ++i) {
        const double r =
            double(widest[std::size_t(i)]) / std::cos(180.0 / corners * radiansPerDegree);
        for (int corner = 0; r >= 0 && corner < corners; ++corner) {
            const double angle = corner * 360.0 / corners * radiansPerDegree;
            for (const int end : {i, i + 1})
                circles.emplace_back(float(r * std::sin(angle)),
                                     bottom + height * float(end) / layers,
                                     float(r * std::cos(angle)));
        }
    }
    return circles;
}

} // namespace

Framing frameTurn(const GL::Camera &camera, const QSizeF &size,
                  const std::vector<QVector3D> &points, float margin)
{
    if (points.empty())
        return {};
    GL::Camera level = camera;
    level.rot.y = 0; // with corners on either side alike
    Framing framing = frameAll(level, size, {}, swept(points), margin);
    const QVector3D forward = CameraGeometry(level, size).forward();
    const float horizontal = forward.z() * forward.z();
    if (horizontal < 1e-6f) // from straight above or below there is no other place for it
        return {QVector3D(0, framing.target.y(), 0), framing.radius};
    // Along the line of sight to where that meets the axis; the picture stays the same.
    const float along = -framing.target.z() * forward.z() / horizontal;
    framing.target += forward * along;
    framing.target.setX(0);
    if (!camera.ortho)
        framing.radius += along;
    return framing;
}

} // namespace host
