// SPDX-License-Identifier: MIT
#include "host/item/mesh_patch.h"

#include <algorithm>

namespace host {

Patch PatchGatherer::gather(const std::vector<float> &positions, const quint32 *begin,
                            const quint32 *end)
{
    constexpr quint32 none = ~quint32(0);
    Patch patch;
    slots_.resize(std::max(slots_.size(), positions.size() / 3), none);
    patch.indices.reserve(std::size_t(end - begin));
    for (const quint32 *index = begin; index != end; ++index) {
        quint32 &slot = slots_[*index];
        if (slot == none) {
            slot = quint32(patch.count());
            patch.vertices.push_back(*index);
        }
        patch.indices.push_back(slot);
    }
    patch.positions.reserve(patch.count() * 3);
    for (const quint32 vertex : patch.vertices) {
        slots_[vertex] = none;
        const float *p = &positions[std::size_t(vertex) * 3];
        patch.positions.insert(patch.positions.end(), p, p + 3);
    }
    return patch;
}

QVector3D across(const float *positions, const quint32 *corners)
{
    const auto at = [&](quint32 place) {
        const float *p = positions + std::size_t(place) * 3;
        return QVector3D(p[0], p[1], p[2]);
    };
    const QVector3D origin = at(corners[0]);
    return QVector3D::crossProduct(at(corners[1]) - origin, at(corners[2]) - origin);
}

int facing(const QVector3D &across, const float *normals, const quint32 *corners)
{
    float agreement = 0;
    for (int k = 0; k < 3; ++k) {
        const float *n = normals + std::size_t(corners[k]) * 3;
        agreement += QVector3D::dotProduct(across, {n[0], n[1], n[2]});
    }
    return agreement > 0 ? 1 : agreement < 0 ? -1 : 0;
}

} // namespace host
