// SPDX-License-Identifier: MIT
#include "host/measure/surface_sides.h"

#include <Eigen/Geometry>

#include "host/measure/mesh_measures.h"

namespace host {

namespace {

using Place = NearestOnTriangle::Place;

/// Whether all together face outwards: what they enclose, seen from a point, is not negative then.
bool facesOutwards(const Mesh &mesh, const Vec &middle)
{
    double volume = 0;
    for (quint32 t = 0; t < mesh.triangleCount(); ++t)
        volume += (cornerOf(mesh, t, 0) - middle).dot(normalOf(mesh, t));
    return volume >= 0;
}

} // namespace

SurfaceSides::SurfaceSides(const MeshTopology &topology, const std::atomic<bool> &cancel)
    : topology_(topology)
{
    if (!topology.isWhole())
        return;
    const SurfaceMeasures found = measureSurface(topology, {}, cancel);
    closed_ = !cancel && found.bounds == SurfaceMeasures::Bounds::Volume;
    if (closed_ && !facesOutwards(topology.mesh(), (found.min + found.max) / 2))
        outwards_ = -1;
}

Vec SurfaceSides::unitNormal(quint32 triangle) const
{
    return normalOf(topology_.mesh(), triangle).normalized(); // null stays null
}

/// The sum of the normals around a place of the surface, each by the angle that its triangle has
/// there: what lies before it is outside (J. A. Baerentzen and H. Aanaes, "Signed distance
/// computation using the angle weighted pseudonormal", 2005).
Vec SurfaceSides::normalAt(quint32 triangle, Place place) const
{
    if (place == Place::Inside)
        return unitNormal(triangle);
    const quint32 corner = triangle * 3 + place % 3;
    const quint32 here = topology_.place(corner),
                  next = topology_.place(MeshTopology::next(corner));
    Vec sum = Vec::Zero();
    for (const quint32 *c = topology_.begin(here); c != topology_.end(here); ++c) {
        const quint32 after = MeshTopology::next(*c), before = MeshTopology::previous(*c);
        if (place >= Place::Edge0) { // those that have it
            if (topology_.place(after) == next || topology_.place(before) == next)
                sum += unitNormal(*c / 3);
        } else {
            const Vec at = topology_.at(*c);
            sum += angleBetween(topology_.at(after) - at, topology_.at(before) - at) *
                   unitNormal(*c / 3);
        }
    }
    return sum;
}

double SurfaceSides::side(const Vec &p, quint32 triangle, const NearestOnTriangle &nearest) const
{
    return (p - nearest.at).dot(normalAt(triangle, nearest.place)) * outwards_ >= 0 ? 1 : -1;
}

} // namespace host
