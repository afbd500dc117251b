// SPDX-License-Identifier: MIT
#ifndef HOST_READ_CSV_FIELDS_H
#define HOST_READ_CSV_FIELDS_H

#include <optional>
#include <string_view>

namespace host {

/// How often @p wanted stands outside quotes in the first row of @p header.
int countOutsideQuotes(std::string_view header, char wanted);

/// The character between the fields of a table, judged by its @p header (bytes from the start of
/// the file): the most frequent of comma, semicolon and tab outside quotes in the first row; where
/// there is none, @p usual. Of two that are equally frequent, tab goes before semicolon before
/// comma.
char detectSeparator(std::string_view header, char usual = ',');

/// Whether @p field stands for no value: empty, "NA", "NaN" (upper or lower case) or "-".
bool isMissing(std::string_view field);

/// The number that the whole of @p field spells with a decimal point, or nothing. Infinities and
/// numbers beyond the range of double are nothing. With @p decimalComma, a single comma may stand
/// for the point: files separated by semicolons come from countries that write it so.
std::optional<double> parseNumber(std::string_view field, bool decimalComma);

/// The ISO 8601 date or date-time that the whole of @p field spells, in seconds since 1970-01-01
/// 00:00 UTC, or nothing. Forms: 2012-01, 2012-01-31, and after a T or a blank 14:05, 14:05:09 or
/// 14:05:09.25, then nothing (UTC), Z, +02, +0200 or +02:00. Years 0001 to 9999; days and times
/// that do not exist are nothing.
std::optional<double> parseDate(std::string_view field);

} // namespace host

#endif
