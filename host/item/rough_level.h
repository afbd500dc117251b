// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_ROUGH_LEVEL_H
#define HOST_ITEM_ROUGH_LEVEL_H

#include "host/item/mesh_levels.h"

namespace host {

/// Meshes of fewer triangles have their levels soon.
constexpr std::size_t roughFrom = 300'000;
constexpr std::size_t roughSize = 120'000; ///< Triangles of the level, about.

/// A level that is there in a moment, for the first turn of @p mesh: what lies in the same cell of
/// a grid is joined, part by part, whatever its texture, and stands where the mesh is lit as that
/// looks. Empty where that leaves too much of the mesh. Takes a tenth of a second for a million
/// triangles; may throw std::bad_alloc.
MeshLevel roughLevelOf(const Mesh &mesh, const std::atomic<bool> &cancelled);

} // namespace host

#endif
