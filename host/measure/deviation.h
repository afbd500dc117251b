// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_DEVIATION_H
#define HOST_MEASURE_DEVIATION_H

#include <vector>

#include "host/measure/vec.h"
#include "host/read/mesh.h"

namespace host {

/// How far the vertices of a mesh lie from something, in the mesh's unit, and what that comes to.
///
/// Of a surface each vertex counts by the area around it: fine triangles count no more than large
/// ones. Of points alone each counts the same; what has lines alone has nothing that counts.
struct Deviation {
    static constexpr float unknown = 3e38f; ///< Of a vertex that was not measured.

    std::vector<float> distances; ///< Of each vertex; negative inside, if that is known.
    std::vector<float> weights;   ///< Of each vertex, not negative.
    bool isSigned = false;
    double least = 0, greatest = 0; ///< Of the distances.
    double largest = 0;             ///< Whichever way.
    double mean = 0, rms = 0;       ///< Of their magnitudes.

    /// Weighs the vertices of @p mesh, and sums up their distances, which are there.
    void sumUp(const Mesh &mesh);
    /// What share, 0 to 1, is no farther away than @p tolerance.
    double shareWithin(double tolerance) const;
};

/// What @p values of the vertices of @p mesh come to at a @p point of its @p triangle; a triangle
/// without an area has its first corner's everywhere.
double valueAt(const std::vector<float> &values, const Mesh &mesh, quint32 triangle,
               const Vec &point);

} // namespace host

#endif
