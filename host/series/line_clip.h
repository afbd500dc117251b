// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_LINE_CLIP_H
#define HOST_SERIES_LINE_CLIP_H

#include <QPointF>
#include <QRectF>

namespace host {

/// Cuts the segment from @p a to @p b to @p area, edges included (Liang and Barsky's method, in
/// double). Returns false, and changes nothing, when no part of it is inside.
/// Deep in a zoom the neighbours of what is visible lie millions of pixels away, where OpenGL's
/// own clipping in float would bend the visible part.
bool clipSegment(const QRectF &area, QPointF &a, QPointF &b);

} // namespace host

#endif
