// SPDX-License-Identifier: MIT
// Which pictures of a model arrive, how they lie on it, and what is said of those that do not.
#include <iomanip>
#include <sstream>

#include <QBuffer>
#include <QImage>

#include "host/read/companion_files.h"
#include "host/read/scene.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

QByteArray file(const QImage &image, const char *format)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&out, format));
    return out.data();
}

QImage plain(int width, int height, QRgb colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

/// 2 x 2: red and green above, blue with an alpha and white below.
QByteArray png(quint32 alpha = 255)
{
    const quint32 texels[] = {0xffff0000, 0xff00ff00, alpha << 24 | 0xff, 0xffffffff};
    return file(QImage(reinterpret_cast<const uchar *>(texels), 2, 2, QImage::Format_ARGB32),
                "png");
}

/// An uncompressed TGA of so many pixels that begins at its lower left, with two pixels of data.
QByteArray tga(int side, int rows)
{
    const char size[] = {char(side), char(side >> 8), char(rows), char(rows >> 8), 24, 0};
    return QByteArray("\0\0\2\0\0\0\0\0\0\0\0\0", 12) + QByteArray(size, 6) +
           QByteArray("\xff\x80\0\0\0\0", 6);
}

#define UNREAD "#ff808080 texture not read: "
constexpr std::size_t shapeEnd = 30; // in what summaryOf() tells

/// A square whose corners share places, but not all of their coordinates, covered by @p map, which
/// more of the material follows.
Imported import(const ModelFolder &folder, const QByteArray &map)
{
    folder.write("model/a.mtl", "newmtl a\nKd 0.5 0.5 0.5\nmap_Kd " + map + "\n");
    return importMesh(folder.write("model/a.obj",
                                   "mtllib a.mtl\nusemtl a\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                   "vt 0 0\nvt 1 0\nvt 1 1\nvt 2 2\nvt 0 1\n"
                                   "f 1/1 2/2 3/3\nf 1/1 3/4 4/5\n"));
}

TEST(TextureTest, ArrivesOrLeavesTheColourAndALine)
{
    const QImage line = plain(8190, 1, 0xff000000), grey = plain(16, 16, 0xff808080);

    const struct {
        QByteArray map, picture; // null: it is there, or it is not to be
        std::string summary;     // behind the shape
    } rows[] = {
        {"a.png", png(), "#ffffffff 2x2 #ff0000ff I"},
        {"C:\\old\\deep\\in.png", {}, "#ffffffff 1x2 #ff0080ff I"},
        {"a.png\nKd 1 0 0", {}, "#ffff0000 2x2 #ff0000ff I"},
        {"named.tga", png(), "#ffffffff 2x2 #ff0000ff I"}, // what it is its bytes say
        {"deep/in.png", tga(1, 2), "#ffffffff 1x2 #ff0080ff I"},
        {"grey.jpg", file(grey, "jpeg"), "#ffffffff 16x16 #ff808080 I"},
        {"grey.bmp", file(grey, "bmp"), "#ffffffff 16x16 #ff808080 I"},
        {"wide.png", file(line, "png"), "#ffffffff 4096x1 #ff000000 I"},
        {"hole.png", png(0), "#ffffffff 2x2 #000000ff C"},
        {"pale.png", png(128), "#ffffffff 2x2 #800000ff I"},
        {"pale.png\nmap_d pale.png", {}, "#ffffffff 2x2 #800000ff B"},
        {"unseen.png", file(plain(2, 2, 0), "png"), "#ffffffff 2x2 #00000000 I"},
        {"none.png", {}, "#ff808080 texture not found: none.png"},
        {"none.png\nKd 0 0 0", {}, "#ffcccccc texture not found: none.png"},
        {"../a.png", {}, "#ffffffff 2x2 #ff0000ff I"}, // it is here as well
        {"empty.png", "", UNREAD "empty.png: it is empty"},
        {"cut.png", png().left(60), UNREAD "cut.png: it is broken or cut short"},
        {"cut.jpg", file(grey, "jpeg").chopped(4), UNREAD "cut.jpg: it is broken or cut short"},
        {"cut.bmp", file(line, "bmp").left(60), UNREAD "cut.bmp: it is broken or cut short"},
        {"head.png", png().left(9), UNREAD "head.png: it is broken or cut short"},
        {"drawing.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>",
         UNREAD "drawing.svg: no picture of a known format"},
        {"large.tga", tga(16384, 8193), UNREAD "large.tga: too large: 16384 × 8193"},
        {"thin.tga", tga(10000, 10000), UNREAD "thin.tga: it is broken or cut short"},
    };
    const ModelFolder folder;
    folder.write("model/deep/in.png", tga(1, 2));
    for (const auto &c : rows) {
        if (!c.picture.isNull())
            folder.write("model/" + c.map, c.picture);
        EXPECT_EQ(summaryOf(import(folder, c.map)).substr(shapeEnd), c.summary)
            << c.map.toStdString();
    }
    const Mesh covered = import(folder, "a.png").mesh; // joined where the coordinates agree
    EXPECT_EQ(covered.uvs, (std::vector<float>{0, 0, 1, 0, 1, 1, 2, 2, 0, 1})); // five
    EXPECT_EQ(import(folder, "none.png").mesh.vertexCount(), 4u);
}

TEST(TextureTest, OneFileIsReadOnceAndAllKeepWithinTheLimit)
{
    const ModelFolder folder;
    folder.write("deep/a.png", png());
    folder.write("a.png", png());
    folder.write("cut.png", png().left(60));
    folder.write("text.png", "Dear diary,\n");
    folder.write("square.png", file(plain(64, 64, 0xffff0000), "png"));
    QByteArray lines, faces;
    for (const char *name : {"a.png", "A.png", "deep/../a.png", "square.png", "x/none.png",
                             "no.png", "x/no.png", "cut.png", "text.png"}) {
        const QByteArray number = QByteArray::number(lines.count('\n'));
        lines += "newmtl m" + number + "\nmap_Kd " + name + '\n';
        faces += "usemtl m" + number + "\nf 1/1 2/1 3/1\n";
    }
    folder.write("a.mtl", lines);
    const QString model =
        folder.write("a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\n" + faces);
    const Mesh mesh = importMesh(model).mesh;
    std::vector<qint32> order;
    for (const MeshPart &part : mesh.parts)
        order.push_back(part.cover.texture);
    EXPECT_EQ(order, (std::vector<qint32>{0, 0, 0, 1, -1, -1, -1, -1, -1}));
    const Mesh edge = importMesh(folder.write("line.obj", "mtllib a.mtl\nusemtl m0\nv 0 0 0\n"
                                                          "v 1 0 0\nvt 0 0\nl 1/1 2/1\n"))
                          .mesh;
    expectSound(edge);
    EXPECT_TRUE(edge.textures.empty() && edge.parts.at(0).cover.texture < 0);
    EXPECT_EQ(mesh.notes.join(';'), "2 textures not found: none.png, …;2 textures not read: "
                                    "cut.png: it is broken or cut short, …");
    MeshLimits limits;
    limits.textureBytes = 4 * (32 * 32 + 4);
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures[1]->width, 32u);
    --limits.textureBytes;
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures[1]->width, 16u);
    limits.textures = 1;
    EXPECT_EQ(importMesh(model, {}, limits).mesh.textures.size(), 1u);
}

