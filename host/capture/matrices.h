// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_MATRICES_H
#define HOST_CAPTURE_MATRICES_H

#include <array>

#include <QRect>
#include <QSize>

#include "GL/camera.h"

namespace host {

/// A 4 x 4 matrix by columns, as OpenGL takes it. In double precision: a block of a large picture
/// is a projection with large factors, which single precision would shift against its neighbour.
using Matrix = std::array<double, 16>;

/// The projection that @p camera loads for a region of @p size, in logical pixels.
/// Expects a @p size that is not empty.
Matrix projection(const GL::Camera &camera, const QSize &size);

/// The projection that @p viewport loads for a region of @p size, in logical pixels, with depths
/// from -100 to 100. Expects sides of at least 2.
Matrix projection(const GL::Viewport &viewport, const QSize &size);

/// The projection that shows only @p block of what @p projection shows in @p whole. Both in picture
/// pixels, y downwards. Depth is left as it is, so it has the same precision in every block.
/// Expects rectangles that are not empty.
Matrix blockOf(const Matrix &projection, const QRect &whole, const QRect &block);

/// Turns @p camera by @p degrees about the vertical line through its target, the way a growing
/// azimuth turns it: eye, up vector, azimuth and fixed matrix. Needs no update to take effect.
void turn(GL::Camera &camera, double degrees);

} // namespace host

#endif
