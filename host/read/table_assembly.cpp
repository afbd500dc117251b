// SPDX-License-Identifier: MIT
// What arrives of tables, and of lists of files.
#include "host/read/assembly.h"

#include <algorithm>
#include <cmath>

#include <QDataStream>

#include "host/read/csv_reader.h"

namespace host {
namespace {

class TableAssembly : public Assembly {
public:
    TableAssembly(std::shared_ptr<Table> table, std::size_t rows, std::size_t columns)
        : table_(std::move(table)), rows_(rows), columns_(columns)
    {
        table_->x.reserve(rows_);
    }

    quint64 byteSize() const override { return Table::byteSize(rows_, columns_); }
    double arrived() const override
    {
        const std::size_t values = table_->x.size() + table_->columns.size() * rows_;
        return double(values + values_.size()) / double(rows_ * (columns_ + 1));
    }
    bool takeItem(QDataStream &in) override;
    char *room(quint32 array, quint32 size) override;
    bool check(quint32 array, quint32 size) override;
    Content finish() override;

private:
    std::shared_ptr<Table> table_;
    std::size_t rows_, columns_;
    QStringList names_;
    std::vector<double> values_; // of the column that arrives
};

bool TableAssembly::takeItem(QDataStream &in)
{
    QString name;
    in >> name;
    if (in.status() != QDataStream::Ok)
        return true;
    names_ << name;
    return !name.isEmpty() && std::size_t(names_.size()) <= columns_;
}

char *TableAssembly::room(quint32 array, quint32 size)
{
    if (array == 0)
        return extend(table_->x, size, sizeof(double), rows_);
    const bool next = table_->x.size() == rows_ && array == table_->columns.size() + 1 &&
                      array <= quint32(names_.size());
    if (!next)
        return nullptr;
    values_.reserve(rows_);
    return extend(values_, size, sizeof(double), rows_);
}

bool TableAssembly::check(quint32 array, quint32 size)
{
    std::vector<double> &all = array == 0 ? table_->x : values_;
    const auto from = all.end() - std::ptrdiff_t(size / sizeof(double));
    if (array == 0)
        return std::all_of(from, all.end(), [](double x) { return std::isfinite(x); }) &&
               std::is_sorted(from == all.begin() ? from : from - 1, all.end());
    if (std::any_of(from, all.end(), [](double y) { return std::isinf(y); }))
        return false;
    if (values_.size() == rows_) {
        table_->columns.emplace_back(names_[int(array) - 1], std::move(values_));
        values_ = {};
    }
    return true;
}

Content TableAssembly::finish()
{
    if (table_->columns.size() != columns_)
        return {};
    return {nullptr, std::move(table_), nullptr};
}

class ListAssembly : public Assembly {
public:
    explicit ListAssembly(const FileList &head) : list_(std::make_shared<FileList>(head)) {}

    bool takeItem(QDataStream &in) override
    {
        QString path;
        in >> path;
        if (in.status() == QDataStream::Ok)
            list_->files << path;
        return list_->files.size() <= most;
    }
    char *room(quint32, quint32) override { return nullptr; }
    bool check(quint32, quint32) override { return false; }
    Content finish() override { return {nullptr, nullptr, std::move(list_)}; }

private:
    static constexpr int most = 1000000;
    std::shared_ptr<FileList> list_;
};

} // namespace

std::unique_ptr<Assembly> tableAssembly(QDataStream &head, const QString &name)
{
    const CsvLimits limits;
    auto table = std::make_shared<Table>();
    table->name = name;
    quint32 rows = 0, columns = 0;
    head >> rows >> columns >> table->xName >> table->xIsTime >> table->skipped;
    if (head.status() != QDataStream::Ok || rows == 0 || rows > limits.rows || columns == 0 ||
        columns > limits.columns || quint64(rows) * (columns + 1) > limits.values)
        return nullptr;
    return std::make_unique<TableAssembly>(std::move(table), rows, columns);
}

std::unique_ptr<Assembly> listAssembly(QDataStream &head)
{
    FileList list;
    head >> list.empty >> list.cut;
    return head.status() == QDataStream::Ok ? std::make_unique<ListAssembly>(list) : nullptr;
}

} // namespace host
