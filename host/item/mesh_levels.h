// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MESH_LEVELS_H
#define HOST_ITEM_MESH_LEVELS_H

#include <atomic>
#include <functional>
#include <vector>

#include "host/read/mesh.h"

namespace host {

/// The triangles of a mesh with less detail: fewer of them, over the same vertices.
struct MeshLevel {
    std::vector<quint32> indices; ///< Three for each triangle, part after part.
    std::vector<quint32> ends;    ///< For each part of triangles, where those after it begin.

    std::size_t triangleCount() const { return indices.size() / 3; }
};

/// Ever coarser levels of a mesh, the finest first: of 70 or 50 percent of its triangles, then of
/// about 70 or 50 percent of the one before. One thread makes them; any may read those that are
/// there already.
class MeshLevels {
public:
    /// Smaller meshes are drawn smoothly as they are, and have none.
    static constexpr std::size_t smallest = 100'000; ///< Triangles.
    using Add = std::function<void(MeshLevel)>;

    explicit MeshLevels(const Mesh &mesh); ///< None yet.

    /// Makes the levels of @p mesh, which is the same as before. Each part keeps its vertices, so
    /// its colours, normals and place on textures; one of many triangles loses the same share as
    /// the others, one of a few keeps them. Where a shape falls apart into pieces that cannot be
    /// simplified, these are joined.
    ///
    /// Takes about two seconds and a third of the mesh's memory for a million triangles; may throw
    /// std::bad_alloc. Setting @p cancelled from another thread ends it early.
    void make(const Mesh &mesh, const std::atomic<bool> &cancelled);

    std::size_t count() const { return count_; } ///< That are there.
    const MeshLevel &operator[](std::size_t i) const { return levels_[i]; }
    std::size_t byteSize() const;
    /// About what byteSize() will be for @p mesh, before it is known; 0 if that has no levels.
    static std::size_t expectedBytes(const Mesh &mesh);

private:
    std::vector<MeshLevel> levels_; // as many as there can be; those that are there do not change
    std::atomic<std::size_t> count_{0};
};

} // namespace host

#endif
