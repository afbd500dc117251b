// SPDX-License-Identifier: MIT
// What travels between the processes, and what the receiver makes of processes that lie; rigs, in
// bytes and in files.
#include <QBuffer>

#include "host/read/content_receive.h"
#include "host/read/content_send.h"
#include "host/read/rig.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

using State = ContentReceiver::State;

TexturePtr texture(quint32 width, quint32 height)
{
    Texture t{width, height, {}};
    for (std::size_t i = 0; i < std::size_t(width) * height * 4; ++i)
        t.pixels.push_back(quint8(i * 7));
    return std::make_shared<Texture>(t);
}

/// Three triangles in two parts, a line and two points, with all that there can be.
Mesh mesh()
{
    Mesh m;
    m.positions = {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, -3, 1, 1, 0, 5, 1, 0, 0, 7, 0};
    m.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0};
    m.colours.assign(28, 9);
    m.indices = {0, 1, 2, 0, 2, 3, 1, 2, 3, 0, 4};
    m.parts = {{"wheel", "rubber", {0, 0.5f, 1, 0.75f}, 0, 6},
               {QStringLiteral("räder"), {}, {1, 1, 1, 0.25f}, 6, 3},
               {"axle", {}, {1, 1, 1, 1}, 9, 2, MeshPart::Kind::Lines},
               {"dust", {}, {1, 1, 1, 1}, 11, 0, MeshPart::Kind::Points, 5, 2}};
    m.parts[0].node = 1;
    m.parts[1].cover = {1, Cover::Mirror, Cover::Clamp, false, Cover::Blended, 0.25f};
    m.uvs = {0, 0, 1, 0, 0, -1e6f, 0.5f, 3};
    m.textures = {texture(3, 2), texture(1, 4)};
    m.origin = {1e7, -2, 0.5};
    m.nodes = {{"axle", -1}, {"left", 0}};
    m.axes.of = {{1, 3, -2}};
    m.notes = QStringList{"a texture is missing"};
    m.unit = "mm";
    auto rig = std::make_shared<Rig>();
    rig->nodes.resize(1);
    rig->bones.resize(1);
    rig->clips = {{"walk", 1, {{0, {{0, {}}}, {{0, {}}}, {{1, {}}}}}}};
    rig->vertexBones.resize(16);
    rig->vertexWeights = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    m.rig = rig;
    return m;
}

Table table()
{
    Table t;
    t.xName = "day";
    t.xIsTime = true;
    t.x = {-1, 1, 1};
    t.columns.emplace_back("a", std::vector<double>{3, std::nan(""), 5});
    t.columns.emplace_back("b", std::vector<double>{1, 7, 8});
    t.skipped = QStringList{"word"};
    return t;
}

/// Keeps what is written as it was written.
struct Writes : QBuffer {
    Writes() { open(WriteOnly | Unbuffered); }
    qint64 writeData(const char *data, qint64 size) override
    {
        EXPECT_LE(size, 1 << 18) << "more work than one turn may take";
        all << QByteArray(data, int(size));
        return size;
    }
    QByteArrayList all;
};

QByteArrayList writesOf(const Content &content, bool progress = false)
{
    Writes out;
    EXPECT_TRUE(sendBegin(out, 77) && (!progress || sendProgress(out, 0.5, "reading")) &&
                sendContent(out, content) && sendEnd(out, true));
    return out.all;
}

template <class Kind> Content contentOf(const Kind &what)
{
    if constexpr (std::is_same_v<Kind, Mesh>)
        return {std::make_shared<Mesh>(what), nullptr, nullptr};
    else
        return {nullptr, std::make_shared<Table>(what), nullptr};
}

/// Feeds @p answer in pieces.
State feed(ContentReceiver &receiver, const QByteArray &answer, int piece)
{
    QBuffer in;
    in.open(QIODevice::ReadOnly);
    double done = 0;
    for (int at = 0; at < answer.size(); at += piece) {
        EXPECT_TRUE(receiver.state() != State::Done && receiver.fraction() >= done);
        done = receiver.fraction();
        in.buffer().append(answer.mid(at, piece));
        receiver.take(in);
    }
    EXPECT_TRUE(receiver.state() != State::Done || piece > 1 || done > 1 - 1e-9) << done;
    return receiver.state();
}

class InPieces : public testing::TestWithParam<int> {};

