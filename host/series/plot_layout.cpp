// SPDX-License-Identifier: MIT
#include "host/series/plot_layout.h"

#include <algorithm>

#include <QFontMetricsF>

namespace host {
namespace {

constexpr double entryGap = 10;

QFont fontOf(double pixels, bool bold)
{
    QFont font;
    font.setPixelSize(std::max(1, int(pixels)));
    font.setBold(bold);
    return font;
}

} // namespace

PlotLayout::PlotLayout(const Table &table, QSize size, const PlotOptions &options)
    : scale(options.scale),
      free(QRectF(QPointF(0, 0), size).marginsRemoved(options.insets)),
      small(free.width() < 360 * scale || free.height() < 240 * scale),
      axes(free.width() >= 120 * scale && free.height() >= 90 * scale),
      font(fontOf((small ? 11 : 12) * scale, false)),
      titleFont(fontOf((small ? 11 : 13) * scale, true))
{
    free.setSize(free.size().expandedTo({1, 1}));
    legend.resize(table.columns.size());
    if (!axes) {
        area = free;
        return;
    }
    const double line = QFontMetricsF(font).height();
    const double left = free.left() + (small ? 48 : 64) * scale;
    const double right = free.right() - (small ? 10 : 20) * scale;
    const double top = free.top() + (small ? 4 : 10) * scale;
    const double titleHeight = options.titled ? QFontMetricsF(titleFont).height() : 0;
    title = QRectF(left, top, right - left, titleHeight);
    const double legendEnd =
        placeLegend(table, left, right, title.bottom() + 2 * scale, small ? 1 : 3);
    area = QRectF(QPointF(left, legendEnd + 8 * scale),
                  QPointF(right, free.bottom() - 2 * line - 12 * scale));
}

int PlotLayout::legendHit(const QPointF &local) const
{
    const auto entry = std::find_if(legend.begin(), legend.end(),
                                    [&local](const QRectF &r) { return r.contains(local); });
    return entry == legend.end() ? -1 : int(entry - legend.begin());
}

// Places the entries from left to right on at most `rows` rows; gives the lower edge of the last.
double PlotLayout::placeLegend(const Table &table, double left, double right, double top, int rows)
{
    const QFontMetricsF metrics(font);
    const double rowHeight = metrics.height() + 4 * scale;
    const double gap = entryGap * scale;
    const double moreWidth = metrics.horizontalAdvance(QStringLiteral("+256 more"));
    double x = left;
    int row = 0;
    for (std::size_t i = 0; i < legend.size(); ++i) {
        const double width =
            (swatch + swatchGap) * scale + metrics.horizontalAdvance(table.columns[i].name);
        const bool lastOfAll = i + 1 == legend.size();
        const auto limit = [&] {
            return row + 1 == rows && !lastOfAll ? right - moreWidth - gap : right;
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
        x += width + gap;
    }
    return top + (row + 1) * rowHeight;
}

} // namespace host
