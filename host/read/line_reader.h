// SPDX-License-Identifier: MIT
#ifndef HOST_READ_LINE_READER_H
#define HOST_READ_LINE_READER_H

#include <string_view>

#include <QByteArray>
#include <QFile>
#include <QString>

#include "host/read/read_limits.h"

namespace host {

/// The lines of a file of any length, one after the other, from where the file stands. Tells
/// progress as it goes.
class LineReader {
public:
    static constexpr int longest = 1 << 16; ///< Bytes of a line.

    /// @p file outlives the reader.
    LineReader(QFile &file, const ReadProgress &progress) : file_(file), progress_(progress) {}

    /// Gives the next line, without its end; it stays until the next call. Returns false at the end
    /// of the file and if there is a fault.
    bool next(std::string_view &line);

    qint64 number() const { return number_; } ///< Of the line, from 1.
    QString fault() const { return fault_; }  ///< Empty unless the text cannot be read on.

private:
    bool fill();
    bool fail(const QString &reason);

    QFile &file_;
    const ReadProgress progress_;
    QByteArray buffer_;
    int at_ = 0;
    qint64 number_ = 0;
    QString fault_;
};

/// Reads the numbers at the beginning of @p line, up to @p most of them into @p numbers. They are
/// separated by blanks, tabs, commas and semicolons. With @p decimalComma a comma stands for the
/// decimal point. Returns how many there are before the first word that is none.
int readNumbers(std::string_view line, bool decimalComma, double *numbers, int most);

} // namespace host

#endif
