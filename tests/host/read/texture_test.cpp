// SPDX-License-Identifier: MIT
// Which pictures of a model arrive, how they lie on it, and what is said of those that do not.
#include <QBuffer>
#include <QColor>
#include <QImage>
#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

/// 2 x 2: red and green above, blue with an alpha and white below.
QImage fourColours(int alpha = 255)
{
    QImage image(2, 2, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, Qt::red);
    image.setPixelColor(1, 0, Qt::green);
    image.setPixelColor(0, 1, QColor(0, 0, 255, alpha));
    image.setPixelColor(1, 1, Qt::white);
    return image;
}

QByteArray file(const QImage &image, const char *format)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&out, format));
    return out.data();
}

QByteArray png(int alpha = 255)
{
    return file(fourColours(alpha), "png");
}

/// The lower half is @p lower in all of its bytes.
QByteArray mono(int lower)
{
    QImage image(8, 2, QImage::Format_Mono);
    image.setColorTable({qRgb(0, 0, 0), qRgb(0, 255, 0)});
    image.fill(0);
    image.scanLine(1)[0] = uchar(lower);
    return file(image, "bmp");
}

/// An uncompressed TGA of so many pixels that begins at its lower left, with two pixels of data.
QByteArray tga(int side, int rows)
{
    QByteArray head(18, '\0');
    head[2] = 2;
    head[12] = char(side & 255);
    head[13] = char(side >> 8);
    head[14] = char(rows & 255);
    head[15] = char(rows >> 8);
    head[16] = 24;
    return head + QByteArray("\xff\x80\0\0\0\0", 6);
}

QByteArray wide(QByteArray bmp)
{
    bmp[18] = bmp[22] = char(0xe8);
    bmp[19] = bmp[23] = char(0xfd);
    return bmp;
}

/// How the first part is covered: the texture's size, its lower left pixel, how its alpha counts,
/// the part's colour; and the notes.
std::string summaryOf(const Imported &got)
{
    if (!got.ok())
        return got.reason.toStdString();
    const Mesh &mesh = got.mesh;
    expectSound(mesh);
    const auto &c = mesh.parts[0].colour;
    const QString notes = mesh.notes.join('|');
    const Cover &cover = mesh.parts[0].cover;
    if (cover.texture < 0)
        return ("- " + notes).toStdString();
    const Texture &texture = *mesh.textures.at(std::size_t(cover.texture));
    const quint8 *p = texture.pixels.data();
    return QStringLiteral("%1x%2 %3 %4 %5%6")
        .arg(texture.width)
        .arg(texture.height)
        .arg(QColor(p[0], p[1], p[2], p[3]).name(QColor::HexArgb))
        .arg(QStringLiteral("ICB")[cover.alpha])
        .arg(QColor::fromRgbF(c[0], c[1], c[2]).name(), notes)
        .toStdString();
}

/// A square whose corners share places, but not all of their coordinates; a material says @p more.
Imported import(const ModelFolder &folder, const QByteArray &more, const MeshLimits &limits = {})
{
    folder.write("model/a.mtl", "newmtl a\nKd 0.5 0.5 0.5\n" + more + "\n");
    return importMesh(folder.write("model/a.obj",
                                   "mtllib a.mtl\nusemtl a\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                   "vt 0 0\nvt 1 0\nvt 1 1\nvt 2 2\nvt 0 1\n"
                                   "f 1/1 2/2 3/3\nf 1/1 3/4 4/5\n"),
                      {}, limits);
}

const struct {
    const char *material;
    std::string summary;
} materials[] = {
    {"map_Kd a.png", "2x2 #ff0000ff I #ffffff"},
    {"map_Kd A.PNG", "2x2 #ff0000ff I #ffffff"},
    {"map_Kd C:\\maps\\a.png", "2x2 #ff0000ff I #ffffff"},
    {"map_Kd C:\\old\\deep\\in.png", "2x2 #ff0000ff I #ffffff"},
    {"Kd 1 0 0\nmap_Kd a.png", "2x2 #ff0000ff I #ff0000"},
    {"Kd 0 0 0\nmap_Kd a.png", "2x2 #ff0000ff I #ffffff"},
    {"map_Kd a.bmp", "2x2 #ff0000ff I #ffffff"},
    {"map_Kd named.tga", "2x2 #ff0000ff I #ffffff"}, // what it is its bytes say
    {"map_Kd true.tga", "1x2 #ff0080ff I #ffffff"},
    {"map_Kd grey.jpg", "16x16 #ff808080 I #ffffff"},
    {"map_Kd mono.bmp", "8x2 #ff00ff00 I #ffffff"},
    {"map_Kd wide.png", "4096x1 #ff000000 I #ffffff"},
    {"map_Kd hole.png", "2x2 #000000ff C #ffffff"},
    {"map_Kd pale.png", "2x2 #800000ff I #ffffff"},
    {"map_Kd pale.png\nmap_d pale.png", "2x2 #800000ff B #ffffff"},
    {"map_Kd unseen.png", "2x2 #00000000 I #ffffff"},
    {"map_Kd none.png", "- texture not found: none.png"},
    {"map_Kd ../a.png", "2x2 #ff0000ff I #ffffff"}, // it is here as well
    {"map_Kd ../out.png", "- texture outside the folder: not read (out.png)"},
    {"map_Kd empty.png", "- texture not read: empty.png: it is empty"},
    {"map_Kd cut.png", "- texture not read: cut.png: it is broken or cut short"},
    {"map_Kd cut.jpg", "- texture not read: cut.jpg: it is broken or cut short"},
    {"map_Kd cut.bmp", "- texture not read: cut.bmp: it is broken or cut short"},
    {"map_Kd head.png", "- texture not read: head.png: it is broken or cut short"},
    {"map_Kd text.png", "- texture not read: text.png: no picture of a known format"},
    {"map_Kd drawing.svg", "- texture not read: drawing.svg: no picture of a known format"},
    {"map_Kd large.bmp", "- texture not read: large.bmp: it is broken or cut short"},
    {"map_Kd large.tga", "- texture not read: large.tga: too large: 60000 × 60000"},
    {"map_Kd hollow.tga", "- texture not read: hollow.tga: it is broken or cut short"},
};

