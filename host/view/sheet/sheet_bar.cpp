// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_bar.h"

#include <algorithm>

#include <QPainter>

#include "host/ui/metrics.h"

namespace host {

SheetBar::SheetBar(const Underlay &under, Window &window, const SheetScroll &scroll)
    : Overlay(under, window, "sheet-bar", QSizeF(0, 0)), scroll_(scroll)
{
    bindClick(tr("left click or drag on the bar at the edge"), tr("Go to that place of the sheet"));
}

double SheetBar::width()
{
    return Metrics::px(14);
}

QRectF SheetBar::place(const QSizeF &size) const
{
    return QRectF(size.width() - width(), 0, width(), size.height());
}

/// As long as the share that is in view, and never too short for a hand.
QRectF SheetBar::handle(const QRectF &bounds) const
{
    const double all = scroll_.largest() + bounds.height();
    const double length = std::min(
        bounds.height(), std::max(Metrics::px(32), bounds.height() * bounds.height() / all));
    const double at = scroll_.largest() > 0 ? scroll_.offset() / scroll_.largest() : 0;
    return QRectF(bounds.left(), bounds.top() + at * (bounds.height() - length), bounds.width(),
                  length);
}

void SheetBar::paint(QPainter *painter, const QRectF &bounds)
{
    const Theme &theme = display().theme();
    const double margin = Metrics::px(3);
    const QRectF r = handle(bounds).adjusted(margin, margin, -margin, -margin);
    QColor colour = held_ ? theme.accent : theme.faint;
    colour.setAlphaF(held_ ? 0.9 : 0.6);
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawRoundedRect(r, r.width() / 2, r.width() / 2);
}

void SheetBar::click(const QPointF &at, const QRectF &bounds)
{
    const QRectF now = handle(bounds);
    held_ = true;
    grip_ = now.contains(at) ? at.y() - now.top() : now.height() / 2;
    drag(at, bounds);
}

void SheetBar::drag(const QPointF &at, const QRectF &bounds)
{
    const double way = bounds.height() - handle(bounds).height();
    if (held_ && way > 0)
        emit moved((at.y() - grip_ - bounds.top()) / way * scroll_.largest());
}

void SheetBar::released()
{
    held_ = false;
    emit letGo();
}

} // namespace host
