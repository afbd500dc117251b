// SPDX-License-Identifier: MIT
#include "host/series/plot_transform.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {
namespace {

// Pixels from the origin within which the float `pos` is exact to a hundredth of a pixel.
constexpr double mostPixels = 1e4;

/// How one axis of a viewport lies in the pixels: pixel = offset + factor * (v - pos) * scale.
struct PixelAxis {
    double offset;
    double factor; // its sign is the direction in which pixels grow
    double pos;
    double scale;

    double toPixel(double v) const { return offset + factor * (v - pos) * scale; }
    double toViewport(double pixel) const { return pos + (pixel - offset) / (factor * scale); }
};

double atLeastTiny(float scale)
{
    return std::max(double(scale), double(std::numeric_limits<float>::min()));
}

// Without a centred origin, the projection puts n - 1 viewport pixels on n window pixels.
double stretch(int pixels)
{
    return pixels > 1 ? double(pixels) / (pixels - 1) : 1;
}

PixelAxis xAxis(const GL::Viewport &viewport, QSize size)
{
    const double scale = atLeastTiny(viewport.scale.x);
    if (viewport.align & GL::Viewport::AlignHCenter)
        return {size.width() * 0.5, 1, viewport.pos.x, scale};
    return {0, stretch(size.width()), viewport.pos.x, scale};
}

PixelAxis yAxis(const GL::Viewport &viewport, QSize size)
{
    const double scale = atLeastTiny(viewport.scale.y);
    if (viewport.align & GL::Viewport::AlignVCenter)
        return {size.height() * 0.5, -1, viewport.pos.y, scale};
    if (viewport.align & GL::Viewport::AlignBottom)
        return {double(size.height()), -stretch(size.height()), viewport.pos.y, scale};
    return {0, stretch(size.height()), viewport.pos.y, scale};
}

bool yGrowsDown(const GL::Viewport &viewport)
{
    return !(viewport.align & (GL::Viewport::AlignVCenter | GL::Viewport::AlignBottom));
}

double ySign(const GL::Viewport &viewport)
{
    return yGrowsDown(viewport) ? -1 : 1;
}

double clamped(double value, float low, float high)
{
    return std::min(std::max(value, double(low)), double(high));
}

// Rounds `exact` to `pos` and gives what was lost.
double setPos(float &pos, double exact)
{
    pos = float(exact);
    return exact - double(pos);
}

// Sets the scale and pos of an axis to show `middle` (viewport units) at `pixel`; gives what pos
// has lost.
double place(float &pos, float &scale, PixelAxis axis, double newScale, double middle, double pixel)
{
    scale = float(newScale);
    axis.scale = atLeastTiny(scale);
    return setPos(pos, middle - (pixel - axis.offset) / (axis.factor * axis.scale));
}

double zoomAxis(float &pos, float &scale, const PixelAxis &axis, double pixel, double factor,
                float low, float high)
{
    if (!(factor > 0) || !std::isfinite(factor))
        return 0;
    return place(pos, scale, axis, clamped(axis.scale * factor, low, high), axis.toViewport(pixel),
                 pixel);
}

double nonZero(double extent)
{
    return extent > 0 && std::isfinite(extent) ? extent : 1;
}

} // namespace

QRectF widened(const QRectF &range)
{
    QRectF wide = range.normalized();
    const auto extent = [](double value) { return value == 0 ? 1 : std::abs(value) * 0.1; };
    if (wide.width() == 0) {
        const double half = extent(wide.x()) / 2;
        wide.adjust(-half, 0, half, 0);
    }
    if (wide.height() == 0) {
        const double half = extent(wide.y()) / 2;
        wide.adjust(0, -half, 0, half);
    }
    return {wide.left(), wide.bottom(), wide.width(), -wide.height()};
}

PlotTransform::PlotTransform(const QRectF &data)
{
    const QRectF range = data.normalized();
    origin_ = range.center();
    unit_ = {1000 / nonZero(range.width()), 1000 / nonZero(range.height())};
}

QPointF PlotTransform::viewportToPixel(const GL::Viewport &viewport, QSize size,
                                       const QPointF &point)
{
    return {xAxis(viewport, size).toPixel(point.x()), yAxis(viewport, size).toPixel(point.y())};
}

