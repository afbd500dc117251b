// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_SHAPES_H
#define TESTS_HOST_SHAPES_H

#include <cmath>
#include <vector>

#include <QPointF>

#include "host/measure/mesh_topology.h"

namespace host {

/// Triangles with a vertex for each corner, as files have them, in one part; all normals are +z.
struct Shape {
    Mesh mesh;

    void triangle(const Vec &a, const Vec &b, const Vec &c)
    {
        if (a == b || b == c || c == a)
            return;
        if (mesh.parts.empty())
            endPart();
        for (const Vec &p : {a, b, c}) {
            mesh.indices.push_back(quint32(mesh.vertexCount()));
            mesh.positions.insert(mesh.positions.end(), {float(p[0]), float(p[1]), float(p[2])});
            mesh.normals.insert(mesh.normals.end(), {0, 0, 1});
        }
        mesh.parts.back().indexCount += 3;
    }
    void quad(const Vec &a, const Vec &b, const Vec &c, const Vec &d)
    {
        triangle(a, b, c);
        triangle(a, c, d);
    }
    Shape &endPart() ///< What follows is of another part.
    {
        mesh.parts.emplace_back();
        mesh.parts.back().firstIndex = quint32(mesh.indices.size());
        return *this;
    }
    Shape &split(quint32 triangles) ///< Makes another part of what follows these.
    {
        const quint32 all = mesh.parts[0].indexCount;
        endPart();
        mesh.parts[0].indexCount = mesh.parts[1].firstIndex = triangles * 3;
        mesh.parts[1].indexCount = all - triangles * 3;
        return *this;
    }
    Shape &flip(std::size_t from = 0, std::size_t count = std::size_t(-1)) ///< These triangles.
    {
        for (std::size_t t = from; t < mesh.triangleCount() && t - from < count; ++t)
            std::swap(mesh.indices[t * 3], mesh.indices[t * 3 + 1]);
        return *this;
    }
    Shape &drop(std::size_t triangle)
    {
        const auto at = mesh.indices.begin() + std::ptrdiff_t(triangle * 3);
        mesh.indices.erase(at, at + 3);
        mesh.parts.back().indexCount -= 3;
        return *this;
    }
    Shape &operator+=(const Shape &other)
    {
        for (quint32 t = 0; t < other.mesh.triangleCount(); ++t)
            triangle(cornerOf(other.mesh, t, 0), cornerOf(other.mesh, t, 1),
                     cornerOf(other.mesh, t, 2));
        return *this;
    }
    friend Shape operator+(Shape a, const Shape &b) { return a += b; }
    MeshTopology topology() const
    {
        return {std::make_shared<Mesh>(mesh), std::atomic<bool>(false)};
    }
};

/// A box between two corners: the faces -x, +x, -y, +y, -z, +z, two triangles each.
inline Shape box(const Vec &low, const Vec &high)
{
    constexpr int faces[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};
    const auto corner = [of = std::array{low, high}](int bits) {
        return Vec(of[bits & 1][0], of[bits >> 1 & 1][1], of[bits >> 2][2]);
    };
    Shape shape;
    for (const auto &f : faces)
        shape.quad(corner(f[0]), corner(f[1]), corner(f[2]), corner(f[3]));
    return shape;
}

/// A polygon in the x-y plane, counter-clockwise, raised to @p height: two triangles for each side,
/// then the caps.
inline Shape prism(const std::vector<QPointF> &outline, double height)
{
    Shape shape;
    const std::size_t count = outline.size();
    const auto at = [&](std::size_t i, double z) {
        return Vec(outline[i % count].x(), outline[i % count].y(), z);
    };
    for (std::size_t i = 0; i < count; ++i)
        shape.quad(at(i, 0), at(i + 1, 0), at(i + 1, height), at(i, height));
    for (std::size_t i = 1; i + 1 < count; ++i) {
        shape.triangle(at(0, 0), at(i + 1, 0), at(i, 0));
        shape.triangle(at(0, height), at(i, height), at(i + 1, height));
    }
    return shape;
}

/// A roof over the unit square in the x-y plane, with its ridge at x = 1/2 and bumps on it, of so
/// many cells of two triangles each way; with @p facets each triangle has vertices of its own. One
/// part is left of about x = 1/4, red, the next green, the last a blue triangle at x > 1.
inline Mesh roof(int cells, bool facets, float bumps = 0)
{
    Mesh mesh;
    const auto vertex = [&](int x, int y, bool isLeft) {
        const float u = float(x) / float(cells), v = float(y) / float(cells);
        const float bump = bumps * std::sin(u * 70) * std::sin(v * 70), n = 1 / std::sqrt(1.16f);
        for (const float value : {u, v, 0.2f - 0.4f * std::abs(u - 0.5f) + bump})
            mesh.positions.push_back(value);
        for (const float value : {(isLeft ? -0.4f : 0.4f) * n, 0.0f, n})
            mesh.normals.push_back(value);
        return quint32(mesh.vertexCount() - 1);
    };
    const auto endPart = [&](const std::array<float, 4> &colour) {
        const auto end = quint32(mesh.indices.size());
        const quint32 first = mesh.parts.empty() ? 0 : mesh.parts[0].indexCount;
        mesh.parts.push_back({"p", {}, colour, first, end - first});
    };
    for (int i = 0; !facets && i < (cells + 1) * (cells + 1); ++i)
        vertex(i / (cells + 1), i % (cells + 1), i < cells / 2);
    for (int x = 0; x < cells; ++x) {
        if (x == cells / 4)
            endPart({1, 0, 0, 1});
        for (int y = 0; y < cells; ++y)
            for (const auto &[i, j] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}})
                mesh.indices.push_back(facets ? vertex(x + i, y + j, x < cells / 2)
                                              : quint32((x + i) * (cells + 1) + y + j));
    }
    endPart({0, 1, 0, 1});
    for (const int y : {0, 1, cells})
        mesh.indices.push_back(vertex(cells * (y == 1 ? 2 : 1), y, false));
    endPart({0, 0, 1, 1});
    mesh.parts[2].firstIndex += mesh.parts[1].indexCount;
    mesh.parts[2].indexCount = 3;
    mesh.findBounds();
    return mesh;
}

