// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PARTS_IN_PICK_H
#define HOST_ITEM_PARTS_IN_PICK_H

#include <vector>

#include <QVector3D>

#include "host/item/part_marks.h"
#include "host/item/pick_square.h"
#include "host/read/mesh.h"

namespace host {

/// Which parts of @p mesh have a triangle, line or point that meets what the camera's last pick
/// pass looked at, whatever lies in front; hidden ones have not. Each point p of the mesh stands at
/// (p - centre) * scale in the world, where @p planes cut away what is beyond them. Triangles and
/// lines that reach behind the eye are left out.
std::vector<bool> partsInPick(const GL::Camera &camera, const Mesh &mesh, const QVector3D &centre,
                              float scale, const PartMarks &marks = PartMarks(),
                              const std::vector<PlaneGrid> &planes = {});

} // namespace host

#endif
