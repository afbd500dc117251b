// SPDX-License-Identifier: MIT
#include "host/item/parts_in_pick.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

/// A point as the pick projection shows it: what is picked spans -1 to 1 both ways.
struct Projected {
    double x = 0;
    double y = 0;
    bool inFront = false;
};

/// The product of two matrices given by columns.
void multiply(const GLdouble a[16], const GLdouble b[16], GLdouble out[16])
{
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row) {
            double sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += a[i * 4 + row] * b[column * 4 + i];
            out[column * 4 + row] = sum;
        }
}

/// Whether a triangle and the square from -1 to 1 have a point in common: no edge of either parts
/// them.
bool meetsSquare(const Projected &a, const Projected &b, const Projected &c)
{
    if (std::min({a.x, b.x, c.x}) > 1 || std::max({a.x, b.x, c.x}) < -1 ||
        std::min({a.y, b.y, c.y}) > 1 || std::max({a.y, b.y, c.y}) < -1)
        return false;
    const Projected *corners[] = {&a, &b, &c};
    for (int i = 0; i < 3; ++i) {
        const Projected &p = *corners[i], &q = *corners[(i + 1) % 3], &r = *corners[(i + 2) % 3];
        const double nx = q.y - p.y, ny = p.x - q.x;
        const double inside = nx * (r.x - p.x) + ny * (r.y - p.y);
        // How far the square reaches along the edge's normal.
        const double middle = -(nx * p.x + ny * p.y), reach = std::abs(nx) + std::abs(ny);
        if (inside >= 0 ? middle + reach < 0 : middle - reach > 0)
            return false;
    }
    return true;
}

} // namespace

std::vector<bool> partsInPick(const GL::Camera &camera, const Mesh &mesh, const QVector3D &centre,
                              float scale, const PartMarks &marks)
{
    GLdouble m[16];
    multiply(camera.proj_matrix, camera.model_matrix, m);
    const double c[3] = {centre.x(), centre.y(), centre.z()};
    const auto project = [&](quint32 vertex) {
        double p[3];
        for (int i = 0; i < 3; ++i)
            p[i] = (double(mesh.positions[vertex * 3 + quint32(i)]) - c[i]) * double(scale);
        const auto row = [&](int r) {
            return m[r] * p[0] + m[4 + r] * p[1] + m[8 + r] * p[2] + m[12 + r];
        };
        const double w = row(3);
        return w > 0 ? Projected{row(0) / w, row(1) / w, true} : Projected();
    };
    std::vector<Projected> points(mesh.firstPoint());
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = project(quint32(i));

    std::vector<bool> met(mesh.parts.size());
    const auto meets = [&](const quint32 *corners, quint32 count) {
        const Projected &p = points[corners[0]], &q = points[corners[1]],
                        &r = points[corners[count - 1]]; // a line is a triangle without width
        return p.inFront && q.inFront && r.inFront && meetsSquare(p, q, r);
    };
    for (std::size_t i = 0; i < mesh.parts.size(); ++i) {
        const MeshPart &part = mesh.parts[i];
        const quint32 step = part.kind == MeshPart::Kind::Triangles ? 3 : 2;
        for (quint32 at = 0; at < part.indexCount && !met[i] && !marks.isHidden(i); at += step)
            met[i] = meets(&mesh.indices[part.firstIndex + at], step);
        for (quint32 at = 0; at < part.vertexCount && !met[i] && !marks.isHidden(i); ++at) {
            const Projected p = project(part.firstVertex + at);
            met[i] = p.inFront && std::abs(p.x) <= 1 && std::abs(p.y) <= 1;
        }
    }
    return met;
}

} // namespace host
