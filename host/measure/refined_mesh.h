// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_REFINED_MESH_H
#define HOST_MEASURE_REFINED_MESH_H

#include <atomic>

#include "host/read/mesh.h"

namespace host {

/// The same surface in triangles without an edge that is longer than @p longest: edges are halved,
/// so that neighbours stay joined, all that are too long in each round. The round that reaches
/// @p enough triangles is the last, so that there may be nearly four times as many. Its parts are
/// those of @p mesh, lines and points stay as they are; it has no colours, textures or animation.
/// Setting @p cancel ends it early with a mesh that means nothing. May throw std::bad_alloc.
Mesh refinedMesh(const Mesh &mesh, double longest, std::size_t enough,
                 const std::atomic<bool> &cancel);

} // namespace host

#endif