void writePictures(const ModelFolder &folder)
{
    folder.write("out.png", png());
    folder.write("model/a.png", png());
    folder.write("model/deep/in.png", png());
    folder.write("model/a.bmp", file(fourColours().convertToFormat(QImage::Format_RGB32), "bmp"));
    folder.write("model/named.tga", png());
    folder.write("model/true.tga", tga(1, 2));
    folder.write("model/mono.bmp", mono(0xff));
    QImage line(8190, 1, QImage::Format_RGB32);
    line.fill(Qt::black);
    folder.write("model/wide.png", file(line, "png"));
    folder.write("model/hole.png", png(0));
    folder.write("model/pale.png", png(128));
    QImage unseen(2, 2, QImage::Format_ARGB32);
    unseen.fill(Qt::transparent);
    folder.write("model/unseen.png", file(unseen, "png"));
    folder.write("model/empty.png", {});
    folder.write("model/cut.png", png().left(60));
    QImage grey(16, 16, QImage::Format_RGB32);
    grey.fill(0xff808080);
    folder.write("model/grey.jpg", file(grey, "jpeg"));
    folder.write("model/cut.jpg", file(grey, "jpeg").chopped(4));
    folder.write("model/cut.bmp", file(line, "bmp").left(60));
    folder.write("model/head.png", png().left(9));
    folder.write("model/text.png", "Dear diary,\n");
    folder.write("model/drawing.svg",
                 "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>");
    folder.write("model/large.bmp",
                 wide(file(fourColours().convertToFormat(QImage::Format_RGB32), "bmp")));
    folder.write("model/large.tga", tga(60000, 60000));
    folder.write("model/hollow.tga", tga(10000, 10000));
}

TEST(TextureTest, ArrivesOrLeavesTheColourAndALine)
{
    const ModelFolder folder;
    writePictures(folder);
    for (const auto &c : materials)
        EXPECT_EQ(summaryOf(import(folder, c.material)), c.summary) << c.material;
}

TEST(TextureTest, VerticesAreJoinedWhereTheirCoordinatesAgree)
{
    const ModelFolder folder;
    writePictures(folder);
    const Mesh covered = import(folder, "map_Kd a.png").mesh;
    EXPECT_EQ(covered.vertexCount(), 5u);
    EXPECT_EQ(covered.uvs, (std::vector<float>{0, 0, 1, 0, 1, 1, 2, 2, 0, 1}));
    EXPECT_EQ(import(folder, "map_Kd none.png").mesh.vertexCount(), 4u);
}

TEST(TextureTest, OneFileIsReadOnceAndAllKeepWithinTheLimit)
{
    const ModelFolder folder;
    writePictures(folder);
    QImage square(64, 64, QImage::Format_RGB32);
    square.fill(Qt::red);
    folder.write("model/square.png", file(square, "png"));
    QByteArray lines, faces;
    for (const char *name : {"a.png", "A.png", "deep/../a.png", "square.png", "x/none.png",
                             "no.png", "x/no.png", "cut.png", "text.png"}) {
        const QByteArray number = QByteArray::number(lines.count('\n'));
        lines += "newmtl m" + number + "\nmap_Kd " + name + '\n';
        faces += "usemtl m" + number + "\nf 1/1 2/1 3/1\n";
    }
    folder.write("model/a.mtl", lines);
    const QString model =
        folder.write("model/a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\n" + faces);
    const Mesh mesh = importMesh(model).mesh;
    std::vector<qint32> order;
    for (const MeshPart &part : mesh.parts)
        order.push_back(part.cover.texture);
    EXPECT_EQ(order, (std::vector<qint32>{0, 0, 0, 1, -1, -1, -1, -1, -1}));
    ASSERT_EQ(mesh.textures.size(), 2u);
    EXPECT_EQ(mesh.notes,
              QStringList({"2 textures not found: none.png, …",
                           "2 textures not read: cut.png: it is broken or cut short, …"}));
    MeshLimits limits;
    limits.textureBytes = 4 * (32 * 32 + 4);
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures[1]->width, 32u);
    --limits.textureBytes;
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures[1]->width, 16u);
    limits.textures = 1;
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures.size(), 1u);
}

