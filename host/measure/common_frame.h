// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_COMMON_FRAME_H
#define HOST_MEASURE_COMMON_FRAME_H

#include "host/read/mesh.h"

namespace host {

/// @p mesh, moved so that what has the same coordinates in both files lies in the same place: with
/// the axes and the origin of @p other, and in its unit where both files name one that is known and
/// the coordinates stay within Mesh::maxCoordinate by it.
/// Returns @p mesh itself where nothing is to be done; what is moved has no animation.
MeshPtr inFrameOf(const Mesh &other, const MeshPtr &mesh);

} // namespace host

#endif
