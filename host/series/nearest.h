// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_NEAREST_H
#define HOST_SERIES_NEAREST_H

#include <limits>
#include <optional>

#include <QPointF>
#include <QSizeF>

#include "host/series/table.h"

namespace host {

/// The sample of one column that lies nearest to a point.
struct NearestRow {
    std::size_t row;
    double distance; ///< Pixels.
};

/// The sample of @p column that is nearest on the screen to @p point (data units), where one data
/// unit of x and y covers @p scale pixels; nothing if none is closer than @p within pixels.
/// Missing values are no samples. It looks only into the rows whose extents may hold a closer
/// sample, so that its cost grows with the logarithm of the rows.
std::optional<NearestRow> nearestRow(const Table &table, const Column &column, const QPointF &point,
                                     const QSizeF &scale,
                                     double within = std::numeric_limits<double>::infinity());

} // namespace host

#endif
