// SPDX-License-Identifier: MIT
#include "host/read/import.h"

#include <assimp/metadata.h>

#include "host/read/scene.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

/// A glTF file of one triangle with the corners (0,0,0), (1,0,0), (0,1,0). @p nodes is the list of
/// nodes and what follows it; @p attributes may give the corners the first bone (accessor 1) in
/// full (accessor 2).
QByteArray sail(const QByteArray &nodes, const QByteArray &attributes = {})
{
    return gltf(
        R"("scenes":[{"nodes":[0]}],"nodes":)" + nodes +
            R"(,"meshes":[{"name":"sail","primitives":[{"material":0,"attributes":{"POSITION":0)" +
            attributes +
            R"(}}]}],"materials":[{"name":"cloth",
            "pbrMetallicRoughness":{"baseColorFactor":[1,0.5,0,1]}}])",
        {{"VEC3", 3, floats({0, 0, 0, 1, 0, 0, 0, 1, 0})},
         {"VEC4", 3, QByteArray(12, '\0'), 5121},
         {"VEC4", 3, floats({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0})},
         {"MAT4", 1, floats({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1})}});
}

QByteArray collada(const QByteArray &upAxis)
{
    return R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><up_axis>)" +
           upAxis + R"(</up_axis></asset><library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="a" count="9">0 0 0 1 0 0 0 0 5</float_array>
<technique_common><accessor source="#a" count="3" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node id="n"><instance_geometry url="#g"/></node>
</visual_scene></library_visual_scenes><scene><instance_visual_scene url="#s"/></scene></COLLADA>)";
}

/// Each facet is a normal and three corners.
QByteArray stl(std::initializer_list<std::array<const char *, 4>> facets)
{
    QByteArray text = "solid t\n";
    for (const auto &[normal, a, b, c] : facets)
        text += QByteArray("facet normal ") + normal + "\nouter loop\nvertex " + a + "\nvertex " +
                b + "\nvertex " + c + "\nendloop\nendfacet\n";
    return text + "endsolid t\n";
}

const QByteArray stlTower = stl({{"0 -1 0", "0 0 0", "1 0 0", "0 0 5"}});

/// Two triangles at a right angle, lying and standing, with the normals that are given.
QByteArray stlFold(const char *lying, const char *standing)
{
    return stl({{lying, "0 0 0", "9 0 0", "0 9 0"}, {standing, "9 0 0", "0 0 0", "0 0 9"}});
}

const QByteArray colouredPly =
    ply("ascii",
        "vertex 3, float x, float y, float z, uchar red, uchar green, uchar blue; "
        "face 1, list uchar int vertex_indices",
        "0 0 0 255 0 0\n1 0 0 255 0 0\n0 5 0 255 0 0\n3 0 1 2\n");

/// Two quads that share the edge x = 1; the second rises to @p height at x = 2.
QByteArray bentStrip(const QByteArray &height)
{
    return "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 " + height + "\nv 2 1 " + height +
           "\nf 1 2 3 4\nf 2 5 6 3\n";
}

QByteArray painted(const QByteArray &material)
{
    return "mtllib a.mtl\nusemtl " + material + '\n' + objTriangle();
}

/// With a tip that each of its sides has a corner of its own at.
QByteArray cone(int sides)
{
    QByteArray corners, faces;
    for (int i = 0; i < sides; ++i) {
        const double turn = 2 * M_PI * i / sides;
        corners += QString("v %1 0 %2\n").arg(std::cos(turn)).arg(std::sin(turn)).toUtf8();
        faces += QString("f 1 %1 %2\n").arg((i + 1) % sides + 2).arg(i + 2).toUtf8();
    }
    return "v 0 0.2 0\n" + corners + faces;
}

#define GREY "#ffcccccc" // where a file says nothing
#define FLAT "3/1 (0 0 0)..(2 3 0) n(0 0 1) "
#define UNIT "3/1 (0 0 0)..(1 1 0) n(0 0 1) "