/// A triangle whose second coordinates are the first ones doubled. @p use follows the index of the
/// base colour's texture, @p material the base colour, @p sampler is the only one.
QByteArray covered(const QByteArray &use, const QByteArray &material, const QByteArray &sampler)
{
    return gltf(R"("scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
        "extensionsUsed":["KHR_texture_transform"],"textures":[{"source":0,"sampler":0}],
        "meshes":[{"primitives":[{"material":0,
            "attributes":{"POSITION":0,"TEXCOORD_0":1,"TEXCOORD_1":2}}]}],
        "images":[{"uri":"data:image/png;base64,)" +
                    png(128).toBase64() + R"("}],"samplers":[{)" + sampler +
                    R"(}],"materials":[{"pbrMetallicRoughness":{"baseColorFactor":[0.5,0.5,0.5,1],
        "baseColorTexture":{"index":0)" +
                    use + "}}" + material + "}]",
                {{"VEC3", 3, floats({0, 0, 0, 1, 0, 0, 0, 1, 0})},
                 {"VEC2", 3, floats({0, 0, 1, 0, 0.25f, 0.5f})},
                 {"VEC2", 3, floats({0, 0, 2, 0, 0.5f, 1})}});
}

/// Sets what no file in words can say.
template <class T> void setKey(aiMaterial &of, T value, const char *key, unsigned type = 0)
{
    of.AddProperty(&value, 1, key, type, 0);
}

// A picture of raw pixels that stands in the model; coordinates are scaled, turned by a quarter
// about the picture's middle, and moved.
TEST(TextureTest, RawPixelsOfAModelAndTransformsOfCoordinates)
{
    aiScene scene;
    auto *mesh = new aiMesh;
    scene.mMeshes = new aiMesh *[scene.mNumMeshes = 1] { mesh };
    mesh->mFaces = new aiFace[mesh->mNumFaces = mesh->mNumVertices = 1];
    for (const unsigned k : {0, 1, 2})
        mesh->mTextureCoords[k] = new aiVector3D[1]{{0.25f, 0.5f * float(k), 0}};
    scene.mMaterials = new aiMaterial *[scene.mNumMaterials = 1] { new aiMaterial };
    aiMaterial &material = *scene.mMaterials[0];
    aiUVTransform moved;
    moved.mScaling = {2, 3}, moved.mTranslation = {0.1f, 0.2f}, moved.mRotation = float(M_PI / 2);
    const aiString first("*0");
    material.AddProperty(&first, "$tex.file", aiTextureType_DIFFUSE, 0);
    setKey(material, 1, "$tex.uvwsrc", aiTextureType_DIFFUSE);
    setKey(material, moved, "$tex.uvtrafo", aiTextureType_DIFFUSE);
    setKey(material, aiColor4D(0.5f, 0.5f, 0.5f, 1), "$clr.diffuse");
    setKey(material, aiColor4D(1, 0, 0, 1), "$clr.base");
    auto *picture = new aiTexture;
    scene.mTextures = new aiTexture *[scene.mNumTextures = 1] { picture };
    picture->mWidth = 2, picture->mHeight = 1;
    CompanionFiles files("/none/a.x", Companions::InFolder);
    picture->pcData = new aiTexel[2]{{1, 2, 3, 4}, {5, 6, 7, 8}};
    const SceneTextures got = readTextures(scene, "", files, {});
    EXPECT_EQ(got.textures.at(0)->pixels, (std::vector<quint8>{3, 2, 1, 4, 7, 6, 5, 8}));
    const aiVector3D at = mesh->mTextureCoords[0][0] - aiVector3D(-0.4f, 0.7f, 0);
    EXPECT_TRUE(at.Length() < 1e-5f && !mesh->mTextureCoords[1] && got.covers[0].texture == 0);
    EXPECT_EQ(materialColour(material)[1], 1) << "a grey beside a picture was never seen";
}

TEST(TextureTest, MaterialsOfGltfSayHowTheyLie)
{
    const struct {
        QByteArray use, material, sampler;
        std::string seen; // also wraps, smoothness, cutoff, and coordinates: v runs down in files
    } rows[] = {
        {"", "", "", "#ff808080 2x2 #800000ff I 0 0 1 0.5: 0 1 1 1 0.25 0.5"},
        {R"(,"texCoord":1)", R"(,"alphaMode":"BLEND")", R"("wrapS":33071,"magFilter":9728)",
         "#ff808080 2x2 #800000ff B 2 0 0 0.5: 0 1 2 1 0.5 0"},
        {R"(,"extensions":{"KHR_texture_transform":
            {"offset":[0.1,0.2],"scale":[2,3],"rotation":1.5707963}})",
         R"(,"alphaMode":"MASK","alphaCutoff":0.25)", R"("wrapT":33648,"magFilter":9729)",
         "#ff808080 2x2 #800000ff C 0 1 1 0.25: 0.1 0.8 0.1 2.8 1.6 1.3"},
    };
    const ModelFolder folder;
    for (const auto &c : rows) {
        const Imported got =
            importMesh(folder.write("a.gltf", covered(c.use, c.material, c.sampler)));
        std::ostringstream seen;
        const Cover &cover = got.mesh.parts.at(0).cover;
        seen << summaryOf(got).substr(shapeEnd) << ' ' << int(cover.wrapS) << ' '
             << int(cover.wrapT) << ' ' << cover.smooth << ' ' << cover.cutoff << ':';
        for (const float v : got.mesh.uvs)
            seen << ' ' << std::setprecision(4) << v;
        EXPECT_EQ(seen.str(), c.seen);
    }
}

} // namespace
} // namespace host
