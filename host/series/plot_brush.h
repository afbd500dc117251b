// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_BRUSH_H
#define HOST_SERIES_PLOT_BRUSH_H

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QtNumeric>

#include "GL/camera.h"
#include "host/series/palette.h"

namespace host {

/// Issues OpenGL vertices for pixels of one object (from its top-left corner, y downwards) in the
/// coordinates of its viewport, whose matrices are expected to be current.
class PlotVertices {
public:
    PlotVertices(const GL::Viewport &viewport, QSize size) : viewport_(viewport), size_(size) {}

    void add(const QPointF &pixel) const;
    void drawRectangle(const QRectF &pixels) const;
    void clipTo(const QRectF &pixels) const; ///< By GL_CLIP_PLANE0 to 3, which it enables.

private:
    const GL::Viewport &viewport_;
    QSize size_;
};

/// Draws a line of connected segments with soft edges and, if its pen says so, dashes.
/// It draws quads: OpenGL's own smooth lines fade where many short segments follow each other, as
/// they do in dense series. Widths are pixels.
class PlotBrush {
public:
    /// @p soft is the width of the edge's fading, one pixel of the target; dashes are @p scale
    /// times as long as usual. Expects blending to be on and smoothing of polygons off.
    PlotBrush(const PlotVertices &vertices, const SeriesStyle &style, double width, double soft,
              double scale);

    /// Goes from @p a to @p b. A segment that begins where the last one ended is joined to it.
    void segment(const QPointF &a, const QPointF &b);
    void dot(const QPointF &centre, double radius) const;

private:
    void drawDashed(const QPointF &a, const QPointF &b, const QPointF &normal);
    void drawPiece(const QPointF &a, const QPointF &b, const QPointF &normal) const;
    void drawJoin(const QPointF &at, const QPointF &from, const QPointF &to) const;
    void setAlpha(double alpha) const;

    const PlotVertices &vertices_;
    QColor color_;
    double on_;  // length of a dash; 0 without dashes
    double off_; // and of the gap after it
    double core_;
    double edge_; // half widths of what is opaque, and of all
    double run_ = 0;
    QPointF end_{qQNaN(), qQNaN()}; // of the last segment
    QPointF normal_;                // likewise
};

} // namespace host

#endif