const struct {
    const char *file;
    QByteArray content;
    std::string summary; // or a part of the reason
} files[] = {
    {"a.obj", objTriangle(), FLAT GREY},
    {"crease.obj", bentStrip("9"), "8/4 (0 0 0)..(2 1 9) n(0 0 1) " GREY},
    {"bend.obj", bentStrip("0.1"), "6/4 (0 0 0)..(2 1 0.1) n(0 0 1) " GREY},
    {"material.obj", painted("red"), FLAT "#80ff0000"},
    {"glow.obj", painted("glow"), FLAT "#ff00ff00"},
    {"black.obj", painted("black"), FLAT GREY}, // nothing of it would be seen
    {"unseen.obj", painted("unseen"), FLAT "#ff0000ff"},
    {"bright.obj", painted("bright"), FLAT "#ff80ff00"},
    {"colours.obj", "v 0 0 0 0 1 0\nv 1 0 0 0 1 0\nv 0 1 0 0 1 0\nf 1 2 3\n", UNIT "#ff00ff00"},
    {"nan.obj", objTriangle() + "v nan 9 9\nf 1 2 4\n", FLAT GREY},
    {"flat.obj", objTriangle() + "v 4 0 0\nf 1 2 4\nf 1 1 3\n", FLAT GREY},
    {"cone.obj", cone(1000), "1001/1000 (-1 0 -1)..(1 0.2 1) n(0 1 0) " GREY},
    {"unused.obj", "v 0 0 0\nv 9 9 9\nv 1 0 0\nv 0 1 0\nf 1 3 4\n", UNIT GREY},
    {"upright.stl", stlTower, "3/1 (0 0 0)..(1 5 0) n(0 0 1) " GREY},
    {"zero.stl", stlFold("0 0 0", "0 0 0"), "6/2 (0 0 -9)..(9 9 0) n(0 1 0) " GREY},
    {"one.stl", stlFold("0 0.6 0.8", "nan 0 0"), "6/2 (0 0 -9)..(9 9 0) n(0 0.8 -0.6) " GREY},
    {"a.ply", colouredPly, "3/1 (0 0 0)..(1 5 0) n(0 0 1) #ffff0000"},
    {"a.gltf", sail(R"([{"mesh":0}])"), UNIT "#ffff8000"},
    {"nested.gltf", sail(R"([{"children":[1],"translation":[10,0,0]},{"mesh":0,"scale":[2,3,4]}])"),
     "3/1 (10 0 0)..(12 3 0) n(0 0 1) #ffff8000"},
    {"mirror.gltf", sail(R"([{"mesh":0,"scale":[-1,1,1]}])"),
     "3/1 (-1 0 0)..(0 1 0) n(0 0 1) #ffff8000"},
    {"skin.gltf",
     sail(R"([{"children":[1,2]},{"mesh":0,"skin":0,"translation":[100,0,0]},
              {"name":"bone","translation":[0,0,7]}],"skins":[{"joints":[2],"inverseBindMatrices":3}])",
          R"(,"JOINTS_0":1,"WEIGHTS_0":2)"),
     "3/1 (0 0 7)..(1 1 7) n(0 0 1) #ffff8000"},
    {"z.dae", collada("Z_UP"), "3/1 (0 0 0)..(1 5 0) n(0 0 1) " GREY},

    {"line.obj", "v 0 0 0\nv 1 0 0\nv 1 0 0\nv 1 2 0\nl 1 2 3 4\n",
     "3/0 (0 0 0)..(1 2 0) n(2l0p) " GREY},
    {"mixed.obj", objTriangle() + "v 0 0 9\nl 1 4\n", "5/1 (0 0 0)..(2 3 9) n(0 0 1) " GREY},
    {"points.obj", "v 0 0 0\nv 1 0 0\nv nan 0 0\nv 2 0 5\n",
     "3/0 (0 0 0)..(2 0 5) n(0l3p) " GREY " 1 points without usable coordinates left out"},
    {"dots.obj", "v 0 0 0 1 0 0\nv 1 0 0 1 0 0\n", "2/0 (0 0 0)..(1 0 0) n(0l2p) #ffff0000"},
    {"line2.obj", "v 0 0 0 0 1 0\nv 1 0 0 0 1 0\nl 1 2\n",
     "2/0 (0 0 0)..(1 0 0) n(1l0p) #ff00ff00"},
    {"p.gltf", sail(R"([{"mesh":0,"scale":[2,3,4]}])", R"(},"mode":0,"extras":{)"),
     "3/0 (0 0 0)..(2 3 0) n(0l3p) #ffff8000"},
    {"l.gltf", sail(R"([{"mesh":0}])", R"(},"mode":2,"extras":{)"), "n(3l0p) #ffff8000"},
    {"nans.obj", "v nan 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "none of its faces has usable vertices"},
    {"thin.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n", "no triangles"},
    {"index.obj", objTriangle() + "f 1 2 9\n", "index"},
    {"cut.ply", colouredPly.left(260), "none of its faces has usable vertices"},
    {"cut.gltf", sail(R"([{"mesh":0}])").left(300), "no reader knows it for a .gltf file"},
    {"garbage.stl", QByteArray(300, '\x93'), "STL"},
    {"prose.text", "Dear diary,\n", "no reader knows this kind of file"},
    {"companion.gltf",
     sail(R"([{"mesh":0}])").replace("data:application/octet-stream;base64,", "sub/"), "sub/"},
};

