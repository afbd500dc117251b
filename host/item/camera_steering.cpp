// SPDX-License-Identifier: MIT
#include "host/item/camera_steering.h"

#include <algorithm>
#include <cmath>

#include "host/item/framing.h"
#include "host/item/lamps.h"

namespace host {

namespace {

const QVector3D homeAngles(22, -32, 0); // from the right and above, where most models show most
constexpr float margin = 0.1f;          // of the picture, left free on either side
constexpr float zoomPerStep = 1.25f;

QVector3D anglesFrom(Steering::Side side)
{
    switch (side) {
    case Steering::Side::Front:
        return {0, 0, 0};
    case Steering::Side::Back:
        return {0, 180, 0};
    case Steering::Side::Left:
        return {0, 90, 0};
    case Steering::Side::Right:
        return {0, -90, 0};
    case Steering::Side::Top:
        return {90, 0, 0};
    case Steering::Side::Bottom:
        return {-90, 0, 0};
    }
    return {};
}

/// The object's size; never empty.
QSizeF sizeOf(const GLW *glw)
{
    return {std::max(1.0, glw->width()), std::max(1.0, glw->height())};
}

/// The middle of the box around points, of which there is one at least.
QVector3D middleOf(const std::vector<QVector3D> &points)
{
    QVector3D low = points[0], high = low;
    for (const QVector3D &p : points)
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], p[k]);
            high[k] = std::max(high[k], p[k]);
        }
    return (low + high) / 2;
}

} // namespace

CameraGeometry CameraSteering::geometryOf(const GLW *glw)
{
    return CameraGeometry(glw->camera, sizeOf(glw));
}

void CameraSteering::init(GLW *glw)
{
    CameraMotion::prepare(glw->camera);
    motion_.jumpTo(glw->camera, poseFor(glw, homeAngles));
    fittedSize_ = sizeOf(glw);
    showsWhole_ = true;
    hangLamps(glw);
    placeLamps(glw, geometryOf(glw));
}

void CameraSteering::restore(GLW *glw, const GL::Camera &camera, const QSizeF &wholeIn)
{
    if (bool(glw->camera.ortho) != bool(camera.ortho))
        motion_.toggleProjection(glw->camera);
    motion_.jumpTo(glw->camera, {toQt(camera.rot), toQt(camera.setTarget), camera.radius});
    showsWhole_ = !wholeIn.isEmpty();
    fittedSize_ = wholeIn;
}

/// The pose that shows the whole from the given angles.
Pose CameraSteering::poseFor(const GLW *glw, const QVector3D &rot) const
{
    GL::Camera turned = glw->camera;
    turned.rot = fromQt(rot);
    const Framing framing = frameAll(turned, sizeOf(glw), {}, shape_.outline(), margin, insets_);
    return {rot, framing.target, framing.radius};
}

void CameraSteering::setInsets(const QMarginsF &insets)
{
    if (insets == insets_)
        return;
    insets_ = insets;
    fittedSize_ = {}; // what showed the whole is to do so again
}

bool CameraSteering::advance(GLW *glw, double seconds)
{
    // A window that takes another shape goes on showing the whole, if it did.
    bool changed = false;
    if (showsWhole_ && fittedSize_ != sizeOf(glw)) {
        fittedSize_ = sizeOf(glw);
        motion_.reframe(glw->camera, poseFor(glw, motion_.anglesAtEnd(glw->camera)));
        changed = true;
    }
    const bool moved = motion_.isMoving(); // the update just now did it
    const bool moves = motion_.step(glw->camera, seconds);
    placeLamps(glw, geometryOf(glw));
    return changed || moved || moves;
}

void CameraSteering::fit(GLW *glw)
{
    const std::vector<QVector3D> chosen = shape_.chosen();
    if (!chosen.empty()) {
        const QVector3D rot = toQt(glw->camera.rot), middle = middleOf(chosen);
        const Framing f = frameAll(glw->camera, sizeOf(glw), middle, chosen, margin, insets_);
        motion_.goTo(glw->camera, {rot, f.target, f.radius});
        showsWhole_ = false;
        return;
    }
    motion_.goTo(glw->camera, poseFor(glw, toQt(glw->camera.rot)));
    fittedSize_ = sizeOf(glw);
    showsWhole_ = true;
}

void CameraSteering::fitTurn(GLW *glw)
{
    const Framing framing = frameTurn(glw->camera, sizeOf(glw), shape_.outline(), margin, insets_);
    motion_.jumpTo(glw->camera, {toQt(glw->camera.rot), framing.target, framing.radius});
    placeLamps(glw, geometryOf(glw));
}

void CameraSteering::home(GLW *glw)
{
    motion_.goTo(glw->camera, poseFor(glw, homeAngles));
    fittedSize_ = sizeOf(glw);
    showsWhole_ = true;
}

void CameraSteering::lookAlong(GLW *glw, const GL::Camera &other)
{
    if (bool(glw->camera.ortho) != bool(other.ortho))
        motion_.toggleProjection(glw->camera);
    motion_.jumpTo(glw->camera, poseFor(glw, toQt(other.rot)));
    fittedSize_ = sizeOf(glw);
    showsWhole_ = true;
    placeLamps(glw, geometryOf(glw));
}

void CameraSteering::lookFrom(GLW *glw, Side side)
{
    const QVector3D angles = anglesFrom(side);
    const GL::Camera &camera = glw->camera;
    // Who looks at a detail wants to see that from another side.
    motion_.goTo(camera, showsWhole_ ? poseFor(glw, angles)
                                     : Pose{angles, toQt(camera.setTarget), camera.radius});
}

void CameraSteering::toggleProjection(GLW *glw)
{
    motion_.toggleProjection(glw->camera);
}

/// The surface under the pixel, else what lies there at the depth of the target.
QVector3D CameraSteering::pointAt(const GLW *glw, const QPointF &at) const
{
    const CameraGeometry geometry = geometryOf(glw);
    if (const auto point = shape_.surfaceAt(geometry.ray(at)))
        return *point;
    return geometry.onPlane(at, geometry.target());
}

void CameraSteering::beginDrag(GLW *glw, Drag kind, const QPointF &at)
{
    if (kind == Drag::Pan)
        grabbed_ = pointAt(glw, at);
}

void CameraSteering::drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to)
{
    const CameraGeometry geometry = geometryOf(glw);
    const QSizeF size = sizeOf(glw);
    switch (kind) {
    case Drag::Orbit: {
        const double degreesPerPixel = 240 / std::max(size.height(), 240.0);
        motion_.orbit(glw->camera, (to - from) * degreesPerPixel);
        return;
    }
    case Drag::Pan:
        CameraMotion::pan(glw->camera, geometry.onPlane(to, grabbed_) - grabbed_);
        showsWhole_ = false;
        return;
    case Drag::Roll: {
        const QPointF middle(size.width() / 2, size.height() / 2);
        const QPointF a = from - middle, b = to - middle;
        const double turn = std::atan2(b.y(), b.x()) - std::atan2(a.y(), a.x());
        motion_.roll(float(std::remainder(turn * 57.29577951308232, 360.0)));
        return;
    }
    }
}

void CameraSteering::zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers)
{
    motion_.zoom(std::pow(zoomPerStep, steps), pointAt(glw, at));
    showsWhole_ = false;
}

void CameraSteering::focus(GLW *glw, const QPointF &at)
{
    if (const auto point = shape_.surfaceAt(geometryOf(glw).ray(at))) {
        motion_.goTo(glw->camera, {toQt(glw->camera.rot), *point, glw->camera.radius});
        showsWhole_ = false;
    }
}

} // namespace host
