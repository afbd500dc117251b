// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_MODEL_OUTLINE_H
#define HOST_ITEM_MODEL_OUTLINE_H

#include <functional>
#include <vector>

#include <QVector3D>

#include "host/read/mesh.h"

namespace host {

/// Points, each point p of @p mesh as (p - centre) * scale, that a picture of the whole must hold:
/// all, or of a large mesh so many that its edge lies within a pixel or two.
std::vector<QVector3D> outlineOf(const Mesh &mesh, const QVector3D &centre, float scale);

/// The same of those parts alone that are @p wanted; empty if none is.
std::vector<QVector3D> outlineOf(const Mesh &mesh, const QVector3D &centre, float scale,
                                 const std::function<bool(std::size_t part)> &wanted);

} // namespace host

#endif