TEST(ImportTest, GivesTheMeshOrTheReason)
{
    const ModelFolder folder;
    folder.write("a.mtl", "newmtl red\nKd 1 0 0\nd 0.5\nnewmtl glow\nKd 0 0 0\nKe 0 1 0\n"
                          "newmtl black\nKd 0.01 0 0\nnewmtl unseen\nKd 0 0 1\nd 0\n"
                          "newmtl bright\nKd 0.5 3 0\n");
    for (const auto &c : files) {
        SCOPED_TRACE(c.file);
        const std::string summary = summaryOf(importMesh(folder.write(c.file, c.content)));
        EXPECT_NE(summary.find(c.summary), std::string::npos) << summary;
        EXPECT_EQ(summary.find("/tmp"), std::string::npos) << summary;
    }
    const MeshPart part = importMesh(folder.path("a.gltf")).mesh.parts.at(0);
    EXPECT_TRUE(part.name.startsWith("sail") && part.material == "cloth");
}

TEST(ImportTest, TheAxesAreTheFilesWhateverIsUp)
{
    const char *const mirrored =
        "xof 0303txt 0032\nMesh m {3; 1;0;5;, 2;0;5;, 1;3;5;; 1; 3;0,1,2;;}";
    const QByteArray turned = sail(R"([{"mesh":0,"matrix":[1,0,0,0,0,0,-1,0,0,1,0,0,0,0,0,1]}])");
    const struct {
        const char *file;
        QByteArray content;
        FileAxes::Axis up;
        QVector3D size; // along the axes of the file
        const char *unit;
    } rows[] = {
        {"a.stl", stlTower, FileAxes::Z, {1, 0, 5}, ""},
        {"a.ply", colouredPly, FileAxes::Y, {1, 5, 0}, ""},
        {"x.dae", collada("X_UP"), FileAxes::X, {1, 0, 5}, "m"},
        {"y.dae", collada("Y_UP"), FileAxes::Y, {1, 0, 5}, "m"},
        {"z.dae", collada("Z_UP"), FileAxes::Z, {1, 0, 5}, "m"},
        {"mirrored.x", mirrored, FileAxes::Y, {1, 3, 0}, ""},
        {"a.gltf", turned, FileAxes::Y, {1, 0, 1}, "m"}, // a node is not the format
    };
    const ModelFolder folder;
    for (const auto &c : rows) {
        SCOPED_TRACE(c.file);
        Mesh mesh = importMesh(folder.write(c.file, c.content)).mesh;
        const bool isMirrored = *c.file == 'm';
        EXPECT_EQ(mesh.axes.up(), c.up);
        EXPECT_EQ(mesh.unit, c.unit);
        for (const auto up : {FileAxes::X, FileAxes::Y, FileAxes::Z}) {
            EXPECT_EQ(mesh.axes.mirrored(), isMirrored);
            mesh.standOn(up);
            expectSound(mesh); // no mirror image
            EXPECT_TRUE(mesh.axes.mirrored() == isMirrored && mesh.fileSize() == c.size);
            EXPECT_EQ((mesh.max - mesh.min).y(), c.size[up]);
        }
    }
}

