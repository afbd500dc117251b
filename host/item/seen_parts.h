// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SEEN_PARTS_H
#define HOST_ITEM_SEEN_PARTS_H

#include <functional>
#include <vector>

#include <QSize>

#include "host/item/mesh_buffers.h"
#include "host/read/mesh.h"

namespace host {

/// Which parts of @p mesh are seen in what the pick pass that runs looks at: those that a pixel of
/// it shows, were it drawn @p size pixels large without edges smoothed. Transparent parts are seen
/// where nothing lies in front of them, and hide nothing opaque.
///
/// Expects @p buffers to hold the mesh, and the matrices of the pass; @p more draws what belongs to
/// parts and is not in the mesh. Leaves GL state as it was.
/// Returns nothing if OpenGL cannot draw off the screen.
std::vector<bool> partsSeen(MeshBuffers &buffers, const Mesh &mesh, const PartMarks &marks,
                            const QSize &size,
                            const std::function<void(const PartColour &)> &more = {});

} // namespace host

#endif
