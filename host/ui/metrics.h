// SPDX-License-Identifier: MIT
#ifndef HOST_UI_METRICS_H
#define HOST_UI_METRICS_H

#include <QFont>

namespace host {

/// How large lines, margins and letters are drawn, in device pixels: the one place that knows of
/// dense screens and of the desktop's type. Sources name the pixels of a usual screen, of about 96
/// dots per inch, and ask here what they come to. It holds for the whole program, as its font does,
/// and is set before the first window; at first everything is as on a usual screen.
class Metrics {
public:
    /// The height of the views' letters on a usual screen whose desktop asks for nothing.
    static constexpr int usualType = 13;

    /// @p scale is how many times as large as on a usual screen things are, @p typePixels the
    /// height of the views' letters. Values that are not positive and finite change nothing.
    static void set(double scale, double typePixels);

    static double px(double usual);   ///< A length, or the width of a line.
    static double type(double usual); ///< A length that goes with the size of letters.
    /// The program's font with letters that on a usual screen are @p usual pixels high.
    static QFont font(int usual = usualType, bool bold = false);
};

} // namespace host

#endif
