// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CAMERA_GEOMETRY_H
#define HOST_ITEM_CAMERA_GEOMETRY_H

#include <QPointF>
#include <QSizeF>
#include <QVector3D>

#include "GL/camera.h"

namespace host {

/// A half line in world coordinates.
struct Ray {
    QVector3D origin;
    QVector3D direction; ///< Of unit length.
};

/// Where a camera that orbits will stand after its next update, and how its picture maps to pixels.
///
/// Coordinates: the world's as in the camera; pixels count from the lower-left corner of the
/// drawing object, y upwards, with fractions. Computed from the angles, the radius and the target
/// asked for, so it holds at once when these are written. `rot.z` turns the picture about the
/// line of sight: positive turns it counter-clockwise.
class CameraGeometry {
public:
    /// Expects a @p size that is not empty.
    CameraGeometry(const GL::Camera &camera, const QSizeF &size);

    QVector3D eye() const { return eye_; }
    QVector3D target() const { return target_; }
    QVector3D right() const { return right_; }
    QVector3D up() const { return up_; }           ///< Of the picture, the roll included.
    QVector3D forward() const { return forward_; } ///< From eye to target.

    /// Half the height, in world units, of what is seen at @p depth in front of the eye.
    float halfHeight(float depth) const { return ortho_ ? scale_ : scale_ * depth; }

    /// What lies under @p pixel. An orthographic ray starts far behind the eye, since
    /// what is there is drawn too.
    Ray ray(const QPointF &pixel) const;

    /// The pixel that shows @p point; for a point behind a perspective eye it means nothing.
    QPointF pixel(const QVector3D &point) const;

    /// Distance of @p point from the eye along the line of sight.
    float depth(const QVector3D &point) const;

    /// Where @p pixel sees the plane through @p point that faces the eye.
    QVector3D onPlane(const QPointF &pixel, const QVector3D &point) const;

private:
    QPointF toPlane(const QPointF &pixel) const;

    QSizeF size_;
    bool ortho_;
    float scale_; // half height: of everything, or at depth 1
    QVector3D eye_, target_, right_, up_, forward_;
};

/// Half the height that the camera shows at its target, in world units: the apparent size of
/// things.
float shownHalfHeight(const GL::Camera &camera);

/// The radius at which the camera shows @p halfHeight at its target.
float radiusShowing(const GL::Camera &camera, float halfHeight);

inline QVector3D toQt(const Vector &v)
{
    return {v.x, v.y, v.z};
}

inline Vector fromQt(const QVector3D &v)
{
    return {v.x(), v.y(), v.z()};
}

} // namespace host

#endif
