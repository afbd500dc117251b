// SPDX-License-Identifier: MIT
#include "host/series/plot_layout.h"

#include <algorithm>

#include <QFontMetricsF>

namespace host {
namespace {

constexpr double entryGap = 10;
constexpr double swatchGap = 5;

QFont fontOf(int pixels, bool bold)
{
    QFont font;
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

} // namespace

PlotLayout::PlotLayout(const Table &table, QSize size, bool titled)
    : small(size.width() < 360 || size.height() < 240),
      axes(size.width() >= 120 && size.height() >= 90),
      font(fontOf(small ? 11 : 12, false)),
      titleFont(fontOf(small ? 11 : 13, true))
{
    const double width = std::max(1, size.width());
    const double height = std::max(1, size.height());
    legend.resize(table.columns.size());
    if (!axes) {
        area = QRectF(0, 0, width, height);
        return;
    }
    const double line = QFontMetricsF(font).height();
    const double left = small ? 48 : 64;
    const double right = width - (small ? 10 : 20);
    const double top = small ? 4 : 10;
    title = QRectF(left, top, right - left, titled ? QFontMetricsF(titleFont).height() : 0);
    const double legendEnd = placeLegend(table, left, right, title.bottom() + 2, small ? 1 : 3);
    area = QRectF(QPointF(left, legendEnd + 8), QPointF(right, height - 2 * line - 12));
}

// Places the entries from left to right on at most `rows` rows; gives the lower edge of the last.
double PlotLayout::placeLegend(const Table &table, double left, double right, double top, int rows)
{
    const QFontMetricsF metrics(font);
    const double rowHeight = metrics.height() + 4;
    const double moreWidth = metrics.horizontalAdvance(QStringLiteral("+256 more"));
    double x = left;
    int row = 0;
    for (std::size_t i = 0; i < legend.size(); ++i) {
        const double width = swatch + swatchGap + metrics.horizontalAdvance(table.columns[i].name);
        const bool lastOfAll = i + 1 == legend.size();
        const auto limit = [&] {
            return row + 1 == rows && !lastOfAll ? right - moreWidth - entryGap : right;
        };
        if (x > left && x + width > limit()) {
            if (row + 1 == rows) {
                leftOut = int(legend.size() - i);
                more = QRectF(x, top + row * rowHeight, moreWidth, rowHeight);
                break;
            }
            ++row;
            x = left;
        }
        legend[i] = QRectF(x, top + row * rowHeight, std::min(width, limit() - x), rowHeight);
        x += width + entryGap;
    }
    return top + (row + 1) * rowHeight;
}

} // namespace host
