// SPDX-License-Identifier: MIT
#include "host/read/import.h"

#include <cmath>

#include "tests/GL/table.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

template <class T> QByteArray bytesOf(const T &array)
{
    return QByteArray(reinterpret_cast<const char *>(&array), int(sizeof array));
}

/// A glTF file of one triangle with the corners (0,0,0), (1,0,0), (0,1,0). @p nodes is the list of
/// nodes and what follows it; @p attributes may give the corners the first bone (accessor 1) in
/// full (accessor 2).
QByteArray gltf(const QByteArray &nodes, const QByteArray &attributes = {})
{
    const std::array<float, 9> corners{0, 0, 0, 1, 0, 0, 0, 1, 0};
    const std::array<quint8, 12> bones{};
    const std::array<float, 12> weights{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    const std::array<float, 16> identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const QByteArray data =
        bytesOf(corners) + bytesOf(bones) + bytesOf(weights) + bytesOf(identity);
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":)" + nodes +
           R"(,"meshes":[{"name":"sail","primitives":[{"material":0,"attributes":{"POSITION":0)" +
           attributes + R"(}}]}],
           "materials":[{"name":"cloth","pbrMetallicRoughness":{"baseColorFactor":[1,0.5,0,1]}}],
           "accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3",
                         "min":[0,0,0],"max":[1,1,0]},
                        {"bufferView":1,"componentType":5121,"count":3,"type":"VEC4"},
                        {"bufferView":2,"componentType":5126,"count":3,"type":"VEC4"},
                        {"bufferView":3,"componentType":5126,"count":1,"type":"MAT4"}],
           "bufferViews":[{"buffer":0,"byteLength":36},
                          {"buffer":0,"byteOffset":36,"byteLength":12},
                          {"buffer":0,"byteOffset":48,"byteLength":48},
                          {"buffer":0,"byteOffset":96,"byteLength":64}],
           "buffers":[{"byteLength":160,"uri":"data:application/octet-stream;base64,)" +
           data.toBase64() + R"("}]})";
}

QByteArray collada(const QByteArray &upAxis)
{
    return R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><up_axis>)" +
           upAxis + R"(</up_axis></asset>
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="a" count="9">0 0 0 1 0 0 0 0 5</float_array>
<technique_common><accessor source="#a" count="3" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node id="n"><instance_geometry url="#g"/></node>
</visual_scene></library_visual_scenes><scene><instance_visual_scene url="#s"/></scene></COLLADA>)";
}

const char *const stlTower =
    "solid t\nfacet normal 0 -1 0\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
    "vertex 0 0 5\nendloop\nendfacet\nendsolid t\n";

/// Two triangles at a right angle, lying and standing, with the normals that are given.
QByteArray stlFold(const QByteArray &lying, const QByteArray &standing)
{
    return "solid t\nfacet normal " + lying +
           "\nouter loop\nvertex 0 0 0\nvertex 9 0 0\nvertex 0 9 0\nendloop\nendfacet\n"
           "facet normal " +
           standing +
           "\nouter loop\nvertex 9 0 0\nvertex 0 0 0\nvertex 0 0 9\nendloop\nendfacet\nendsolid "
           "t\n";
}

const char *const colouredPly =
    "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float "
    "z\n"
    "property uchar red\nproperty uchar green\nproperty uchar blue\nelement face 1\n"
    "property list uchar int vertex_indices\nend_header\n"
    "0 0 0 255 0 0\n1 0 0 255 0 0\n0 5 0 255 0 0\n3 0 1 2\n";

/// Two quads that share the edge x = 1; the second rises to @p height at x = 2.
QByteArray bentStrip(const QByteArray &height)
{
    return "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 " + height + "\nv 2 1 " + height +
           "\nf 1 2 3 4\nf 2 5 6 3\n";
}

