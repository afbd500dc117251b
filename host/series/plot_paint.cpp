// SPDX-License-Identifier: MIT
// The texts of a plot, and what is drawn over its lines.
#include "host/series/plot.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

namespace host {
namespace {

constexpr double boxPadding = 6;

// The pixel of the window at which the rectangle of `glw` begins, as OpenGL places it: the passes
// cut its lower left corner and its size to whole pixels.
QPointF topLeftOf(const GLW *glw)
{
    const double windowHeight = glw->y() + glw->height() + glw->glY();
    return {double(int(glw->x())), std::round(windowHeight) - int(glw->glY()) - int(glw->height())};
}

QColor faded(QColor color, double alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QPen penOf(const SeriesStyle &style)
{
    QPen pen(style.color, 2, style.pen);
    pen.setCapStyle(Qt::FlatCap);
    return pen;
}

QString numberText(double value)
{
    return QString::number(value, 'g', 10);
}

/// A line of text with the style of the column it speaks of.
struct BoxLine {
    QString text;
    std::optional<SeriesStyle> style;
    bool bold = false;
};

QFont bolder(QFont font, bool bold)
{
    font.setBold(bold);
    return font;
}

QSizeF boxSize(const std::vector<BoxLine> &lines, const QFont &font)
{
    double width = 0;
    for (const BoxLine &line : lines)
        width =
            std::max(width, QFontMetricsF(bolder(font, line.bold)).horizontalAdvance(line.text));
    return {width + 2 * boxPadding + PlotLayout::swatch,
            double(lines.size()) * QFontMetricsF(font).height() + 2 * boxPadding};
}

void paintBox(QPainter &painter, const QRectF &box, const std::vector<BoxLine> &lines,
              const QFont &font, const PlotColors &colors)
{
    painter.setPen(QPen(colors.axis, 1));
    painter.setBrush(faded(colors.background, 0.92));
    painter.drawRoundedRect(box.translated(0.5, 0.5), 3, 3);
    const double height = QFontMetricsF(font).height();
    double y = box.top() + boxPadding;
    for (const BoxLine &line : lines) {
        double x = box.left() + boxPadding;
        if (line.style) {
            painter.setPen(penOf(*line.style));
            painter.drawLine(QPointF(x, y + height / 2), QPointF(x + 12, y + height / 2));
        }
        x += line.style ? PlotLayout::swatch : 0;
        painter.setFont(bolder(font, line.bold));
        painter.setPen(colors.text);
        painter.drawText(QRectF(x, y, box.right() - x, height), Qt::AlignLeft | Qt::AlignVCenter,
                         line.text);
        y += height;
    }
}

// Beside `point`, on the side where there is room in `area`.
QRectF placeBox(const QPointF &point, const QSizeF &size, const QRectF &area)
{
    const double gap = 12;
    QRectF box(point + QPointF(gap, -gap - size.height()), size);
    if (box.right() > area.right())
        box.moveRight(point.x() - gap);
    box.moveLeft(std::max(box.left(), area.left()));
    if (box.top() < area.top())
        box.moveTop(std::min(point.y() + gap, area.bottom() - size.height()));
    return {QPointF(std::round(box.x()), std::round(box.y())), box.size()};
}

} // namespace

void SeriesPlot::paintForeground(GLW *glw, QPainter *painter) const
{
    const Picture now = picture(glw);
    if (now.size.isEmpty())
        return;
    painter->save();
    painter->translate(topLeftOf(glw));
    painter->setClipRect(QRectF(QPointF(0, 0), now.size), Qt::IntersectClip);
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->setFont(now.layout.font);
    if (now.layout.axes) {
        paintTitle(*painter, now);
        paintLegend(*painter, now);
        paintXAxis(*painter, now, glw);
        paintYAxis(*painter, now, glw);
    }
    paintCrosshair(*painter, now, glw);
    paintSelection(*painter, now);
    painter->restore();
}

void SeriesPlot::paintTitle(QPainter &painter, const Picture &picture) const
{
    const QRectF &place = picture.layout.title;
    if (place.isEmpty())
        return;
    painter.setFont(picture.layout.titleFont);
    painter.setPen(plotColors(theme_).text);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(picture.layout.titleFont)
                         .elidedText(table_->name, Qt::ElideMiddle, place.width()));
}

void SeriesPlot::paintLegend(QPainter &painter, const Picture &picture) const
{
    const PlotLayout &layout = picture.layout;
    const QFontMetricsF metrics(layout.font);
    const PlotColors colors = plotColors(theme_);
    painter.setFont(layout.font);
    for (std::size_t i = 0; i < layout.legend.size() && !layout.legend[i].isNull(); ++i) {
        const QRectF &place = layout.legend[i];
        const double middle = std::floor(place.center().y());
        SeriesStyle style = seriesStyle(int(i), theme_);
        style.color = enabled_[i] ? style.color : colors.axis;
        painter.setPen(penOf(style));
        if (enabled_[i])
            painter.drawLine(QPointF(place.left(), middle),
                             QPointF(place.left() + PlotLayout::swatch, middle));
        painter.setPen(enabled_[i] ? colors.text : colors.axis);
        const QRectF text = place.adjusted(PlotLayout::swatch + 5, 0, 2, 0);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(table_->columns[i].name, Qt::ElideRight, text.width()));
    }
    painter.setPen(colors.axis);
    if (layout.leftOut > 0)
        painter.drawText(layout.more, Qt::AlignLeft | Qt::AlignVCenter,
                         QStringLiteral("+%1 more").arg(layout.leftOut));
}

