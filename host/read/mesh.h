// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESH_H
#define HOST_READ_MESH_H

#include <array>
#include <cstddef>
#include <vector>

#include <QMetaType>
#include <QString>
#include <QVector3D>
#include <QtGlobal>
#include <memory>

namespace host {

/// A run of triangles with one name and one material.
struct MeshPart {
    QString name;     ///< Of the mesh or its node in the file; never empty.
    QString material; ///< Empty if the file names none.
    std::array<float, 4> colour{0.8f, 0.8f, 0.8f, 1}; ///< Diffuse RGBA, each 0..1.
    quint32 firstIndex = 0;                           ///< Into Mesh::indices, a multiple of three.
    quint32 indexCount = 0;                           ///< A multiple of three.
};

/// The triangles of one model file, ready to be put into buffers.
///
/// Frame: the world of the model, right-handed, +Y up; the transforms of all nodes are applied.
/// Units: those of the file. A triangle's front is counter-clockwise.
/// A plain value. What importMesh() and MeshDecoder give keeps these promises: every index is below
/// vertexCount(), every vertex is used, coordinates are finite and at most maxCoordinate in
/// magnitude, normals are of unit length, and the parts cover all indices in order.
struct Mesh {
    static constexpr float maxCoordinate = 1e15f; ///< Squares of sizes still fit into a float.

    std::vector<float> positions; ///< x, y, z of each vertex.
    std::vector<float> normals;   ///< x, y, z of each vertex.
    std::vector<quint8> colours;  ///< R, G, B, A of each vertex; empty: the parts' colours hold.
    std::vector<quint32> indices; ///< Three for each triangle.
    std::vector<MeshPart> parts;  ///< In the order of their indices.
    QVector3D min{0, 0, 0};       ///< Lower corner of the box around all vertices.
    QVector3D max{0, 0, 0};       ///< Upper corner.

    std::size_t vertexCount() const { return positions.size() / 3; }
    std::size_t triangleCount() const { return indices.size() / 3; }
    std::size_t byteSize() const; ///< Of the arrays, without the parts.
};

using MeshPtr = std::shared_ptr<const Mesh>;

/// The largest mesh that is read. What passes it is refused with a message: a file of a few
/// kilobytes can name the same mesh millions of times.
struct MeshLimits {
    quint64 indices = quint64(32) << 20;
    quint64 vertices = quint64(32) << 20;
    quint64 parts = quint64(1) << 16;
    quint64 nodes = quint64(1) << 20;
    int depth = 4096; ///< Of the tree of nodes.
};

} // namespace host

Q_DECLARE_METATYPE(host::MeshPtr)

#endif