TEST(ImportTest, FbxNamesItsUnitByItsSize)
{
    const std::pair<double, QString> rows[] = {{0.1, "mm"}, {1, "cm"}, {2.54, "in"}, {7, ""}};
    for (const auto &[centimetres, unit] : rows) {
        aiScene scene;
        scene.mMetaData = aiMetadata::Alloc(1);
        scene.mMetaData->Set(0, "UnitScaleFactor", float(centimetres));
        EXPECT_EQ(lengthUnit(scene, "Autodesk FBX Importer"), unit) << centimetres;
        EXPECT_EQ(lengthUnit(scene, "Stereolithography (STL) Importer"), "");
    }
    // Numbers and signs of the axes to the right, up and to the front; those of the file.
    const int axes[][9] = {
        {0, 1, 2, 1, 1, -1, 1, 3, -2}, {1, -1, 0, 1, 2, 1, -2, 1, 3}, {3, 1, 2, 1, 1, -1, 1, 2, 3}};
    for (const auto &row : axes) {
        aiScene scene;
        scene.mMetaData = aiMetadata::Alloc(6);
        unsigned at = 0;
        for (const char *name :
             {"CoordAxis", "CoordAxisSign", "UpAxis", "UpAxisSign", "FrontAxis", "FrontAxisSign"})
            scene.mMetaData->Set(at, name, row[at]), ++at;
        const char *const fbx = "Autodesk FBX Importer";
        const FileAxes got = fileAxes(scene, fbx, uprightTurn(scene, fbx));
        EXPECT_TRUE(std::equal(got.of.begin(), got.of.end(), row + 6)) << &row - axes;
    }
    const aiMatrix4x4 enlarged(2, 0, 0, 0, 0, 0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 1);
    EXPECT_EQ(fileAxes({}, "", enlarged).of, FileAxes::standing(FileAxes::Z).of);
    aiMatrix4x4 sheared;
    sheared.a2 = 0.5f;
    EXPECT_EQ(fileAxes({}, "", sheared).of, FileAxes().of);
}

TEST(ImportTest, TheNodesThatHavePartsAreListed)
{
    // Of each node the name and, if it has one, the number above; the parts' nodes.
    const std::pair<const char *, std::string> rows[] = {
        {R"([{"name":"a","mesh":0}])", "a | 0"},
        {R"([{"name":"r","children":[1,3]},{"name":"b","children":[2]},{"name":"c","mesh":0},
             {"name":"empty","children":[4]},{"name":"bare"}])",
         "b c<0 | 1"},
        {R"([{"name":"r","mesh":0,"children":[1]},{"name":"d","mesh":0}])", "r d<0 | 0 1"},
        {R"([{"children":[1]},{"name":"x","children":[2]},
             {"name":"y_$AssimpFbx$_Rotation","children":[3]},{"name":"y","mesh":0}])",
         "x y<0 | 1"},
    };
    const ModelFolder folder;
    for (const auto &[nodes, expected] : rows) {
        const Mesh mesh = importMesh(folder.write("a.gltf", sail(nodes))).mesh;
        QString list;
        for (const MeshNode &node : mesh.nodes)
            list += node.name + (node.above < 0 ? "" : "<" + QString::number(node.above)) + ' ';
        list += '|';
        for (const MeshPart &part : mesh.parts)
            list += ' ' + QString::number(part.node);
        EXPECT_EQ(list.toStdString(), expected);
    }
}

TEST(ImportTest, TwoInstancesOfAMeshPassEachLimit)
{
    const ModelFolder folder;
    const QString path = folder.write("a.gltf", sail(R"([{"mesh":0,"children":[1]},{"mesh":0}])"));
    const std::pair<MeshLimits, std::string> rows[] = {
        {{5, 9, 9, 9, 9}, "more than 1 triangles"}, {{9, 5, 9, 9, 9}, "more than 5 vertices"},
        {{9, 9, 1, 9, 9}, "more than 1 parts"},     {{9, 9, 9, 1, 9}, "more than 1 nodes"},
        {{9, 9, 9, 9, 1}, "more than 1 deep"},      {{6, 6, 2, 2, 2}, "6/2 (0 0 0)"}};
    for (const auto &[limits, reason] : rows) {
        const std::string summary = summaryOf(importMesh(path, {}, limits));
        EXPECT_NE(summary.find(reason), std::string::npos) << summary;
    }
}

} // namespace
} // namespace host
