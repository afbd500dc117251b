// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_MEASURE_SHAPES_H
#define TESTS_HOST_MEASURE_SHAPES_H

#include <vector>

#include <QPointF>

#include "host/measure/mesh_topology.h"

namespace host {

/// Triangles with a vertex for each corner, as files have them, in one part.
struct Shape {
    Mesh mesh;

    void triangle(const Vec &a, const Vec &b, const Vec &c);
    void quad(const Vec &a, const Vec &b, const Vec &c, const Vec &d);
    Shape &endPart(); ///< What follows is of another part.
    Shape &flip(std::size_t from = 0, std::size_t count = std::size_t(-1)); ///< These triangles.
    Shape &drop(std::size_t triangle);
    Shape &scale(const Vec &by);
    Shape &operator+=(const Shape &other);
    MeshTopology topology() const;
};

/// A box between two corners: the faces -x, +x, -y, +y, -z, +z, two triangles each.
Shape box(const Vec &low, const Vec &high);

/// A polygon in the x-y plane, counter-clockwise, raised to @p height: two triangles for each side,
/// then the caps.
Shape prism(const std::vector<QPointF> &outline, double height);

/// Points of an arc, the first and the last included.
std::vector<QPointF> arc(const QPointF &centre, double radius, double from, double to, int chords);

/// A profile of distances from the z-axis and heights, turned about it: @p steps of @p sides sides.
/// It encloses what is to the left of the profile.
Shape revolve(const std::vector<QPointF> &profile, int sides, int steps);
/// What all sides of that measure, by the formulas of frustums of pyramids.
double revolvedArea(const std::vector<QPointF> &profile, int sides);
double revolvedVolume(const std::vector<QPointF> &profile, int sides);

} // namespace host

#endif
