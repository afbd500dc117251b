// SPDX-License-Identifier: MIT
#include "host/read/csv_reader.h"

#include <algorithm>
#include <cstring>

#include <QFile>
#include <QFileInfo>
#include <csv.h>

#include "host/read/csv_builder.h"
#include "host/read/csv_fields.h"

namespace host {
namespace {

/// Splits bytes into fields with libcsv, and knows on which line each row begins.
class CsvSplitter {
public:
    CsvSplitter(CsvBuilder &builder, char separator, const CsvLimits &limits)
        : builder_(builder), rowBytes_(limits.rowBytes)
    {
        ready_ = csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) == 0;
        csv_set_delim(&parser_, static_cast<unsigned char>(separator));
    }
    ~CsvSplitter() { csv_free(&parser_); }
    CsvSplitter(const CsvSplitter &) = delete;
    CsvSplitter &operator=(const CsvSplitter &) = delete;

    bool feed(const char *bytes, std::size_t size);
    bool finish();
    const std::optional<CsvMistake> &mistake() const
    {
        return mistake_ ? mistake_ : builder_.mistake();
    }

private:
    bool feedPiece(const char *bytes, std::size_t size);
    bool fail(std::int64_t line, const QString &reason);
    static void onField(void *bytes, std::size_t size, void *self);
    static void onRow(int, void *self);

    CsvBuilder &builder_;
    csv_parser parser_{};
    bool ready_ = false;
    std::size_t rowBytes_;
    std::size_t bytesOfRow_ = 0;
    std::int64_t line_ = 1;
    std::int64_t rowLine_ = 0; // 0 between rows
    std::optional<CsvMistake> mistake_;
};

bool CsvSplitter::fail(std::int64_t line, const QString &reason)
{
    mistake_ = CsvMistake{line, reason};
    return false;
}

void CsvSplitter::onField(void *bytes, std::size_t size, void *self)
{
    auto *splitter = static_cast<CsvSplitter *>(self);
    if (splitter->rowLine_ == 0)
        splitter->rowLine_ = splitter->line_;
    splitter->builder_.addField({static_cast<const char *>(bytes), size});
}

void CsvSplitter::onRow(int, void *self)
{
    auto *splitter = static_cast<CsvSplitter *>(self);
    splitter->builder_.endRow(splitter->rowLine_);
    splitter->rowLine_ = 0;
    splitter->bytesOfRow_ = 0;
}

// The parser does not tell where it stands, so it is given the bytes line by line.
bool CsvSplitter::feed(const char *bytes, std::size_t size)
{
    while (size > 0) {
        const void *newline = std::memchr(bytes, '\n', size);
        const std::size_t piece =
            newline ? std::size_t(static_cast<const char *>(newline) - bytes) + 1 : size;
        if (!feedPiece(bytes, piece))
            return false;
        line_ += newline ? 1 : 0;
        bytes += piece;
        size -= piece;
    }
    return true;
}

bool CsvSplitter::feedPiece(const char *bytes, std::size_t size)
{
    if (!ready_)
        return fail(0, QStringLiteral("out of memory"));
    if (std::memchr(bytes, 0, size))
        return fail(line_, QStringLiteral("a zero byte: the file is binary or not UTF-8 text"));
    const bool blank =
        std::all_of(bytes, bytes + size, [](char c) { return c == ' ' || c == '\r' || c == '\n'; });
    if (rowLine_ == 0 && !blank)
        rowLine_ = line_;
    bytesOfRow_ += size;
    if (rowLine_ != 0 && bytesOfRow_ > rowBytes_)
        return fail(
            rowLine_,
            QStringLiteral("a row of more than %1 bytes; is a quote left open?").arg(rowBytes_));
    if (csv_parse(&parser_, bytes, size, onField, onRow, this) == size)
        return !builder_.mistake();
    if (csv_error(&parser_) != CSV_EPARSE)
        return fail(line_, QString::fromLatin1(csv_strerror(csv_error(&parser_))));
    const QString reason = QStringLiteral("a quote stands inside a field; it must be doubled and "
                                          "the field quoted");
    return fail(line_, rowLine_ == line_
                           ? reason
                           : reason + QStringLiteral(" (the row begins on line %1)").arg(rowLine_));
}

bool CsvSplitter::finish()
{
    if (csv_fini(&parser_, onField, onRow, this) != 0)
        return fail(rowLine_, QStringLiteral("a quote opened in this row is never closed"));
    return !builder_.mistake();
}

std::string_view withoutByteOrderMark(const QByteArray &bytes)
{
    const std::string_view text(bytes.constData(), std::size_t(bytes.size()));
    return text.substr(0, 3) == "\xEF\xBB\xBF" ? text.substr(3) : text;
}

QString message(const CsvMistake &mistake)
{
    return mistake.line == 0 ? mistake.reason
                             : QStringLiteral("line %1: %2").arg(mistake.line).arg(mistake.reason);
}

/// The separator that the kind of file is named for, or else the usual one.
char separatorFor(const QString &suffix, std::string_view head)
{
    if (suffix == QLatin1String("tsv") && countOutsideQuotes(head, '\t') > 0)
        return '\t';
    return detectSeparator(head, suffix == QLatin1String("csv") ? ',' : '\t');
}

CsvResult readRows(QFile &file, const QString &suffix, const ReadProgress &progress,
                   const CsvLimits &limits)
{
    const qint64 chunkSize = 1 << 20;
    QByteArray chunk = file.read(chunkSize);
    std::string_view bytes = withoutByteOrderMark(chunk);
    if (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF")
        return {{}, QStringLiteral("the text is UTF-16; save it as UTF-8")};
    const char separator = separatorFor(suffix, bytes);
    CsvBuilder builder(limits, separator == ';');
    CsvSplitter splitter(builder, separator, limits);
    while (!bytes.empty()) {
        if (!splitter.feed(bytes.data(), bytes.size()))
            return {{}, message(*splitter.mistake())};
        if (progress)
            progress(double(file.pos()) / double(std::max<qint64>(file.size(), file.pos())),
                     QStringLiteral("reading rows"));
        chunk = file.read(chunkSize);
        bytes = {chunk.constData(), std::size_t(chunk.size())};
    }
    if (file.error() != QFileDevice::NoError)
        return {{}, file.errorString()};
    if (!splitter.finish())
        return {{}, message(*splitter.mistake())};
    auto table = builder.take();
    return table ? CsvResult{table, {}} : CsvResult{{}, message(*builder.mistake())};
}

} // namespace

CsvResult readCsv(const QString &path, const ReadProgress &progress, const CsvLimits &limits)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, file.errorString()};
    const QString suffix = QFileInfo(path).suffix().toLower();
    CsvResult result = readRows(file, suffix, progress, limits);
    if (!result.table && suffix == QLatin1String("txt"))
        result.error = QStringLiteral("the text is no table: ") + result.error;
    return result;
}

bool looksLikeTable(const QByteArray &head)
{
    const std::string_view all = withoutByteOrderMark(head);
    const std::string_view lines = all.substr(0, all.rfind('\n') + 1);
    const CsvLimits limits;
    const char separator = detectSeparator(lines, '\t');
    CsvBuilder builder(limits, separator == ';');
    CsvSplitter splitter(builder, separator, limits);
    return splitter.feed(lines.data(), lines.size()) && splitter.finish() && builder.take();
}

} // namespace host