/// What is seen of a mesh: vertices/triangles, its box, the first vertex's normal and colour.
QString summaryOf(const Mesh &m)
{
    QStringList numbers;
    for (const QVector3D &v : {m.min, m.max, QVector3D(m.normals[0], m.normals[1], m.normals[2])})
        for (int axis = 0; axis < 3; ++axis)
            numbers << QString::number(double(std::round(v[axis] * 1000) / 1000 + 0.0f));
    QStringList colour;
    for (std::size_t k = 0; k < 4; ++k)
        colour << QString::number(m.colours.empty() ? std::round(m.parts[0].colour[k] * 255)
                                                    : m.colours[k]);
    return QStringLiteral("%1/%2 (%3)..(%4) n(%5) c(%6)")
        .arg(m.vertexCount())
        .arg(m.triangleCount())
        .arg(numbers.mid(0, 3).join(' '), numbers.mid(3, 3).join(' '), numbers.mid(6).join(' '),
             colour.join(' '));
}

struct ModelCase {
    const char *name;
    const char *file;
    QByteArray content;
    const char *summary;
};

#define GREY "c(153 153 153 255)" // what assimp gives where a file says nothing
#define CLOTH "c(255 128 0 255)"
#define RED "c(255 0 0 255)"

const ModelCase modelCases[] = {
    {"Triangle", "a.obj", objTriangle(), "3/1 (0 0 0)..(2 3 0) n(0 0 1) " GREY},
    {"QuadIsCut", "a.obj", objGrid(1), "4/2 (0 0 0)..(1 1 0) n(0 0 1) " GREY},
    {"SharpCrease", "a.obj", bentStrip("9"), "8/4 (0 0 0)..(2 1 9) n(0 0 1) " GREY},
    {"GentleBend", "a.obj", bentStrip("0.1"), "6/4 (0 0 0)..(2 1 0.1) n(0 0 1) " GREY},
    {"Material", "a.obj", "mtllib a.mtl\nusemtl red\n" + objTriangle(),
     "3/1 (0 0 0)..(2 3 0) n(0 0 1) c(255 0 0 128)"},
    {"VertexColours", "a.obj", "v 0 0 0 0 1 0\nv 1 0 0 0 1 0\nv 0 1 0 0 1 0\nf 1 2 3\n",
     "3/1 (0 0 0)..(1 1 0) n(0 0 1) c(0 255 0 255)"},
    {"NanIsDropped", "a.obj", objTriangle() + "v nan 9 9\nf 1 2 4\n",
     "3/1 (0 0 0)..(2 3 0) n(0 0 1) " GREY},
    {"NoAreaIsDropped", "a.obj", objTriangle() + "v 4 0 0\nf 1 2 4\nf 1 1 3\n",
     "3/1 (0 0 0)..(2 3 0) n(0 0 1) " GREY},
    {"UnusedVertexIsNotInTheBox", "a.obj", "v 0 0 0\nv 9 9 9\nv 1 0 0\nv 0 1 0\nf 1 3 4\n",
     "3/1 (0 0 0)..(1 1 0) n(0 0 1) " GREY},
    {"StlStandsUp", "a.stl", stlTower, "3/1 (0 0 0)..(1 5 0) n(0 0 1) c(255 255 255 255)"},
    {"StlZeroNormals", "a.stl", stlFold("0 0 0", "nan 0 0"),
     "6/2 (0 0 -9)..(9 9 0) n(0 1 0) c(255 255 255 255)"},
    {"StlOneZeroNormal", "a.stl", stlFold("0 0.6 0.8", "0 0 0"),
     "6/2 (0 0 -9)..(9 9 0) n(0 0.8 -0.6) c(255 255 255 255)"},
    {"PlyKeepsItsY", "a.ply", colouredPly, "3/1 (0 0 0)..(1 5 0) n(0 0 1) " RED},
    {"Gltf", "a.gltf", gltf(R"([{"mesh":0}])"), "3/1 (0 0 0)..(1 1 0) n(0 0 1) " CLOTH},
    {"NestedTransforms", "a.gltf",
     gltf(R"([{"children":[1],"translation":[10,0,0]},{"mesh":0,"scale":[2,3,4]}])"),
     "3/1 (10 0 0)..(12 3 0) n(0 0 1) " CLOTH},
    {"Mirrored", "a.gltf", gltf(R"([{"mesh":0,"scale":[-1,1,1]}])"),
     "3/1 (-1 0 0)..(0 1 0) n(0 0 1) " CLOTH},
    {"TwoInstances", "a.gltf",
     gltf(R"([{"mesh":0,"children":[1]},{"mesh":0,"translation":[0,0,7]}])"),
     "6/2 (0 0 0)..(1 1 7) n(0 0 1) " CLOTH},
    {"SkinHangsOnItsBone", "a.gltf",
     gltf(R"([{"children":[1,2]},{"mesh":0,"skin":0,"translation":[100,0,0]},
              {"name":"bone","translation":[0,0,7]}],"skins":[{"joints":[2],"inverseBindMatrices":3}])",
          R"(,"JOINTS_0":1,"WEIGHTS_0":2)"),
     "3/1 (0 0 7)..(1 1 7) n(0 0 1) " CLOTH},
    {"ColladaZUp", "a.dae", collada("Z_UP"), "3/1 (0 0 0)..(1 5 0) n(0 0 1) " GREY},
    {"ColladaYUp", "a.dae", collada("Y_UP"), "3/1 (0 0 0)..(1 0 5) n(0 -1 0) " GREY},
};

