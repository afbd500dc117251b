// SPDX-License-Identifier: MIT
#include "host/series/palette.h"

namespace host {

PlotColors plotColors(PlotTheme theme)
{
    if (theme == PlotTheme::Dark)
        return {QColor(0x1B1E23), QColor(0x2D3239), QColor(0x6B727C), QColor(0xD5D9DF)};
    return {QColor(0xFFFFFF), QColor(0xE6E8EB), QColor(0x9AA0A6), QColor(0x30343A)};
}

SeriesStyle seriesStyle(int index, PlotTheme theme)
{
    struct Pair {
        QRgb light, dark;
    };
    static const Pair palette[paletteSize] = {
        {0x0072B2, 0x56B4E9}, // blue, sky blue
        {0xD55E00, 0xD55E00}, // vermillion
        {0x009E73, 0x009E73}, // bluish green
        {0xC56F9F, 0xCC79A7}, // reddish purple
        {0xB37B00, 0xE69F00}, // orange
        {0x000000, 0xF0E442}, // black, yellow
    };
    static const Qt::PenStyle pens[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine};
    const Pair &pair = palette[index % paletteSize];
    return {QColor(theme == PlotTheme::Dark ? pair.dark : pair.light),
            pens[index / paletteSize % 3]};
}

} // namespace host
