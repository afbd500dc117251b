// SPDX-License-Identifier: MIT
#include "host/overlay/scale_bar.h"

#include <cmath>

#include <QLocale>
#include <QPainter>

#include "host/view/view.h"

namespace host {

namespace {

constexpr double width = 170, height = 34, margin = 12; // pixels

} // namespace

ScaleBar::ScaleBar(View &view, Window &window)
    : Overlay(view, window, "scale-bar", QRectF(-margin, -margin, width, height))
{
}

double ScaleBar::roundLength(double unitsPerPixel, double most)
{
    const double longest = unitsPerPixel * most;
    if (!(longest > 0) || !std::isfinite(longest))
        return 0;
    const double power = std::pow(10, std::floor(std::log10(longest)));
    for (double factor : {5.0, 2.0})
        if (factor * power <= longest)
            return factor * power;
    return power;
}

bool ScaleBar::isShown() const
{
    const Item *shown = view().item(view().mainGLW());
    return shown && shown->unitsPerPixel(view().mainGLW()) > 0;
}

void ScaleBar::paint(QPainter *painter, const QRectF &area)
{
    const Theme &theme = view().display().theme();
    GLW *main = view().mainGLW();
    const double perPixel = view().item(main)->unitsPerPixel(main);
    const double length = roundLength(perPixel, area.width() - 12);
    const double pixels = length / perPixel;
    const double right = area.right() - 4, y = area.bottom() - 6, tick = 4;
    painter->setPen(QPen(theme.text, 1.6));
    painter->drawLine(QPointF(right - pixels, y), QPointF(right, y));
    for (double x : {right - pixels, right})
        painter->drawLine(QPointF(x, y - tick), QPointF(x, y + tick));
    painter->drawText(QRectF(area.left(), area.top(), area.width() - 4, area.height() - 12),
                      Qt::AlignRight | Qt::AlignVCenter, QLocale().toString(length, 'g', 6));
}

} // namespace host
