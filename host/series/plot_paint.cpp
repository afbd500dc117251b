// SPDX-License-Identifier: MIT
// The texts of a plot, and what is drawn over its lines.
#include "host/series/plot_picture.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

#include "host/series/plot.h"
#include "host/series/text_box.h"

namespace host {
namespace {

QString numberText(double value)
{
    return QString::number(value, 'g', 10);
}

void paintTitle(QPainter &painter, const PlotPicture &picture)
{
    const QRectF &place = picture.layout.title;
    if (place.isEmpty())
        return;
    painter.setFont(picture.layout.titleFont);
    painter.setPen(plotColors(picture.theme).text);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(picture.layout.titleFont)
                         .elidedText(picture.table.name, Qt::ElideMiddle, place.width()));
}

void paintLegend(QPainter &painter, const PlotPicture &picture)
{
    const PlotLayout &layout = picture.layout;
    const QFontMetricsF metrics(layout.font);
    const PlotColors colors = plotColors(picture.theme);
    const double swatch = PlotLayout::swatch * layout.scale;
    painter.setFont(layout.font);
    for (std::size_t i = 0; i < layout.legend.size() && !layout.legend[i].isNull(); ++i) {
        const QRectF &place = layout.legend[i];
        const double middle = std::floor(place.center().y());
        SeriesStyle style = seriesStyle(int(i), picture.theme);
        style.color = picture.enabled[i] ? style.color : colors.axis;
        painter.setPen(penOf(style, layout.scale));
        if (picture.enabled[i])
            painter.drawLine(QPointF(place.left(), middle), QPointF(place.left() + swatch, middle));
        painter.setPen(picture.enabled[i] ? colors.text : colors.axis);
        const QRectF text = place.adjusted(swatch + PlotLayout::swatchGap * layout.scale, 0, 2, 0);
        painter.drawText(
            text, Qt::AlignLeft | Qt::AlignVCenter,
            metrics.elidedText(picture.table.columns[i].name, Qt::ElideRight, text.width()));
    }
    painter.setPen(colors.axis);
    if (layout.leftOut > 0)
        painter.drawText(layout.more, Qt::AlignLeft | Qt::AlignVCenter,
                         SeriesPlot::tr("+%1 more").arg(layout.leftOut));
}

void paintXAxis(QPainter &painter, const PlotPicture &picture)
{
    const QRectF &area = picture.layout.area;
    const QFontMetricsF metrics(picture.layout.font);
    const double line = metrics.height();
    const PlotColors colors = plotColors(picture.theme);
    const double scale = picture.layout.scale;
    const double right = picture.layout.free.right();
    double free = picture.layout.free.left(); // where the lower row has room
    painter.setFont(picture.layout.font);
    painter.setPen(colors.text);
    for (const Tick &tick : picture.xTicks) {
        const double x = picture.toLocal({tick.value, 0}).x();
        QRectF place(x - 100 * scale, area.bottom() + 5 * scale, 200 * scale, line);
        if (x + metrics.horizontalAdvance(tick.label) / 2 <= right)
            painter.drawText(place, Qt::AlignCenter, tick.label);
        place.translate(0, line);
        const double half = metrics.horizontalAdvance(tick.context) / 2;
        if (tick.context.isEmpty() || x - half < free || x + half > right)
            continue;
        painter.drawText(place, Qt::AlignCenter, tick.context);
        free = x + half + 12 * scale;
    }
    free = std::max(free, area.left());
    const double room = area.right() - free;
    if (room < metrics.averageCharWidth() * 4)
        return;
    painter.setPen(colors.axis);
    painter.drawText(QRectF(free, area.bottom() + 5 * scale + line, room, line), Qt::AlignRight,
                     metrics.elidedText(picture.table.xName, Qt::ElideRight, room));
}

void paintYAxis(QPainter &painter, const PlotPicture &picture)
{
    const QRectF &area = picture.layout.area;
    const double left = picture.layout.free.left();
    const double room = area.left() - left - 8 * picture.layout.scale;
    double widest = 0;
    for (const Tick &tick : picture.yTicks)
        widest = std::max(widest, QFontMetricsF(picture.layout.font).horizontalAdvance(tick.label));
    QFont font = picture.layout.font;
    if (widest > room) // digits that do not fit would mislead
        font.setPixelSize(std::max(6, int(font.pixelSize() * room / widest)));
    painter.setFont(font);
    painter.setPen(plotColors(picture.theme).text);
    for (const Tick &tick : picture.yTicks) {
        const double y = picture.toLocal({0, tick.value}).y();
        painter.drawText(
            QRectF(left, y - 10 * picture.layout.scale, room, 20 * picture.layout.scale),
            Qt::AlignRight | Qt::AlignVCenter, tick.label);
    }
}

void paintCrosshair(QPainter &painter, const PlotPicture &picture)
{
    if (!picture.crosshair || picture.crosshair->row >= picture.table.rows() ||
        !picture.enabled[std::size_t(picture.crosshair->column)])
        return;
    const Sample &mark = *picture.crosshair;
    const double scale = picture.layout.scale;
    const QRectF &area = picture.layout.area;
    const QPointF point = picture.toLocal({mark.x, mark.y});
    if (!area.contains(point))
        return;
    const PlotColors colors = plotColors(picture.theme);
    const QPointF crisp(std::floor(point.x()) + 0.5, std::floor(point.y()) + 0.5);
    painter.setPen(QPen(faded(colors.text, 0.5), 1));
    painter.drawLine(QPointF(crisp.x(), area.top()), QPointF(crisp.x(), area.bottom()));
    painter.drawLine(QPointF(area.left(), crisp.y()), QPointF(area.right(), crisp.y()));
    painter.setPen(QPen(colors.background, 1.5 * scale));
    painter.setBrush(seriesStyle(mark.column, picture.theme).color);
    painter.drawEllipse(point, 5 * scale, 5 * scale);

    std::vector<BoxLine> lines{
        {picture.table.xIsTime ? timeText(mark.x) : picture.table.xName + ' ' + numberText(mark.x),
         {}}};
    const int most = picture.layout.small ? 1 : 8; // values beside the one that is marked
    for (int i = 0; i < int(picture.enabled.size()); ++i) {
        const Column &column = picture.table.columns[std::size_t(i)];
        const double value = column.values[mark.row];
        const bool marked = i == mark.column;
        if (marked ||
            (picture.enabled[std::size_t(i)] && !std::isnan(value) && int(lines.size()) < most))
            lines.push_back(
                {column.name + "  " + numberText(value), seriesStyle(i, picture.theme), marked});
    }
    const QFont &font = picture.layout.font;
    paintBox(painter, placeBox(point, boxSize(lines, font, scale), area, scale), lines, font,
             colors, scale);
}

void paintSelection(QPainter &painter, const PlotPicture &picture)
{
    if (!picture.selection.range)
        return;
    std::vector<BoxLine> lines{
        {picture.selection.total == 1
             ? SeriesPlot::tr("1 sample selected")
             : SeriesPlot::tr("%1 samples selected").arg(picture.selection.total),
         {},
         true}};
    for (std::size_t i = 0; i < picture.selection.counts.size() && lines.size() < 9; ++i)
        if (picture.selection.counts[i] > 0 && !picture.layout.small)
            lines.push_back({QStringLiteral("%1  %2")
                                 .arg(picture.table.columns[i].name)
                                 .arg(picture.selection.counts[i]),
                             seriesStyle(int(i), picture.theme)});
    const QRectF &area = picture.layout.area;
    const double scale = picture.layout.scale;
    const QPointF corner(area.left() + 8 * scale, area.top() + 8 * scale);
    paintBox(painter, QRectF(corner, boxSize(lines, picture.layout.font, scale)), lines,
             picture.layout.font, plotColors(picture.theme), scale);
}

} // namespace

void paintPlot(const PlotPicture &picture, QPainter &painter)
{
    painter.setClipRect(QRectF(QPointF(0, 0), picture.size), Qt::IntersectClip);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(picture.layout.font);
    if (picture.layout.axes) {
        paintTitle(painter, picture);
        paintLegend(painter, picture);
        paintXAxis(painter, picture);
        paintYAxis(painter, picture);
    }
    paintCrosshair(painter, picture);
    paintSelection(painter, picture);
    if (picture.list)
        picture.list->paint(painter, picture.table, picture.enabled, picture.theme);
}

} // namespace host
