// SPDX-License-Identifier: MIT
#include "host/measure/common_frame.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

namespace {

/// In metres; 0 for one that is not known.
double lengthOf(const QString &unit)
{
    static const std::pair<const char *, double> units[] = {
        {"mm", 0.001},  {"cm", 0.01},   {"m", 1},      {"km", 1000},
        {"in", 0.0254}, {"ft", 0.3048}, {"yd", 0.9144}};
    for (const auto &[name, length] : units)
        if (unit == QLatin1String(name))
            return length;
    return 0;
}

/// Whether @p mesh, @p factor times as large, keeps to a mesh's coordinates from @p origin on.
bool fits(const Mesh &mesh, double factor, const std::array<double, 3> &origin)
{
    double largest = 0;
    for (int k = 0; k < 3; ++k) {
        const double own = mesh.origin[std::size_t(k)], other = origin[std::size_t(k)];
        for (const QVector3D &corner : {mesh.min, mesh.max})
            largest = std::max(largest, (std::abs(double(corner[k])) + std::abs(own)) * factor +
                                            std::abs(other));
    }
    return largest <= double(Mesh::maxCoordinate);
}

/// Replaces each place or direction by what @p moved makes of it.
template <typename Moved> void forEach(std::vector<float> &values, const Moved &moved)
{
    for (std::size_t i = 0; i + 2 < values.size(); i += 3) {
        const QVector3D p = moved(QVector3D(values[i], values[i + 1], values[i + 2]));
        for (int k = 0; k < 3; ++k)
            values[i + std::size_t(k)] = p[k];
    }
}

} // namespace

MeshPtr inFrameOf(const Mesh &other, const MeshPtr &mesh)
{
    const double own = lengthOf(mesh->unit), wanted = lengthOf(other.unit);
    const bool isScaled = own > 0 && wanted > 0 && fits(*mesh, own / wanted, other.origin);
    const double factor = isScaled ? own / wanted : 1;
    double shift[3]; // in the file
    for (std::size_t k = 0; k < 3; ++k)
        shift[k] = mesh->origin[k] * factor - other.origin[k];
    const bool stays = shift[0] == 0 && shift[1] == 0 && shift[2] == 0;
    const FileAxes from = mesh->axes, to = other.axes;
    if (stays && factor == 1 && from.of == to.of)
        return mesh;

    auto moved = std::make_shared<Mesh>(*mesh);
    forEach(moved->positions, [&](const QVector3D &p) {
        QVector3D inFile = from.toFile(p);
        for (int k = 0; k < 3; ++k)
            inFile[k] = float(double(inFile[k]) * factor + shift[k]);
        return to.fromFile(inFile);
    });
    forEach(moved->normals, [&](const QVector3D &n) { return to.fromFile(from.toFile(n)); });
    if (from.mirrored() != to.mirrored()) // its fronts would be its backs
        for (std::size_t t = 0; t < moved->triangleCount(); ++t)
            std::swap(moved->indices[t * 3], moved->indices[t * 3 + 1]);
    moved->axes = to;
    moved->origin = other.origin;
    moved->unit = factor == 1 ? mesh->unit : other.unit;
    moved->rig.reset();
    moved->findBounds();
    return moved;
}

} // namespace host
