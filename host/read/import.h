// SPDX-License-Identifier: MIT
#ifndef HOST_READ_IMPORT_H
#define HOST_READ_IMPORT_H

#include <QString>

#include "host/read/companions.h"
#include "host/read/mesh.h"
#include "host/read/read_limits.h"

namespace host {

/// What importMesh() gives: a mesh, or why there is none.
struct Imported {
    Mesh mesh;
    QString reason; ///< Empty if the mesh is good; else a phrase without the file's name.

    bool ok() const { return reason.isEmpty(); }
};

/// Reads the model file @p path, in any format of the assimp library or with points as readPoints()
/// takes them, in this thread and process.
/// Polygons become triangles; missing normals are made, smooth up to a crease of 60 degrees;
/// points, lines and triangles with unusable vertices, and those without length or area, are
/// dropped; where nothing joins the vertices of a file, they are points; models whose up
/// is not +Y are turned upright (see FileAxes). Files that the model names are read if
/// @p companions lets them; notes of the mesh name those that were refused. Vertex colours are kept
/// where the material says no more than a shade of grey. Returns a mesh of at least one triangle,
/// line or point, each of whose vertices is used, or a reason. Expects a file that fileObjection()
/// has nothing against.
///
/// A broken file can crash a parser, or keep it busy for ever: see ReadQueue for the safe way.
Imported importMesh(const QString &path, const ReadProgress &progress = {},
                    const MeshLimits &limits = {}, Companions companions = Companions::InFolder);

} // namespace host

#endif
