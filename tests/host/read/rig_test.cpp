// SPDX-License-Identifier: MIT
#include "host/read/rig.h"

#include "host/read/import.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

Rig rig()
{
    Rig r;
    r.nodes = {{-1, {}}, {0, {}}, {1, {}}};
    r.bones = {{1, {}}, {2, {}}};
    Rig::Track track;
    track.node = 2;
    track.places = {{0, {0, 0, 0}}, {1, {5, 0, 0}}};
    track.turns = {{0, QQuaternion()}};
    track.scales = {{0, {1, 1, 1}}};
    r.clips = {{"walk", 2, {track}}};
    r.vertexBones = {0, 1, 0, 0};
    r.vertexWeights = {0.25f, 0.75f, 0, 0};
    return r;
}

const float nan = std::nanf("");

TEST(RigTest, BytesAreWholeAndSoundOrRefused)
{
    const QByteArray bytes = toBytes(rig());
    Rig got;
    ASSERT_TRUE(fromBytes(bytes, got) && suitsVertices(rig(), 1));
    EXPECT_EQ(got.clips[0].tracks[0].places[1].value, QVector3D(5, 0, 0));
    for (int i = 0; i < bytes.size(); ++i)
        EXPECT_FALSE(fromBytes(bytes.left(i), got = {})) << i;
    EXPECT_FALSE(fromBytes(bytes + '\0', got = {}));

    void (*const lies[])(Rig &, Rig::Track &) = {
        [](Rig &r, Rig::Track &) { r.nodes.clear(); },
        [](Rig &r, Rig::Track &) { r.nodes[0].parent = 0; },
        [](Rig &r, Rig::Track &) { r.nodes[1].parent = -1; },
        [](Rig &r, Rig::Track &) { r.nodes[1].parent = 1; },
        [](Rig &r, Rig::Track &) { r.nodes[2].local(1, 3) = nan; },
        [](Rig &r, Rig::Track &) { r.bones.clear(); },
        [](Rig &r, Rig::Track &) { r.bones[1].node = 3; },
        [](Rig &r, Rig::Track &) { r.bones[1].offset(0, 0) = nan; },
        [](Rig &r, Rig::Track &) { r.clips.clear(); },
        [](Rig &r, Rig::Track &) { r.clips[0].name.clear(); },
        [](Rig &r, Rig::Track &) { r.clips[0].seconds = 0; },
        [](Rig &r, Rig::Track &) { r.clips[0].seconds = Rig::maxSeconds * 2; },
        [](Rig &, Rig::Track &t) { t.node = 3; },
        [](Rig &, Rig::Track &t) { t.places.clear(); },
        [](Rig &, Rig::Track &t) { t.turns.clear(); },
        [](Rig &, Rig::Track &t) { t.scales.clear(); },
        [](Rig &, Rig::Track &t) { t.places[1].value[2] = nan; },
        [](Rig &, Rig::Track &t) { t.places[0].seconds = 1.5; },
        [](Rig &, Rig::Track &t) { t.places[1].seconds = 1e9; },
        [](Rig &, Rig::Track &t) { t.turns[0].value *= 2; },
        [](Rig &r, Rig::Track &) { r.vertexBones.resize(8); },
        [](Rig &r, Rig::Track &) { r.vertexWeights.resize(8); },
        [](Rig &r, Rig::Track &) { r.vertexBones[1] = 2; },
        [](Rig &r, Rig::Track &) { r.vertexWeights[0] = -0.25f, r.vertexWeights[1] = 1.25f; },
        [](Rig &r, Rig::Track &) { r.vertexWeights[1] = 0.7f; },
        [](Rig &r, Rig::Track &) { r.vertexWeights[0] = nan; },
    };
    for (const auto &tell : lies) {
        Rig told = rig();
        tell(told, told.clips[0].tracks[0]);
        EXPECT_FALSE(fromBytes(toBytes(told), got = {}) && suitsVertices(told, 1)) << &tell - lies;
    }
}

/// A triangle on a node that goes from 0 to 4 along y in two seconds, or on a skin of two joints,
/// of which the second does; a third animation moves nothing that is shown.
QByteArray moving(bool skinned)
{
    std::vector<float> identities;
    for (int i = 0; i < 32; ++i)
        identities.push_back(i % 16 % 5 == 0);
    const QString rest =
        R"("scenes":[{"nodes":[0,1,3]}],"nodes":[{"name":"body","scale":[2,3,4],"mesh":0%1},
             {"name":"a","children":[2]},{"name":"b","scale":[2,3,4]},{"name":"lone"}],
           "skins":[{"joints":[2,1],"inverseBindMatrices":5}],
           "meshes":[{"primitives":[{"attributes":{"POSITION":0%2}}]}],
           "animations":[{"name":"rise","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":%3,"path":"translation"}}]},
             {"name":"unseen","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":3,"path":"translation"}}]}])";
    return gltf(skinned ? rest.arg(R"(,"skin":0)", R"(,"JOINTS_0":4,"WEIGHTS_0":3)", "2")
                        : rest.arg("", "", "0"),
                {{"VEC3", 3, floats({0, 0, 0, 1, 0, 0, 0, 1, 0})},
                 {"SCALAR", 2, floats({0, 2})},
                 {"VEC3", 2, floats({0, 0, 0, 0, 4, 0})},
                 {"VEC4", 3, floats({0, 0, 0, 0, .5f, .5f, 0, 0, 0, 1, 0, 0})},
                 {"VEC4", 3, QByteArray("\1\0\0\0\1\0\0\0\1\0\0\0", 12), 5121},
                 {"MAT4", 2, floats(identities)}});
}

TEST(RigTest, FilesTellWhatMoves)
{
    const ModelFolder folder;
    for (const auto &[there, instead] :
         {std::pair(R"({"POSITION":0})", R"({"POSITION":0},"mode":2)"),
          std::pair(R"("node":0,)", R"("node":3,)")})
        EXPECT_FALSE(
            importMesh(folder.write("a.gltf", moving(false).replace(there, instead))).mesh.rig)
            << "lines do not move, nor does what is not shown";
    for (const bool skinned : {false, true}) {
        const Imported got = importMesh(folder.write("a.gltf", moving(skinned)));
        ASSERT_TRUE(got.mesh.rig) << got.reason.toStdString();
        const Rig &r = *got.mesh.rig;
        ASSERT_TRUE(suitsVertices(r, 3));
        // What nobody sees is not offered.
        ASSERT_TRUE(r.clips.size() == 1 && r.clips[0].tracks.size() == 1);
        EXPECT_TRUE(r.clips[0].name == "rise" && r.clips[0].seconds == 2);
        EXPECT_EQ(r.clips[0].tracks[0].places[1].value, QVector3D(0, 4, 0));
        EXPECT_EQ(r.clips[0].tracks[0].scales[0].value, QVector3D(2, 3, 4)) << "as it stands";
        Mesh turned = got.mesh;
        turned.standOn(FileAxes::Z);
        EXPECT_EQ(turned.rig->nodes[0].local * QVector3D(1, 2, 3), QVector3D(1, 3, -2));
        float moved[3] = {}; // of each vertex, the share that the track's node holds
        for (std::size_t i = 0; i < 12; ++i)
            if (r.bones[r.vertexBones[i]].node == r.clips[0].tracks[0].node)
                moved[i / 4] += r.vertexWeights[i];
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(moved[i], skinned ? float(i) / 2 : 1) << skinned << i;
    }
}

} // namespace
} // namespace host
