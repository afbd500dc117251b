// SPDX-License-Identifier: MIT
#include "host/series/plot.h"

#include <algorithm>
#include <cmath>

#include <QVector2D>

#include "host/series/nearest.h"

namespace host {
namespace {

// As the passes hand them to OpenGL.
QSize sizeOf(const GLW *glw)
{
    return {int(glw->width()), int(glw->height())};
}

QRectF fromEdges(double left, double right, const Extent &y)
{
    return {left, y.max, right - left, y.min - y.max};
}

} // namespace

SeriesPlot::SeriesPlot(std::shared_ptr<const Table> table)
    : table_(std::move(table)), enabled_(table_->columns.size(), true), frame_(range2D())
{
}

bool SeriesPlot::enabled(int column) const
{
    return column >= 0 && std::size_t(column) < enabled_.size() && enabled_[std::size_t(column)];
}

void SeriesPlot::toggle(int column)
{
    if (column >= 0 && std::size_t(column) < enabled_.size())
        enabled_[std::size_t(column)] = !enabled_[std::size_t(column)];
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

void SeriesPlot::fit(GLW *glw, const QRectF &range)
{
    frame_.fit(glw->viewport, sizeOf(glw), PlotLayout(*table_, sizeOf(glw), titled_).area, range);
}

void SeriesPlot::fitAll(GLW *glw)
{
    const QRectF range = widened(range2D());
    const double air = 0.04 * range.height();
    fit(glw, range.adjusted(0, -air, 0, air));
}

QRectF SeriesPlot::visibleRange(const GLW *glw) const
{
    const QRectF area = PlotLayout(*table_, sizeOf(glw), titled_).area;
    return {toData(glw, area.topLeft()), toData(glw, area.bottomRight())};
}

void SeriesPlot::panBy(GLW *glw, const QPointF &pixels)
{
    frame_.panBy(glw->viewport, sizeOf(glw), pixels);
}

void SeriesPlot::zoomAbout(GLW *glw, const QPointF &local, double factorX, double factorY)
{
    frame_.zoomAbout(glw->viewport, sizeOf(glw), local, factorX, factorY);
}

QPointF SeriesPlot::toLocal(const GLW *glw, const QPointF &data) const
{
    return frame_.toPixel(glw->viewport, sizeOf(glw), data);
}

QPointF SeriesPlot::toData(const GLW *glw, const QPointF &local) const
{
    return frame_.toData(glw->viewport, sizeOf(glw), local);
}

std::optional<Sample> SeriesPlot::nearest(const GLW *glw, const QPointF &local, double within) const
{
    const QPointF point = toData(glw, local);
    const QSizeF scale = frame_.scale(glw->viewport, sizeOf(glw));
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

QVector3D SeriesPlot::nearestPosition(const GLW *glw, const QVector3D &position) const
{
    const QSize size = sizeOf(glw);
    const QPointF pixel = PlotFrame::viewportToPixel(glw->viewport, size, position.toPointF());
    const auto sample = nearest(glw, pixel);
    if (!sample)
        return position;
    const QPointF found = toLocal(glw, {sample->x, sample->y});
    return QVector3D(QVector2D(PlotFrame::pixelToViewport(glw->viewport, size, found)),
                     position.z());
}

int SeriesPlot::legendHit(const GLW *glw, const QPointF &local) const
{
    const PlotLayout layout(*table_, sizeOf(glw), titled_);
    const auto entry = std::find_if(layout.legend.begin(), layout.legend.end(),
                                    [&local](const QRectF &r) { return r.contains(local); });
    return entry == layout.legend.end() ? -1 : int(entry - layout.legend.begin());
}

template <class Visit> void SeriesPlot::visitSelected(Visit visit) const
{
    if (!selected_)
        return;
    const double beyond = std::nextafter(selected_->right(), HUGE_VAL); // the edge counts
    const auto [first, last] = rowsBetween(*table_, selected_->left(), beyond);
    for (std::size_t i = 0; i < selectedColumns_.size(); ++i) {
        const std::vector<double> &values = table_->columns[i].values;
        for (std::size_t row = first; selectedColumns_[i] && row < last; ++row)
            if (values[row] >= selected_->top() && values[row] <= selected_->bottom() &&
                !visit(Sample{int(i), row, table_->x[row], values[row]}))
                return;
    }
}

const Selection &SeriesPlot::select(const GLW *glw, const QRectF &local)
{
    const QRectF pixels = local.normalized();
    selected_ =
        QRectF(toData(glw, pixels.topLeft()), toData(glw, pixels.bottomRight())).normalized();
    selectedColumns_ = enabled_;
    selection_ = Selection{std::vector<std::size_t>(enabled_.size(), 0), 0};
    visitSelected([this](const Sample &sample) {
        ++selection_.counts[std::size_t(sample.column)];
        ++selection_.total;
        return true;
    });
    return selection_;
}

void SeriesPlot::clearSelection()
{
    selected_.reset();
    selectedColumns_.clear();
    selection_ = {};
}

std::vector<Sample> SeriesPlot::selectedSamples(std::size_t most) const
{
    std::vector<Sample> samples;
    visitSelected([&](const Sample &sample) {
        if (samples.size() < most)
            samples.push_back(sample);
        return samples.size() < most;
    });
    return samples;
}

QRectF SeriesPlot::selectedPixels(const GLW *glw) const
{
    return QRectF(toLocal(glw, selected_->topLeft()), toLocal(glw, selected_->bottomRight()))
        .normalized();
}

SeriesPlot::Picture SeriesPlot::picture(const GLW *glw) const
{
    Picture picture{sizeOf(glw),
                    PlotLayout(*table_, sizeOf(glw), titled_),
                    visibleRange(glw).normalized(),
                    {},
                    {}};
    const QRectF &area = picture.layout.area;
    const QRectF &range = picture.range;
    const bool small = picture.layout.small;
    picture.xTicks = table_->xIsTime
                         ? timeTicks(range.left(), range.right(), area.width(), small ? 64 : 88)
                         : numberTicks(range.left(), range.right(), area.width(), small ? 56 : 80);
    picture.yTicks = numberTicks(range.top(), range.bottom(), area.height(), small ? 30 : 44);
    return picture;
}

} // namespace host
