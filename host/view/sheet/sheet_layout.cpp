// SPDX-License-Identifier: MIT
// Where a sheet's tiles stand: their order, and the room around them.
#include <algorithm>

#include <QVariant>

#include "host/view/sheet/sheet_view.h"

namespace host {

namespace {

constexpr int narrowest = 1; // cells have their far edges: at 0 neighbours would share a pixel
constexpr int widest = 40;

} // namespace

void SheetView::sortBy(SheetOrder order)
{
    reversed_ = sorted_ && order == order_ && !reversed_;
    sorted_ = true;
    order_ = order;
    applyOrder();
}

void SheetView::applyOrder()
{
    inOrder_ = sortedIds(entries_, order_, reversed_);
    listShown();
    const int id = chosen();
    scrollTo(id < 0 ? 0 : grid_.revealing(index_.value(id), 0));
    if (order_ == SheetOrder::Count)
        readForCount();
}

/// How large a file's content is, only reading it tells.
void SheetView::readForCount()
{
    countsDue_ = false;
    for (const auto &[id, entry] : entries_) {
        if (entry.state == State::Waiting && entry.job == 0)
            read(id);
        countsDue_ |= entry.job != 0 && entry.count == 0;
    }
}

/// Once the last count is there the tiles stand by them. What is read later moves none.
void SheetView::applyCounts()
{
    if (!countsDue_ || order_ != SheetOrder::Count || !queue_.isIdle())
        return;
    applyOrder();
    countsDue_ = false; // whatever came into view by that
}

void SheetView::changeSpacing(int pixels)
{
    spacing_ = std::clamp(spacing_ + pixels, narrowest, widest);
    arrange();
}

/// The space between goes before the drawings do.
int SheetView::spacingIn(double extent) const
{
    return std::clamp(int(extent) / 4, narrowest, spacing_);
}

void SheetView::setCramped(bool cramped)
{
    cramped_ = cramped;
    for (const char *pass : {"draw3d", "draw2d", "pick3d", "pick2d"})
        scene()->setProperty(pass, !cramped_);
}

/// The module has placed the tiles. Where all fit, the names go, and the space between, before the
/// drawings do; the share of a cell depends on neither.
void SheetView::AdaptTo(int width, int height)
{
    if (grid_.measures().window != window().widget()->size()) {
        arrange();
        return;
    }
    if (!grid_.fits()) {
        placeCells();
        return;
    }
    const int full = TilePainter::header();
    header_ = height >= 3 * full && width >= 3 * full ? full : 0;
    const int spacing = spacingIn(std::min(width, height));
    setCramped(false);
    if (scene()->property("header") == header_ && scene()->property("spacing") == spacing)
        return;
    scene()->setProperty("header", header_);
    scene()->setProperty("spacing", spacing);
    scene()->setProperty("order", scene()->property("order")); // which lays out at once
}

} // namespace host
