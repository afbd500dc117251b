// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_MEASURE_SIGHT_H
#define HOST_VIEW_MEASURE_SIGHT_H

#include <optional>
#include <vector>

#include <QLineF>

#include "host/item/model_item.h"
#include "host/measure/snap.h"

namespace host {

/// What a person sees of a model in a GLW at the moment: between the pixels there, which count from
/// its lower-left corner, y upwards, and places on the model, in the mesh's frame. Holds while the
/// item and its camera stay as they are.
class MeasureSight {
public:
    MeasureSight(const ModelItem &item, const GLW *glw);

    Seen seen(const Vec &place) const;
    /// What lies under a pixel: nothing that is hidden or cut away.
    std::optional<SurfacePoint> hit(const QPointF &pixel) const;
    /// What a person means who points there: what is within a few pixels, as @p to allows.
    std::optional<Snap> snap(const QPointF &pixel, const MeshTopology *topology, SnapTo to) const;
    /// The part of the segment between two places that is in front of the eye, in pixels.
    std::optional<QLineF> line(const Vec &a, const Vec &b) const;

private:
    QVector3D world(const Vec &place) const;
    bool isSeen(const Vec &place) const;

    const ModelItem &item_;
    CameraGeometry geometry_;
    bool parallel_;
};

} // namespace host

#endif
