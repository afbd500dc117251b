// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_TABLE_H
#define HOST_SERIES_TABLE_H

#include <cstddef>
#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

#include "host/series/min_max_pyramid.h"

namespace host {

/// One numeric column of a table. A missing value is NaN.
struct Column {
    Column(const QString &columnName, std::vector<double> columnValues)
        : name(columnName), values(std::move(columnValues)), pyramid(values)
    {
    }

    QString name;
    std::vector<double> values; ///< One per row. Whoever changes them makes the pyramid anew.
    MinMaxPyramid pyramid;      ///< Of `values`.
};

/// Series over one x axis, as they were read from a file.
struct Table {
    QString name;  ///< File name without its folder.
    QString xName; ///< Of the first column.
    /// Whether x are dates: seconds since 1970-01-01 00:00 UTC, without leap seconds.
    bool xIsTime = false;
    std::vector<double> x; ///< One per row, finite, never falling.
    std::vector<Column> columns;
    QStringList skipped; ///< Names of the columns that hold words or nothing, in file order.

    std::size_t rows() const { return x.size(); }
    std::size_t byteSize() const { return byteSize(rows(), columns.size()); } ///< Memory held.
    static std::size_t byteSize(std::size_t rows, std::size_t columns)
    {
        return rows * sizeof(double) * (columns + 1) + MinMaxPyramid::byteSize(rows) * columns;
    }
};

} // namespace host

#endif
