// SPDX-License-Identifier: MIT
#include "host/series/plot.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "host/series/nearest.h"
#include "host/series/plot_picture.h"

namespace host {
namespace {

// As the passes hand them to OpenGL.
QSize sizeOf(const GLW *glw)
{
    return {int(glw->width()), int(glw->height())};
}

// The pixel of the window at which the rectangle of `glw` begins, as OpenGL places it: the passes
// cut its lower left corner and its size to whole pixels.
QPointF topLeftOf(const GLW *glw)
{
    const double windowHeight = glw->y() + glw->height() + glw->glY();
    return {double(int(glw->x())), std::round(windowHeight) - int(glw->glY()) - int(glw->height())};
}

QRectF fromEdges(double left, double right, const Extent &y)
{
    return {left, y.max, right - left, y.min - y.max};
}

} // namespace

SeriesPlot::SeriesPlot(std::shared_ptr<const Table> table)
    : table_(std::move(table)), enabled_(table_->columns.size(), true), transform_(range2D())
{
}

bool SeriesPlot::enabled(int column) const
{
    return column >= 0 && std::size_t(column) < enabled_.size() && enabled_[std::size_t(column)];
}

void SeriesPlot::toggle(int column)
{
    if (column < 0 || std::size_t(column) >= enabled_.size())
        return;
    enabled_[std::size_t(column)] = !enabled_[std::size_t(column)];
    if (selection_.range)
        countSelection(*selection_.range);
}

QRectF SeriesPlot::range2D() const
{
    Extent y;
    for (std::size_t i = 0; i < enabled_.size(); ++i) {
        const MinMaxPyramid &pyramid = table_->columns[i].pyramid;
        if (enabled_[i] && pyramid.levels() > 0)
            y.add(pyramid.level(pyramid.levels() - 1)[0]);
    }
    if (y.empty())
        y = {0, 1};
    return table_->x.empty() ? fromEdges(0, 1, y)
                             : fromEdges(table_->x.front(), table_->x.back(), y);
}

PlotLayout SeriesPlot::layout(const GLW *glw) const
{
    return {*table_, sizeOf(glw), options_};
}

void SeriesPlot::fit(GLW *glw, const QRectF &range)
{
    transform_.fit(glw->viewport, sizeOf(glw), layout(glw).area, range);
}

QRectF SeriesPlot::visibleRange(const GLW *glw) const
{
    const QRectF area = layout(glw).area;
    return {toData(glw, area.topLeft()), toData(glw, area.bottomRight())};
}

void SeriesPlot::panBy(GLW *glw, const QPointF &pixels)
{
    transform_.panBy(glw->viewport, sizeOf(glw), pixels);
}

void SeriesPlot::zoomAbout(GLW *glw, const QPointF &local, double factorX, double factorY)
{
    transform_.zoomAbout(glw->viewport, sizeOf(glw), local, factorX, factorY);
}

QPointF SeriesPlot::toLocal(const GLW *glw, const QPointF &data) const
{
    return transform_.toPixel(glw->viewport, sizeOf(glw), data);
}

QPointF SeriesPlot::toData(const GLW *glw, const QPointF &local) const
{
    return transform_.toData(glw->viewport, sizeOf(glw), local);
}

PlotState SeriesPlot::state(const GLW *glw) const
{
    return {visibleRange(glw), enabled_};
}

void SeriesPlot::restore(GLW *glw, const PlotState &state)
{
    for (std::size_t i = 0; i < enabled_.size(); ++i)
        enabled_[i] = i >= state.enabled.size() || state.enabled[i];
    if (selection_.range)
        countSelection(*selection_.range);
    fit(glw, state.range.width() > 0 ? state.range : range2D());
}

std::optional<Sample> SeriesPlot::nearest(const GLW *glw, const QPointF &local, double within) const
{
    const QPointF point = toData(glw, local);
    const QSizeF scale = transform_.scale(glw->viewport, sizeOf(glw));
    std::optional<Sample> sample;
    for (std::size_t i = 0; i < enabled_.size(); ++i) {
        const Column &column = table_->columns[i];
        const auto row =
            enabled_[i] ? nearestRow(*table_, column, point, scale, within) : std::nullopt;
        if (!row)
            continue;
        within = row->distance;
        sample = Sample{int(i), row->row, table_->x[row->row], column.values[row->row]};
    }
    return sample;
}

bool SeriesPlot::click(const GLW *glw, const QPointF &local)
{
    const PlotLayout now = layout(glw);
    const bool wasOpen = isListOpen();
    if (wasOpen) {
        const ColumnList list(*table_, now, *listRow_);
        if (list.box.contains(local)) {
            toggle(list.hit(local));
            return true;
        }
        closeList();
    }
    if (now.more.contains(local)) {
        if (!wasOpen)
            listRow_ = 0;
        return true;
    }
    const int column = now.legendHit(local);
    toggle(column);
    return wasOpen || column >= 0;
}

bool SeriesPlot::scrollList(const GLW *glw, const QPointF &local, double steps)
{
    if (!isListOpen())
        return false;
    const ColumnList list(*table_, layout(glw), *listRow_);
    if (!list.box.contains(local))
        return false;
    listRow_ = std::clamp(list.firstRow - steps, 0.0, list.lastFirst);
    return true;
}

const Selection &SeriesPlot::select(const GLW *glw, const QRectF &local)
{
    const QRectF pixels = local.normalized();
    countSelection(
        QRectF(toData(glw, pixels.topLeft()), toData(glw, pixels.bottomRight())).normalized());
    return selection_;
}

void SeriesPlot::countSelection(const QRectF &range)
{
    selection_ = selectSamples(*table_, enabled_, range);
}

PlotPicture SeriesPlot::picture(const GLW *glw) const
{
    PlotPicture picture{
        *table_,     enabled_,    selection_, transform_, glw->viewport,
        sizeOf(glw), layout(glw), theme_,     filled_,    visibleRange(glw).normalized(),
        crosshair_,  {}};
    const PlotLayout &layout = picture.layout;
    const QRectF &range = picture.range;
    const double xSpacing = (table_->xIsTime ? layout.small ? 64 : 88
                             : layout.small  ? 56
                                             : 80) *
                            layout.scale;
    const auto ticks = table_->xIsTime ? timeTicks : numberTicks;
    picture.xTicks = ticks(range.left(), range.right(), layout.area.width(), xSpacing);
    picture.yTicks = numberTicks(range.top(), range.bottom(), layout.area.height(),
                                 (layout.small ? 30 : 44) * layout.scale);
    if (listRow_ && layout.axes)
        picture.list.emplace(*table_, layout, *listRow_);
    return picture;
}

void SeriesPlot::draw2D(GLW *glw) const
{
    if (!sizeOf(glw).isEmpty())
        drawPlot(picture(glw));
}

void SeriesPlot::paintForeground(GLW *glw, QPainter *painter) const
{
    if (sizeOf(glw).isEmpty())
        return;
    painter->save();
    painter->translate(topLeftOf(glw));
    paintPlot(picture(glw), *painter);
    painter->restore();
}

} // namespace host
