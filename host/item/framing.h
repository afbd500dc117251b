// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_FRAMING_H
#define HOST_ITEM_FRAMING_H

#include <vector>

#include <QMarginsF>
#include <QSizeF>
#include <QVector3D>

#include "GL/camera.h"

namespace host {

/// Where a camera looks to show something whole.
struct Framing {
    QVector3D target; ///< At the depth of the middle that was asked for.
    float radius = 0;
};

/// The closest view, with the angles and the projection of @p camera, that shows all of @p points
/// in a picture of @p size and leaves @p margin free of them, a share of the picture's half height
/// and width: on one of its axes they reach both edges. The target is as deep as @p middle. Without
/// points it is @p middle, with radius 0. @p insets, in the unit of @p size, are taken off the
/// picture first; they leave some of it both ways.
Framing frameAll(const GL::Camera &camera, const QSizeF &size, const QVector3D &middle,
                 const std::vector<QVector3D> &points, float margin, const QMarginsF &insets = {});

/// The same for a camera that turns about the vertical line through the origin: a view that shows
/// all of @p points at every azimuth. The target is on that line. Expects a camera without roll. Of
/// @p insets only those above and below count.
Framing frameTurn(const GL::Camera &camera, const QSizeF &size,
                  const std::vector<QVector3D> &points, float margin, const QMarginsF &insets = {});

} // namespace host

#endif
