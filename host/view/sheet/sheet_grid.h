// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_GRID_H
#define HOST_VIEW_SHEET_SHEET_GRID_H

#include <QRectF>
#include <QSize>

namespace host {

/// Where the cells of a sheet stand that is larger than its window: as many side by side as have
/// room at their least width, row under row, of which the window shows a stretch.
///
/// Pixels, y downwards. An `offset` is how far down in the sheet the window's upper edge is. Cells
/// have whole pixels, like those that the module places.
class SheetGrid {
public:
    struct Measures {
        QSize window;
        int count = 0;      ///< Of cells.
        double least = 0;   ///< Width that a cell has at least, where the window is as wide.
        double spacing = 1; ///< Between cells and around them.
        double header = 0;  ///< Height of a cell's name, where cells are large enough for one.
        double bar = 0;     ///< Kept free at the right edge, if not all fit.
        double foot = 0;    ///< Kept free below the last row, if not all fit.
    };

    SheetGrid() = default;
    explicit SheetGrid(const Measures &measures);

    const Measures &measures() const { return measures_; }
    bool fits() const { return fits_; } ///< Whether all have room at the least width.
    int columns() const { return columns_; }
    QSizeF cellSize() const { return cell_; }
    double header() const { return header_; }    ///< 0 where cells are too small for one.
    double pitch() const;                        ///< From row to row.
    double height() const;                       ///< Of all rows.
    double largestOffset() const;                ///< 0 if the rows are not higher than the window.
    QRectF cell(int index, double offset) const; ///< In the window.
    double rowTop(int index) const;              ///< In the sheet: of its row, spacing included.
    double revealing(int index, double offset) const; ///< The nearest that shows the whole cell.

    /// Cells from `first` to before `end`.
    struct Range {
        int first = 0;
        int end = 0;
    };
    /// Those that show in the window, or would if it were larger by @p around above and below.
    Range inView(double offset, double around = 0) const;

private:
    int rows() const;

    Measures measures_;
    bool fits_ = true;
    int columns_ = 1;
    QSizeF cell_;
    double header_ = 0;
};

/// The rectangle @p r of a window of size @p window, as a GLW stores it: there a negative origin
/// counts from the far edge. Expects @p r to be lower than the window.
QRectF storedRect(const QRectF &r, const QSizeF &window);

} // namespace host

#endif
