// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CSV_BUILDER_H
#define HOST_READ_CSV_BUILDER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QCoreApplication>

#include "host/read/csv_reader.h"

namespace host {

/// A mistake in a file. Lines count from 1; 0 when no line is to blame.
struct CsvMistake {
    std::int64_t line = 0;
    QString reason;
};

/// Makes a table of the fields of a file, given row by row in file order.
/// After the first mistake it takes nothing more.
class CsvBuilder {
    Q_DECLARE_TR_FUNCTIONS(CsvBuilder)
public:
    /// @p decimalComma: see parseNumber().
    CsvBuilder(const CsvLimits &limits, bool decimalComma);

    void addField(std::string_view field);
    void endRow(std::int64_t line); ///< @p line is the one on which the row begins.

    const std::optional<CsvMistake> &mistake() const { return mistake_; }

    /// The finished table, without a name; null with mistake() set when the rows make none.
    /// Leaves the builder empty.
    TablePtr take();

private:
    struct RawColumn {
        QString name;
        std::vector<double> values;
        std::size_t numbers = 0;
        std::size_t words = 0;
        std::int64_t wordLine = 0; // of the first word
        QString word;
    };

    void endFirstRow(std::int64_t line);
    void addRow(std::int64_t line);
    void addX(std::string_view field, std::int64_t line);
    void addValue(RawColumn &column, std::string_view field, std::int64_t line);
    bool isValues(const std::vector<std::string> &row) const;
    void fail(std::int64_t line, const QString &reason);
    void sortRows();
    bool moveColumns(Table &table);

    CsvLimits limits_;
    bool decimalComma_;
    bool hasNames_ = false;
    std::vector<std::string> fields_; // of the row under way; only the first fieldCount_ count
    std::size_t fieldCount_ = 0;
    QString xName_;
    std::optional<bool> xIsTime_; // known from the first row of values on
    std::vector<double> x_;
    std::vector<RawColumn> columns_; // without x
    std::optional<CsvMistake> mistake_;
};

} // namespace host

#endif
