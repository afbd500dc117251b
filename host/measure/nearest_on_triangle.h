// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_NEAREST_ON_TRIANGLE_H
#define HOST_MEASURE_NEAREST_ON_TRIANGLE_H

#include "host/measure/vec.h"

namespace host {

/// The point of a triangle that is nearest to another point.
struct NearestOnTriangle {
    /// What of the triangle it lies on; an edge runs from its corner to the next one.
    enum Place : quint8 { Corner0, Corner1, Corner2, Edge0, Edge1, Edge2, Inside };

    Vec at = Vec::Zero();
    Place place = Inside;
};

/// Good to the last digits for a triangle with an area. One without is a line or a point, and lies
/// nowhere inside.
NearestOnTriangle nearestOnTriangle(const Vec &p, const Vec &a, const Vec &b, const Vec &c);

} // namespace host

#endif
