// SPDX-License-Identifier: MIT
#include "host/measure/vec.h"

#include <cmath>

#include <Eigen/Geometry>

namespace host {

Vec normalOf(const Mesh &mesh, quint32 triangle)
{
    const Vec a = cornerOf(mesh, triangle, 0);
    return (cornerOf(mesh, triangle, 1) - a).cross(cornerOf(mesh, triangle, 2) - a);
}

Vec toFile(const FileAxes &axes, const Vec &inMesh)
{
    Vec v;
    for (int k = 0; k < 3; ++k) {
        const int axis = axes.of[std::size_t(k)];
        v[std::abs(axis) - 1] = axis < 0 ? -inMesh[k] : inMesh[k];
    }
    return v;
}

Vec placeInFile(const Mesh &mesh, const Vec &inMesh)
{
    return toFile(mesh.axes, inMesh) + Vec(mesh.origin.data());
}

Vec placeInMesh(const Mesh &mesh, const Vec &inFile)
{
    const Vec from = inFile - Vec(mesh.origin.data());
    Vec v;
    for (int k = 0; k < 3; ++k) {
        const int axis = mesh.axes.of[std::size_t(k)];
        v[k] = axis < 0 ? -from[-axis - 1] : from[axis - 1];
    }
    return v;
}

double angleBetween(const Vec &a, const Vec &b)
{
    return std::atan2(a.cross(b).norm(), a.dot(b));
}

} // namespace host