TEST_P(InPieces, AMeshArrivesAsItWasSent)
{
    Mesh sent = mesh();
    sent.rig = GetParam() == 1 ? nullptr : sent.rig;
    std::vector<quint32> more(69000); // than one message holds
    for (quint32 i = 0; i < 69000; ++i)
        more[i] = i % 3 + 1;
    sent.indices.insert(sent.indices.begin() + 9, more.begin(), more.end());
    sent.parts[1].indexCount += 69000;
    sent.parts[2].firstIndex += 69000;
    ContentReceiver receiver;
    ASSERT_EQ(feed(receiver, writesOf(contentOf(sent), true).join(), GetParam()), State::Done);
    const quint64 rig = sent.rig ? sent.rig->byteSize() : 0, guess = rig ? 96 : 0;
    EXPECT_EQ(receiver.announcedBytes(),
              sent.byteSize() - rig + guess + quint64(rig ? toBytes(*sent.rig).size() : 0));
    EXPECT_TRUE(receiver.fileSize() == 77 && receiver.isLast() && receiver.stage() == "reading");
    const MeshPtr got = receiver.take().mesh;
    ASSERT_TRUE(got);
    expectPromises(*got);
    EXPECT_TRUE(writesOf(contentOf(*got)) == writesOf(contentOf(sent)));
    EXPECT_TRUE(got->positions == sent.positions && got->normals == sent.normals &&
                got->colours == sent.colours && got->uvs == sent.uvs);
    EXPECT_TRUE(got->origin == sent.origin && got->axes.of == sent.axes.of && got->unit == "mm");
    EXPECT_TRUE(got->parts[0].colour == sent.parts[0].colour &&
                got->parts[1].cover.cutoff == 0.25f &&
                got->textures.at(0)->pixels == sent.textures[0]->pixels);
    EXPECT_EQ(got->nodes[1].name + got->parts[0].material, "leftrubber");
}

TEST_P(InPieces, ATableArrivesAsItWasSent)
{
    ContentReceiver receiver("rain.csv");
    ASSERT_EQ(feed(receiver, writesOf(contentOf(table()), true).join(), GetParam()), State::Done);
    EXPECT_EQ(receiver.fraction(), 1);
    const TablePtr got = receiver.take().table;
    ASSERT_TRUE(got);
    EXPECT_EQ(receiver.announcedBytes(), got->byteSize());
    EXPECT_TRUE(writesOf({nullptr, got, nullptr}) == writesOf(contentOf(table())));
    EXPECT_EQ(got->name + got->xName + got->columns[1].name + got->skipped[0], "rain.csvdaybword");
    EXPECT_TRUE(got->x == table().x && got->columns[1].values == table().columns[1].values);
    EXPECT_EQ(got->columns[1].pyramid.level(0)[0].max, 8);
}

INSTANTIATE_TEST_SUITE_P(Sizes, InPieces, testing::Values(1, 1013, 1 << 30));

void expectPromises(const Table &t)
{
    EXPECT_TRUE(std::is_sorted(t.x.begin(), t.x.end()) && !t.x.empty() && !t.columns.empty());
    for (const double x : t.x)
        EXPECT_TRUE(std::isfinite(x));
    for (const Column &column : t.columns) {
        EXPECT_TRUE(column.values.size() == t.x.size() && !column.name.isEmpty());
        for (const double y : column.values)
            EXPECT_FALSE(std::isinf(y));
    }
}

/// Feeds an answer that may be a lie. Returns the state; what came of it keeps its promises.
State stateOf(const QByteArray &answer)
{
    ContentReceiver receiver;
    const State state = feed(receiver, answer, 1 << 20);
    const Content content = receiver.take();
    EXPECT_EQ(content.mesh || content.table, state == State::Done);
    EXPECT_EQ(receiver.reason().isEmpty(), state == State::Reading || state == State::Done);
    if (content.mesh)
        expectPromises(*content.mesh);
    if (content.table)
        expectPromises(*content.table);
    return state;
}

TEST(ContentReceiverTest, WhateverIsChangedInAnAnswerWhatComesOfItKeepsItsPromises)
{
    for (const Content &content : {contentOf(mesh()), contentOf(table())}) {
        const QByteArrayList writes = writesOf(content);
        for (int at = 0; at < writes.size(); ++at) {
            for (const int count : {1, 2}) { // a piece has two
                const QByteArrayList rest = writes.mid(at + count);
                const QByteArrayList twice = writes.mid(0, at + count) + writes.mid(at);
                EXPECT_NE(stateOf((writes.mid(0, at) + rest).join()), State::Done) << at;
                EXPECT_TRUE(rest.isEmpty() || stateOf(twice.join()) != State::Done) << at;
            }
        }
        const QByteArray answer = writes.join();
        for (int at = 0; at < answer.size(); ++at) {
            SCOPED_TRACE(at);
            EXPECT_EQ(stateOf(answer.left(at)), State::Reading);
            for (const int byte : {~answer[at], answer[at] + 1, answer[at] - 1, 0, 0x7f}) {
                const auto told = QByteArray(answer).replace(at, 1, QByteArray(1, char(byte)));
                EXPECT_TRUE(stateOf(told) != State::Done || told == answer || at > 4) << "version";
            }
            for (const char byte : {'\0', '\x7f', '\xff'})
                stateOf(QByteArray(answer).replace(at, 4, QByteArray(4, byte)));
        }
    }
}

