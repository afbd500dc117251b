// SPDX-License-Identifier: MIT
#include "host/item/triangle_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace host {

namespace {

constexpr quint32 leafSize = 6; // triangles: testing these costs about as much as two boxes
constexpr double never = std::numeric_limits<double>::infinity();

/// The distance at which the ray enters the box, or never. @p inverse holds the inverse of each
/// component of its direction, which may be infinite.
double enters(const float min[3], const float max[3], const double origin[3],
              const double inverse[3])
{
    double near = 0, far = never;
    for (int i = 0; i < 3; ++i) {
        const double a = (min[i] - origin[i]) * inverse[i];
        const double b = (max[i] - origin[i]) * inverse[i];
        // In this order a NaN, from a ray within a side of the box, counts as no limit.
        near = std::fmax(near, std::fmin(a, b));
        far = std::fmin(far, std::fmax(a, b));
    }
    return near <= far ? near : never;
}

} // namespace

TriangleTree::TriangleTree(MeshPtr mesh, const std::atomic<bool> &cancel) : mesh_(std::move(mesh))
{
    const quint32 count = quint32(mesh_->triangleCount());
    order_.resize(count);
    std::iota(order_.begin(), order_.end(), 0u);
    nodes_.reserve(count / 2 + 1);
    if (count > 0)
        build(0, count, cancel);
    if (cancel)
        nodes_.clear();
}

TriangleTree::Box TriangleTree::boxOf(quint32 begin, quint32 end) const
{
    constexpr float big = std::numeric_limits<float>::max();
    Box box{{big, big, big}, {-big, -big, -big}};
    for (quint32 i = begin; i < end; ++i) {
        const quint32 *corners = &mesh_->indices[std::size_t(order_[i]) * 3];
        for (int c = 0; c < 3; ++c) {
            const float *p = &mesh_->positions[std::size_t(corners[c]) * 3];
            for (int k = 0; k < 3; ++k) {
                box.min[k] = std::min(box.min[k], p[k]);
                box.max[k] = std::max(box.max[k], p[k]);
            }
        }
    }
    return box;
}

/// Makes the node of the triangles @p begin to @p end and those below it. Halves the number each
/// time, so the depth of the recursion is that of their number's logarithm.
void TriangleTree::build(quint32 begin, quint32 end, const std::atomic<bool> &cancel)
{
    const std::size_t self = nodes_.size();
    const Box box = boxOf(begin, end);
    nodes_.push_back({box, begin, end - begin});
    if (end - begin <= leafSize || cancel)
        return;
    int axis = 0;
    for (int k = 1; k < 3; ++k)
        if (box.max[k] - box.min[k] > box.max[axis] - box.min[axis])
            axis = k;
    const float *positions = mesh_->positions.data() + axis;
    const quint32 *indices = mesh_->indices.data();
    const auto place = [=](quint32 triangle) {
        const quint32 *corners = indices + std::size_t(triangle) * 3;
        return positions[std::size_t(corners[0]) * 3] + positions[std::size_t(corners[1]) * 3] +
               positions[std::size_t(corners[2]) * 3];
    };
    const quint32 middle = begin + (end - begin) / 2;
    std::nth_element(order_.begin() + begin, order_.begin() + middle, order_.begin() + end,
                     [&](quint32 a, quint32 b) { return place(a) < place(b); });
    build(begin, middle, cancel);
    nodes_[self].first = quint32(nodes_.size());
    nodes_[self].count = 0;
    build(middle, end, cancel);
}

