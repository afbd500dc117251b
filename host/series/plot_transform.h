// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_TRANSFORM_H
#define HOST_SERIES_PLOT_TRANSFORM_H

#include <QPointF>
#include <QRectF>
#include <QSize>

#include "GL/camera.h"

namespace host {

/// Maps the data of a plot to the coordinates of a GL::Viewport and to pixels, and moves the view.
///
/// Three coordinate frames:
/// - data: as in the table, y upwards, in double. Rectangles have their highest y as top().
/// - viewport: what GL draws and `GL::Viewport` pans over, in float. Seconds since 1970 would be
///   rounded to minutes in float, so a viewport coordinate is (data - origin) * unit: the unit
///   makes the whole of the data 1000 units wide and high, and the origin, at first the middle of
///   the data, follows the view so that the numbers near it stay small and exact. y grows upwards
///   or, for an alignment that lets pixels count downwards, is negated so that data still grow
///   upwards.
/// - pixels: of the object's rectangle, from its top-left corner, y downwards; fractions count.
///
/// Any alignment will do, as long as it stays the same. One transform goes with one viewport: when
/// the origin moves, the viewport's `pos` moves with it.
class PlotTransform {
public:
    PlotTransform() = default; ///< Of data in the unit square.
    /// Of data that fill @p data. An extent of zero counts as one.
    explicit PlotTransform(const QRectF &data);

    // An empty size counts as one pixel, a scale of zero as the least positive one.
    QPointF toPixel(const GL::Viewport &viewport, QSize size, const QPointF &data) const;
    QPointF toData(const GL::Viewport &viewport, QSize size, const QPointF &pixel) const;
    /// Pixels per data unit.
    QSizeF scale(const GL::Viewport &viewport, QSize size) const;

    static QPointF pixelToViewport(const GL::Viewport &viewport, QSize size, const QPointF &pixel);
    static QPointF viewportToPixel(const GL::Viewport &viewport, QSize size, const QPointF &point);

    /// Sets `pos` and `scale` so that @p data fills the pixels @p area, as far as the limits of the
    /// scale allow; what they do not is centred. An extent of zero is widened first.
    void fit(GL::Viewport &viewport, QSize size, const QRectF &area, const QRectF &data);

    /// Moves what is shown by @p pixels, as a hand moves paper.
    void panBy(GL::Viewport &viewport, QSize size, const QPointF &pixels);

    /// Multiplies the scale, within its limits; what is shown at @p pixel stays there. Factors that
    /// are not positive and finite change nothing.
    void zoomAbout(GL::Viewport &viewport, QSize size, const QPointF &pixel, double factorX,
                   double factorY);

private:
    void recentre(GL::Viewport &viewport); // when `pos` has gone too far for float
    // By viewport units. Takes over what float lost in `pos`, lest many small moves make a drift.
    void moveOrigin(const GL::Viewport &viewport, double x, double y);

    QPointF origin_{0.5, 0.5};
    QPointF unit_{1000, 1000}; // viewport units per data unit
};

/// @p range with extents of zero widened so that its middle stays: to a tenth of the value, or
/// to 1.
QRectF widened(const QRectF &range);

} // namespace host

#endif
