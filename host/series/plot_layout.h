// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_LAYOUT_H
#define HOST_SERIES_PLOT_LAYOUT_H

#include <vector>

#include <QFont>
#include <QMarginsF>
#include <QRectF>
#include <QSize>

#include "host/series/table.h"

namespace host {

/// What a plot's layout depends on besides its table and size.
struct PlotOptions {
    bool titled = true; ///< Whether room is kept for the table's name over the plot.
    QMarginsF insets;   ///< Pixels at the edges over which something else lies; not negative.
    double scale = 1;   ///< What type, lines and margins are multiplied by; positive.
};

/// Where the components of a plot lie in its object's rectangle: pixels from the top-left corner, y
/// downwards. It depends on the table's names, the size and the options alone, so that neither
/// panning nor zooming moves the axes.
struct PlotLayout {
    PlotLayout(const Table &table, QSize size, const PlotOptions &options = {});

    /// The column whose legend entry holds @p local, or -1.
    int legendHit(const QPointF &local) const;

    double scale; ///< As in the options.
    QRectF free;  ///< The rectangle without the insets; at least one pixel wide and high.
    bool small;   ///< A tile in which the texts are smaller.
    bool axes;    ///< Whether there is room for anything but the lines.
    QRectF area;  ///< The lines, inside the axes.
    QRectF title; ///< Empty when there is none.
    std::vector<QRectF> legend; ///< One per column; null where there was no room.
    QRectF more;                ///< Text for the columns that the legend leaves out; null if none.
    int leftOut = 0;            ///< Their number.
    QFont font;
    QFont titleFont;

    static constexpr double swatch = 18;   ///< Width of an entry's line, times `scale`.
    static constexpr double swatchGap = 5; ///< Between that line and the name, times `scale`.

private:
    double placeLegend(const Table &table, double left, double right, double top, int rows);
};

} // namespace host

#endif
