// SPDX-License-Identifier: MIT
#ifndef HOST_READ_RIG_H
#define HOST_READ_RIG_H

#include <cstddef>
#include <vector>

#include <QByteArray>
#include <QMatrix4x4>
#include <QQuaternion>
#include <QString>
#include <QVector3D>
#include <QtGlobal>

namespace host {

/// How the vertices of a mesh move: the nodes of its file, what hangs on each of them, and the
/// clips that turn and shift them.
///
/// Frame: that of the mesh; node 0 leads from the file's world into it. A vertex stands at
/// sum(weight * world(node of bone) * offset of bone) of a place that never changes, where
/// world(n) = world(parent of n) * local(n). Local matrices that no track replaces stay.
/// A plain value. What importMesh() and ContentReceiver give keeps these promises: parents stand
/// before their children, only node 0 has none; all numbers are finite; four bones and four weights
/// for each vertex of triangles, the weights not negative and their sum 1 to a thousandth; clips
/// last longer than zero and at most maxSeconds, and each of their tracks has a key of each kind;
/// the times of keys ascend.
struct Rig {
    static constexpr double maxSeconds = 1e6;
    static constexpr std::size_t maxNodes = 65535, maxBones = 65535, maxKeys = 8 << 20;

    struct Node {
        qint32 parent = -1;
        QMatrix4x4 local; ///< Affine.
    };
    struct Bone {
        quint32 node = 0;
        QMatrix4x4 offset; ///< Affine.
    };
    template <class Value> struct Key {
        double seconds = 0;
        Value value;
    };
    using VectorKey = Key<QVector3D>;
    using TurnKey = Key<QQuaternion>; ///< Of unit length.
    /// What one node does: before its first key what that says, after its last what that says.
    struct Track {
        quint32 node = 0;
        std::vector<VectorKey> places;
        std::vector<TurnKey> turns;
        std::vector<VectorKey> scales;
    };
    struct Clip {
        QString name; ///< Never empty.
        double seconds = 0;
        std::vector<Track> tracks;
    };

    std::vector<Node> nodes;
    std::vector<Bone> bones;
    std::vector<Clip> clips;
    std::vector<quint16> vertexBones; ///< Four of each vertex of triangles, into bones.
    std::vector<float> vertexWeights; ///< As many.

    std::size_t keyCount() const;
    std::size_t byteSize() const; ///< Memory held, that of names by rule of thumb.
};

/// Nodes, bones and clips as bytes; the arrays of vertices are not among them.
QByteArray toBytes(const Rig &rig);

/// What toBytes() gave, without arrays of vertices. Returns whether @p bytes keep the promises of a
/// rig; trusts nothing in them.
bool fromBytes(const QByteArray &bytes, Rig &rig);

/// Whether the weights and bones of @p rig suit @p vertices vertices and its bones.
bool suitsVertices(const Rig &rig, std::size_t vertices);

} // namespace host

#endif