/// Points of an arc, the first and the last included; those of a whole turn are the same.
inline std::vector<QPointF> arc(const QPointF &centre, double radius, double from, double to,
                                int chords)
{
    std::vector<QPointF> points;
    for (int i = 0; i <= chords; ++i) {
        const double angle = (to - from == 360 ? i % chords : i) * (to - from) / chords + from;
        points.push_back(centre +
                         radius * QPointF(std::cos(angle / degrees), std::sin(angle / degrees)));
    }
    return points;
}

/// A profile of distances from the z-axis and heights, turned about it: @p steps of @p sides sides.
/// It encloses what is to the left of the profile.
inline Shape revolve(const std::vector<QPointF> &profile, int sides, int steps)
{
    Shape shape;
    const std::vector<QPointF> turn = arc({}, 1, 0, 360, sides);
    const auto at = [&](std::size_t i, int step) {
        const QPointF p = turn[std::size_t(step)] * profile[i].x();
        return Vec(p.x(), p.y(), profile[i].y());
    };
    for (int step = 0; step < steps; ++step)
        for (std::size_t i = 0; i + 1 < profile.size(); ++i)
            shape.quad(at(i, step), at(i, step + 1), at(i + 1, step + 1), at(i + 1, step));
    return shape;
}

/// The same with a rig that makes it flat along z, in its one clip.
inline MeshPtr flattening(Mesh mesh)
{
    auto rig = std::make_shared<Rig>();
    rig->nodes = {{}, {0, {}}};
    rig->bones = {{1, {}}};
    rig->vertexBones.resize(mesh.vertexCount() * 4);
    rig->vertexWeights.assign(mesh.vertexCount() * 4, 0.25f);
    rig->clips = {{"flat", 1, {{1, {{0, {}}}, {{0, {}}}, {{0, {1, 1, 0}}}}}}};
    mesh.rig = rig;
    return std::make_shared<Mesh>(mesh);
}

} // namespace host

#endif
