// SPDX-License-Identifier: MIT
#include "host/read/csv_builder.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "host/read/csv_fields.h"

namespace host {
namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// A field as a message may show it: short and on one line.
QString quoted(std::string_view field)
{
    const std::size_t most = 40;
    const auto text = QString::fromUtf8(field.data(), int(std::min(field.size(), most)));
    return '"' + text.simplified() + (field.size() > most ? "…\"" : "\"");
}

QString columnName(std::string_view field, std::size_t index)
{
    const QString name = QString::fromUtf8(field.data(), int(field.size())).simplified();
    return name.isEmpty() ? CsvBuilder::tr("column %1").arg(index + 1) : name;
}

} // namespace

CsvBuilder::CsvBuilder(const CsvLimits &limits, bool decimalComma)
    : limits_(limits), decimalComma_(decimalComma)
{
}

void CsvBuilder::fail(std::int64_t line, const QString &reason)
{
    if (!mistake_)
        mistake_ = CsvMistake{line, reason};
}

void CsvBuilder::addField(std::string_view field)
{
    if (fieldCount_ == fields_.size() && fieldCount_ <= limits_.columns)
        fields_.emplace_back();
    if (fieldCount_ < fields_.size())
        fields_[fieldCount_] = field; // reuses the memory of the row before
    ++fieldCount_;
}

void CsvBuilder::endRow(std::int64_t line)
{
    if (!mistake_) {
        if (hasNames_)
            addRow(line);
        else
            endFirstRow(line);
    }
    fieldCount_ = 0;
}

void CsvBuilder::endFirstRow(std::int64_t line)
{
    if (fieldCount_ > limits_.columns)
        return fail(
            line, tr("%1 columns; at most %2 can be shown").arg(fieldCount_).arg(limits_.columns));
    const std::vector<std::string> row(fields_.begin(), fields_.begin() + int(fieldCount_));
    const bool values = isValues(row);
    xName_ = columnName(values ? "" : row[0], 0);
    for (std::size_t i = 1; i < row.size(); ++i) {
        columns_.emplace_back();
        columns_.back().name = columnName(values ? "" : row[i], i);
    }
    hasNames_ = true;
    if (columns_.empty())
        return fail(line, tr("only one column; x and at least one series are needed, "
                             "separated by comma, semicolon or tab"));
    if (values)
        addRow(line);
}

bool CsvBuilder::isValues(const std::vector<std::string> &row) const
{
    const auto isValue = [this](const std::string &field) {
        return isMissing(field) || parseNumber(field, decimalComma_);
    };
    return !isMissing(row[0]) && (parseDate(row[0]) || isValue(row[0])) &&
           std::all_of(row.begin() + 1, row.end(), isValue);
}

void CsvBuilder::addRow(std::int64_t line)
{
    if (fieldCount_ != columns_.size() + 1)
        return fail(
            line,
            tr("%1 fields where the first row has %2").arg(fieldCount_).arg(columns_.size() + 1));
    if (x_.size() == limits_.rows)
        return fail(line,
                    tr("more than %1 rows, which is the most that can be shown").arg(limits_.rows));
    if ((x_.size() + 1) * fieldCount_ > limits_.values)
        return fail(
            line,
            tr("more than %1 values, which is the most that can be shown").arg(limits_.values));
    addX(fields_[0], line);
    for (std::size_t i = 0; i < columns_.size(); ++i)
        addValue(columns_[i], fields_[i + 1], line);
}

void CsvBuilder::addX(std::string_view field, std::int64_t line)
{
    if (isMissing(field))
        return fail(line, tr("the value of x (%1) is missing").arg(xName_));
    if (!xIsTime_) {
        xIsTime_ = parseDate(field).has_value();
        if (!*xIsTime_ && !parseNumber(field, decimalComma_))
            return fail(
                line,
                tr("x (%1) is %2, neither a number nor an ISO date").arg(xName_, quoted(field)));
    }
    const auto value = *xIsTime_ ? parseDate(field) : parseNumber(field, decimalComma_);
    if (!value)
        return fail(line, tr("x (%1) is %2, not %3")
                              .arg(xName_, quoted(field),
                                   *xIsTime_ ? tr("an ISO date like those above")
                                             : tr("a number like those above")));
    x_.push_back(*value);
}

void CsvBuilder::addValue(RawColumn &column, std::string_view field, std::int64_t line)
{
    if (isMissing(field)) {
        column.values.push_back(missing);
        return;
    }
    const auto value = parseNumber(field, decimalComma_);
    column.values.push_back(value.value_or(missing));
    if (value) {
        ++column.numbers;
    } else if (column.words++ == 0) {
        column.wordLine = line;
        column.word = quoted(field);
    }
}

TablePtr CsvBuilder::take()
{
    if (mistake_)
        return {};
    if (!hasNames_)
        fail(0, tr("the file is empty"));
    else if (x_.empty())
        fail(0, tr("the file has names of columns but no rows"));
    auto table = std::make_shared<Table>();
    table->xName = xName_;
    sortRows();
    if (mistake_ || !moveColumns(*table))
        return {};
    table->xIsTime = *xIsTime_;
    table->x = std::move(x_);
    return table;
}

void CsvBuilder::sortRows()
{
    if (std::is_sorted(x_.begin(), x_.end()))
        return;
    std::vector<std::size_t> order(x_.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [this](std::size_t a, std::size_t b) { return x_[a] < x_[b]; });
    const auto sorted = [&order](const std::vector<double> &values) {
        std::vector<double> result(values.size());
        std::transform(order.begin(), order.end(), result.begin(),
                       [&values](std::size_t row) { return values[row]; });
        return result;
    };
    x_ = sorted(x_);
    for (RawColumn &column : columns_)
        column.values = sorted(column.values);
}

// Moves the numeric columns to `table`; false with mistake_ set when a value is bad or none is
// numeric.
bool CsvBuilder::moveColumns(Table &table)
{
    const RawColumn *worst = nullptr;
    for (RawColumn &column : columns_) {
        if (column.words >= column.numbers) {
            table.skipped << column.name;
            continue;
        }
        if (column.words > 0 && (!worst || column.wordLine < worst->wordLine))
            worst = &column;
        if (!worst)
            table.columns.emplace_back(column.name, std::move(column.values));
    }
    if (worst)
        fail(worst->wordLine,
             tr("the value of %1 is %2, not a number").arg(worst->name, worst->word));
    else if (table.columns.empty())
        fail(0, tr("no column after the first holds numbers (%1)")
                    .arg(table.skipped.join(QStringLiteral(", "))));
    return table.columns.size() > 0 && !worst;
}

} // namespace host
