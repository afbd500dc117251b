// SPDX-License-Identifier: MIT
#include "host/measure/label_layout.h"

#include <algorithm>
#include <limits>

#include <QLineF>

namespace host {

namespace {

QRectF moveInto(QRectF r, const QRectF &bounds)
{
    r.moveLeft(std::max(bounds.left(), std::min(r.left(), bounds.right() - r.width())));
    r.moveTop(std::max(bounds.top(), std::min(r.top(), bounds.bottom() - r.height())));
    return r;
}

/// The free place nearest to the anchor among those in rows and columns with @p first; @p first
/// where none is free.
QRectF freePlace(const QRectF &first, const QPointF &anchor, const QRectF &bounds, double gap,
                 const std::vector<QRectF> &taken)
{
    const double width = first.width() + gap, height = first.height() + gap;
    const int columns = int(bounds.width() / width), rows = int(bounds.height() / height);
    QRectF best = first;
    double least = std::numeric_limits<double>::infinity();
    for (int i = -columns; i <= columns; ++i)
        for (int k = -rows; k <= rows; ++k) {
            const QRectF r = first.translated(i * width, k * height);
            const QRectF wide = r.adjusted(-gap / 2, -gap / 2, gap / 2, gap / 2);
            const auto covers = [&](const QRectF &other) { return other.intersects(wide); };
            const double away = QLineF(r.center(), anchor).length();
            if (away < least && bounds.contains(r) && !wide.contains(anchor) &&
                std::none_of(taken.begin(), taken.end(), covers)) {
                least = away;
                best = r;
            }
        }
    return best;
}

} // namespace

std::vector<QRectF> layLabels(const std::vector<LabelWish> &wishes, const QRectF &bounds,
                              double gap)
{
    std::vector<QRectF> placed;
    for (const LabelWish &wish : wishes) {
        const QPointF corner = wish.anchor + QPointF(2 * gap, -2 * gap - wish.size.height());
        const QRectF first = moveInto(QRectF(corner, wish.size), bounds);
        const auto covers = [&](const QRectF &other) { return other.intersects(first); };
        const bool isFree = std::none_of(placed.begin(), placed.end(), covers);
        placed.push_back(isFree ? first : freePlace(first, wish.anchor, bounds, gap, placed));
    }
    return placed;
}

} // namespace host