TEST(ContentReceiverTest, LiesThatHangTogetherAreRefused)
{
    void (*const lies[])(Mesh &, Table &) = {
        [](Mesh &m, Table &) { m = Mesh(), m.positions.assign(3, 0); },
        [](Mesh &m, Table &) { m.parts[2] = m.parts[3], m.indices.resize(9); },
        [](Mesh &m, Table &) { m.parts[1].name.clear(); },
        [](Mesh &m, Table &) { m.nodes[0].name.clear(); },
        [](Mesh &m, Table &) { m.nodes[0].name = QString(201, 'x'); },
        [](Mesh &m, Table &) { m.uvs.clear(); },
        [](Mesh &m, Table &) { m.textures.clear(), m.parts[1].cover.texture = -1; },
        [](Mesh &m, Table &) { m.textures[0] = texture(1, 0); },
        [](Mesh &m, Table &) { m.textures[0] = texture(0, 1); },
        [](Mesh &m, Table &) { m.textures[0] = texture(4097, 1); },
        [](Mesh &m, Table &) { m.textures[0] = texture(1, 4097); },
        [](Mesh &, Table &t) { t.columns[0].name.clear(); },
        [](Mesh &, Table &t) { t.columns.clear(); },
    };
    for (const auto &tell : lies) {
        Mesh m = mesh();
        Table t = table();
        tell(m, t);
        EXPECT_TRUE(stateOf(writesOf(contentOf(m)).join()) == State::Broken ||
                    stateOf(writesOf(contentOf(t)).join()) == State::Broken)
            << &tell - lies;
    }
}

TEST(ContentReceiverTest, ARefusalCarriesItsReasonAndALargeMeshIsRefusedBeforeItArrives)
{
    Writes out;
    ASSERT_TRUE(sendBegin(out, 1) && sendFailure(out, "bad wheel"));
    ContentReceiver refused;
    EXPECT_EQ(feed(refused, out.all.join(), 1), State::Refused);
    EXPECT_EQ(refused.reason(), "bad wheel");
    for (const auto limit : {&MeshLimits::indices, &MeshLimits::vertices, &MeshLimits::parts,
                             &MeshLimits::textures, &MeshLimits::textureBytes}) {
        for (const bool less : {false, true}) {
            MeshLimits limits{11, 7, 4, 0, 0, 2, 40};
            limits.*limit -= less;
            ContentReceiver small({}, limits);
            EXPECT_EQ(feed(small, writesOf(contentOf(mesh())).mid(0, 2).join(), 1 << 20),
                      less ? State::Broken : State::Reading);
        }
    }
    EXPECT_EQ(Mesh::byteSize(5, 3, true, 7, 0, true, 11, 0), 179u);
}

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
    const QString rest =
        R"("scenes":[{"nodes":[0,1,3]}],"nodes":[{"name":"body","scale":[2,3,4],"mesh":0%1},
             {"name":"a","children":[2]},{"name":"b","scale":[2,3,4]},{"name":"lone"}],
           "skins":[{"joints":[2,1],"inverseBindMatrices":5}],
           "meshes":[{"primitives":[{"attributes":{"POSITION":0%2}}]}],
           "animations":[{"name":"rise","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":%3,"path":"translation"}}]},
             {"name":"unseen","samplers":[{"input":1,"output":2}],
             "channels":[{"sampler":0,"target":{"node":3,"path":"translation"}}]}])";
    return gltf(
        skinned ? rest.arg(R"(,"skin":0)", R"(,"JOINTS_0":4,"WEIGHTS_0":3)", "2")
                : rest.arg("", "", "0"),
        {{"VEC3", 3, floats({0, 0, 0, 1, 0, 0, 0, 1, 0})},
         {"SCALAR", 2, floats({0, 2})},
         {"VEC3", 2, floats({0, 0, 0, 0, 4, 0})},
         {"VEC4", 3, floats({0, 0, 0, 0, .5f, .5f, 0, 0, 0, 1, 0, 0})},
         {"VEC4", 3, QByteArray("\1\0\0\0\1\0\0\0\1\0\0\0", 12), 5121},
         {"MAT4", 2, floats({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}).repeated(2)}});
}

TEST(RigTest, FilesTellWhatMoves)
{
    const ModelFolder folder; // lines do not move, nor does what is not shown
    for (const auto &[there, instead] :
         {std::pair(R"({"POSITION":0})", R"({"POSITION":0},"mode":2)"),
          std::pair(R"("node":0,)", R"("node":3,)")})
        EXPECT_FALSE(
            importMesh(folder.write("a.gltf", moving(false).replace(there, instead))).mesh.rig);
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
