// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_COMPARE_WAY_H
#define HOST_VIEW_COMPARE_COMPARE_WAY_H

#include <optional>

#include <QString>

namespace host {

/// How two models are held against each other, in the order in which a key goes round.
enum class CompareWay {
    Beside,  ///< Beside one another.
    Divider, ///< In one place; one is seen left of a line, the other right of it.
};

/// The way that a command line calls beside or divider; nothing for another word.
inline std::optional<CompareWay> compareWay(const QString &word)
{
    if (word == QLatin1String("beside"))
        return CompareWay::Beside;
    return word == QLatin1String("divider") ? std::optional(CompareWay::Divider) : std::nullopt;
}

} // namespace host

#endif
