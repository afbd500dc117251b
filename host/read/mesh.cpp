// SPDX-License-Identifier: MIT
#include "host/read/mesh.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

int indexOf(qint8 axis)
{
    return std::abs(axis) - 1;
}

float signOf(qint8 axis)
{
    return axis < 0 ? -1.0f : 1.0f;
}

void turn(std::vector<float> &vectors, const FileAxes &from, const FileAxes &to)
{
    for (std::size_t i = 0; i + 2 < vectors.size(); i += 3) {
        const QVector3D v(vectors[i], vectors[i + 1], vectors[i + 2]);
        const QVector3D turned = to.fromFile(from.toFile(v));
        for (int k = 0; k < 3; ++k)
            vectors[i + std::size_t(k)] = turned[k];
    }
}

} // namespace

FileAxes FileAxes::standing(Axis up)
{
    switch (up) {
    case X:
        return {{{-2, 1, 3}}};
    case Y:
        return {};
    case Z:
        return {{{1, 3, -2}}};
    }
    return {};
}

bool FileAxes::isValid() const
{
    int seen = 0;
    for (const qint8 axis : of) {
        if (axis != 0 && std::abs(axis) <= 3)
            seen |= 1 << std::abs(axis);
    }
    return seen == 0b1110;
}

bool FileAxes::mirrored() const
{
    // The sign of the order, then that of each axis.
    const bool even = (indexOf(of[0]) + 1) % 3 == indexOf(of[1]);
    return even != (of[0] * of[1] * of[2] > 0);
}

QVector3D FileAxes::toFile(const QVector3D &inMesh) const
{
    QVector3D v;
    for (int k = 0; k < 3; ++k)
        v[indexOf(of[std::size_t(k)])] = signOf(of[std::size_t(k)]) * inMesh[k];
    return v;
}

QVector3D FileAxes::fromFile(const QVector3D &inFile) const
{
    QVector3D v;
    for (int k = 0; k < 3; ++k)
        v[k] = signOf(of[std::size_t(k)]) * inFile[indexOf(of[std::size_t(k)])];
    return v;
}

namespace {

/// The first part of @p mesh that is of @p kind or a later one.
const MeshPart *firstOf(const Mesh &mesh, MeshPart::Kind kind)
{
    const auto found =
        std::partition_point(mesh.parts.begin(), mesh.parts.end(),
                             [kind](const MeshPart &part) { return part.kind < kind; });
    return found == mesh.parts.end() ? nullptr : &*found;
}

} // namespace

std::size_t Mesh::triangleCount() const
{
    const MeshPart *next = firstOf(*this, MeshPart::Kind::Lines);
    return (next ? next->firstIndex : indices.size()) / 3;
}

std::size_t Mesh::trianglePartCount() const
{
    const MeshPart *next = firstOf(*this, MeshPart::Kind::Lines);
    return next ? std::size_t(next - parts.data()) : parts.size();
}

std::size_t Mesh::partOfIndex(std::size_t index) const
{
    const auto after =
        std::upper_bound(parts.begin(), parts.end(), index,
                         [](std::size_t i, const MeshPart &p) { return i < p.firstIndex; });
    return std::size_t(after - parts.begin()) - 1;
}

std::size_t Mesh::lineCount() const
{
    return (indices.size() - triangleCount() * 3) / 2;
}

std::size_t Mesh::firstPoint() const
{
    const MeshPart *points = firstOf(*this, MeshPart::Kind::Points);
    return points ? points->firstVertex : vertexCount();
}

std::size_t Mesh::byteSize() const
{
    return byteSize(vertexCount(), normalCount(), !colours.empty(), indices.size(), parts.size(),
                    !uvs.empty(), textureBytes(), nodes.size()) +
           (rig ? rig->byteSize() : 0);
}

std::size_t Mesh::textureBytes() const
{
    std::size_t sum = 0;
    for (const TexturePtr &texture : textures)
        sum += texture->pixels.size();
    return sum;
}

std::size_t Mesh::byteSize(std::size_t vertices, std::size_t normals, bool coloured,
                           std::size_t indices, std::size_t parts, bool covered,
                           std::size_t textureBytes, std::size_t nodes)
{
    constexpr std::size_t name = 48; // a short text
    return (vertices + normals) * 3 * sizeof(float) + vertices * (coloured ? 4 : 0) +
           normals * (covered ? 2 * sizeof(float) : 0) + indices * sizeof(quint32) +
           parts * (sizeof(MeshPart) + 2 * name) + nodes * (sizeof(MeshNode) + name) + textureBytes;
}

void Mesh::findBounds()
{
    min = max = {positions[0], positions[1], positions[2]};
    for (int k = 0; k < 3; ++k) {
        float low = min[k], high = max[k];
        for (std::size_t i = std::size_t(k); i < positions.size(); i += 3) {
            low = std::min(low, positions[i]);
            high = std::max(high, positions[i]);
        }
        min[k] = low;
        max[k] = high;
    }
}

QVector3D Mesh::fileSize() const
{
    const QVector3D size = axes.toFile(max - min);
    return {std::abs(size.x()), std::abs(size.y()), std::abs(size.z())};
}

void Mesh::standOn(FileAxes::Axis up)
{
    FileAxes next = FileAxes::standing(up);
    if (axes.mirrored())
        next.of[2] = qint8(-next.of[2]); // else the shape would become its mirror image
    turn(positions, axes, next);
    turn(normals, axes, next);
    const QVector3D a = next.fromFile(axes.toFile(min)), b = next.fromFile(axes.toFile(max));
    for (int k = 0; k < 3; ++k) {
        min[k] = std::min(a[k], b[k]);
        max[k] = std::max(a[k], b[k]);
    }
    if (rig) {
        QMatrix4x4 turned;
        for (int k = 0; k < 3; ++k) {
            QVector3D along;
            along[k] = 1;
            turned.setColumn(k, QVector4D(next.fromFile(axes.toFile(along)), 0));
        }
        auto own = std::make_shared<Rig>(*rig);
        own->nodes[0].local = turned * own->nodes[0].local;
        rig = std::move(own);
    }
    axes = next;
}

} // namespace host
