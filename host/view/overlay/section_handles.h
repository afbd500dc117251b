// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_SECTION_HANDLES_H
#define HOST_VIEW_OVERLAY_SECTION_HANDLES_H

#include <optional>
#include <vector>

#include "host/item/camera_geometry.h"
#include "host/view/overlay/overlay.h"

namespace host {

/// The planes that cut the main item, each as a rectangle around it with a knob at a corner; both
/// can be dragged along the plane's normal. An arrow at the knob shows which side is cut away.
class SectionHandles : public Overlay {
    Q_OBJECT
public:
    SectionHandles(const Underlay &under, Window &window);

    bool eventFilter(QObject *object, QEvent *event) override;

    /// The plane that keys and the menu mean: the one touched last.
    int chosen() const;
    void choose(int plane) { chosen_ = plane; }

    /// The offset that a plane has while the pointer is dragged from one place to another, in
    /// pixels of the object, y upwards. Seen along its normal a plane cannot follow the pointer:
    /// upwards pushes it away then.
    static double dragged(const SectionFrame &frame, double offset, const CameraGeometry &camera,
                          const QPointF &from, const QPointF &to);

signals:
    void moved(int plane, double offset); ///< A person drags it there, in the file's units.
    void changed();                       ///< The handle that stands out is another.

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override;
    void paint(QPainter *painter, const QRectF &bounds) override;
    bool takes(const QPointF &at, const QRectF &bounds) const override;
    void click(const QPointF &at, const QRectF &bounds) override;
    void drag(const QPointF &at, const QRectF &bounds) override;
    void released() override;

private:
    /// A frame as the window shows it, y downwards.
    struct Shown {
        QPolygonF corners;
        QPointF knob;
        QPointF tip; ///< Of the arrow.
    };
    std::optional<Shown> shown(const SectionFrame &frame, const QRectF &bounds) const;
    int planeAt(const QPointF &at, const QRectF &bounds) const;
    void paintValue(QPainter *painter, const QRectF &bounds) const;
    QPointF toObject(const QPointF &at, const QRectF &bounds) const;

    int chosen_ = 0;
    int hot_ = -1;
    int dragged_ = -1;
    QPointF from_; // where the drag began, in the object's pixels
    QPointF now_;  // in the window's, y downwards
    double before_ = 0;
};

} // namespace host

#endif