TABLE(ImportModel, testing::Test, ModelCase, modelCases);

TEST_P(ImportModel, GivesTheMesh)
{
    const ModelFolder folder;
    folder.write("a.mtl", "newmtl red\nKd 1 0 0\nd 0.5\n");
    const Imported got = importMesh(folder.write(GetParam().file, GetParam().content));
    ASSERT_TRUE(got.ok()) << got.reason.toStdString();
    expectSound(got.mesh);
    EXPECT_EQ(summaryOf(got.mesh), GetParam().summary);
}

TEST(ImportTest, PartsCarryTheirNames)
{
    const ModelFolder folder;
    const QString path = folder.write(QStringLiteral("a.gltf"), gltf(R"([{"mesh":0}])"));
    const Imported got = importMesh(path);
    ASSERT_EQ(got.mesh.parts.size(), 1u);
    EXPECT_TRUE(got.mesh.parts[0].name.startsWith(QLatin1String("sail")));
    EXPECT_EQ(got.mesh.parts[0].material, QStringLiteral("cloth"));
}

struct AxesCase {
    const char *name;
    const char *file;
    QByteArray content;
    FileAxes::Axis up;
    QVector3D size; // along the axes of the file
    bool mirrored = false;
};

const AxesCase axesCases[] = {
    {"ByTheFormat", "a.stl", stlTower, FileAxes::Z, {1, 0, 5}},
    {"Else", "a.ply", colouredPly, FileAxes::Y, {1, 5, 0}},
    {"ByTheFileX", "a.dae", collada("X_UP"), FileAxes::X, {1, 0, 5}},
    {"ByTheFileY", "a.dae", collada("Y_UP"), FileAxes::Y, {1, 0, 5}},
    {"ByTheFileZ", "a.dae", collada("Z_UP"), FileAxes::Z, {1, 0, 5}},
    {"LeftHanded",
     "a.x",
     "xof 0303txt 0032\nMesh m {3; 1;0;5;, 2;0;5;, 1;3;5;; 1; 3;0,1,2;;}",
     FileAxes::Y,
     {1, 3, 0},
     true},
    {"ANodeIsNotTheFormat",
     "a.gltf",
     gltf(R"([{"mesh":0,"matrix":[1,0,0,0, 0,0,-1,0, 0,1,0,0, 0,0,0,1]}])"),
     FileAxes::Y,
     {1, 0, 1}},
};

TABLE(ImportAxes, testing::Test, AxesCase, axesCases);

