// SPDX-License-Identifier: MIT
#include "host/measure/nearest_on_triangle.h"

#include <algorithm>

#include <Eigen/Geometry>

namespace host {

namespace {

using Place = NearestOnTriangle::Place;

/// Of the edge that begins at corner @p k.
NearestOnTriangle nearestOnEdge(const Vec &p, const Vec &from, const Vec &to, int k)
{
    const Vec way = to - from;
    const double length = way.squaredNorm();
    const double share = length > 0 ? (p - from).dot(way) / length : 0;
    if (share <= 0)
        return {from, Place(k)};
    if (share >= 1)
        return {to, Place((k + 1) % 3)};
    return {from + share * way, Place(Place::Edge0 + k)};
}

/// Of all three edges: for a triangle without an area.
NearestOnTriangle nearestOnEdges(const Vec &p, const Vec &a, const Vec &b, const Vec &c)
{
    NearestOnTriangle best = nearestOnEdge(p, a, b, 0);
    for (const NearestOnTriangle &other : {nearestOnEdge(p, b, c, 1), nearestOnEdge(p, c, a, 2)})
        if ((other.at - p).squaredNorm() < (best.at - p).squaredNorm())
            best = other;
    return best;
}

} // namespace

/// By the regions around a triangle in which a corner, an edge or its inside is nearest: C.
/// Ericson, "Real-Time Collision Detection", 2005, section 5.1.5.
NearestOnTriangle nearestOnTriangle(const Vec &p, const Vec &a, const Vec &b, const Vec &c)
{
    const Vec ab = b - a, ac = c - a;
    const double d1 = ab.dot(p - a), d2 = ac.dot(p - a);
    if (d1 <= 0 && d2 <= 0)
        return {a, Place::Corner0};
    const double d3 = ab.dot(p - b), d4 = ac.dot(p - b);
    if (d3 >= 0 && d4 <= d3)
        return {b, Place::Corner1};
    const double d5 = ab.dot(p - c), d6 = ac.dot(p - c);
    if (d6 >= 0 && d5 <= d6)
        return {c, Place::Corner2};
    // As shares of the area, how far the point's foot lies from each edge.
    const double u = d3 * d6 - d5 * d4, v = d5 * d2 - d1 * d6, w = d1 * d4 - d3 * d2;
    const double area = ab.cross(ac).squaredNorm();
    if (!(area > 1e-24 * ab.squaredNorm() * ac.squaredNorm()) || !(u + v + w > 0))
        return nearestOnEdges(p, a, b, c);
    if (w <= 0 && d1 >= 0 && d3 <= 0)
        return nearestOnEdge(p, a, b, 0);
    if (v <= 0 && d2 >= 0 && d6 <= 0)
        return nearestOnEdge(p, c, a, 2);
    if (u <= 0 && d4 >= d3 && d5 >= d6)
        return nearestOnEdge(p, b, c, 1);
    return {a + (v * ab + w * ac) / (u + v + w), Place::Inside};
}

} // namespace host