template <std::size_t N> QByteArray bytesOf(const std::array<float, N> &array)
{
    return QByteArray(reinterpret_cast<const char *>(array.data()), int(sizeof array));
}

/// A triangle whose second coordinates are the first ones doubled. @p use follows the index of the
/// base colour's texture, @p material the base colour, @p sampler is the only one.
QByteArray gltf(const QByteArray &use, const QByteArray &material, const QByteArray &sampler)
{
    const QByteArray data = bytesOf(std::array<float, 9>{0, 0, 0, 1, 0, 0, 0, 1, 0}) +
                            bytesOf(std::array<float, 6>{0, 0, 1, 0, 0.25f, 0.5f}) +
                            bytesOf(std::array<float, 6>{0, 0, 2, 0, 0.5f, 1});
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
      "extensionsUsed":["KHR_texture_transform"],"meshes":[{"primitives":[{"material":0,
      "attributes":{"POSITION":0,"TEXCOORD_0":1,"TEXCOORD_1":2}}]}],"textures":[{"source":0,"sampler":0}],
      "images":[{"uri":"data:image/png;base64,)" +
           png(128).toBase64() + R"("}],"samplers":[{)" + sampler +
           R"(}],"materials":[{"pbrMetallicRoughness":{"baseColorFactor":[0.5,0.5,0.5,1],
      "baseColorTexture":{"index":0)" +
           use + "}}" + material + R"(}],
      "accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
                   {"bufferView":1,"componentType":5126,"count":3,"type":"VEC2"},
                   {"bufferView":2,"componentType":5126,"count":3,"type":"VEC2"}],
      "bufferViews":[{"buffer":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":24},
                     {"buffer":0,"byteOffset":60,"byteLength":24}],
      "buffers":[{"byteLength":84,"uri":"data:application/octet-stream;base64,)" +
           data.toBase64() + R"("}]})";
}

TEST(TextureTest, MaterialsOfGltfSayHowTheyLie)
{
    const struct {
        QByteArray use, material, sampler;
        std::vector<float> uvs; // v runs down in the file
        Cover cover;
    } rows[] = {
        {"", "", "", {0, 1, 1, 1, 0.25f, 0.5f}, {0, Cover::Repeat, Cover::Repeat, true}},
        {R"(,"texCoord":1)",
         R"(,"alphaMode":"BLEND")",
         R"("wrapS":33071,"magFilter":9728)",
         {0, 1, 2, 1, 0.5f, 0},
         {0, Cover::Clamp, Cover::Repeat, false, Cover::Blended}},
        {R"(,"extensions":{"KHR_texture_transform":
            {"offset":[0.1,0.2],"scale":[2,3],"rotation":1.5707963}})",
         R"(,"alphaMode":"MASK","alphaCutoff":0.25)",
         R"("wrapT":33648,"magFilter":9729)",
         {0.1f, 0.8f, 0.1f, 2.8f, 1.6f, 1.3f},
         {0, Cover::Repeat, Cover::Mirror, true, Cover::Cutout, 0.25f}},
    };
    const ModelFolder folder;
    for (const auto &c : rows) {
        const Imported got = importMesh(folder.write("a.gltf", gltf(c.use, c.material, c.sampler)));
        EXPECT_EQ(summaryOf(got).substr(0, 13), "2x2 #800000ff")
            << got.mesh.notes.join('|').toStdString();
        EXPECT_FLOAT_EQ(got.mesh.parts[0].colour[0], 0.5f);
        const Cover &cover = got.mesh.parts[0].cover;
        EXPECT_EQ(cover.wrapS, c.cover.wrapS);
        EXPECT_EQ(cover.wrapT, c.cover.wrapT);
        EXPECT_EQ(cover.smooth, c.cover.smooth);
        EXPECT_EQ(cover.alpha, c.cover.alpha);
        EXPECT_EQ(cover.cutoff, c.cover.cutoff);
        ASSERT_EQ(got.mesh.uvs.size(), c.uvs.size());
        for (std::size_t i = 0; i < c.uvs.size(); ++i)
            EXPECT_NEAR(got.mesh.uvs[i], c.uvs[i], 1e-5) << i;
    }
}

} // namespace
} // namespace host
