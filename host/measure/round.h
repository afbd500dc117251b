// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_ROUND_H
#define HOST_MEASURE_ROUND_H

#include "host/measure/circle_fit.h"
#include "host/measure/mesh_topology.h"

namespace host {

/// The circle of the round edge that runs through @p corner's edge: fitted to the points of the
/// chain of edges where the surface bends sharply or ends, as far as they stay on one circle.
/// Nothing where the edge is none of these, or where it is no arc of at least four chords (or three
/// equal ones) of 46 degrees at most.
std::optional<Circle> roundEdge(const MeshTopology &topology, quint32 corner);

/// The same for the cylinder to which @p triangle belongs, of which @p at is a point: the circle
/// in which the plane through there, across the cylinder's axis, cuts it. Nothing where the
/// surface there is flat or bends along more than one direction.
std::optional<Circle> roundFace(const MeshTopology &topology, quint32 triangle, const Vec &at);

} // namespace host

#endif
