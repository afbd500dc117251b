// SPDX-License-Identifier: MIT
#include "host/item/transparent_parts.h"

#include <algorithm>

namespace host {

namespace {

/// The middle of the box around a part; expects it to have a triangle.
QVector3D middleOf(const Mesh &mesh, const MeshPart &part)
{
    const auto vertex = [&](quint32 at) {
        return mesh.position(mesh.indices[part.firstIndex + at]);
    };
    QVector3D min = vertex(0), max = min;
    for (quint32 at = 1; at < part.indexCount; ++at) {
        const QVector3D p = vertex(at);
        for (int k = 0; k < 3; ++k) {
            min[k] = std::min(min[k], p[k]);
            max[k] = std::max(max[k], p[k]);
        }
    }
    return (min + max) / 2;
}

} // namespace

float opacityOf(const std::array<float, 4> &colour)
{
    // Several writers put 0 where they mean opaque; nobody means a part to be invisible.
    return colour[3] < 0.02f ? 1.0f : colour[3];
}

bool isTransparent(const MeshPart &part)
{
    const Cover &cover = part.cover;
    return opacityOf(part) < 1 || (cover.texture >= 0 && cover.alpha == Cover::Blended);
}

TransparentParts::TransparentParts(const Mesh &mesh, const QVector3D &centre, float scale)
{
    for (std::size_t i = 0; i < mesh.parts.size(); ++i)
        if (mesh.parts[i].kind == MeshPart::Kind::Triangles && isTransparent(mesh.parts[i]) &&
            mesh.parts[i].indexCount > 0)
            parts_.push_back({i, (middleOf(mesh, mesh.parts[i]) - centre) * scale});
}

std::vector<std::size_t> TransparentParts::farFirst(const QMatrix4x4 &view, bool parallel) const
{
    struct Distance {
        std::size_t index;
        float value;
    };
    std::vector<Distance> distances;
    for (const Part &part : parts_) {
        const QVector3D seen = view.map(part.middle);
        distances.push_back({part.index, parallel ? -seen.z() : seen.length()});
    }
    std::stable_sort(distances.begin(), distances.end(),
                     [](const Distance &a, const Distance &b) { return a.value > b.value; });
    std::vector<std::size_t> order;
    for (const Distance &each : distances)
        order.push_back(each.index);
    return order;
}

} // namespace host
