// SPDX-License-Identifier: MIT
#include "host/item/view_frame.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

// How far behind the eye an orthographic ray starts: beyond any model, near enough for floats.
constexpr float behindEye = 16;

} // namespace

ViewFrame::ViewFrame(const GL::Camera &camera, const QSizeF &size)
    : size_(size), ortho_(camera.ortho != 0), target_(toQt(camera.setTarget))
{
    const double elevation = std::clamp(camera.rot.x, -90.0f, 90.0f) * radiansPerDegree;
    const double azimuth = camera.rot.y * radiansPerDegree;
    const double roll = camera.rot.z * radiansPerDegree;
    const double ce = std::cos(elevation), se = std::sin(elevation);
    const double ca = std::cos(azimuth), sa = std::sin(azimuth);
    forward_ = QVector3D(float(ce * sa), float(-se), float(-ce * ca));
    const QVector3D level(float(ca), 0, float(sa));
    const QVector3D upright(float(se * sa), float(ce), float(-se * ca));
    const float cr = float(std::cos(roll)), sr = float(std::sin(roll));
    right_ = level * cr - upright * sr;
    up_ = upright * cr + level * sr;
    eye_ = target_ - forward_ * camera.radius;
    scale_ =
        ortho_ ? shownHalfHeight(camera) : float(std::tan(camera.fov * 0.5 * radiansPerDegree));
}

/// The pixel in units of half the picture's height, from its middle.
QPointF ViewFrame::toPlane(const QPointF &pixel) const
{
    return (pixel * 2 - QPointF(size_.width(), size_.height())) / size_.height();
}

Ray ViewFrame::ray(const QPointF &pixel) const
{
    const QPointF p = toPlane(pixel);
    const QVector3D aside = (right_ * float(p.x()) + up_ * float(p.y())) * scale_;
    if (ortho_)
        return {eye_ + aside - forward_ * behindEye, forward_};
    return {eye_, (forward_ + aside).normalized()};
}

float ViewFrame::depth(const QVector3D &point) const
{
    return QVector3D::dotProduct(point - eye_, forward_);
}

QPointF ViewFrame::pixel(const QVector3D &point) const
{
    const QVector3D v = point - eye_;
    const double half = halfHeight(depth(point));
    const QPointF p(QVector3D::dotProduct(v, right_) / half, QVector3D::dotProduct(v, up_) / half);
    return (p * size_.height() + QPointF(size_.width(), size_.height())) / 2;
}

QVector3D ViewFrame::onPlane(const QPointF &pixel, const QVector3D &point) const
{
    const Ray r = ray(pixel);
    const float along = QVector3D::dotProduct(point - r.origin, forward_);
    return r.origin + r.direction * (along / QVector3D::dotProduct(r.direction, forward_));
}

float shownHalfHeight(const GL::Camera &camera)
{
    const double angle = camera.fov * radiansPerDegree;
    // The orthographic view spreads the whole angle over half the height.
    return float(camera.ortho ? camera.radius / std::tan(angle)
                              : camera.radius * std::tan(angle / 2));
}

float radiusShowing(const GL::Camera &camera, float halfHeight)
{
    const double angle = camera.fov * radiansPerDegree;
    return float(camera.ortho ? halfHeight * std::tan(angle) : halfHeight / std::tan(angle / 2));
}

Framing frameAll(const GL::Camera &camera, const QSizeF &size, const QVector3D &middle,
                 const std::vector<QVector3D> &points, float margin)
{
    if (points.empty())
        return {middle, 0};
    const ViewFrame frame(camera, size);
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
        const float x = QVector3D::dotProduct(v, frame.right());
        const float y = QVector3D::dotProduct(v, frame.up());
        const float nearer = -QVector3D::dotProduct(v, frame.forward());
        rightmost = std::max(rightmost, x + horizontal * nearer);
        leftmost = std::max(leftmost, -x + horizontal * nearer);
        top = std::max(top, y + vertical * nearer);
        bottom = std::max(bottom, -y + vertical * nearer);
    }
    const float halfWidth = (rightmost + leftmost) / 2, halfHeight = (top + bottom) / 2;
    const QVector3D target =
        middle + frame.right() * ((rightmost - leftmost) / 2) + frame.up() * ((top - bottom) / 2);
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
    const QVector3D forward = ViewFrame(level, size).forward();
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
