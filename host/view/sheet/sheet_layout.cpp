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
    QVariantList ids;
    for (int id : sortedIds(entries_, order_, reversed_))
        ids.append(id);
    scene()->setProperty("order", ids);
    changed();
}

void SheetView::changeSpacing(int pixels)
{
    spacing_ = std::clamp(spacing_ + pixels, narrowest, widest);
    QMetaObject::invokeMethod(scene(), "UpdateLayout");
    changed();
}

/// The names go, and the space between, before the drawings do. Expects the share of a cell, which
/// depends on neither.
void SheetView::AdaptTo(int width, int height)
{
    const int full = TilePainter::header();
    const int header = height >= 3 * full && width >= 3 * full ? full : 0;
    const int spacing = std::clamp(std::min(width, height) / 4, narrowest, spacing_);
    // The module takes a rectangle of at most one pixel for fractions of the window.
    cramped_ = std::min(width, height) < 4;
    for (const char *pass : {"draw3d", "draw2d", "pick3d", "pick2d"})
        scene()->setProperty(pass, !cramped_);
    if (scene()->property("header") == header && scene()->property("spacing") == spacing)
        return;
    scene()->setProperty("header", header);
    scene()->setProperty("spacing", spacing);
    scene()->setProperty("order", scene()->property("order")); // which lays out at once
}

} // namespace host
