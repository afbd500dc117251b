// SPDX-License-Identifier: MIT
#include "host/read/rig.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

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

struct Lie {
    const char *name;
    std::function<void(Rig &)> tell;
};

void PrintTo(const Lie &lie, std::ostream *out)
{
    *out << lie.name;
}

class Lies : public testing::TestWithParam<Lie> {};

TEST_P(Lies, AreNotTaken)
{
    Rig told = rig(), got;
    GetParam().tell(told);
    EXPECT_FALSE(fromBytes(toBytes(told), got));
}

const float nan = std::nanf("");
INSTANTIATE_TEST_SUITE_P(
    Rig, Lies,
    testing::Values(
        Lie{"no nodes", [](Rig &r) { r.nodes.clear(); }},
        Lie{"a root with a parent", [](Rig &r) { r.nodes[0].parent = 0; }},
        Lie{"two roots", [](Rig &r) { r.nodes[1].parent = -1; }},
        Lie{"a child ahead", [](Rig &r) { r.nodes[1].parent = 1; }},
        Lie{"node nowhere", [](Rig &r) { r.nodes[2].local(1, 3) = nan; }},
        Lie{"no bones", [](Rig &r) { r.bones.clear(); }},
        Lie{"bone of no node", [](Rig &r) { r.bones[1].node = 3; }},
        Lie{"bone nowhere", [](Rig &r) { r.bones[1].offset(0, 0) = nan; }},
        Lie{"no clips", [](Rig &r) { r.clips.clear(); }},
        Lie{"no name", [](Rig &r) { r.clips[0].name.clear(); }},
        Lie{"no time", [](Rig &r) { r.clips[0].seconds = 0; }},
        Lie{"too much time", [](Rig &r) { r.clips[0].seconds = Rig::maxSeconds * 2; }},
        Lie{"track of no node", [](Rig &r) { r.clips[0].tracks[0].node = 3; }},
        Lie{"no place", [](Rig &r) { r.clips[0].tracks[0].places.clear(); }},
        Lie{"no turn", [](Rig &r) { r.clips[0].tracks[0].turns.clear(); }},
        Lie{"no scale", [](Rig &r) { r.clips[0].tracks[0].scales.clear(); }},
        Lie{"key nowhere", [](Rig &r) { r.clips[0].tracks[0].places[1].value[2] = nan; }},
        Lie{"time back", [](Rig &r) { r.clips[0].tracks[0].places[0].seconds = 1.5; }},
        Lie{"late key", [](Rig &r) { r.clips[0].tracks[0].places[1].seconds = 1e9; }},
        Lie{"a turn that scales", [](Rig &r) { r.clips[0].tracks[0].turns[0].value *= 2; }}));

TEST(RigTest, BytesAreWholeOrRefused)
{
    const QByteArray bytes = toBytes(rig());
    Rig got;
    ASSERT_TRUE(fromBytes(bytes, got));
    EXPECT_EQ(got.clips[0].tracks[0].places[1].value, QVector3D(5, 0, 0));
    for (int i = 0; i < bytes.size(); ++i)
        EXPECT_FALSE(fromBytes(bytes.left(i), got = {})) << i;
    EXPECT_FALSE(fromBytes(bytes + '\0', got = {}));
}

TEST(RigTest, VerticesHaveTheirBones)
{
    const auto suits = [](std::size_t vertices, std::vector<quint16> bones,
                          std::vector<float> weights) {
        Rig r = rig();
        r.vertexBones = std::move(bones);
        r.vertexWeights = std::move(weights);
        return suitsVertices(r, vertices);
    };
    EXPECT_TRUE(suits(1, {0, 1, 0, 0}, {0.25f, 0.75f, 0, 0}));
    EXPECT_FALSE(suits(2, {0, 1, 0, 0}, {0.25f, 0.75f, 0, 0}));
    EXPECT_FALSE(suits(1, {0, 2, 0, 0}, {0.25f, 0.75f, 0, 0}));
    EXPECT_FALSE(suits(1, {0, 1, 0, 0}, {-0.25f, 1.25f, 0, 0}));
    EXPECT_FALSE(suits(1, {0, 1, 0, 0}, {0.25f, 0.7f, 0, 0}));
    EXPECT_FALSE(suits(1, {0, 1, 0, 0}, {nan, 1, 0, 0}));
}