void SeriesPlot::paintXAxis(QPainter &painter, const Picture &picture, const GLW *glw) const
{
    const QRectF &area = picture.layout.area;
    const QFontMetricsF metrics(picture.layout.font);
    const double line = metrics.height();
    const PlotColors colors = plotColors(theme_);
    double free = area.left(); // where the lower row has room
    painter.setFont(picture.layout.font);
    painter.setPen(colors.text);
    for (const Tick &tick : picture.xTicks) {
        const double x = toLocal(glw, {tick.value, 0}).x();
        QRectF place(x - 100, area.bottom() + 5, 200, line);
        if (x + metrics.horizontalAdvance(tick.label) / 2 <= picture.size.width())
            painter.drawText(place, Qt::AlignCenter, tick.label);
        place.translate(0, line);
        const double half = metrics.horizontalAdvance(tick.context) / 2;
        if (tick.context.isEmpty() || x - half < free - area.left() ||
            x + half > picture.size.width())
            continue;
        painter.drawText(place, Qt::AlignCenter, tick.context);
        free = x + half + 12;
    }
    const double room = area.right() - free;
    if (room < metrics.averageCharWidth() * 4)
        return;
    painter.setPen(colors.axis);
    painter.drawText(QRectF(free, area.bottom() + 5 + line, room, line), Qt::AlignRight,
                     metrics.elidedText(table_->xName, Qt::ElideRight, room));
}

void SeriesPlot::paintYAxis(QPainter &painter, const Picture &picture, const GLW *glw) const
{
    const QRectF &area = picture.layout.area;
    const double room = area.left() - 8;
    double widest = 0;
    for (const Tick &tick : picture.yTicks)
        widest = std::max(widest, QFontMetricsF(picture.layout.font).horizontalAdvance(tick.label));
    QFont font = picture.layout.font;
    if (widest > room) // digits that do not fit would mislead
        font.setPixelSize(std::max(6, int(font.pixelSize() * room / widest)));
    painter.setFont(font);
    painter.setPen(plotColors(theme_).text);
    for (const Tick &tick : picture.yTicks) {
        const double y = toLocal(glw, {0, tick.value}).y();
        painter.drawText(QRectF(0, y - 10, room, 20), Qt::AlignRight | Qt::AlignVCenter,
                         tick.label);
    }
}

void SeriesPlot::paintCrosshair(QPainter &painter, const Picture &picture, const GLW *glw) const
{
    if (!crosshair_ || !enabled(crosshair_->column) || crosshair_->row >= table_->rows())
        return;
    const QRectF &area = picture.layout.area;
    const QPointF point = toLocal(glw, {crosshair_->x, crosshair_->y});
    if (!area.contains(point))
        return;
    const PlotColors colors = plotColors(theme_);
    const QPointF crisp(std::floor(point.x()) + 0.5, std::floor(point.y()) + 0.5);
    painter.setPen(QPen(faded(colors.text, 0.5), 1));
    painter.drawLine(QPointF(crisp.x(), area.top()), QPointF(crisp.x(), area.bottom()));
    painter.drawLine(QPointF(area.left(), crisp.y()), QPointF(area.right(), crisp.y()));
    painter.setPen(QPen(colors.background, 1.5));
    painter.setBrush(seriesStyle(crosshair_->column, theme_).color);
    painter.drawEllipse(point, 5, 5);

    std::vector<BoxLine> lines{{table_->xIsTime ? timeText(crosshair_->x)
                                                : table_->xName + ' ' + numberText(crosshair_->x),
                                {}}};
    const int most = picture.layout.small ? 1 : 8; // values beside the one that is marked
    for (int i = 0; i < int(enabled_.size()); ++i) {
        const Column &column = table_->columns[std::size_t(i)];
        const double value = column.values[crosshair_->row];
        const bool marked = i == crosshair_->column;
        if (marked || (enabled(i) && !std::isnan(value) && int(lines.size()) < most))
            lines.push_back(
                {column.name + "  " + numberText(value), seriesStyle(i, theme_), marked});
    }
    paintBox(painter, placeBox(point, boxSize(lines, picture.layout.font), area), lines,
             picture.layout.font, colors);
}

void SeriesPlot::paintSelection(QPainter &painter, const Picture &picture) const
{
    if (!selected_)
        return;
    std::vector<BoxLine> lines{{selection_.total == 1
                                    ? QStringLiteral("1 sample selected")
                                    : QStringLiteral("%1 samples selected").arg(selection_.total),
                                {},
                                true}};
    for (std::size_t i = 0; i < selection_.counts.size() && lines.size() < 9; ++i)
        if (selection_.counts[i] > 0 && !picture.layout.small)
            lines.push_back(
                {QStringLiteral("%1  %2").arg(table_->columns[i].name).arg(selection_.counts[i]),
                 seriesStyle(int(i), theme_)});
    const QRectF &area = picture.layout.area;
    const QSizeF size = boxSize(lines, picture.layout.font);
    paintBox(painter, QRectF(QPointF(area.left() + 8, area.top() + 8), size), lines,
             picture.layout.font, plotColors(theme_));
}

} // namespace host
