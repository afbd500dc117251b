// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_CIRCLE_FIT_H
#define HOST_MEASURE_CIRCLE_FIT_H

#include <optional>
#include <vector>

#include "host/measure/vec.h"

namespace host {

/// A circle in space.
struct Circle {
    Vec centre = Vec::Zero();
    Vec normal = Vec::UnitZ(); ///< Of its plane, of unit length.
    double radius = 0;

    double distance(const Vec &point) const; ///< Of a point from the line of the circle.
};

/// The circle from which the sum of the squared distances of @p points is least, in the plane from
/// which theirs is. Nothing for points that lie on a line, or fewer than three.
std::optional<Circle> fitCircle(const std::vector<Vec> &points);

} // namespace host

#endif