QByteArray base64(const std::vector<float> &values)
{
    return QByteArray(reinterpret_cast<const char *>(values.data()), int(values.size() * 4))
        .toBase64();
}

/// A triangle on a node that goes from 0 to 4 along y in two seconds, or on a skin of two joints,
/// of which the second does; a third animation moves nothing that is shown.
QByteArray gltf(bool skinned)
{
    std::vector<float> values{
        0, 0, 0, 1, 0,   0,   0, 1, 0,          // places
        0, 2, 0, 0, 0,   0,   4, 0,             // times, shifts
        1, 0, 0, 0, .5f, .5f, 0, 0, 0, 1, 0, 0, // weights
    };
    for (int i = 0; i < 32; ++i) // two identities
        values.push_back(i % 16 % 5 == 0);
    const QByteArray buffer = base64(values);
    const QByteArray joints = QByteArray("\0\1\0\0\0\1\0\0\0\1\0\0", 12).toBase64();
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0,1,3]}],"nodes":[)" +
           QByteArray(skinned ? R"({"name":"body","mesh":0,"skin":0})"
                              : R"({"name":"body","mesh":0})") +
           R"(,{"name":"a","children":[2]},{"name":"b"},{"name":"lone"}],
           "skins":[{"joints":[1,2],"inverseBindMatrices":5}],
           "meshes":[{"primitives":[{"attributes":{"POSITION":0)" +
           (skinned ? R"(,"JOINTS_0":4,"WEIGHTS_0":3)" : "") + R"(}}]}],
           "animations":[{"name":"rise","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":)" +
           (skinned ? "2" : "0") + R"(,"path":"translation"}}]},
             {"name":"unseen","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":3,"path":"translation"}}]}],
           "buffers":[{"byteLength":244,"uri":"data:application/octet-stream;base64,)" +
           buffer + R"("},{"byteLength":12,"uri":"data:application/octet-stream;base64,)" + joints +
           R"("}],
           "bufferViews":[{"buffer":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":8},
             {"buffer":0,"byteOffset":44,"byteLength":24},{"buffer":0,"byteOffset":68,"byteLength":48},
             {"buffer":1,"byteLength":12},
             {"buffer":0,"byteOffset":116,"byteLength":128}],
           "accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
             {"bufferView":1,"componentType":5126,"count":2,"type":"SCALAR","min":[0],"max":[2]},
             {"bufferView":2,"componentType":5126,"count":2,"type":"VEC3"},
             {"bufferView":3,"componentType":5126,"count":3,"type":"VEC4"},
             {"bufferView":4,"componentType":5121,"count":3,"type":"VEC4"},
             {"bufferView":5,"componentType":5126,"count":2,"type":"MAT4"}]})";
}

TEST(RigTest, FilesTellWhatMoves)
{
    const ModelFolder folder;
    for (const bool skinned : {false, true}) {
        const Imported got =
            importMesh(folder.write("a.gltf", gltf(skinned)), {}, {}, Companions::InFolder);
        ASSERT_TRUE(got.reason.isEmpty()) << got.reason.toStdString();
        ASSERT_TRUE(got.mesh.rig) << skinned;
        const Rig &r = *got.mesh.rig;
        EXPECT_TRUE(suitsVertices(r, 3));
        ASSERT_EQ(r.clips.size(), 1u); // what nobody sees is not offered
        EXPECT_EQ(r.clips[0].name, "rise");
        EXPECT_EQ(r.clips[0].seconds, 2);
        ASSERT_EQ(r.clips[0].tracks.size(), 1u);
        EXPECT_EQ(r.clips[0].tracks[0].places[1].value, QVector3D(0, 4, 0));
        std::vector<float> moved; // of each vertex, the share that the track's node holds
        for (std::size_t i = 0; i < 12; ++i) {
            if (i % 4 == 0)
                moved.push_back(0);
            if (r.bones[r.vertexBones[i]].node == r.clips[0].tracks[0].node)
                moved.back() += r.vertexWeights[i];
        }
        EXPECT_EQ(moved,
                  skinned ? (std::vector<float>{0, 0.5f, 1}) : (std::vector<float>{1, 1, 1}));
    }
}

} // namespace
} // namespace host
