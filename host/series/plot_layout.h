// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_LAYOUT_H
#define HOST_SERIES_PLOT_LAYOUT_H

#include <vector>

#include <QFont>
#include <QRectF>
#include <QSize>

#include "host/series/table.h"

namespace host {

/// Where the parts of a plot lie in its object's rectangle: pixels from the top-left corner, y
/// downwards. It depends on the table's names and the size alone, so that neither panning nor
/// zooming moves the axes.
struct PlotLayout {
    /// Without @p titled no room is kept for the title.
    PlotLayout(const Table &table, QSize size, bool titled = true);

    bool small;  ///< A tile in which the texts are smaller.
    bool axes;   ///< Whether there is room for anything but the lines.
    QRectF area; ///< The lines, inside the axes.
    QRectF title;
    std::vector<QRectF> legend; ///< One per column; null where there was no room.
    QRectF more;                ///< Text for the columns that the legend leaves out; null if none.
    int leftOut = 0;            ///< Their number.
    QFont font;
    QFont titleFont;

    static constexpr double swatch = 18; ///< Pixels of a legend entry's line.

private:
    double placeLegend(const Table &table, double left, double right, double top, int rows);
};

} // namespace host

#endif
