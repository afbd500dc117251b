// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_VALUES_H
#define HOST_READ_SCENE_VALUES_H

#include <algorithm>
#include <cmath>

#include <QString>

#include <assimp/types.h>

#include "host/read/mesh.h"

namespace host {

/// Which of a scene's values are of use: assimp hands on whatever a file holds.
inline bool isFinite(const aiMatrix4x4 &m)
{
    return std::all_of(&m.a1, &m.a1 + 16, [](float v) { return std::isfinite(v); });
}

/// Whether a vertex may stand there; false for NaN.
inline bool isUsable(const aiVector3D &v)
{
    const auto fits = [](float x) { return std::abs(x) <= Mesh::maxCoordinate; };
    return fits(v.x) && fits(v.y) && fits(v.z);
}

/// The beginning of a name, as long as names are kept.
inline QString shortText(const aiString &name)
{
    return QString::fromUtf8(name.C_Str()).left(MeshNode::longestName);
}

} // namespace host

#endif
