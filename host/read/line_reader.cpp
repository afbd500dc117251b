// SPDX-License-Identifier: MIT
#include "host/read/line_reader.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace host {

bool LineReader::fail(const QString &reason)
{
    fault_ = reason;
    return false;
}

/// Reads on; what is left of the old bytes moves to the front. Returns whether there are more.
bool LineReader::fill()
{
    constexpr qint64 chunk = 1 << 20;
    buffer_.remove(0, at_);
    at_ = 0;
    const int kept = buffer_.size();
    const QByteArray read = file_.read(chunk);
    if (file_.error() != QFileDevice::NoError)
        return fail(file_.errorString());
    if (std::memchr(read.constData(), 0, std::size_t(read.size())))
        return fail(QStringLiteral("there is a zero byte in its text: it is binary, or broken"));
    buffer_ += read;
    if (progress_ && file_.size() > 0)
        progress_(0.9 * double(file_.pos()) / double(std::max(file_.size(), file_.pos())),
                  QStringLiteral("reading points"));
    return buffer_.size() > kept;
}

bool LineReader::next(std::string_view &line)
{
    if (!fault_.isEmpty())
        return false;
    int searched = at_;
    const char *end = nullptr;
    while (true) {
        end = static_cast<const char *>(std::memchr(buffer_.constData() + searched, '\n',
                                                    std::size_t(buffer_.size() - searched)));
        if (end)
            break;
        if (buffer_.size() - at_ > longest)
            return fail(QStringLiteral("line %1 is longer than %2 bytes; it may be no text")
                            .arg(number_ + 1)
                            .arg(longest));
        searched = buffer_.size() - at_;
        if (!fill())
            break;
    }
    if (!fault_.isEmpty() || at_ == buffer_.size())
        return false;
    const char *begin = buffer_.constData() + at_;
    if (!end)
        end = buffer_.constData() + buffer_.size();
    at_ = std::min(int(end - buffer_.constData()) + 1, buffer_.size());
    line = {begin, std::size_t(end - begin)};
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    ++number_;
    return true;
}

int readNumbers(std::string_view line, bool decimalComma, double *numbers, int most)
{
    const auto separates = [decimalComma](char c) {
        return c == ' ' || c == '\t' || c == ';' || (c == ',' && !decimalComma);
    };
    const char *at = line.data(), *end = at + line.size();
    char field[64];
    for (int count = 0; count < most; ++count) {
        while (at < end && separates(*at))
            ++at;
        if (at < end && *at == '+')
            ++at;
        const char *next = std::find_if(at, end, separates);
        const char *begin = at, *stop = next;
        if (decimalComma && next - at < int(sizeof field)) {
            std::replace_copy(at, next, field, ',', '.');
            begin = field;
            stop = field + (next - at);
        }
        const auto [parsed, error] = std::from_chars(begin, stop, numbers[count]);
        if (error == std::errc::invalid_argument || parsed != stop || at == end)
            return count;
        if (error == std::errc::result_out_of_range)
            numbers[count] = QByteArray(begin, int(stop - begin)).toDouble(); // infinite, or 0
        at = next;
    }
    return most;
}

} // namespace host
