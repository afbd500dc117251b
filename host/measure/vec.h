// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_VEC_H
#define HOST_MEASURE_VEC_H

#include <Eigen/Core>

#include "host/read/mesh.h"

namespace host {

/// A place or a direction in double: a mesh's floats are exact in it, and what is computed of them
/// keeps their digits.
using Vec = Eigen::Vector3d;

/// Three floats, or a vector of them, as they are.
inline Vec toVec(const float *p)
{
    return {double(p[0]), double(p[1]), double(p[2])};
}
inline Vec toVec(const QVector3D &v)
{
    return {double(v.x()), double(v.y()), double(v.z())};
}

/// A vertex of a mesh, in its own frame.
inline Vec vertexOf(const Mesh &mesh, quint32 vertex)
{
    return toVec(&mesh.positions[std::size_t(vertex) * 3]);
}

/// The corner @p k (0 to 2) of a triangle.
inline Vec cornerOf(const Mesh &mesh, quint32 triangle, quint32 k)
{
    return vertexOf(mesh, mesh.indices[std::size_t(triangle) * 3 + k]);
}

/// The normal of a triangle, towards its front; its length is twice the area.
Vec normalOf(const Mesh &mesh, quint32 triangle);

/// A direction in a mesh's frame, as its file has it: exact.
Vec toFile(const FileAxes &axes, const Vec &inMesh);

/// A place in a mesh's frame, in the coordinates of its file, and back.
Vec placeInFile(const Mesh &mesh, const Vec &inMesh);
Vec placeInMesh(const Mesh &mesh, const Vec &inFile);

/// The angle between two directions in radians, 0 to pi, good to the last digits for small and
/// large ones; 0 if one of them is null.
double angleBetween(const Vec &a, const Vec &b);

constexpr double degrees = 57.295779513082320877; ///< In a radian.

} // namespace host

#endif
