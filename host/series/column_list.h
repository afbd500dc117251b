// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_COLUMN_LIST_H
#define HOST_SERIES_COLUMN_LIST_H

#include <vector>

#include <QRectF>

#include "host/series/palette.h"
#include "host/series/plot_layout.h"
#include "host/series/table.h"

class QPainter;

namespace host {

/// Where the list of all columns lies over a plot: rows of entries, as many side by side as the
/// plot's area has room for, and scrolled when it has no room for all rows. Pixels as in the
/// layout.
struct ColumnList {
    /// @p row is the first row to be seen; it is kept within the rows there are.
    ColumnList(const Table &table, const PlotLayout &layout, double row);

    /// The column whose entry holds @p local, or -1.
    int hit(const QPointF &local) const;

    /// Draws it, with a switch for each column.
    void paint(QPainter &painter, const Table &table, const std::vector<bool> &enabled,
               PlotTheme theme) const;

    double scale; ///< The layout's.
    QFont font;
    QRectF box;                  ///< All of it.
    std::vector<QRectF> entries; ///< One per column; null where it is scrolled away.
    double firstRow = 0;         ///< Seen; the row that was asked for, kept within `lastFirst`.
    double lastFirst = 0;        ///< The first row when the list is scrolled to its end.
    double seen = 1;             ///< The share of the rows that is seen.

private:
    void paintBar(QPainter &painter, const PlotColors &colors) const;
};

} // namespace host

#endif
