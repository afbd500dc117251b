// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_EDGES_H
#define HOST_ITEM_MESH_EDGES_H

#include <atomic>
#include <vector>

#include "host/read/mesh.h"

namespace host {

/// The edges by which one knows a shape: those where two triangles of a part meet at an angle,
/// those of one triangle alone, where the part ends, and those where more than two meet. A plain
/// value.
struct MeshEdges {
    static constexpr double sharpest = 30; ///< Degrees: up to here two triangles are one surface.

    std::vector<quint32> vertices; ///< Two of the mesh for each edge, part after part.
    std::vector<quint32> ends;     ///< For each part, where those after it begin in `vertices`.

    std::size_t byteSize() const
    {
        return (vertices.capacity() + ends.capacity()) * sizeof(quint32);
    }
};

/// Finds the edges of @p mesh. Vertices are the same if they stand at the same place, and a
/// triangle that stands there twice counts once; one that is thinner than its coordinates tell has
/// no angle. Takes about a second for a few million triangles, and about 100 MB for each million
/// that share no vertices; may throw std::bad_alloc. Setting @p cancelled from another thread ends
/// it early, with anything.
MeshEdges edgesOf(const Mesh &mesh, const std::atomic<bool> &cancelled);

} // namespace host

#endif
