// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_COMPARE_WAY_H
#define HOST_VIEW_COMPARE_COMPARE_WAY_H

#include <optional>

#include <QStringList>

namespace host {

/// How two models are held against each other, in the order in which a key goes round.
enum class CompareWay {
    Beside,     ///< Beside one another.
    Divider,    ///< In one place; one is seen left of a line, the other right of it.
    Difference, ///< The second, in colours of how far it is from the first.
};

/// The way that a command line calls beside, divider or difference; nothing for another word.
inline std::optional<CompareWay> compareWay(const QString &word)
{
    const int way = QStringList{"beside", "divider", "difference"}.indexOf(word);
    return way < 0 ? std::nullopt : std::optional(CompareWay(way));
}

} // namespace host

#endif
