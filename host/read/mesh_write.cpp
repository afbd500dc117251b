// SPDX-License-Identifier: MIT
#include "host/read/mesh_stream.h"

#include <algorithm>

#include <QIODevice>

#include "host/read/mesh_frames.h"

namespace host {
namespace {

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

bool writeFrame(QIODevice &out, quint32 tag, const char *data, std::size_t size)
{
    const frames::Head head{tag, quint32(size)};
    const quint32 sum = frames::checksum(head, data);
    return writeAll(out, reinterpret_cast<const char *>(&head), sizeof head) &&
           writeAll(out, data, qint64(size)) &&
           writeAll(out, reinterpret_cast<const char *>(&sum), sizeof sum);
}

bool writeText(QIODevice &out, quint32 tag, const QByteArray &bytes)
{
    return writeFrame(out, tag, bytes.constData(), std::size_t(bytes.size()));
}

template <class T> QByteArray raw(const T &value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), int(sizeof value));
}

/// Cuts an array into frames that hold whole vertices and whole triangles (12 divides the piece).
template <class T> bool writeArray(QIODevice &out, quint32 tag, const std::vector<T> &array)
{
    constexpr std::size_t piece = frames::maxPayload / 12 * 12;
    const char *data = reinterpret_cast<const char *>(array.data());
    const std::size_t size = array.size() * sizeof(T);
    for (std::size_t at = 0; at < size; at += piece) {
        if (!writeFrame(out, tag, data + at, std::min(piece, size - at)))
            return false;
    }
    return true;
}

bool writePart(QIODevice &out, const MeshPart &part)
{
    const QByteArray name = part.name.toUtf8();
    return writeText(out, frames::part,
                     raw(part.indexCount) + raw(part.colour) + raw(quint32(name.size())) + name +
                         part.material.toUtf8());
}

} // namespace

bool writeStreamStart(QIODevice &out)
{
    return writeText(out, frames::start, raw(frames::version));
}

bool writeProgress(QIODevice &out, double fraction, const QString &stage)
{
    return writeText(out, frames::progress, raw(fraction) + stage.toUtf8());
}

bool writeFailure(QIODevice &out, const QString &reason)
{
    return writeText(out, frames::failure, reason.toUtf8());
}

bool writeMesh(QIODevice &out, const Mesh &mesh)
{
    const std::array<quint32, 4> counts{quint32(mesh.vertexCount()), quint32(mesh.indices.size()),
                                        quint32(mesh.parts.size()), mesh.colours.empty() ? 0u : 1u};
    if (!writeText(out, frames::counts, raw(counts)))
        return false;
    for (const MeshPart &part : mesh.parts) {
        if (!writePart(out, part))
            return false;
    }
    return writeArray(out, frames::positions, mesh.positions) &&
           writeArray(out, frames::normals, mesh.normals) &&
           writeArray(out, frames::colours, mesh.colours) &&
           writeArray(out, frames::indices, mesh.indices) && writeText(out, frames::end, {});
}

} // namespace host
