// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_MESH_MEASURES_H
#define HOST_MEASURE_MESH_MEASURES_H

#include "host/measure/mesh_topology.h"

namespace host {

/// What the triangles of some parts measure, in the unit of the mesh.
struct SurfaceMeasures {
    /// Whether the triangles bound a volume.
    enum class Bounds {
        Volume,   ///< They do: every edge is run through as often one way as the other.
        Open,     ///< There is an edge where the surface ends, or where a wall branches off.
        Disagree, ///< It is closed, but some faces look inwards while others look outwards.
    };
    quint64 triangles = 0;
    double area = 0;
    Bounds bounds = Bounds::Open;
    double volume = 0; ///< Not negative; that of cavities taken off. 0 unless it is bounded.
    Vec min = Vec::Zero(), max = Vec::Zero(); ///< The box around them.
};

/// Measures the triangles of the parts that @p parts says, by their numbers; all if it is empty.
/// Without triangles all is 0 and open. Setting @p cancel ends it early with a result that means
/// nothing. May throw std::bad_alloc.
///
/// Shells that do not meet are told apart: one that faces inwards is a cavity of one that faces
/// outwards around it; all of them may face inwards together. Shells that run into each other count
/// in full.
SurfaceMeasures measureSurface(const MeshTopology &topology, const std::vector<bool> &parts,
                               const std::atomic<bool> &cancel);

} // namespace host

#endif
