// SPDX-License-Identifier: MIT
#include "host/view/overlay/scale_bar.h"

#include <cmath>

#include <QLocale>
#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

ScaleBar::ScaleBar(const Underlay &under, Window &window)
    : Overlay(under, window, "scale-bar", QSizeF(360, 240))
{
}

QRectF ScaleBar::place(const QSizeF &size) const
{
    const double margin = Metrics::px(12), width = Metrics::px(170), height = Metrics::px(34);
    return QRectF(size.width() - margin - width, size.height() - margin - height, width, height);
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
    const Item *shown = mainItem();
    return shown && shown->unitsPerPixel(mainGLW()) > 0;
}

void ScaleBar::paint(QPainter *painter, const QRectF &bounds)
{
    const Theme &theme = display().theme();
    GLW *main = mainGLW();
    const double perPixel = mainItem()->unitsPerPixel(main);
    const double length = roundLength(perPixel, bounds.width() - Metrics::px(12));
    const double pixels = length / perPixel;
    const double tick = Metrics::px(4);
    const double right = bounds.right() - tick, y = bounds.bottom() - Metrics::px(6);
    painter->setPen(QPen(theme.text, Metrics::px(1.6)));
    painter->drawLine(QPointF(right - pixels, y), QPointF(right, y));
    for (double x : {right - pixels, right})
        painter->drawLine(QPointF(x, y - tick), QPointF(x, y + tick));
    painter->drawText(bounds.adjusted(0, 0, -tick, -Metrics::px(12)),
                      Qt::AlignRight | Qt::AlignVCenter, QLocale().toString(length, 'g', 6));
}

} // namespace host
