// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PALETTE_H
#define HOST_SERIES_PALETTE_H

#include <QColor>

namespace host {

enum class PlotTheme { Light, Dark };

/// The colours of a plot's surroundings.
struct PlotColors {
    QColor background;
    QColor grid;
    QColor axis;
    QColor text;
};

PlotColors plotColors(PlotTheme theme);

/// How the line of a series is told from the others.
struct SeriesStyle {
    QColor color;
    Qt::PenStyle pen; ///< Solid, dashed or dotted.
};

/// Number of columns with a colour of their own.
constexpr int paletteSize = 6;

/// The style of column @p index (from 0). The colours are those of Okabe and Ito ("Color Universal
/// Design", 2008), which readers with any of the usual kinds of colour blindness can tell apart;
/// of their eight, each place of the palette takes the one or two that stand out from the
/// background, with orange darkened on white. From the seventh column on they return dashed, then
/// dotted.
SeriesStyle seriesStyle(int index, PlotTheme theme);

} // namespace host

#endif
