// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CAMERA_MOTION_H
#define HOST_ITEM_CAMERA_MOTION_H

#include <QPointF>
#include <QSizeF>
#include <QVector3D>

#include "host/item/camera_geometry.h"

namespace host {

/// Where a camera stands and looks.
struct Pose {
    QVector3D rot;    ///< Degrees: elevation, azimuth, roll.
    QVector3D target; ///< World coordinates.
    float radius = 1;
};

/// Moves a camera in soft steps: what is asked for is worked off over some frames through the
/// camera's velocities, a part of the rest in each, whatever the time between frames.
///
/// The world holds one model within `worldRadius` of the origin; the limits of the radius are such
/// that the clip range which the camera derives from them serves it (see prepare()).
/// A plain value; one for each camera.
class CameraMotion {
public:
    /// The model's extent from the origin, in world units.
    static constexpr float worldRadius = 0.5f;
    static constexpr float minRadius = 0.001f; ///< Closest look, world units.
    static constexpr float maxRadius = 5.0f;   ///< Farthest look in perspective, world units.

    /// Sets the camera's limits, its field of view and its steps. Expects to be called once before
    /// anything else, and again never.
    static void prepare(GL::Camera &camera);

    /// Turns the model as if its near side were dragged by @p drag, degrees to the right and up in
    /// the picture.
    void orbit(const GL::Camera &camera, const QPointF &drag);

    /// Turns the picture about its middle, positive counter-clockwise.
    void roll(float degrees);

    /// Shifts the view so that the world moves by @p shift: at once.
    static void pan(GL::Camera &camera, const QVector3D &shift);

    /// Makes what is seen @p factor times as large in the end; @p pivot stays where it is on
    /// screen.
    void zoom(float factor, const QVector3D &pivot);

    /// Goes to @p pose along the shorter way of each angle, from where @p camera is; drops what was
    /// still to be done.
    void goTo(const GL::Camera &camera, const Pose &pose);

    /// The same at once: the camera stands there after its next update.
    void jumpTo(GL::Camera &camera, const Pose &pose);

    /// The same at once, but for the angles: those of @p pose are not looked at, and what is still
    /// to be turned is turned on.
    void reframe(GL::Camera &camera, const Pose &pose);

    /// The angles of @p camera once all is turned, degrees.
    QVector3D anglesAtEnd(const GL::Camera &camera) const;

    /// Changes between perspective and orthographic view; the apparent size at the target stays.
    void toggleProjection(GL::Camera &camera);

    /// Sets the camera's velocities for its next update, a step of @p seconds. Expects to run after
    /// each of its updates. Also turns the camera's `up` by the roll, about the line of sight.
    /// Returns whether the camera moves.
    bool step(GL::Camera &camera, double seconds);

    bool isMoving() const { return moving_; }

private:
    static void setLimits(GL::Camera &camera);

    QVector3D rot_;    // degrees still to turn
    QVector3D target_; // way still to go
    float zoom_ = 0;   // logarithm of the factor of the radius still to apply about pivot_
    float radius_ = 0; // the same, target left alone
    QVector3D pivot_;
    bool moving_ = false;
};

} // namespace host

#endif
