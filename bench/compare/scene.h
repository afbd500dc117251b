// SPDX-License-Identifier: MIT
// What every peer shows: a torus of 1,024 triangles about the x axis, of a grey that is lit from
// where the eye is.
#ifndef BENCH_COMPARE_SCENE_H
#define BENCH_COMPARE_SCENE_H

#include <array>
#include <cmath>
#include <vector>

namespace scene {

constexpr float elevation = 20, distance = 4, fieldOfView = 35; // degrees, units, degrees
constexpr float nearest = 1, farthest = 10;                     // units from the eye
constexpr float glow = 0.2f, diffuse = 0.8f; // shares of white: everywhere, and facing the eye
constexpr double degree = 0.017453292519943295;

using Point = std::array<float, 3>;

struct Mesh {
    std::vector<Point> positions, normals;
    std::vector<unsigned> indices; // of corners, three for each triangle, counter-clockwise
};

inline Mesh torus()
{
    constexpr unsigned around = 32, across = 16;
    constexpr double radius = 0.75, thickness = 0.35;
    Mesh mesh;
    for (unsigned i = 0; i < around; ++i) {
        const double a = i * 360.0 / around * degree;
        for (unsigned j = 0; j < across; ++j) {
            const double b = j * 360.0 / across * degree;
            const double out = std::cos(b), ring = radius + thickness * out;
            mesh.positions.push_back({float(thickness * std::sin(b)), float(ring * std::cos(a)),
                                      float(ring * std::sin(a))});
            mesh.normals.push_back(
                {float(std::sin(b)), float(out * std::cos(a)), float(out * std::sin(a))});
            const unsigned i1 = (i + 1) % around, j1 = (j + 1) % across;
            const unsigned p = i * across + j, q = i1 * across + j;
            const unsigned r = i1 * across + j1, s = i * across + j1;
            mesh.indices.insert(mesh.indices.end(), {p, q, r, p, r, s});
        }
    }
    return mesh;
}

/// The eye, which looks at the origin with +y up.
inline Point eye(float azimuth)
{
    const double e = elevation * degree, a = double(azimuth) * degree;
    return {float(distance * std::cos(e) * std::sin(a)), float(distance * std::sin(e)),
            float(distance * std::cos(e) * std::cos(a))};
}

} // namespace scene

#endif
