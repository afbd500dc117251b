// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESSAGES_H
#define HOST_READ_MESSAGES_H

#include <QtGlobal>

namespace host {
namespace messages {

/// What a reading process answers to one request, as QDataStream writes it: Begin; any number of
/// Progress; then a Failure, or a head, its items, its arrays in pieces, and End. An array's bytes
/// stand in the stream as they stand in memory, since they are the bulk of it.
enum class Tag : quint8 {
    Begin = 1, ///< quint32 version, qint64 size of the file in bytes
    Progress,  ///< double fraction, QString stage
    Failure,   ///< QString reason, bool last
    MeshHead,  ///< quint32 vertices, normals, indices, parts, nodes, bool coloured, 3 qint8 axes,
               ///< 3 doubles origin, QStringList notes, QString unit, bool covered,
               ///< quint32 textures, quint64 bytes of these, quint32 bytes of its rig: 0 for none
    TableHead, ///< quint32 rows, columns, QString x name, bool time, QStringList skipped
    ListHead,  ///< QStringList empty, cut
    Item,      ///< Of a mesh, first each node: qint32 above, QString name; then each texture:
               ///< quint32 width, height; then each part: quint8 kind, quint32 indices or, of
               ///< points, vertices, qint32 node, 4 floats, QString name, material, and its cover:
               ///< qint32 texture, quint8 wrap, wrap, bool smooth, quint8 alpha, float cutoff; all
               ///< come before the mesh's indices. Of a table, a column: QString name. Of a list, a
               ///< file: QString path.
    Piece,     ///< quint32 array, quint32 size, that many bytes
    End,       ///< bool last: the process serves no more
};

constexpr quint32 version = 8;
/// Of a mesh the arrays are positions, normals, colours, indices, coordinates on textures, of its
/// rig the bytes and each triangle vertex's bones and weights, and the pixels of one texture after
/// the other; of a table x and the columns.
enum MeshArray : quint32 {
    Positions,
    Normals,
    Colours,
    Indices,
    Uvs,
    RigBytes,
    Bones,
    Weights,
    FirstTexture
};
/// Also the most work that one message makes. Whole vertices, triangles and numbers fit into it.
constexpr quint32 maxPiece = 256 * 1024 / 24 * 24;
/// No message without arrays is larger.
constexpr qint64 maxMessage = 8 << 20;

} // namespace messages
} // namespace host

#endif
