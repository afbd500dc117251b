// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_LABEL_LAYOUT_H
#define HOST_MEASURE_LABEL_LAYOUT_H

#include <vector>

#include <QRectF>

namespace host {

/// A label in need of a place, in pixels, y downwards.
struct LabelWish {
    QPointF anchor; ///< What it belongs to.
    QSizeF size;
};

/// Places for labels, each within @p bounds if it fits there: above its anchor and to the right,
/// moved into the bounds; or, where that would cover an earlier one, the nearest place to the
/// anchor in rows and columns, @p gap pixels apart. Where all are taken it covers some.
std::vector<QRectF> layLabels(const std::vector<LabelWish> &wishes, const QRectF &bounds,
                              double gap);

} // namespace host

#endif
