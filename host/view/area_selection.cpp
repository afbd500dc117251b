// SPDX-License-Identifier: MIT
#include "host/view/area_selection.h"

#include <QPainter>

#include "host/ui/metrics.h"
#include "host/view/window/window.h"

namespace host {

QRectF draggedArea(const Mouse &mouse)
{
    return QRectF(QPointF(mouse.x0, mouse.y0), QPointF(mouse.x, mouse.y)).normalized();
}

QRectF AreaSelection::areaIn(const GLW *glw) const
{
    return draggedArea(window_.widget()->mouse).translated(-glw->glCorner());
}

void AreaSelection::paint(QPainter *painter, QColor colour) const
{
    const GLWindow *widget = window_.widget();
    if (!widget->mouse.area || taking_)
        return;
    QRectF area = draggedArea(widget->mouse);
    area.moveTop(widget->height() - area.bottom());
    painter->setPen(QPen(colour, Metrics::px(1)));
    colour.setAlphaF(0.15);
    painter->setBrush(colour);
    painter->drawRect(area);
}

QRectF AreaSelection::finish()
{
    taking_ = false;
    Mouse &mouse = window_.widget()->mouse;
    mouse.area = 0;
    return draggedArea(mouse);
}

} // namespace host
