// SPDX-License-Identifier: MIT
#include "host/app/standard_input.h"

#include <cstdio>
#include <unistd.h>

#include <QFile>
#include <QRegularExpression>
#include <QtEndian>

namespace host {

namespace {

/// A binary STL says how many triangles follow, and may begin like one in letters.
bool isBinaryStl(const QByteArray &start, qint64 size)
{
    constexpr int header = 80, triangle = 50;
    if (start.size() < header + 4)
        return false;
    const auto count = qFromLittleEndian<quint32>(start.constData() + header);
    return count > 0 && size == header + 4 + qint64(count) * triangle;
}

} // namespace

QString StandardInput::suffixOf(const QByteArray &start, qint64 size)
{
    if (isBinaryStl(start, size))
        return "stl";
    const std::pair<const char *, const char *> beginnings[] = {
        {"glTF", "glb"},      {"ply", "ply"}, {"OFF", "off"},         {"PK\x03\x04", "3mf"},
        {"solid", "stl"},     {"{", "gltf"},  {"Kaydara FBX", "fbx"}, {"; FBX", "fbx"},
        {"BLENDER", "blend"}, {"xof ", "x"},  {"MS3D000000", "ms3d"}};
    for (const auto &[begin, suffix] : beginnings)
        if (start.trimmed().startsWith(begin))
            return suffix;
    for (const auto &[tag, suffix] :
         {std::pair("<COLLADA", "dae"), std::pair("<amf", "amf"), std::pair("<X3D", "x3d")})
        if (start.contains(tag))
            return suffix;
    static const QRegularExpression statement("^(v|vn|vt|f|o|g|mtllib|usemtl)\\s",
                                              QRegularExpression::MultilineOption);
    if (statement.match(QString::fromLatin1(start)).hasMatch())
        return "obj";
    const QByteArray line = start.left(start.indexOf('\n'));
    for (char separator : {',', ';', '\t'})
        if (line.contains(separator))
            return "csv";
    return {};
}

QString StandardInput::read()
{
    constexpr qint64 block = 1 << 20, enough = 4096; // bytes
    if (isatty(fileno(stdin)))
        return tr("standard input is a terminal; pipe a file into it");
    QFile in, out(folder_.filePath("standard input"));
    if (!in.open(stdin, QIODevice::ReadOnly))
        return tr("standard input cannot be read: %1").arg(in.errorString());
    if (!folder_.isValid() || !out.open(QIODevice::WriteOnly))
        return tr("standard input cannot be kept: %1")
            .arg(folder_.isValid() ? out.errorString() : folder_.errorString());
    QByteArray start;
    for (QByteArray piece = in.read(block); !piece.isEmpty(); piece = in.read(block)) {
        start += piece.left(int(enough - start.size()));
        if (out.write(piece) != piece.size())
            return tr("standard input cannot be kept: %1").arg(out.errorString());
    }
    if (in.error() != QFileDevice::NoError)
        return tr("standard input cannot be read: %1").arg(in.errorString());
    const qint64 size = out.size();
    if (!out.flush())
        return tr("standard input cannot be kept: %1").arg(out.errorString());
    if (size == 0)
        return tr("standard input is empty");
    const QString suffix = suffixOf(start, size);
    if (suffix.isEmpty())
        return tr("standard input: its format is not known, or needs the name of a file");
    path_ = out.fileName() + '.' + suffix;
    return out.rename(path_) ? QString()
                             : tr("standard input cannot be kept: %1").arg(out.errorString());
}

} // namespace host
