// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_COLOUR_SCALE_H
#define HOST_VIEW_COMPARE_COLOUR_SCALE_H

#include <vector>

#include <QColor>

namespace host {

/// The colours of distances: from blue over a light grey at 0 to red, or the half of these where
/// distances have no sign. Equal steps look equally large, also to eyes that tell red from green
/// badly.
struct ColourScale {
    bool isSigned = false; ///< Whether there are distances below 0.
    double end = 1;        ///< Above zero: the distance from which on the colour stays the same.

    QColor at(double distance) const;
    /// R, G, B, A of each; grey for one that is unknown.
    std::vector<quint8> colours(const std::vector<float> &distances) const;

    /// The least of 1, 2 and 5 times a power of ten that is not below @p value, but for rounding;
    /// 1 where that is not above zero.
    static double roundUp(double value);
    /// The next one of these after a round @p value, or before it.
    static double step(double value, bool up);
};

} // namespace host

#endif
