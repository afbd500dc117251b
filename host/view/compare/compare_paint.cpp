// SPDX-License-Identifier: MIT
// What a comparison writes over its models.
#include <QPainter>

#include "host/item/item.h"
#include "host/ui/metrics.h"
#include "host/view/compare/compare_view.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

/// What stands over the tiles that are in the window now.
bool CompareView::isOver(const Overlay *overlay) const
{
    return overlay->isThere() && (overlay == legend_.get()) == (way_ == CompareWay::Difference);
}

QMarginsF CompareView::covered(GLW *glw) const
{
    const double heading = noteHeight(window().widget()->font(), 2);
    const bool beside = glw == tiles_[differenceTile] && isOver(legend_.get());
    return {0, hasHeadings() ? heading : 0,
            beside ? window().widget()->width() - legend_->bounds().left() : 0, 0};
}

bool CompareView::hasHeadings() const
{
    return display().overlays && areThere() && window().widget()->width() >= Metrics::px(240) &&
           window().widget()->height() >= Metrics::px(150);
}

void CompareView::paintText(GLW *, QPainter *painter)
{
    if (!areThere())
        paintWaiting(painter);
    else if (hasHeadings())
        paintHeadings(painter);
    if (areThere() && way_ == CompareWay::Difference)
        paintDifferenceState(painter);
}

/// How far each has been read, where it will be.
void CompareView::paintWaiting(QPainter *painter)
{
    const QRectF bounds = window().widget()->rect();
    for (std::size_t i = 0; i < 2; ++i) {
        const Side &side = sides_[std::size_t(i == 0 ? first() : second())];
        QRectF half = bounds;
        half.setWidth(bounds.width() / 2);
        half.moveLeft(i == 0 ? bounds.left() : bounds.center().x());
        const Theme &theme = display().theme();
        if (!side.fault.isEmpty())
            paintMessage(painter, half, side.fault, tr("Esc leaves the comparison."), -1, theme);
        else if (side.mesh)
            paintMessage(painter, half, side.name, {}, -1, theme);
        else
            paintMessage(painter, half, tr("Reading %1").arg(side.name), side.stage, side.fraction,
                         theme);
    }
}

/// Whose half it is, and what the pointer is on.
void CompareView::paintHeadings(QPainter *painter)
{
    const Theme &theme = display().theme();
    const QRectF bounds = window().widget()->rect();
    for (const int model : {first(), second()}) {
        const Item *shown = shownItem(model);
        if (way_ == CompareWay::Difference && model == first())
            continue; // the legend names it
        QRectF place = tile(model)->rect;
        if (way_ == CompareWay::Difference) {
            place = bounds;
            if (isOver(legend_.get()))
                place.setRight(legend_->bounds().left());
        }
        if (divider_->isOn()) {
            place = bounds;
            const double line = divider_->share() * bounds.width();
            model == first() ? place.setRight(line) : place.setLeft(line);
        }
        const bool right = divider_->isOn() && model == second();
        paintNote(painter, place, Qt::AlignTop | (right ? Qt::AlignRight : Qt::AlignLeft),
                  shown->name(), shown->details(), theme);
        const QString &fault = sides_[std::size_t(model)].fault; // of reading it once more
        if (!fault.isEmpty())
            paintNote(painter, place, Qt::AlignBottom | (right ? Qt::AlignRight : Qt::AlignLeft),
                      {}, fault, theme);
        const Item *under = way_ == CompareWay::Difference ? item(tiles_[differenceTile]) : shown;
        if (!fault.isEmpty() || !display().hover || !under)
            continue;
        paintNote(painter, place, Qt::AlignBottom | (right ? Qt::AlignRight : Qt::AlignLeft), {},
                  under->underPointer(), theme);
    }
    if (way_ != CompareWay::Beside)
        return;
    const QRectF left = tile(first())->rect, other = tile(second())->rect;
    painter->setPen(QPen(theme.faint, 1));
    left.right() <= other.left() + 1 ? painter->drawLine(left.topRight(), left.bottomRight())
                                     : painter->drawLine(left.bottomLeft(), left.bottomRight());
}

} // namespace host
