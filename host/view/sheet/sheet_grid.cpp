// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_grid.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double heightOfWidth = 0.75; // of a drawing

} // namespace

SheetGrid::SheetGrid(const Measures &measures) : measures_(measures)
{
    const Measures &m = measures_;
    const auto headerOver = [&](double width) { return width >= 3 * m.header ? m.header : 0; };
    const auto columnsIn = [&](double width) {
        return std::max(1, int((width - m.spacing) / (m.least + m.spacing)));
    };
    const auto place = [&](double width, double cellWidth) {
        columns_ = columnsIn(width);
        header_ = headerOver(cellWidth);
        cell_ = QSizeF(cellWidth, std::floor(cellWidth * heightOfWidth) + header_);
    };
    place(m.window.width(), m.least);
    fits_ = m.least + 2 * m.spacing <= m.window.width() && height() <= m.window.height();
    if (fits_)
        return;
    const double width = m.window.width() - m.bar;
    const int beside = columnsIn(width);
    place(width, std::max(1.0, std::floor((width - (beside + 1) * m.spacing) / beside)));
    // Higher than the window, none would ever be seen whole.
    cell_.setHeight(std::max(1.0, std::min(cell_.height(), m.window.height() - 2 * m.spacing)));
    header_ = cell_.height() >= 3 * header_ ? header_ : 0;
}

int SheetGrid::rows() const
{
    return (measures_.count + columns_ - 1) / columns_;
}

double SheetGrid::pitch() const
{
    return cell_.height() + measures_.spacing;
}

double SheetGrid::height() const
{
    return rows() * pitch() + measures_.spacing;
}

double SheetGrid::largestOffset() const
{
    return fits_ ? 0 : std::max(0.0, height() + measures_.foot - measures_.window.height());
}

double SheetGrid::rowTop(int index) const
{
    return index / columns_ * pitch();
}

QRectF SheetGrid::cell(int index, double offset) const
{
    const int column = index % columns_;
    return QRectF(QPointF(measures_.spacing + column * (cell_.width() + measures_.spacing),
                          measures_.spacing + rowTop(index) - offset),
                  cell_);
}

double SheetGrid::revealing(int index, double offset) const
{
    const double top = rowTop(index);
    const double lowest = top + pitch() + measures_.spacing - measures_.window.height();
    return std::min(std::max(offset, lowest), top);
}

SheetGrid::Range SheetGrid::inView(double offset, double around) const
{
    // The space above a row is its own, and none is below the last.
    const double first = std::floor((offset - around) / pitch());
    const double bottom = offset + around + measures_.window.height();
    const double end = std::ceil((bottom - measures_.spacing) / pitch());
    const auto clamped = [this](double row) {
        return int(std::clamp(row * columns_, 0.0, double(measures_.count)));
    };
    return {clamped(first), clamped(end)};
}

QRectF storedRect(const QRectF &r, const QSizeF &window)
{
    return r.y() < 0 ? r.translated(0, r.height() - window.height()) : r;
}

} // namespace host
