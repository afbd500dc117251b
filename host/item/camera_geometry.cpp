// SPDX-License-Identifier: MIT
#include "host/item/camera_geometry.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

// How far behind the eye an orthographic ray starts: beyond any model, near enough for floats.
constexpr float behindEye = 16;

} // namespace

CameraGeometry::CameraGeometry(const GL::Camera &camera, const QSizeF &size)
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
QPointF CameraGeometry::toPlane(const QPointF &pixel) const
{
    return (pixel * 2 - QPointF(size_.width(), size_.height())) / size_.height();
}

Ray CameraGeometry::ray(const QPointF &pixel) const
{
    const QPointF p = toPlane(pixel);
    const QVector3D aside = (right_ * float(p.x()) + up_ * float(p.y())) * scale_;
    if (ortho_)
        return {eye_ + aside - forward_ * behindEye, forward_};
    return {eye_, (forward_ + aside).normalized()};
}

float CameraGeometry::depth(const QVector3D &point) const
{
    return QVector3D::dotProduct(point - eye_, forward_);
}

QPointF CameraGeometry::pixel(const QVector3D &point) const
{
    const QVector3D v = point - eye_;
    const double half = halfHeight(depth(point));
    const QPointF p(QVector3D::dotProduct(v, right_) / half, QVector3D::dotProduct(v, up_) / half);
    return (p * size_.height() + QPointF(size_.width(), size_.height())) / 2;
}

QVector3D CameraGeometry::onPlane(const QPointF &pixel, const QVector3D &point) const
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

} // namespace host
