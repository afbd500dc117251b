// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CSV_READER_H
#define HOST_READ_CSV_READER_H

#include <cstddef>

#include <QByteArray>
#include <QString>

#include "host/read/content.h"
#include "host/read/read_limits.h"

namespace host {

/// What a file may hold; beyond it, reading ends with an error instead of filling the memory.
struct CsvLimits {
    std::size_t columns = 256;
    std::size_t rows = 20'000'000;
    std::size_t values = 100'000'000; ///< Rows times columns.
    std::size_t rowBytes = 1 << 20;   ///< Of one row, its quoted line breaks included.
};

/// The outcome of reading one file: a table or an error.
struct CsvResult {
    TablePtr table;
    QString error; ///< "line N: reason" or, when no line is to blame, "reason".
};

/// Reads the table in the file at @p path: UTF-8 text, fields separated by comma, semicolon or tab,
/// quoted by double quotes. The first row tells the separator; in a .tsv file it is the tab if
/// there is one. A .txt file that is no table is told to be none. Expects a file that
/// fileObjection() has nothing against. Memory that runs out is thrown as std::bad_alloc.
///
/// The first column is x: numbers, or ISO dates. The first row names the columns, unless it is
/// itself made of values; a column without a name is called "column N", counted from 1. Rows are
/// sorted by x; rows of equal x keep their order. A column in which at least half of the values
/// are words is skipped; fewer bad values than good ones are taken for mistakes: an error that
/// names the first. Blank lines count for nothing.
CsvResult readCsv(const QString &path, const ReadProgress &progress = {},
                  const CsvLimits &limits = {});

/// Whether @p head, the first bytes of a file, are rows of a table.
bool looksLikeTable(const QByteArray &head);

} // namespace host

#endif
