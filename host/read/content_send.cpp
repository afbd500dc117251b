// SPDX-License-Identifier: MIT
#include "host/read/content_send.h"

#include <algorithm>

#include <QDataStream>
#include <QIODevice>

#include "host/read/messages.h"

namespace host {
namespace {

using messages::Tag;

bool writeAll(QIODevice &out, const char *data, qint64 size)
{
    while (size > 0) {
        const qint64 written = out.write(data, size);
        if (written <= 0)
            return false;
        data += written;
        size -= written;
    }
    return true;
}

/// One message in one write: the device has no buffer.
template <class... Fields> bool send(QIODevice &out, Tag tag, const Fields &...fields)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quint8(tag);
    (stream << ... << fields);
    return writeAll(out, bytes.constData(), bytes.size());
}

bool sendBytes(QIODevice &out, quint32 number, const char *data, std::size_t size)
{
    for (std::size_t at = 0; at < size; at += messages::maxPiece) {
        const quint32 piece = quint32(std::min<std::size_t>(messages::maxPiece, size - at));
        if (!send(out, Tag::Piece, number, piece) || !writeAll(out, data + at, piece))
            return false;
    }
    return true;
}

template <class T> bool sendArray(QIODevice &out, quint32 number, const std::vector<T> &array)
{
    return sendBytes(out, number, reinterpret_cast<const char *>(array.data()),
                     array.size() * sizeof(T));
}

bool sendRig(QIODevice &out, const Rig &rig, const QByteArray &bytes)
{
    return sendBytes(out, messages::RigBytes, bytes.constData(), std::size_t(bytes.size())) &&
           sendArray(out, messages::Bones, rig.vertexBones) &&
           sendArray(out, messages::Weights, rig.vertexWeights);
}

bool sendMesh(QIODevice &out, const Mesh &mesh)
{
    const QByteArray rig = mesh.rig ? toBytes(*mesh.rig) : QByteArray();
    bool good = send(
        out, Tag::MeshHead, quint32(mesh.vertexCount()), quint32(mesh.normalCount()),
        quint32(mesh.indices.size()), quint32(mesh.parts.size()), quint32(mesh.nodes.size()),
        !mesh.colours.empty(), mesh.axes.of[0], mesh.axes.of[1], mesh.axes.of[2], mesh.origin[0],
        mesh.origin[1], mesh.origin[2], mesh.notes, mesh.unit, !mesh.uvs.empty(),
        quint32(mesh.textures.size()), quint64(mesh.textureBytes()), quint32(rig.size()));
    for (const MeshNode &node : mesh.nodes)
        good = good && send(out, Tag::Item, node.above, node.name);
    for (const TexturePtr &texture : mesh.textures)
        good = good && send(out, Tag::Item, texture->width, texture->height);
    for (const MeshPart &part : mesh.parts) {
        const auto &c = part.colour;
        const Cover &cover = part.cover;
        const bool points = part.kind == MeshPart::Kind::Points;
        good =
            good && send(out, Tag::Item, quint8(part.kind),
                         points ? part.vertexCount : part.indexCount, part.node, c[0], c[1], c[2],
                         c[3], part.name, part.material, cover.texture, quint8(cover.wrapS),
                         quint8(cover.wrapT), cover.smooth, quint8(cover.alpha), cover.cutoff);
    }
    good = good && sendArray(out, messages::Positions, mesh.positions) &&
           sendArray(out, messages::Normals, mesh.normals) &&
           sendArray(out, messages::Colours, mesh.colours) &&
           sendArray(out, messages::Indices, mesh.indices) &&
           sendArray(out, messages::Uvs, mesh.uvs) && (!mesh.rig || sendRig(out, *mesh.rig, rig));
    for (quint32 i = 0; i < mesh.textures.size(); ++i)
        good = good && sendArray(out, messages::FirstTexture + i, mesh.textures[i]->pixels);
    return good;
}

bool sendTable(QIODevice &out, const Table &table)
{
    bool good = send(out, Tag::TableHead, quint32(table.rows()), quint32(table.columns.size()),
                     table.xName, table.xIsTime, table.skipped);
    for (const Column &column : table.columns)
        good = good && send(out, Tag::Item, column.name);
    good = good && sendArray(out, 0, table.x);
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        good = good && sendArray(out, quint32(i + 1), table.columns[i].values);
    return good;
}

bool sendList(QIODevice &out, const FileList &list)
{
    bool good = send(out, Tag::ListHead, list.empty, list.cut);
    for (const QString &file : list.files)
        good = good && send(out, Tag::Item, file);
    return good;
}

} // namespace

bool sendBegin(QIODevice &out, qint64 fileSize)
{
    return send(out, Tag::Begin, messages::version, fileSize);
}

bool sendProgress(QIODevice &out, double fraction, const QString &stage)
{
    return send(out, Tag::Progress, fraction, stage);
}

bool sendFailure(QIODevice &out, const QString &reason, bool last)
{
    return send(out, Tag::Failure, reason, last);
}

bool sendContent(QIODevice &out, const Content &content)
{
    return content.mesh    ? sendMesh(out, *content.mesh)
           : content.table ? sendTable(out, *content.table)
                           : sendList(out, *content.list);
}

bool sendEnd(QIODevice &out, bool last)
{
    return send(out, Tag::End, last);
}

} // namespace host
