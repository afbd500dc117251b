// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_PLAYER_H
#define HOST_VIEW_OVERLAY_PLAYER_H

#include "host/item/playback.h"
#include "host/view/overlay/overlay.h"

namespace host {

/// The bar of an animation, at the lower edge: a button that plays and stops, and the time in the
/// clip, which can be clicked and dragged. There is none where nothing can move.
class Player : public Overlay {
    Q_OBJECT
public:
    /// @p playback gives that of what is shown, or null.
    Player(const Underlay &under, Window &window, std::function<Playback *()> playback);

    bool belongsInPicture() const override { return false; }

signals:
    void changed(); ///< A frame is to be drawn.

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override { return playback_(); }
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &, const QRectF &) const override { return true; }
    void click(const QPointF &at, const QRectF &bounds) override;
    void drag(const QPointF &at, const QRectF &bounds) override;

private:
    static QRectF button(const QRectF &bounds);
    static QRectF bar(const QRectF &bounds);

    std::function<Playback *()> playback_;
    bool onBar_ = false; // the button that is down went down there
};

} // namespace host

#endif
