// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_SCALE_BAR_H
#define HOST_VIEW_OVERLAY_SCALE_BAR_H

#include "host/view/overlay/overlay.h"

namespace host {

/// A length of 1, 2 or 5 times a power of ten of the model's units, as it appears at the depth of
/// the point looked at; in the lower right corner.
class ScaleBar : public Overlay {
    Q_OBJECT
public:
    ScaleBar(const Underlay &under, Window &window);

    /// The longest round length whose bar is at most @p most pixels long. Returns 0 if
    /// @p unitsPerPixel is not positive and finite.
    static double roundLength(double unitsPerPixel, double most);

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override;
    void paint(QPainter *painter, const QRectF &bounds) override;
};

} // namespace host

#endif