QPointF PlotTransform::pixelToViewport(const GL::Viewport &viewport, QSize size,
                                       const QPointF &pixel)
{
    return {xAxis(viewport, size).toViewport(pixel.x()),
            yAxis(viewport, size).toViewport(pixel.y())};
}

QPointF PlotTransform::toPixel(const GL::Viewport &viewport, QSize size, const QPointF &data) const
{
    const QPointF fromOrigin = data - origin_;
    return viewportToPixel(
        viewport, size, {fromOrigin.x() * unit_.x(), fromOrigin.y() * unit_.y() * ySign(viewport)});
}

QPointF PlotTransform::toData(const GL::Viewport &viewport, QSize size, const QPointF &pixel) const
{
    const QPointF point = pixelToViewport(viewport, size, pixel);
    return origin_ + QPointF(point.x() / unit_.x(), point.y() / unit_.y() * ySign(viewport));
}

QSizeF PlotTransform::scale(const GL::Viewport &viewport, QSize size) const
{
    const PixelAxis x = xAxis(viewport, size);
    const PixelAxis y = yAxis(viewport, size);
    return {x.scale * x.factor * unit_.x(), y.scale * std::abs(y.factor) * unit_.y()};
}

void PlotTransform::fit(GL::Viewport &viewport, QSize size, const QRectF &area, const QRectF &data)
{
    const QRectF range = widened(data).normalized();
    const PixelAxis x = xAxis(viewport, size);
    const PixelAxis y = yAxis(viewport, size);
    const double scaleX = clamped(nonZero(area.width()) / (range.width() * unit_.x() * x.factor),
                                  viewport.minScale.x, viewport.maxScale.x);
    const double scaleY =
        clamped(nonZero(area.height()) / (range.height() * unit_.y() * std::abs(y.factor)),
                viewport.minScale.y, viewport.maxScale.y);
    const QPointF middle = range.center() - origin_;
    if (std::abs(middle.x()) * unit_.x() * scaleX > mostPixels)
        origin_.setX(range.center().x());
    if (std::abs(middle.y()) * unit_.y() * scaleY > mostPixels)
        origin_.setY(range.center().y());
    const QPointF rest = range.center() - origin_;
    const double lostX =
        place(viewport.pos.x, viewport.scale.x, x, scaleX, rest.x() * unit_.x(), area.center().x());
    const double lostY = place(viewport.pos.y, viewport.scale.y, y, scaleY,
                               rest.y() * unit_.y() * ySign(viewport), area.center().y());
    moveOrigin(viewport, lostX, lostY);
}

void PlotTransform::panBy(GL::Viewport &viewport, QSize size, const QPointF &pixels)
{
    const PixelAxis x = xAxis(viewport, size);
    const PixelAxis y = yAxis(viewport, size);
    const double lostX = setPos(viewport.pos.x, x.pos - pixels.x() / (x.factor * x.scale));
    const double lostY = setPos(viewport.pos.y, y.pos - pixels.y() / (y.factor * y.scale));
    moveOrigin(viewport, lostX, lostY);
    recentre(viewport);
}

void PlotTransform::zoomAbout(GL::Viewport &viewport, QSize size, const QPointF &pixel,
                              double factorX, double factorY)
{
    const double lostX = zoomAxis(viewport.pos.x, viewport.scale.x, xAxis(viewport, size),
                                  pixel.x(), factorX, viewport.minScale.x, viewport.maxScale.x);
    const double lostY = zoomAxis(viewport.pos.y, viewport.scale.y, yAxis(viewport, size),
                                  pixel.y(), factorY, viewport.minScale.y, viewport.maxScale.y);
    moveOrigin(viewport, lostX, lostY);
    recentre(viewport);
}

void PlotTransform::recentre(GL::Viewport &viewport)
{
    if (std::abs(double(viewport.pos.x)) * viewport.scale.x > mostPixels) {
        moveOrigin(viewport, viewport.pos.x, 0);
        viewport.pos.x = 0;
    }
    if (std::abs(double(viewport.pos.y)) * viewport.scale.y > mostPixels) {
        moveOrigin(viewport, 0, viewport.pos.y);
        viewport.pos.y = 0;
    }
}

void PlotTransform::moveOrigin(const GL::Viewport &viewport, double x, double y)
{
    origin_ += QPointF(x / unit_.x(), y / unit_.y() * ySign(viewport));
}

} // namespace host
