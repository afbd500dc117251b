// SPDX-License-Identifier: MIT
#include "host/item/model_outline.h"

namespace host {

namespace {

constexpr std::size_t enough = 40000; // points

/// How many indices a part has; of points, vertices.
std::size_t sizeOf(const MeshPart &part)
{
    return part.kind == MeshPart::Kind::Points ? part.vertexCount : part.indexCount;
}

/// The vertex that stands @p at so many of these.
std::size_t vertexIn(const Mesh &mesh, const MeshPart &part, std::size_t at)
{
    return part.kind == MeshPart::Kind::Points ? part.firstVertex + at
                                               : mesh.indices[part.firstIndex + at];
}

} // namespace

std::vector<QVector3D> outlineOf(const Mesh &mesh, const QVector3D &centre, float scale)
{
    const std::size_t count = mesh.vertexCount(), step = count / enough + 1;
    std::vector<QVector3D> outline;
    outline.reserve(count / step + 1);
    for (std::size_t i = 0; i < count; i += step)
        outline.push_back((mesh.position(i) - centre) * scale);
    return outline;
}

std::vector<QVector3D> outlineOf(const Mesh &mesh, const QVector3D &centre, float scale,
                                 const std::function<bool(std::size_t part)> &wanted)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < mesh.parts.size(); ++i)
        count += wanted(i) ? sizeOf(mesh.parts[i]) : 0;
    const std::size_t step = count / enough + 1;
    std::vector<QVector3D> outline;
    outline.reserve(count / step + 1);
    std::size_t next = 0; // counted over all wanted parts, so that small ones are not all left out
    for (std::size_t i = 0; i < mesh.parts.size(); ++i) {
        if (!wanted(i))
            continue;
        const MeshPart &part = mesh.parts[i];
        for (; next < sizeOf(part); next += step)
            outline.push_back((mesh.position(vertexIn(mesh, part, next)) - centre) * scale);
        next -= sizeOf(part);
    }
    return outline;
}

} // namespace host
