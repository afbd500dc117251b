// SPDX-License-Identifier: MIT
#include "host/item/plot_steering.h"

#include <cmath>

namespace host {

QPointF PlotSteering::fromTop(const GLW *glw, const QPointF &at)
{
    return {at.x(), glw->height() - at.y()};
}

void PlotSteering::fit(GLW *glw)
{
    const QRectF range = plot_.range2D();
    const double air = 0.05 * std::abs(range.height());
    plot_.fit(glw, range.adjusted(0, range.height() < 0 ? air : -air, 0,
                                  range.height() < 0 ? -air : air));
    fittedSize_ = QSizeF(glw->width(), glw->height());
    showsWhole_ = true;
}

void PlotSteering::setState(GLW *glw, const PlotState &state, bool whole)
{
    plot_.restore(glw, state);
    showsWhole_ = false;
    if (whole)
        fit(glw);
}

bool PlotSteering::advance(GLW *glw, double)
{
    if (!showsWhole_ || fittedSize_ == QSizeF(glw->width(), glw->height()))
        return false;
    fit(glw);
    return true;
}

void PlotSteering::drag(GLW *glw, Drag, const QPointF &from, const QPointF &to)
{
    plot_.panBy(glw, fromTop(glw, to) - fromTop(glw, from));
    showsWhole_ = false;
}

void PlotSteering::zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers modifiers)
{
    if (plot_.scrollList(glw, fromTop(glw, at), double(steps)))
        return;
    constexpr double perStep = 1.25;
    const double factor = std::pow(perStep, double(steps));
    const bool xOnly = modifiers & Qt::ShiftModifier;
    const bool yOnly = modifiers & Qt::ControlModifier;
    plot_.zoomAbout(glw, fromTop(glw, at), yOnly && !xOnly ? 1 : factor, xOnly ? 1 : factor);
    showsWhole_ = false;
}

} // namespace host
