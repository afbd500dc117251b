// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_CSV_READER_H
#define HOST_SERIES_CSV_READER_H

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include <QObject>
#include <QString>

#include "host/series/table.h"

namespace host {

/// What a file may hold; beyond it, reading ends with an error instead of filling the memory.
struct CsvLimits {
    std::size_t columns = 256;
    std::size_t rows = 20'000'000;
    std::size_t values = 100'000'000; ///< Rows times columns.
    std::size_t rowBytes = 1 << 20;   ///< Of one row, its quoted line breaks included.
};

/// The outcome of reading one file: a table, or an error, or neither when it was cancelled.
struct CsvResult {
    std::shared_ptr<const Table> table;
    QString error; ///< "file:line: reason" or, when no line is to blame, "file: reason".
};

/// Told the bytes read so far and the size of the file; returns whether to go on.
using CsvProgress = std::function<bool(qint64 done, qint64 size)>;

/// Reads the CSV file at @p path: UTF-8 text, fields separated by comma, semicolon or tab (the
/// header tells), quoted by double quotes.
///
/// The first column is x: numbers, or ISO dates. The first row names the columns, unless it is
/// itself made of values; a column without a name is called "column N", counted from 1. Rows are
/// sorted by x; rows of equal x keep their order. A column in which at least half of the values
/// are words is skipped; fewer bad values than good ones are taken for mistakes: an error that
/// names the first. Blank lines count for nothing.
CsvResult readCsv(const QString &path, const CsvProgress &progress = {},
                  const CsvLimits &limits = {});

/// Reads CSV files on a thread of its own and reports on the thread it lives in, which needs an
/// event loop. One file at a time.
class CsvReader : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~CsvReader() override; ///< Cancels and waits for the thread.

    /// Begins to read @p path. A read still under way is cancelled and reports no more.
    void start(const QString &path);

    /// Ends the read under way, if any; finished() then reports an empty result.
    void cancel() { cancelled_ = true; }

signals:
    void progressed(int percent); ///< Rises from 0 to 100.
    void finished(const host::CsvResult &result);

private:
    void stop();
    void report(int read, const CsvResult &result);

    std::thread thread_;
    std::atomic<bool> cancelled_{false};
    int read_ = 0; // number of the current read, so that reports of an earlier one are dropped
};

} // namespace host

#endif
