// SPDX-License-Identifier: MIT
#include "tests/host/read/support.h"

#include <utility>

#include <QColor>
#include <QFileInfo>

namespace host {

QString ModelFolder::write(const QString &name, const QByteArray &content) const
{
    const QString file = path(name);
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    EXPECT_EQ(out.write(content), content.size());
    return file;
}

QByteArray objTriangle()
{
    return "v 0 0 0\nv 2 0 0\nv 0 3 0\nf 1 2 3\n";
}

QByteArray floats(const std::vector<float> &values)
{
    return QByteArray(reinterpret_cast<const char *>(values.data()), int(values.size() * 4));
}

QByteArray gltf(const QString &rest, const std::vector<GltfArray> &arrays)
{
    QStringList accessors, views, buffers;
    for (const GltfArray &a : arrays) {
        const QString number = QString::number(views.size()), size = QString::number(a.data.size());
        accessors << QString(R"({"bufferView":%1,"componentType":%2,"count":%3,"type":"%4"})")
                         .arg(number)
                         .arg(a.componentType)
                         .arg(a.count)
                         .arg(a.type);
        views << QString(R"({"buffer":%1,"byteLength":%2})").arg(number, size);
        buffers << QString(R"({"byteLength":%1,"uri":"data:application/octet-stream;base64,%2"})")
                       .arg(size, QString(a.data.toBase64()));
    }
    return QString(R"({"asset":{"version":"2.0"},"scene":0,%1,)"
                   R"("accessors":[%2],"bufferViews":[%3],"buffers":[%4]})")
        .arg(rest, accessors.join(','), views.join(','), buffers.join(','))
        .toUtf8();
}

QByteArray ply(const QByteArray &format, QByteArray elements, const QByteArray &data)
{
    elements.replace(", ", "\nproperty ").replace("; ", "\nelement ");
    return "ply\nformat " + format + " 1.0\ncomment x\nelement " + elements + "\nend_header\n" +
           data;
}

namespace {

QVector3D vectorAt(const std::vector<float> &a, std::size_t i)
{
    return QVector3D(a.at(3 * i), a.at(3 * i + 1), a.at(3 * i + 2));
}

} // namespace

void expectPromises(const Mesh &mesh)
{
    using Kind = MeshPart::Kind;
    ASSERT_FALSE(mesh.parts.empty());
    ASSERT_LE(mesh.normalCount(), mesh.firstPoint());
    quint32 covered = 0, vertices = quint32(mesh.firstPoint());
    Kind kind = Kind::Triangles;
    for (const MeshPart &part : mesh.parts) {
        const bool points = part.kind == Kind::Points;
        EXPECT_TRUE(part.kind >= std::exchange(kind, part.kind) && part.kind <= Kind::Points);
        EXPECT_TRUE(part.firstIndex == covered && !part.name.isEmpty());
        EXPECT_TRUE((part.indexCount == 0) == points && (part.vertexCount > 0) == points);
        EXPECT_EQ(part.indexCount % (part.kind == Kind::Triangles ? 3 : 2), 0u);
        EXPECT_EQ(part.firstVertex, points ? vertices : 0);
        covered += part.indexCount;
        vertices += part.vertexCount;
        for (const float c : part.colour)
            EXPECT_TRUE(c >= 0 && c <= 1);
        const Cover &c = part.cover;
        EXPECT_TRUE(c.texture >= -1 && c.texture < qint32(mesh.textures.size()));
        EXPECT_TRUE(c.texture < 0 || part.kind == Kind::Triangles);
        EXPECT_TRUE(c.wrapS <= Cover::Clamp && c.wrapT <= Cover::Clamp &&
                    c.alpha <= Cover::Blended && c.cutoff >= 0 && c.cutoff <= 1);
        EXPECT_TRUE(part.node >= -1 && part.node < qint32(mesh.nodes.size()));
    }
    EXPECT_EQ(covered, mesh.indices.size());
    EXPECT_EQ(vertices, mesh.vertexCount());
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        EXPECT_TRUE(mesh.nodes[i].above >= -1 && mesh.nodes[i].above < qint32(i));
    EXPECT_TRUE(mesh.axes.isValid());
    const auto near = [](auto c) { return std::abs(c) <= Mesh::maxCoordinate; };
    EXPECT_TRUE(std::all_of(mesh.origin.begin(), mesh.origin.end(), near));
    EXPECT_TRUE(std::all_of(mesh.positions.begin(), mesh.positions.end(), near));
    for (std::size_t i = 0; i < mesh.normalCount(); ++i)
        EXPECT_NEAR(vectorAt(mesh.normals, i).length(), 1, 0.0011);
    Mesh box = mesh;
    box.findBounds();
    EXPECT_TRUE(mesh.min == box.min && mesh.max == box.max);
    for (std::size_t i = 0; i < mesh.indices.size(); ++i)
        EXPECT_LT(mesh.indices[i],
                  i < mesh.triangleCount() * 3 ? mesh.normalCount() : mesh.firstPoint());
    EXPECT_TRUE(mesh.colours.empty() || mesh.colours.size() == mesh.vertexCount() * 4);
    EXPECT_EQ(mesh.uvs.size(), mesh.textures.empty() ? 0 : mesh.normalCount() * 2);
    for (const float v : mesh.uvs)
        EXPECT_LE(std::abs(v), Mesh::maxUv);
    for (const TexturePtr &t : mesh.textures)
        EXPECT_EQ(t->pixels.size(), std::size_t(t->width) * t->height * 4);
}

void expectSound(const Mesh &mesh)
{
    expectPromises(mesh);
    std::vector<bool> used(mesh.vertexCount());
    for (const quint32 i : mesh.indices)
        used.at(i) = true;
    for (std::size_t t = 0; t < mesh.triangleCount() * 3; t += 3) {
        QVector3D corners[3], normals;
        for (std::size_t k = 0; k < 3; ++k) {
            corners[k] = vectorAt(mesh.positions, mesh.indices[t + k]);
            normals += vectorAt(mesh.normals, mesh.indices[t + k]);
        }
        const QVector3D facing = QVector3D::normal(corners[0], corners[1], corners[2]);
        EXPECT_GT(QVector3D::dotProduct(facing, normals), 0) << "triangle " << t / 3;
    }
    const auto first = used.begin() + std::ptrdiff_t(mesh.firstPoint());
    EXPECT_EQ(std::count(used.begin(), first, false), 0);
}

std::string summaryOf(const Imported &got)
{
    if (!got.ok())
        return got.reason.toStdString();
    const Mesh &m = got.mesh;
    expectSound(m);
    const auto text = [](const QVector3D &v) {
        const auto near = [](float f) { return double(std::round(f * 1000) / 1000 + 0.0f); };
        return QString("%1 %2 %3").arg(near(v[0])).arg(near(v[1])).arg(near(v[2]));
    };
    const auto &c = m.parts[0].colour;
    const auto &all = m.colours;
    const QColor colour = all.empty() ? QColor::fromRgbF(c[0], c[1], c[2], c[3])
                                      : QColor(all[0], all[1], all[2], all[3]);
    const QString first = m.normals.empty()
                              ? QString("%1l%2p").arg(m.lineCount()).arg(m.pointCount())
                              : text(vectorAt(m.normals, 0));
    QString covered;
    if (const Cover &cover = m.parts[0].cover; cover.texture >= 0) {
        const Texture &t = *m.textures[std::size_t(cover.texture)];
        const QColor pixel(t.pixels[0], t.pixels[1], t.pixels[2], t.pixels[3]);
        covered = QString("%1x%2 ").arg(t.width).arg(t.height) + pixel.name(QColor::HexArgb) + ' ' +
                  "ICB"[cover.alpha];
    }
    return QString("%1/%2 (%3)..(%4) n(%5) %6 %7")
        .arg(m.vertexCount())
        .arg(m.triangleCount())
        .arg(text(m.min), text(m.max), first, colour.name(QColor::HexArgb),
             covered + m.notes.join(';'))
        .toStdString();
}

} // namespace host
