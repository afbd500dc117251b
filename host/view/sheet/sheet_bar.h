// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_BAR_H
#define HOST_VIEW_SHEET_SHEET_BAR_H

#include "host/view/overlay/overlay.h"
#include "host/view/sheet/sheet_scroll.h"

namespace host {

/// The bar at the right edge of a sheet that is larger than the window: it says which stretch of
/// the sheet is in view, and can be dragged. A click beside its handle brings the handle there.
class SheetBar : public Overlay {
    Q_OBJECT
public:
    /// @p scroll outlives it.
    SheetBar(const Underlay &under, Window &window, const SheetScroll &scroll);

    static double width();

signals:
    void moved(double offset); ///< A person wants to be there.
    void letGo();              ///< It is to be drawn anew.

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override { return scroll_.largest() > 0; }
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &, const QRectF &) const override { return true; }
    void click(const QPointF &at, const QRectF &bounds) override;
    void drag(const QPointF &at, const QRectF &bounds) override;
    void released() override;

private:
    QRectF handle(const QRectF &bounds) const;

    const SheetScroll &scroll_;
    bool held_ = false;
    double grip_ = 0; // from the handle's top to where it is held
};

} // namespace host

#endif
