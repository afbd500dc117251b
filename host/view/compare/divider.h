// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_DIVIDER_H
#define HOST_VIEW_COMPARE_DIVIDER_H

#include "host/view/overlay/overlay.h"

namespace host {

/// A vertical line over the whole window, dragged by a hand: to its left one thing is seen, to its
/// right another.
class Divider : public Overlay {
    Q_OBJECT
public:
    Divider(const Underlay &under, Window &window);

    bool isOn() const { return on_; }
    void setOn(bool on) { on_ = on; }
    /// Where it is, on a whole pixel, as a share of the window's width from the left, 0 to 1.
    double share() const;
    void setShare(double share);

signals:
    void moved(); ///< It stands elsewhere.

protected:
    QRectF place(const QSizeF &size) const override { return {QPointF(0, 0), size}; }
    bool isShown() const override { return on_; }
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &at, const QRectF &bounds) const override;
    void click(const QPointF &at, const QRectF &bounds) override;
    void drag(const QPointF &at, const QRectF &bounds) override;

private:
    bool on_ = false;
    double share_ = 0.5;
    double grip_ = 0; // from the line to where it was taken, in pixels
};

} // namespace host

#endif
