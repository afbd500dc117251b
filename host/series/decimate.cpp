// SPDX-License-Identifier: MIT
#include "host/series/decimate.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr std::size_t exactPerPixel = 4; // samples drawn as they are

/// Appends samples to a polyline and begins a new strip after each gap.
class Pen {
public:
    void to(double x, double y)
    {
        if (std::isnan(y)) {
            up();
            return;
        }
        if (up_)
            line.starts.push_back(line.points.size());
        up_ = false;
        line.points.emplace_back(x, y);
    }
    void up() { up_ = true; }
    double y() const { return line.points.empty() ? 0 : line.points.back().y(); }

    Polyline line;

private:
    bool up_ = true;
};

void addRows(Pen &pen, const Table &table, const Column &column, std::size_t first,
             std::size_t last)
{
    for (std::size_t row = first; row < last; ++row)
        pen.to(table.x[row], column.values[row]);
}

// The samples of one pixel column, rows [first, last). Many become a stroke between the lowest and
// the highest, from the end that is nearer to where the line comes from: joined to its neighbours
// it covers what the samples would, without going to and fro.
void addPixel(Pen &pen, const Table &table, const Column &column, std::size_t first,
              std::size_t last, double middle)
{
    if (last - first <= exactPerPixel)
        return addRows(pen, table, column, first, last);
    const Extent extent = column.pyramid.extent(column.values, first, last);
    if (extent.empty())
        return pen.up();
    if (std::isnan(column.values[first]))
        pen.up();
    const bool rising = std::abs(pen.y() - extent.min) <= std::abs(pen.y() - extent.max);
    pen.to(middle, rising ? extent.min : extent.max);
    if (extent.min < extent.max)
        pen.to(middle, rising ? extent.max : extent.min);
    if (std::isnan(column.values[last - 1]))
        pen.up();
}

std::size_t firstRowFrom(const Table &table, double x)
{
    return std::size_t(std::lower_bound(table.x.begin(), table.x.end(), x) - table.x.begin());
}

} // namespace

std::size_t Polyline::end(std::size_t strip) const
{
    return strip + 1 < starts.size() ? starts[strip + 1] : points.size();
}

std::pair<std::size_t, std::size_t> rowsBetween(const Table &table, double low, double high)
{
    return {firstRowFrom(table, low), firstRowFrom(table, high)};
}

Polyline decimate(const Table &table, const Column &column, double low, double high, int pixels)
{
    if (pixels < 1 || !(low < high))
        return {};
    const auto [first, last] = rowsBetween(table, low, high);
    const std::size_t before = first > 0 ? first - 1 : first;
    const std::size_t after = std::min(last + 1, table.rows());
    Pen pen;
    if (last - first <= exactPerPixel * std::size_t(pixels)) {
        addRows(pen, table, column, before, after);
        return pen.line;
    }
    addRows(pen, table, column, before, first);
    std::size_t begin = first;
    const double width = (high - low) / pixels;
    for (int pixel = 0; pixel < pixels; ++pixel) {
        const double edge = pixel + 1 < pixels ? low + (pixel + 1) * width : high;
        const std::size_t end = std::max(begin, std::min(last, firstRowFrom(table, edge)));
        addPixel(pen, table, column, begin, end, low + (pixel + 0.5) * width);
        begin = end;
    }
    addRows(pen, table, column, last, after);
    return pen.line;
}

} // namespace host
