// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_SNAP_H
#define HOST_MEASURE_SNAP_H

#include <functional>
#include <optional>
#include <vector>

#include <QPointF>

#include "host/measure/mesh_topology.h"

namespace host {

/// Where a line of sight meets a mesh, in the mesh's frame.
struct SurfacePoint {
    quint32 triangle = 0;
    Vec at = Vec::Zero();
};

/// What a person means by a place on a mesh.
struct Snap {
    enum class Kind { Vertex, Edge, Face };
    Kind kind = Kind::Face;
    quint32 corner = 0;   ///< That of the vertex, or where the edge begins; of a face the first.
    Vec at = Vec::Zero(); ///< In the mesh's frame.

    quint32 triangle() const { return corner / 3; }
};

/// A place as it is seen.
struct Seen {
    QPointF pixel;
    double depth = 1; ///< Along the line of sight; the same everywhere where sight is parallel.
};
using Sight = std::function<Seen(const Vec &)>;

/// What a click may mean.
enum class SnapTo {
    All,
    Edges, ///< No vertices.
    Faces, ///< Just what the pointer is on.
};

struct SnapWish {
    const Mesh &mesh;
    const MeshTopology *topology = nullptr; ///< Null while it is not known.
    SnapTo to = SnapTo::All;
    double reach = 0; ///< Pixels.
};

/// What lies within reach of @p pointer: the nearest vertex of the triangles that were @p met by
/// lines of sight around it; else the nearest place on one of their edges, where the surface bends
/// or ends (every edge while the topology is not known); else @p under, what the pointer itself is
/// on. @p visible says whether a person sees a place there.
std::optional<Snap> snapTo(const SnapWish &wish, const std::vector<quint32> &met,
                           const std::optional<SurfacePoint> &under, const QPointF &pointer,
                           const Sight &sight, const std::function<bool(const Vec &)> &visible);

} // namespace host

#endif
