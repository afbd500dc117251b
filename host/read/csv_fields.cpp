// SPDX-License-Identifier: MIT
#include "host/read/csv_fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include <QDate>

namespace host {
namespace {

bool equalsIgnoringCase(std::string_view text, std::string_view upper)
{
    return std::equal(text.begin(), text.end(), upper.begin(), upper.end(),
                      [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 32 : a) == b; });
}

// Takes exactly `digits` decimal digits off the front of `text`.
bool takeDigits(std::string_view &text, std::size_t digits, int &value)
{
    if (text.size() < digits)
        return false;
    value = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
    }
    text.remove_prefix(digits);
    return true;
}

bool takeCharacter(std::string_view &text, char c)
{
    if (text.empty() || text.front() != c)
        return false;
    text.remove_prefix(1);
    return true;
}

// Seconds after midnight of "14:05", "14:05:09" or "14:05:09.25" at the front of `text`.
std::optional<double> takeTime(std::string_view &text)
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    double fraction = 0;
    if (!takeDigits(text, 2, hour) || !takeCharacter(text, ':') || !takeDigits(text, 2, minute))
        return {};
    if (takeCharacter(text, ':')) {
        if (!takeDigits(text, 2, second))
            return {};
        if (takeCharacter(text, '.')) {
            int digit = 0;
            double weight = 0.1;
            if (text.empty() || text.front() < '0' || text.front() > '9')
                return {};
            for (; takeDigits(text, 1, digit); weight /= 10)
                fraction += digit * weight;
        }
    }
    if (hour > 23 || minute > 59 || second > 59)
        return {};
    return hour * 3600 + minute * 60 + second + fraction;
}

// Seconds east of UTC of "", "Z", "+02", "+0200" or "+02:00".
std::optional<double> takeZone(std::string_view &text)
{
    if (text.empty() || takeCharacter(text, 'Z'))
        return 0;
    const double sign = text.front() == '-' ? -1 : 1;
    if (!takeCharacter(text, '+') && !takeCharacter(text, '-'))
        return {};
    int hour = 0;
    int minute = 0;
    if (!takeDigits(text, 2, hour))
        return {};
    if (!text.empty()) {
        takeCharacter(text, ':');
        if (!takeDigits(text, 2, minute))
            return {};
    }
    if (hour > 14 || minute > 59)
        return {};
    return sign * (hour * 3600 + minute * 60);
}

} // namespace

int countOutsideQuotes(std::string_view header, char wanted)
{
    int count = 0;
    bool quoted = false;
    for (const char c : header) {
        if (c == '"')
            quoted = !quoted;
        if (!quoted && (c == '\n' || c == '\r'))
            break;
        count += !quoted && c == wanted;
    }
    return count;
}

char detectSeparator(std::string_view header, char usual)
{
    char best = usual;
    int most = 0;
    for (const char c : {'\t', ';', ','}) {
        const int count = countOutsideQuotes(header, c);
        if (count > most) {
            most = count;
            best = c;
        }
    }
    return best;
}

bool isMissing(std::string_view field)
{
    return field.empty() || field == "-" || equalsIgnoringCase(field, "NA") ||
           equalsIgnoringCase(field, "NAN");
}

std::optional<double> parseNumber(std::string_view field, bool decimalComma)
{
    std::string withPoint;
    if (decimalComma && std::count(field.begin(), field.end(), ',') == 1 &&
        field.find('.') == std::string_view::npos) {
        withPoint = field;
        std::replace(withPoint.begin(), withPoint.end(), ',', '.');
        field = withPoint;
    }
    if (field.size() > 1 && field[0] == '+' && field[1] != '-')
        field.remove_prefix(1);
    double value = 0;
    const char *const end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        return {};
    return value;
}

std::optional<double> parseDate(std::string_view field)
{
    int year = 0;
    int month = 0;
    int day = 1;
    if (!takeDigits(field, 4, year) || !takeCharacter(field, '-') || !takeDigits(field, 2, month))
        return {};
    const bool hasDay = takeCharacter(field, '-');
    if (hasDay && !takeDigits(field, 2, day))
        return {};
    const QDate date(year, month, day);
    if (year < 1 || !date.isValid())
        return {};
    const qint64 epoch = 2440588; // Julian day number of 1970-01-01
    const double midnight = double(date.toJulianDay() - epoch) * 86400;
    if (field.empty())
        return midnight;
    if (!hasDay || (!takeCharacter(field, 'T') && !takeCharacter(field, ' ')))
        return {};
    const auto time = takeTime(field);
    const auto zone = time ? takeZone(field) : std::nullopt;
    if (!zone || !field.empty())
        return {};
    return midnight + *time - *zone;
}

} // namespace host
