// SPDX-License-Identifier: MIT
#include "host/series/column_list.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

#include "host/series/text_box.h"

namespace host {
namespace {

constexpr double padding = 8;
constexpr double barWidth = 4;
constexpr double switchSize = 10; // a square
constexpr double widestName = 220;

double besideName(double scale)
{
    return (switchSize + 2 * PlotLayout::swatchGap + PlotLayout::swatch) * scale;
}

double nameWidth(const Table &table, const PlotLayout &layout)
{
    double widest = 0;
    for (const Column &column : table.columns)
        widest = std::max(widest, QFontMetricsF(layout.font).horizontalAdvance(column.name));
    return std::min(widest + 1, widestName * layout.scale);
}

void paintSwitch(QPainter &painter, const QRectF &square, bool on, const PlotColors &colors)
{
    painter.setPen(QPen(on ? colors.text : colors.axis, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(square);
    if (!on)
        return;
    const double third = square.width() / 3;
    const QPointF foot(square.left() + 1.3 * third, square.bottom() - 0.7 * third);
    painter.drawLine(QPointF(square.left() + 0.6 * third, square.center().y()), foot);
    painter.drawLine(foot, QPointF(square.right() - 0.4 * third, square.top() + 0.7 * third));
}

} // namespace

ColumnList::ColumnList(const Table &table, const PlotLayout &layout, double row)
    : scale(layout.scale), font(layout.font), entries(table.columns.size())
{
    const double height = QFontMetricsF(font).height() + 6 * scale;
    const double pad = padding * scale;
    const double most = std::max(1.0, layout.area.width() - 2 * pad);
    const double width = std::min(most, besideName(scale) + nameWidth(table, layout) + pad);
    const int across = std::max(1, int(most / width));
    const int rows = (int(entries.size()) + across - 1) / across;
    const int rowsSeen =
        std::max(1, std::min(rows, int((layout.area.height() - 2 * pad) / height)));
    seen = double(rowsSeen) / std::max(1, rows);
    lastFirst = std::max(0, rows - rowsSeen);
    firstRow = std::clamp(row, 0.0, lastFirst);
    box = QRectF(0, layout.area.top(), across * width + 2 * pad, rowsSeen * height + 2 * pad);
    box.moveRight(layout.area.right());
    const int first = int(firstRow) * across;
    const int end = std::min(int(entries.size()), first + rowsSeen * across);
    for (int i = first; i < end; ++i)
        entries[std::size_t(i)] =
            QRectF(box.left() + pad + (i - first) % across * width,
                   box.top() + pad + (i - first) / across * height, width, height);
}

int ColumnList::hit(const QPointF &local) const
{
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [&local](const QRectF &r) { return r.contains(local); });
    return entry == entries.end() ? -1 : int(entry - entries.begin());
}

void ColumnList::paint(QPainter &painter, const Table &table, const std::vector<bool> &enabled,
                       PlotTheme theme) const
{
    const PlotColors colors = plotColors(theme);
    const QFontMetricsF metrics(font);
    const double gap = PlotLayout::swatchGap * scale;
    paintPanel(painter, box, colors);
    painter.setFont(font);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const QRectF &entry = entries[i];
        if (entry.isNull())
            continue;
        const double middle = std::floor(entry.center().y()) + 0.5;
        QRectF square(std::floor(entry.left()) + 0.5, 0, switchSize * scale, switchSize * scale);
        square.moveTop(middle - std::floor(square.height() / 2));
        paintSwitch(painter, square, enabled[i], colors);
        double x = square.right() + gap;
        if (enabled[i]) {
            painter.setPen(penOf(seriesStyle(int(i), theme), scale));
            painter.drawLine(QPointF(x, middle), QPointF(x + PlotLayout::swatch * scale, middle));
        }
        x += PlotLayout::swatch * scale + gap;
        painter.setPen(enabled[i] ? colors.text : colors.axis);
        const QRectF place(x, entry.top(), entry.right() - padding * scale - x, entry.height());
        painter.drawText(
            place, Qt::AlignLeft | Qt::AlignVCenter,
            metrics.elidedText(table.columns[i].name, Qt::ElideRight, place.width() + 1));
    }
    paintBar(painter, colors);
}

// Shows which rows of all are seen.
void ColumnList::paintBar(QPainter &painter, const PlotColors &colors) const
{
    if (lastFirst <= 0)
        return;
    const double pad = padding * scale;
    const QRectF way = box.adjusted(0, pad, 0, -pad);
    const double top = way.top() + (way.height() * (1 - seen)) * firstRow / lastFirst;
    const double width = barWidth * scale;
    painter.fillRect(QRectF(box.right() - (pad + width) / 2, top, width, way.height() * seen),
                     colors.axis);
}

} // namespace host
