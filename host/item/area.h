// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_AREA_H
#define HOST_ITEM_AREA_H

#include <vector>

#include <QRectF>

#include "GL/glw.h"
#include "host/read/mesh.h"

namespace host {

/// The rectangle that a person drags, in window pixels, y upwards. The record must be the window's:
/// not shifted into an object.
QRectF draggedArea(const Mouse &mouse);

/// Which parts of @p mesh have a triangle that meets what the camera's last pick pass looked at,
/// whatever lies in front. Each point p of the mesh stands at (p - centre) * scale in the world.
/// Triangles that reach behind the eye are left out.
std::vector<bool> partsInPick(const GL::Camera &camera, const Mesh &mesh, const QVector3D &centre,
                              float scale);

} // namespace host

#endif
