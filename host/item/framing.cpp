// SPDX-License-Identifier: MIT
#include "host/item/framing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/item/camera_geometry.h"

namespace host {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

/// How far what is shown may reach from the picture's middle, in halves of the picture.
struct Room {
    float low;
    float high;
};

Room roomBetween(double lowInset, double highInset, double extent, float margin)
{
    const float low = float(1 - 2 * lowInset / extent), high = float(1 - 2 * highInset / extent);
    const float middle = (high - low) / 2, half = (high + low) / 2 * (1 - margin);
    return {half - middle, half + middle};
}

} // namespace

Framing frameAll(const GL::Camera &camera, const QSizeF &size, const QVector3D &middle,
                 const std::vector<QVector3D> &points, float margin, const QMarginsF &insets)
{
    if (points.empty())
        return {middle, 0};
    const CameraGeometry geometry(camera, size);
    const Room across = roomBetween(insets.left(), insets.right(), size.width(), margin);
    const Room along = roomBetween(insets.bottom(), insets.top(), size.height(), margin);
    const float aspect = float(size.width() / size.height());
    const float slope = camera.ortho ? 0 : float(std::tan(camera.fov * 0.5 * radiansPerDegree));
    // Each side of the picture is a plane through the eye that leans outwards with the depth. Of
    // all parallel ones that hold the points, find the innermost: its offset where depth is zero.
    const float right = slope * aspect * across.high, left = slope * aspect * across.low;
    const float above = slope * along.high, below = slope * along.low;
    constexpr float none = std::numeric_limits<float>::lowest();
    float rightmost = none, leftmost = none, top = none, bottom = none;
    for (const QVector3D &point : points) {
        const QVector3D v = point - middle;
        const float x = QVector3D::dotProduct(v, geometry.right());
        const float y = QVector3D::dotProduct(v, geometry.up());
        const float nearer = -QVector3D::dotProduct(v, geometry.forward());
        rightmost = std::max(rightmost, x + right * nearer);
        leftmost = std::max(leftmost, -x + left * nearer);
        top = std::max(top, y + above * nearer);
        bottom = std::max(bottom, -y + below * nearer);
    }
    const float width = rightmost + leftmost, height = top + bottom;
    // Half the height of the picture where the target is.
    const float half = camera.ortho
                           ? std::max(width / (across.low + across.high) / aspect,
                                      height / (along.low + along.high))
                           : slope * std::max(width / (right + left), height / (above + below));
    const float x = (rightmost - leftmost + half * aspect * (across.low - across.high)) / 2;
    const float y = (top - bottom + half * (along.low - along.high)) / 2;
    const QVector3D target = middle + geometry.right() * x + geometry.up() * y;
    return {target, camera.ortho ? radiusShowing(camera, half) : half / slope};
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
                  const std::vector<QVector3D> &points, float margin, const QMarginsF &insets)
{
    if (points.empty())
        return {};
    GL::Camera level = camera;
    level.rot.y = 0; // with corners on either side alike
    Framing framing =
        frameAll(level, size, {}, swept(points), margin, {0, insets.top(), 0, insets.bottom()});
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
