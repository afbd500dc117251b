// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_MIN_MAX_PYRAMID_H
#define HOST_SERIES_MIN_MAX_PYRAMID_H

#include <cstddef>
#include <limits>
#include <vector>

namespace host {

/// Lowest and highest of some values; missing values (NaN) do not count.
struct Extent {
    double min = std::numeric_limits<double>::infinity();
    double max = -std::numeric_limits<double>::infinity();

    bool empty() const { return min > max; } ///< No value, or all of them missing.
    void add(double value);
    void add(const Extent &other);
};

/// Extents of the rows of one column, so that the extent of any run of rows costs O(log n).
///
/// Level 0 holds one node per `fan` rows; each further level one node per `fan` nodes of the level
/// below, up to a single root. A row is a missing value when it is NaN.
/// A plain value that does not keep the rows: the caller passes the same ones to every query.
/// It takes about one byte per row.
class MinMaxPyramid {
public:
    static constexpr std::size_t fan = 16;

    MinMaxPyramid() = default; ///< Of no rows.
    explicit MinMaxPyramid(const std::vector<double> &values);

    /// Extent of rows [@p first, @p last) of @p values. Expects the constructor's rows and
    /// first <= last <= their number. An empty run has an empty extent.
    Extent extent(const std::vector<double> &values, std::size_t first, std::size_t last) const;

    static std::size_t byteSize(std::size_t rows); ///< Memory held by a pyramid over @p rows.

    int levels() const { return int(levels_.size()); } ///< 0 when there are no rows.
    const std::vector<Extent> &level(int index) const { return levels_[std::size_t(index)]; }

private:
    std::vector<std::vector<Extent>> levels_;
};

} // namespace host

#endif
