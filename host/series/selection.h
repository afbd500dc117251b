// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_SELECTION_H
#define HOST_SERIES_SELECTION_H

#include <optional>
#include <vector>

#include <QRectF>

#include "host/series/table.h"

namespace host {

/// One value of one column.
struct Sample {
    int column;
    std::size_t row;
    double x;
    double y;
};

/// The samples of a table inside a rectangle of data units, edges included.
struct Selection {
    std::optional<QRectF> range;     ///< Normalized; nothing when nothing was selected.
    std::vector<std::size_t> counts; ///< Samples per column; 0 for hidden ones.
    std::size_t total = 0;
};

/// Counts the samples in @p range (normalized) of the columns that are @p enabled, one flag each.
Selection selectSamples(const Table &table, const std::vector<bool> &enabled, const QRectF &range);

} // namespace host

#endif
