// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_SURFACE_SIDES_H
#define HOST_MEASURE_SURFACE_SIDES_H

#include "host/measure/mesh_topology.h"
#include "host/measure/nearest_on_triangle.h"

namespace host {

/// Whether points lie inside or outside of a surface that bounds a volume.
class SurfaceSides {
public:
    /// @p topology outlives it. Setting @p cancel ends it early, with a surface that bounds
    /// nothing. May throw std::bad_alloc.
    SurfaceSides(const MeshTopology &topology, const std::atomic<bool> &cancel);

    bool isClosed() const { return closed_; } ///< Otherwise nothing is inside or outside.
    /// 1 outside of it and on it, -1 inside. @p nearest is the point of the surface that is nearest
    /// to @p p; it lies on @p triangle.
    double side(const Vec &p, quint32 triangle, const NearestOnTriangle &nearest) const;

private:
    Vec normalAt(quint32 triangle, NearestOnTriangle::Place place) const;
    Vec unitNormal(quint32 triangle) const;

    const MeshTopology &topology_;
    bool closed_ = false;
    double outwards_ = 1; // -1: all of it faces inwards
};

} // namespace host

#endif
