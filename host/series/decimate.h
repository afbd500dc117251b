// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_DECIMATE_H
#define HOST_SERIES_DECIMATE_H

#include <utility>

#include <QPointF>

#include "host/series/table.h"

namespace host {

/// A line with gaps: points in drawing order, cut into strips. Points are in data units.
struct Polyline {
    std::vector<QPointF> points;
    std::vector<std::size_t> starts; ///< Index of each strip's first point, rising.

    std::size_t strips() const { return starts.size(); }
    std::size_t end(std::size_t strip) const; ///< Index one past the last point of @p strip.
};

/// Rows [first, second) of @p table with @p low <= x < @p high.
std::pair<std::size_t, std::size_t> rowsBetween(const Table &table, double low, double high);

/// The line of @p column to draw where x from @p low to @p high covers @p pixels pixel columns.
///
/// Few samples are given as they are. Where a pixel column has more than four, it gives the lowest
/// and the highest of them, in its middle, which colours the same pixels at a cost that grows with
/// the pixels and not with the rows. A missing value cuts the line; a gap that begins and ends
/// within one pixel column cannot be seen and may be left out. One sample beyond each end is given
/// too, so that the line leaves the picture in the right direction.
/// Empty when @p pixels < 1 or not low < high.
Polyline decimate(const Table &table, const Column &column, double low, double high, int pixels);

} // namespace host

#endif
