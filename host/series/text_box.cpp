// SPDX-License-Identifier: MIT
#include "host/series/text_box.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

#include "host/series/plot_layout.h"

namespace host {
namespace {

constexpr double boxPadding = 6;

QFont bolder(QFont font, bool bold)
{
    font.setBold(bold);
    return font;
}

} // namespace

QColor faded(QColor color, double alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QPen penOf(const SeriesStyle &style, double scale)
{
    QPen pen(style.color, 2 * scale, style.pen);
    pen.setCapStyle(Qt::FlatCap);
    return pen;
}

QSizeF boxSize(const std::vector<BoxLine> &lines, const QFont &font, double scale)
{
    double width = 0;
    for (const BoxLine &line : lines)
        width =
            std::max(width, QFontMetricsF(bolder(font, line.bold)).horizontalAdvance(line.text));
    return {width + (2 * boxPadding + PlotLayout::swatch) * scale,
            double(lines.size()) * QFontMetricsF(font).height() + 2 * boxPadding * scale};
}

QRectF placeBox(const QPointF &point, const QSizeF &size, const QRectF &area, double scale)
{
    const double gap = 12 * scale;
    QRectF box(point + QPointF(gap, -gap - size.height()), size);
    if (box.right() > area.right())
        box.moveRight(point.x() - gap);
    box.moveLeft(std::max(box.left(), area.left()));
    if (box.top() < area.top())
        box.moveTop(std::min(point.y() + gap, area.bottom() - size.height()));
    return {QPointF(std::round(box.x()), std::round(box.y())), box.size()};
}

void paintPanel(QPainter &painter, const QRectF &box, const PlotColors &colors)
{
    painter.setPen(QPen(colors.axis, 1));
    painter.setBrush(faded(colors.background, 0.92));
    painter.drawRoundedRect(box.translated(0.5, 0.5), 3, 3);
}

void paintBox(QPainter &painter, const QRectF &box, const std::vector<BoxLine> &lines,
              const QFont &font, const PlotColors &colors, double scale)
{
    paintPanel(painter, box, colors);
    const double height = QFontMetricsF(font).height();
    double y = box.top() + boxPadding * scale;
    for (const BoxLine &line : lines) {
        double x = box.left() + boxPadding * scale;
        if (line.style) {
            painter.setPen(penOf(*line.style, scale));
            painter.drawLine(QPointF(x, y + height / 2), QPointF(x + 12 * scale, y + height / 2));
        }
        x += line.style ? PlotLayout::swatch * scale : 0;
        painter.setFont(bolder(font, line.bold));
        painter.setPen(colors.text);
        painter.drawText(QRectF(x, y, box.right() - x, height), Qt::AlignLeft | Qt::AlignVCenter,
                         line.text);
        y += height;
    }
}

} // namespace host
