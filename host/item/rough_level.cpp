// SPDX-License-Identifier: MIT
#include "host/item/rough_level.h"

#include <algorithm>

#include <meshoptimizer.h>

#include "host/item/mesh_patch.h"

namespace host {

namespace {

/// Triangles of @p indices, @p target of them at most, and if that cannot be, all.
std::vector<quint32> joined(const std::vector<float> &positions, const quint32 *indices,
                            std::size_t count, std::size_t target)
{
    std::vector<quint32> few(count);
    const std::size_t places = positions.size() / 3;
    few.resize(meshopt_simplifySloppy(few.data(), indices, count, positions.data(), places,
                                      Patch::stride, target * 3, 1, nullptr));
    if (few.empty())
        few.assign(indices, indices + count);
    constexpr unsigned corners = 64; // that the GL keeps, about
    meshopt_optimizeVertexCacheFifo(few.data(), few.data(), few.size(), places, corners);
    return few;
}

/// Lets triangles that were turned over look where their normals do, or they would be dark.
void turnToNormals(const Mesh &mesh, std::vector<quint32> &indices)
{
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        quint32 *corners = &indices[i];
        if (facing(across(mesh.positions.data(), corners), mesh.normals.data(), corners) < 0)
            std::swap(corners[1], corners[2]);
    }
}

} // namespace

MeshLevel roughLevelOf(const Mesh &mesh, const std::atomic<bool> &cancelled)
{
    constexpr std::size_t fewest = 16; // triangles of a part
    MeshLevel level;
    PatchGatherer gatherer;
    const double share = double(roughSize) / double(mesh.triangleCount());
    for (std::size_t i = 0; i < mesh.trianglePartCount() && !cancelled; ++i) {
        const MeshPart &part = mesh.parts[i];
        const quint32 *first = mesh.indices.data() + part.firstIndex;
        const auto target = std::size_t(double(part.indexCount / 3) * share);
        std::vector<quint32> few;
        if (target < fewest) {
            few.assign(first, first + part.indexCount);
        } else if (part.indexCount == mesh.indices.size()) { // needs no copy
            few = joined(mesh.positions, first, part.indexCount, target);
        } else {
            const Patch patch = gatherer.gather(mesh.positions, first, first + part.indexCount);
            few = joined(patch.positions, patch.indices.data(), part.indexCount, target);
            for (quint32 &index : few)
                index = patch.vertices[index];
        }
        turnToNormals(mesh, few);
        level.indices.insert(level.indices.end(), few.begin(), few.end());
        level.ends.push_back(quint32(level.indices.size()));
    }
    level.indices.shrink_to_fit();
    return level.triangleCount() > 2 * roughSize ? MeshLevel() : level;
}

} // namespace host
