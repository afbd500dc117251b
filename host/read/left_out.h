// SPDX-License-Identifier: MIT
#ifndef HOST_READ_LEFT_OUT_H
#define HOST_READ_LEFT_OUT_H

#include <QString>

namespace host {

/// What is said of models and clouds in the same words, however they were read.
inline QString pointsLeftOut(quint64 count)
{
    return QStringLiteral("%1 points without usable coordinates left out").arg(count);
}

inline QString noUsablePoints()
{
    return QStringLiteral("none of its points has usable coordinates");
}

inline QString nothingToShow()
{
    return QStringLiteral("there are no triangles, lines or points in it");
}

} // namespace host

#endif