TEST_P(ImportAxes, AreTheFilesWhateverIsUp)
{
    const ModelFolder folder;
    Mesh mesh = importMesh(folder.write(QLatin1String(GetParam().file), GetParam().content)).mesh;
    EXPECT_EQ(mesh.axes.up(), GetParam().up);
    EXPECT_EQ(mesh.axes.mirrored(), GetParam().mirrored);
    for (const auto up : {FileAxes::X, FileAxes::Y, FileAxes::Z}) {
        mesh.standOn(up);
        expectSound(mesh); // no mirror image
        EXPECT_EQ(mesh.axes.mirrored(), GetParam().mirrored);
        EXPECT_EQ(mesh.fileSize(), GetParam().size);
        EXPECT_EQ((mesh.max - mesh.min).y(), GetParam().size[up]);
    }
}

struct BrokenCase {
    const char *name;
    const char *file;
    QByteArray content;
    const char *reason; // a part of it
};

const BrokenCase brokenCases[] = {
    {"OnlyALine", "a.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n", "only points or lines"},
    {"OnlyPoints", "a.obj", "v 0 0 0\nv 1 0 0\nv 2 0 5\n", "only points or lines"},
    {"AllNan", "a.obj", "v nan 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n",
     "none of its faces has usable vertices"},
    {"NoArea", "a.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n", "no triangles"},
    {"IndexOutOfRange", "a.obj", objTriangle() + "f 1 2 9\n", "index"},
    {"CutInTheVertices", "a.ply", QByteArray(colouredPly).left(260),
     "none of its faces has usable vertices"},
    {"CutInTheData", "a.gltf", gltf(R"([{"mesh":0}])").left(300),
     "no reader knows it for a .gltf file; it may be broken or cut short"},
    {"Garbage", "a.stl", QByteArray(300, '\x93'), "STL"},
    {"NotAModel", "a.txt", "Dear diary,\n", "no reader knows this kind of file"},
    {"MissingCompanion", "a.gltf",
     gltf(R"([{"mesh":0}])").replace("data:application/octet-stream;base64,", "sub/"), "sub/"},
};

TABLE(ImportBroken, testing::Test, BrokenCase, brokenCases);

TEST_P(ImportBroken, SaysWhy)
{
    const ModelFolder folder;
    const Imported got =
        importMesh(folder.write(QLatin1String(GetParam().file), GetParam().content));
    EXPECT_FALSE(got.ok());
    EXPECT_TRUE(got.reason.contains(QLatin1String(GetParam().reason))) << got.reason.toStdString();
    EXPECT_FALSE(got.reason.contains(QLatin1String("/tmp"))) << got.reason.toStdString();
}

struct LimitCase {
    const char *name;
    void (*tighten)(MeshLimits &);
    const char *reason;
};

const LimitCase limitCases[] = {
    {"Triangles", [](MeshLimits &l) { l.indices = 5; }, "more than 1 triangles"},
    {"Vertices", [](MeshLimits &l) { l.vertices = 5; }, "more than 5 vertices"},
    {"Parts", [](MeshLimits &l) { l.parts = 1; }, "more than 1 parts"},
    {"Nodes", [](MeshLimits &l) { l.nodes = 1; }, "more than 1 nodes"},
    {"Depth", [](MeshLimits &l) { l.depth = 1; }, "more than 1 deep"},
};

TABLE(ImportLimit, testing::Test, LimitCase, limitCases);

TEST_P(ImportLimit, TwoInstancesOfAMeshPassIt)
{
    const ModelFolder folder;
    const QString path =
        folder.write(QStringLiteral("a.gltf"), gltf(R"([{"mesh":0,"children":[1]},{"mesh":0}])"));
    MeshLimits limits;
    GetParam().tighten(limits);
    const Imported got = importMesh(path, {}, limits);
    EXPECT_TRUE(got.reason.contains(QLatin1String(GetParam().reason))) << got.reason.toStdString();
}

} // namespace
} // namespace host
