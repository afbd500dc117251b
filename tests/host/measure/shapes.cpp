// SPDX-License-Identifier: MIT
#include "shapes.h"

#include <cmath>

namespace host {

namespace {

constexpr double pi = 3.14159265358979323846;

} // namespace

void Shape::triangle(const Vec &a, const Vec &b, const Vec &c)
{
    if (a == b || b == c || c == a)
        return;
    if (mesh.parts.empty())
        endPart();
    for (const Vec &p : {a, b, c}) {
        mesh.indices.push_back(quint32(mesh.vertexCount()));
        mesh.positions.insert(mesh.positions.end(), {float(p[0]), float(p[1]), float(p[2])});
    }
    mesh.parts.back().indexCount += 3;
}

void Shape::quad(const Vec &a, const Vec &b, const Vec &c, const Vec &d)
{
    triangle(a, b, c);
    triangle(a, c, d);
}

Shape &Shape::endPart()
{
    mesh.parts.emplace_back();
    mesh.parts.back().firstIndex = quint32(mesh.indices.size());
    return *this;
}

Shape &Shape::flip(std::size_t from, std::size_t count)
{
    for (std::size_t t = from; t < mesh.triangleCount() && t - from < count; ++t)
        std::swap(mesh.indices[t * 3], mesh.indices[t * 3 + 1]);
    return *this;
}

Shape &Shape::drop(std::size_t triangle)
{
    const auto at = mesh.indices.begin() + std::ptrdiff_t(triangle * 3);
    mesh.indices.erase(at, at + 3);
    mesh.parts.back().indexCount -= 3;
    return *this;
}

Shape &Shape::scale(const Vec &by)
{
    for (std::size_t i = 0; i < mesh.positions.size(); ++i)
        mesh.positions[i] *= float(by[long(i % 3)]);
    return *this;
}

Shape &Shape::operator+=(const Shape &other)
{
    for (std::size_t t = 0; t < other.mesh.triangleCount(); ++t) {
        const auto corner = [&](quint32 k) { return cornerOf(other.mesh, quint32(t), k); };
        triangle(corner(0), corner(1), corner(2));
    }
    return *this;
}

MeshTopology Shape::topology() const
{
    static const std::atomic<bool> goOn{false};
    return {std::make_shared<Mesh>(mesh), goOn};
}

Shape box(const Vec &low, const Vec &high)
{
    Shape shape;
    const auto corner = [&](int bits) {
        return Vec(bits & 1 ? high[0] : low[0], bits & 2 ? high[1] : low[1],
                   bits & 4 ? high[2] : low[2]);
    };
    for (const auto &f : {std::array<int, 4>{0, 4, 6, 2},
                          {1, 3, 7, 5},
                          {0, 1, 5, 4},
                          {2, 6, 7, 3},
                          {0, 2, 3, 1},
                          {4, 5, 7, 6}})
        shape.quad(corner(f[0]), corner(f[1]), corner(f[2]), corner(f[3]));
    return shape;
}

Shape prism(const std::vector<QPointF> &outline, double height)
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

std::vector<QPointF> arc(const QPointF &centre, double radius, double from, double to, int chords)
{
    std::vector<QPointF> points;
    for (int i = 0; i <= chords; ++i) {
        const double angle = (from + (to - from) * i / chords) * pi / 180;
        points.push_back(centre + radius * QPointF(std::cos(angle), std::sin(angle)));
    }
    return points;
}

Shape revolve(const std::vector<QPointF> &profile, int sides, int steps)
{
    Shape shape;
    const auto at = [&](std::size_t i, int step) {
        const double angle = 2 * pi * (step % sides) / sides;
        return Vec(profile[i].x() * std::cos(angle), profile[i].x() * std::sin(angle),
                   profile[i].y());
    };
    for (int step = 0; step < steps; ++step)
        for (std::size_t i = 0; i + 1 < profile.size(); ++i)
            shape.quad(at(i, step), at(i, step + 1), at(i + 1, step + 1), at(i + 1, step));
    return shape;
}

double revolvedArea(const std::vector<QPointF> &profile, int sides)
{
    double area = 0;
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        const QPointF a = profile[i], b = profile[i + 1];
        const double slant = std::hypot(b.y() - a.y(), (b.x() - a.x()) * std::cos(pi / sides));
        area += sides * (a.x() + b.x()) * std::sin(pi / sides) * slant;
    }
    return area;
}

double revolvedVolume(const std::vector<QPointF> &profile, int sides)
{
    double volume = 0;
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        const QPointF a = profile[i], b = profile[i + 1];
        volume += (b.y() - a.y()) * (a.x() * a.x() + a.x() * b.x() + b.x() * b.x());
    }
    return volume * sides / 6 * std::sin(2 * pi / sides);
}

} // namespace host
