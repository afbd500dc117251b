// SPDX-License-Identifier: MIT
#include "host/series/selection.h"

#include <algorithm>
#include <cmath>

#include "host/series/decimate.h"

namespace host {

Selection selectSamples(const Table &table, const std::vector<bool> &enabled, const QRectF &range)
{
    Selection selection{range, std::vector<std::size_t>(enabled.size(), 0), 0};
    const double beyond = std::nextafter(range.right(), HUGE_VAL); // the edge counts
    const auto [first, last] = rowsBetween(table, range.left(), beyond);
    for (std::size_t i = 0; i < enabled.size(); ++i) {
        if (!enabled[i])
            continue;
        const auto values = table.columns[i].values.begin();
        selection.counts[i] = std::size_t(
            std::count_if(values + std::ptrdiff_t(first), values + std::ptrdiff_t(last),
                          [&range](double y) { return y >= range.top() && y <= range.bottom(); }));
        selection.total += selection.counts[i];
    }
    return selection;
}

} // namespace host
