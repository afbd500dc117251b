// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_TRIAD_H
#define HOST_VIEW_OVERLAY_TRIAD_H

#include <array>
#include <optional>

#include "host/view/overlay/overlay.h"

namespace host {

/// The axes of the file in the lower left corner, as they stand in the world. They turn with the
/// camera of the main object; a click on an arm's end looks along that axis.
class Triad : public Overlay {
    Q_OBJECT
public:
    Triad(const Underlay &under, Window &window);

    static double size();   ///< Pixels of its square.
    static double margin(); ///< Pixels to the window's edges.

signals:
    void sideChosen(host::Steering::Side side); ///< A person wants to look from there.

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override;
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &at, const QRectF &bounds) const override;
    void click(const QPointF &at, const QRectF &bounds) override;

private:
    /// One of the six ends.
    struct Arm {
        QPointF end;  ///< In the window's geometry.
        double depth; ///< Positive towards the viewer, of the unit axis.
        int axis;     ///< Of the file, 0 to 2.
        bool positive;
        Steering::Side side; ///< From where a click looks.
    };
    std::array<Arm, 6> arms(const QRectF &bounds) const; ///< The farthest first.
    std::optional<Steering::Side> sideAt(const QPointF &at, const QRectF &bounds) const;
};

} // namespace host

#endif
