// SPDX-License-Identifier: MIT
#include "host/item/series_item.h"

#include <QLocale>

#include "host/ui/metrics.h"

namespace host {

namespace {

bool sameSample(const std::optional<Sample> &a, const std::optional<Sample> &b)
{
    return bool(a) == bool(b) && (!a || (a->column == b->column && a->row == b->row));
}

} // namespace

SeriesItem::SeriesItem(std::shared_ptr<const Table> table) : table_(table), plot_(std::move(table))
{
    PlotOptions options;
    options.scale = Metrics::px(1);
    plot_.setOptions(options);
}

QString SeriesItem::details() const
{
    return tr("%1 rows  ·  %2 columns")
        .arg(QLocale().toString(qulonglong(table_->rows())))
        .arg(table_->columns.size());
}

quint64 SeriesItem::byteSize() const
{
    return table_->byteSize();
}

void SeriesItem::setTitled(bool titled)
{
    PlotOptions options = plot_.options();
    options.titled = titled;
    plot_.setOptions(options);
}

void SeriesItem::setInsets(const QMarginsF &insets)
{
    PlotOptions options = plot_.options();
    if (options.insets == insets)
        return;
    options.insets = insets;
    plot_.setOptions(options);
    steering_.layoutChanged();
}

void SeriesItem::draw2D(GLW *glw, const Display &display)
{
    plot_.setTheme(display.dark ? PlotTheme::Dark : PlotTheme::Light);
    plot_.setBackground(!display.transparent);
    plot_.draw2D(glw);
}

void SeriesItem::paintForeground(GLW *glw, QPainter *painter, const Display &display)
{
    plot_.setCrosshair(display.hover ? crosshair_ : std::nullopt);
    plot_.paintForeground(glw, painter);
}

/// Where the view stands more finely than the object's viewport tells.
QByteArray SeriesItem::look(GLW *glw) const
{
    const PlotState state = plot_.state(glw);
    QByteArray all(reinterpret_cast<const char *>(&state.range), int(sizeof state.range));
    for (const bool enabled : state.enabled)
        all.append(enabled ? '1' : '0');
    return all;
}

/// Snaps the crosshair to the sample nearest to the pointer.
bool SeriesItem::pick2D(GLW *glw, const std::optional<QPointF> &pointer)
{
    constexpr double reach = 80; // pixels
    const std::optional<Sample> before = crosshair_;
    crosshair_.reset();
    if (pointer)
        crosshair_ = plot_.nearest(glw, PlotSteering::fromTop(glw, *pointer), reach);
    return !sameSample(before, crosshair_);
}

void SeriesItem::selectArea2D(GLW *glw, const QRectF &area)
{
    plot_.select(glw, QRectF(PlotSteering::fromTop(glw, area.topLeft()),
                             PlotSteering::fromTop(glw, area.bottomRight()))
                          .normalized());
}

bool SeriesItem::click(GLW *glw, const QPointF &at)
{
    return plot_.click(glw, PlotSteering::fromTop(glw, at));
}

} // namespace host
