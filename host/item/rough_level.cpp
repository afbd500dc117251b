// SPDX-License-Identifier: MIT
#include "host/item/rough_level.h"

#include <algorithm>
#include <cmath>

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

/// The cosine of the angle between a triangle's front and the normals of its corners together.
float agreement(const Mesh &mesh, const quint32 *corners)
{
    QVector3D normal;
    for (int k = 0; k < 3; ++k) {
        const float *n = mesh.normals.data() + std::size_t(corners[k]) * 3;
        normal += QVector3D(n[0], n[1], n[2]);
    }
    // QVector3D::normalized() takes a small triangle's for no direction.
    const QVector3D front = across(mesh.positions.data(), corners);
    const double size = std::sqrt(double(front.lengthSquared())) * normal.length();
    return size > 0 ? float(QVector3D::dotProduct(front, normal) / size) : 0;
}

/// Lets triangles that were turned over look where their normals do, or they would be dark. What
/// stands across its surface is seen from the side that it shared with the others before, and
/// would be dark if it were turned.
void turnToNormals(const Mesh &mesh, std::vector<quint32> &indices)
{
    std::ptrdiff_t front = 0, all = 0;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3, ++all)
        front += agreement(mesh, &indices[i]) >= 0;
    const bool insideOut = front * 2 < all;
    const bool agree = std::max(front, all - front) * 10 > all * 9;
    const float turnedOver = agree ? -0.75f : 0.0f;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const float alike = agreement(mesh, &indices[i]) * (insideOut ? -1.0f : 1.0f);
        if ((alike < turnedOver) != insideOut)
            std::swap(indices[i + 1], indices[i + 2]);
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