/// The distance at which the ray meets the triangle, or never.
double TriangleTree::meets(quint32 triangle, const double origin[3],
                           const double direction[3]) const
{
    const quint32 *corners = &mesh_->indices[std::size_t(triangle) * 3];
    const float *p0 = &mesh_->positions[std::size_t(corners[0]) * 3];
    const float *p1 = &mesh_->positions[std::size_t(corners[1]) * 3];
    const float *p2 = &mesh_->positions[std::size_t(corners[2]) * 3];
    double e1[3], e2[3], s[3];
    for (int k = 0; k < 3; ++k) {
        e1[k] = double(p1[k]) - p0[k];
        e2[k] = double(p2[k]) - p0[k];
        s[k] = origin[k] - p0[k];
    }
    const auto cross = [](const double a[3], const double b[3], double out[3]) {
        out[0] = a[1] * b[2] - a[2] * b[1];
        out[1] = a[2] * b[0] - a[0] * b[2];
        out[2] = a[0] * b[1] - a[1] * b[0];
    };
    const auto dot = [](const double a[3], const double b[3]) {
        return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    };
    double h[3], q[3];
    cross(direction, e2, h);
    const double determinant = dot(e1, h);
    if (determinant == 0)
        return never;
    const double u = dot(s, h) / determinant;
    cross(s, e1, q);
    const double v = dot(direction, q) / determinant;
    if (!(u >= 0 && v >= 0 && u + v <= 1))
        return never;
    const double distance = dot(e2, q) / determinant;
    return distance >= 0 ? distance : never;
}

/// Looks at triangles, at those in nearer boxes first: @p away says how far a node is, @p worth
/// whether what is so far can still be of use, and @p take looks at a triangle.
template <class Away, class Worth, class Take>
void TriangleTree::walk(const Away &away, const Worth &worth, const Take &take) const
{
    quint32 stack[64]; // deeper than the tree of 2^32 triangles
    int top = 0;
    if (!nodes_.empty())
        stack[top++] = 0;
    while (top > 0) {
        const quint32 index = stack[--top];
        const Node &node = nodes_[index];
        if (!worth(away(index)))
            continue;
        for (quint32 i = 0; i < node.count; ++i)
            take(order_[node.first + i]);
        if (node.count > 0)
            continue;
        // The nearer child on top, so that the other is mostly passed over.
        const bool secondNearer = away(node.first) < away(index + 1);
        stack[top++] = secondNearer ? index + 1 : node.first;
        stack[top++] = secondNearer ? node.first : index + 1;
    }
}

std::optional<TriangleHit> TriangleTree::nearest(const Ray &ray, const Accept &accept) const
{
    double origin[3], direction[3], inverse[3];
    for (int k = 0; k < 3; ++k) {
        origin[k] = ray.origin[k];
        direction[k] = ray.direction[k];
        inverse[k] = 1 / direction[k];
    }
    TriangleHit best;
    best.distance = never;
    walk(
        [&](quint32 node) {
            return enters(nodes_[node].box.min, nodes_[node].box.max, origin, inverse);
        },
        [&](auto away) { return away < best.distance; },
        [&](quint32 triangle) {
            const TriangleHit hit{triangle, meets(triangle, origin, direction)};
            if (hit.distance < best.distance && accept(hit))
                best = hit;
        });
    if (best.distance == never)
        return {};
    return best;
}

/// The square of the distance from a point to the box; 0 inside of it.
double TriangleTree::squareTo(quint32 node, const Vec &p) const
{
    const Box &box = nodes_[node].box;
    double square = 0;
    for (int k = 0; k < 3; ++k) {
        const double d = std::max({double(box.min[k]) - p[k], p[k] - double(box.max[k]), 0.0});
        square += d * d;
    }
    return square;
}

std::optional<NearestTriangle> TriangleTree::nearestTo(const Vec &p, double within) const
{
    NearestTriangle best;
    double least = within * within;
    bool found = false;
    walk([&](quint32 node) { return squareTo(node, p); },
         [&](double away) { return away <= least; },
         [&](quint32 triangle) {
             const NearestOnTriangle nearest =
                 nearestOnTriangle(p, cornerOf(*mesh_, triangle, 0), cornerOf(*mesh_, triangle, 1),
                                   cornerOf(*mesh_, triangle, 2));
             const double square = (nearest.at - p).squaredNorm();
             if (square < least || (!found && square == least)) {
                 best = {triangle, nearest, 0};
                 least = square;
                 found = true;
             }
         });
    if (!found)
        return {};
    best.distance = std::sqrt(least);
    return best;
}

std::size_t TriangleTree::byteSize() const
{
    return order_.capacity() * sizeof(quint32) + nodes_.capacity() * sizeof(Node);
}

} // namespace host
