// SPDX-License-Identifier: MIT
#include "host/item/camera_motion.h"

#include <algorithm>
#include <cmath>

#include <QtMath>

namespace host {

namespace {

constexpr double timeConstant = 0.07; // seconds: the rest shrinks to 37 % in this time

float farthest(const GL::Camera &camera)
{
    // The same largest half height in both projections.
    GL::Camera perspective = camera;
    perspective.ortho = 0;
    perspective.radius = CameraMotion::maxRadius;
    return radiusShowing(camera, shownHalfHeight(perspective));
}

float clampRadius(const GL::Camera &camera, float radius)
{
    return std::clamp(radius, CameraMotion::minRadius, farthest(camera));
}

/// Keeps @p target where the camera lets it be; beyond, the way back would have a dead stretch.
QVector3D clampTarget(const GL::Camera &camera, QVector3D target)
{
    const float aside = std::hypot(target.x(), target.z());
    if (aside > camera.bounds.x) {
        target.setX(target.x() * camera.bounds.x / aside);
        target.setZ(target.z() * camera.bounds.x / aside);
    }
    target.setY(std::clamp(target.y(), -camera.bounds.y, camera.bounds.y));
    return target;
}

/// The part of @p rest to do in a step that covers @p share of the way; all of it near the end.
QVector3D part(QVector3D &rest, float share, float least)
{
    const QVector3D now = rest.length() < least ? rest : rest * share;
    rest -= now;
    return now;
}

float part(float &rest, float share, float least)
{
    const float now = std::fabs(rest) < least ? rest : rest * share;
    rest -= now;
    return now;
}

float shortWay(float degrees)
{
    return std::remainder(degrees, 360.0f);
}

} // namespace

void CameraMotion::prepare(GL::Camera &camera)
{
    camera.mode = 2;
    camera.fov = 35;
    camera.dt = 1;             // velocities are per update: step() knows the time
    camera.d_target_max = 100; // easing is done here, so the target follows at once
    camera.bounds = Vector(2 * worldRadius, 2 * worldRadius, 2 * worldRadius);
    camera.radius = 3 * worldRadius;
    setLimits(camera);
}

/// The camera's clip range runs from 0.0001 + 0.0499 t to 40 + 9960 t with t the share of the
/// radius within its limits.
///
/// Perspective: with 5 as the largest radius the near plane lies at 0.0001 + 0.01 radius. Two
/// depths that a 24-bit buffer tells apart at distance z are z * z / (near * 2^24) apart, a pixel
/// of a picture 1,000 pixels high covers z * 0.0007: depth is the finer of the two up to z = 12,000
/// near, which is at least 1.2 and holds all of the model from every radius. The far plane is never
/// near.
///
/// Orthographic: depths are spread evenly from -far to far. A huge largest radius keeps far at 40,
/// so that a step is 80 / 2^24, a hundred thousandth of the model.
void CameraMotion::setLimits(GL::Camera &camera)
{
    camera.minRadius = minRadius;
    camera.maxRadius = camera.ortho ? 1e5f : maxRadius;
}

void CameraMotion::orbit(const GL::Camera &camera, const QPointF &drag)
{
    const double roll = qDegreesToRadians(double(camera.rot.z));
    const double c = std::cos(roll), s = std::sin(roll);
    rot_ += QVector3D(float(drag.x() * s - drag.y() * c), float(drag.x() * c + drag.y() * s), 0);
}

void CameraMotion::roll(float degrees)
{
    rot_.setZ(rot_.z() + degrees);
}

void CameraMotion::pan(GL::Camera &camera, const QVector3D &shift)
{
    camera.setTarget = fromQt(clampTarget(camera, toQt(camera.setTarget) - shift));
}

void CameraMotion::zoom(float factor, const QVector3D &pivot)
{
    zoom_ -= std::log(factor);
    pivot_ = pivot;
}

void CameraMotion::goTo(const GL::Camera &camera, const Pose &pose)
{
    zoom_ = 0;
    rot_ = QVector3D(pose.rot.x() - camera.rot.x, shortWay(pose.rot.y() - camera.rot.y),
                     shortWay(pose.rot.z() - camera.rot.z));
    target_ = clampTarget(camera, pose.target) - toQt(camera.setTarget);
    radius_ = std::log(clampRadius(camera, pose.radius) / std::max(camera.radius, minRadius));
}

void CameraMotion::jumpTo(GL::Camera &camera, const Pose &pose)
{
    *this = CameraMotion();
    camera.rot = fromQt(pose.rot);
    camera.setTarget = camera.target = fromQt(clampTarget(camera, pose.target));
    camera.radius = clampRadius(camera, pose.radius);
    camera.d_rot = camera.d_target = Vector();
    camera.d_radius = 0;
    const CameraGeometry geometry(camera, QSizeF(1, 1));
    camera.pos = fromQt(geometry.eye());
    camera.up = fromQt(geometry.up());
    moving_ = true;
}

void CameraMotion::reframe(GL::Camera &camera, const Pose &pose)
{
    const QVector3D rest = rot_;
    jumpTo(camera, {toQt(camera.rot), pose.target, pose.radius});
    rot_ = rest;
}

QVector3D CameraMotion::anglesAtEnd(const GL::Camera &camera) const
{
    const QVector3D end = toQt(camera.rot) + rot_;
    return {std::clamp(end.x(), -90.0f, 90.0f), end.y(), end.z()};
}

void CameraMotion::toggleProjection(GL::Camera &camera)
{
    const float size = shownHalfHeight(camera);
    camera.ortho = !camera.ortho;
    camera.radius = radiusShowing(camera, size);
    camera.d_radius = 0;
    setLimits(camera);
}

bool CameraMotion::step(GL::Camera &camera, double seconds)
{
    constexpr float leastAngle = 0.01f; // degrees
    constexpr float leastZoom = 0.0005f;
    const float share = float(1 - std::exp(-std::clamp(seconds, 0.001, 0.1) / timeConstant));

    // Beyond the poles nothing is left to do.
    rot_.setX(anglesAtEnd(camera).x() - camera.rot.x);
    const auto inLimits = [&](float rest) {
        return std::log(clampRadius(camera, camera.radius * std::exp(rest)) / camera.radius);
    };
    radius_ = inLimits(radius_);
    zoom_ = inLimits(zoom_);
    moving_ = !rot_.isNull() || !target_.isNull() || zoom_ != 0 || radius_ != 0;

    camera.d_rot = fromQt(part(rot_, share, leastAngle));
    const float zoomed = std::exp(part(zoom_, share, leastZoom));
    const float approached = std::exp(part(radius_, share, leastZoom));
    const QVector3D target = toQt(camera.setTarget);
    const QVector3D aim =
        target + part(target_, share, camera.radius * leastZoom) + (pivot_ - target) * (1 - zoomed);
    camera.d_target = fromQt((clampTarget(camera, aim) - target) / camera.dt);
    camera.d_radius = camera.radius * (zoomed * approached - 1) / camera.dt;
    camera.up = fromQt(CameraGeometry(camera, QSizeF(1, 1)).up());
    return moving_;
}

} // namespace host
