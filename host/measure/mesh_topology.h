// SPDX-License-Identifier: MIT
#ifndef HOST_MEASURE_MESH_TOPOLOGY_H
#define HOST_MEASURE_MESH_TOPOLOGY_H

#include <atomic>
#include <vector>

#include "host/measure/vec.h"

namespace host {

/// Which triangles of a mesh meet, and how. Vertices in exactly the same position count as one
/// place: files and their readers give a vertex for each normal, and parts share none.
///
/// A corner is an index into Mesh::indices: 3 * triangle + 0, 1 or 2. It also names the edge that
/// runs from it to the next corner of its triangle.
class MeshTopology {
public:
    static constexpr quint32 none = ~quint32(0);

    /// About a second's work for a few million triangles; setting @p cancel from another thread
    /// ends it early, with a topology that is not whole and may not be asked. May throw
    /// std::bad_alloc.
    MeshTopology(MeshPtr mesh, const std::atomic<bool> &cancel);

    bool isWhole() const { return whole_; }
    const Mesh &mesh() const { return *mesh_; }

    quint32 placeCount() const { return quint32(first_.size()); }
    quint32 place(quint32 corner) const { return places_[mesh_->indices[corner]]; }
    Vec at(quint32 corner) const { return vertexOf(*mesh_, mesh_->indices[corner]); }

    static quint32 next(quint32 corner) { return corner % 3 == 2 ? corner - 2 : corner + 1; }
    static quint32 previous(quint32 corner) { return corner % 3 == 0 ? corner + 2 : corner - 1; }

    /// The corners at a place.
    const quint32 *begin(quint32 place) const { return corners_.data() + starts_[place]; }
    const quint32 *end(quint32 place) const { return corners_.data() + starts_[place + 1]; }

    /// The edge of the only other triangle that has the edge @p corner, run through the other way;
    /// none where the surface ends, where it branches, and where the other triangle faces the
    /// other way.
    quint32 across(quint32 corner) const;

    /// The angle in radians by which the surface bends over an edge: 0 where it is flat; pi where
    /// across() is none.
    double bend(quint32 corner) const;

    /// From this bend on an edge is one that a person sees: 30 degrees.
    static constexpr double featureBend = 30 / degrees;

private:
    bool weld(const std::atomic<bool> &cancel);
    bool gather(const std::atomic<bool> &cancel);

    MeshPtr mesh_;
    std::vector<quint32> places_;  // by vertices
    std::vector<quint32> first_;   // a vertex of each place
    std::vector<quint32> starts_;  // of each place, and the end: into corners_
    std::vector<quint32> corners_; // those of each place together
    bool whole_ = false;
};

} // namespace host

#endif
