// SPDX-License-Identifier: MIT
#include "host/view/compare/divider.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

namespace {

double knobRadius()
{
    return Metrics::px(13);
}

} // namespace

Divider::Divider(const Underlay &under, Window &window)
    : Overlay(under, window, "divider", QSizeF(0, 0))
{
    bindClick(tr("left drag on the line between the two"), tr("Show more of the one or the other"));
}

double Divider::share() const
{
    const double width = std::max(1, window().widget()->width());
    return std::round(share_ * width) / width;
}

void Divider::setShare(double share)
{
    share_ = std::clamp(share, 0.0, 1.0);
    emit moved();
}

bool Divider::takes(const QPointF &at, const QRectF &bounds) const
{
    const QPointF from(at.x() - share() * bounds.width(), at.y() - bounds.center().y());
    return std::abs(from.x()) <= Metrics::px(5) || std::hypot(from.x(), from.y()) <= knobRadius();
}

void Divider::click(const QPointF &at, const QRectF &bounds)
{
    grip_ = at.x() - share() * bounds.width();
}

void Divider::drag(const QPointF &at, const QRectF &bounds)
{
    setShare((at.x() - grip_) / std::max(1.0, bounds.width()));
}

/// Light on dark or dark on light, with the other colour around it: it lies over anything.
void Divider::paint(QPainter *painter, const QRectF &bounds)
{
    const Theme &theme = display().theme();
    const double x = share() * bounds.width(), radius = knobRadius();
    const QPointF middle(x, bounds.center().y());
    QColor around = display().dark ? Qt::black : Qt::white;
    around.setAlpha(150);
    painter->setPen(QPen(around, Metrics::px(3)));
    painter->drawLine(QPointF(x, bounds.top()), QPointF(x, bounds.bottom()));
    painter->setPen(QPen(theme.text, Metrics::px(1)));
    painter->drawLine(QPointF(x, bounds.top()), QPointF(x, bounds.bottom()));
    painter->setPen(QPen(around, Metrics::px(1.5)));
    painter->setBrush(theme.accent);
    painter->drawEllipse(middle, radius, radius);
    painter->setPen(QPen(display().dark ? Qt::black : Qt::white, Metrics::px(1.8), Qt::SolidLine,
                         Qt::RoundCap, Qt::RoundJoin));
    for (const double way : {-1.0, 1.0}) {
        const double tip = way * radius * 0.62, tail = way * radius * 0.28;
        const QPointF arrow[] = {middle + QPointF(tail, -radius * 0.34), middle + QPointF(tip, 0),
                                 middle + QPointF(tail, radius * 0.34)};
        painter->drawPolyline(arrow, 3);
    }
}

} // namespace host
