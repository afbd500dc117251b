// SPDX-License-Identifier: MIT
#include "host/measure/mesh_topology.h"

#include "host/read/first_of_each.h"

namespace host {

namespace {

/// How often a loop looks whether it is cancelled.
constexpr std::size_t often = 0xFFFF;

} // namespace

MeshTopology::MeshTopology(MeshPtr mesh, const std::atomic<bool> &cancel) : mesh_(std::move(mesh))
{
    whole_ = weld(cancel) && gather(cancel);
}

/// Gives each vertex its place. Returns false if it was cancelled.
bool MeshTopology::weld(const std::atomic<bool> &cancel)
{
    const std::size_t count = mesh_->firstPoint(); // of triangles and lines
    places_ = firstAtPlace(*mesh_, count, cancel);
    for (quint32 i = 0; i < count && !cancel; ++i) {
        const quint32 first = places_[i];
        places_[i] = first == i ? quint32(first_.size()) : places_[first];
        if (first == i)
            first_.push_back(i);
    }
    return !cancel;
}

/// Lists the corners of each place. Returns false if it was cancelled.
bool MeshTopology::gather(const std::atomic<bool> &cancel)
{
    const std::size_t count = mesh_->triangleCount() * 3;
    starts_.assign(first_.size() + 1, 0);
    for (std::size_t i = 0; i < count; ++i)
        ++starts_[place(quint32(i)) + 1];
    for (std::size_t i = 1; i < starts_.size(); ++i)
        starts_[i] += starts_[i - 1];
    corners_.resize(count);
    std::vector<quint32> filled(starts_.begin(), starts_.end() - 1);
    for (std::size_t i = 0; i < count; ++i) {
        if ((i & often) == 0 && cancel)
            return false;
        corners_[filled[place(quint32(i))]++] = quint32(i);
    }
    return true;
}

quint32 MeshTopology::across(quint32 corner) const
{
    const quint32 from = place(corner), to = place(next(corner));
    // Every edge between the two starts or ends at each of them; thousands may meet at one.
    const quint32 here = end(from) - begin(from) < end(to) - begin(to) ? from : to;
    quint32 found = none;
    for (const quint32 *c = begin(here); c != end(here); ++c) {
        for (const quint32 edge : {*c, previous(*c)}) {
            const quint32 a = place(edge), b = place(next(edge));
            const bool back = a == to && b == from;
            if ((back && found != none) || (a == from && b == to && edge != corner))
                return none;
            found = back ? edge : found;
        }
    }
    return found;
}

double MeshTopology::bend(quint32 corner) const
{
    const quint32 other = across(corner);
    return other == none ? 180 / degrees
                         : angleBetween(normalOf(*mesh_, corner / 3), normalOf(*mesh_, other / 3));
}

} // namespace host
