// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_PICTURE_H
#define HOST_SERIES_PLOT_PICTURE_H

#include <optional>
#include <vector>

#include "host/series/column_list.h"
#include "host/series/palette.h"
#include "host/series/plot_layout.h"
#include "host/series/plot_transform.h"
#include "host/series/selection.h"
#include "host/series/table.h"
#include "host/series/ticks.h"

class QPainter;

namespace host {

/// All that the two passes of a plot need to know of one object at one moment; it lives no longer
/// than the plot and the object. Pixels are local.
struct PlotPicture {
    const Table &table;
    const std::vector<bool> &enabled;
    const Selection &selection;
    const PlotTransform &transform;
    const GL::Viewport &viewport;
    QSize size;
    PlotLayout layout;
    PlotTheme theme;
    bool filled;  ///< Whether the theme's background is drawn.
    QRectF range; ///< The data shown: low x to high x, low y to high y, normalized.
    std::optional<Sample> crosshair;
    std::optional<ColumnList> list;
    std::vector<Tick> xTicks = {};
    std::vector<Tick> yTicks = {};

    QPointF toLocal(const QPointF &data) const { return transform.toPixel(viewport, size, data); }
    /// The selected rectangle in pixels; expects one.
    QRectF selectedPixels() const
    {
        return QRectF(toLocal(selection.range->topLeft()), toLocal(selection.range->bottomRight()))
            .normalized();
    }
};

/// Draws what SeriesPlot::draw2D() promises.
void drawPlot(const PlotPicture &picture);

/// Paints what SeriesPlot::paintForeground() promises, with the object's corner at the origin.
void paintPlot(const PlotPicture &picture, QPainter &painter);

} // namespace host

#endif
