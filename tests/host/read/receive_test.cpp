// SPDX-License-Identifier: MIT
// What travels between the processes, and what the receiver makes of processes that lie.
#include <cmath>

#include <QBuffer>
#include <gtest/gtest.h>

#include "host/read/content_receive.h"
#include "host/read/content_send.h"
#include "tests/host/read/support.h"

namespace host {
namespace {

using State = ContentReceiver::State;

TexturePtr texture(quint32 width, quint32 height, std::size_t bytes)
{
    Texture t;
    t.width = width;
    t.height = height;
    for (std::size_t i = 0; i < bytes; ++i)
        t.pixels.push_back(quint8(i * 7));
    return std::make_shared<Texture>(t);
}

/// Two triangles in two parts, a line and two points, with colours.
Mesh mesh()
{
    Mesh m;
    m.positions = {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, -3, 1, 1, 0, 5, 1, 0, 0, 7, 0};
    m.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0};
    m.colours.assign(28, 9);
    m.colours[27] = 4;
    m.indices = {0, 1, 2, 0, 2, 3, 0, 4};
    m.parts.resize(4);
    m.parts[0] = {"wheel", "rubber", {0, 0.5f, 1, 1}, 0, 3};
    m.parts[1] = {QStringLiteral("räder"), {}, {1, 1, 1, 0.25f}, 3, 3};
    m.parts[2] = {"axle", {}, {1, 1, 1, 1}, 6, 2, MeshPart::Kind::Lines};
    m.parts[3] = {"dust", {}, {1, 1, 1, 1}, 8, 0, MeshPart::Kind::Points, 5, 2};
    m.parts[1].cover = {1, Cover::Mirror, Cover::Clamp, false, Cover::Blended, 0.25f};
    m.uvs = {0, 0, 1, 0, 0, -1e6f, 0.5f, 3};
    m.textures = {texture(3, 2, 24), texture(1, 4, 16)};
    m.origin = {1e7, -2, 0.5};
    m.parts[0].node = 1;
    m.nodes = {{"axle", -1}, {"left", 0}};
    m.min = {0, 0, -3};
    m.max = {5, 7, 0};
    m.axes.of = {{1, 3, -2}};
    m.notes = QStringList{"a texture is missing"};
    m.unit = "mm";
    return m;
}

/// The same, moving.
Mesh rigged()
{
    Mesh m = mesh();
    auto rig = std::make_shared<Rig>();
    rig->nodes.resize(1);
    rig->bones.resize(1);
    rig->clips = {{"walk", 1, {{0, {{0, {}}}, {{0, {}}}, {{1, {}}}}}}};
    rig->vertexBones.resize(m.normals.size() / 3 * 4);
    for (std::size_t i = 0; i < rig->vertexBones.size(); ++i)
        rig->vertexWeights.push_back(i % 4 == 0);
    m.rig = rig;
    return m;
}

Table table()
{
    Table t;
    t.xName = "day";
    t.xIsTime = true;
    t.x = {1, 2, 2};
    t.columns.emplace_back("a", std::vector<double>{3, std::nan(""), 5});
    t.columns.emplace_back("b", std::vector<double>{6, 7, 8});
    t.skipped = QStringList{"word"};
    return t;
}

QByteArray answerOf(const Content &content)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    EXPECT_TRUE(sendBegin(out, 77) && sendProgress(out, 0.5, "reading") &&
                sendContent(out, content) && sendEnd(out, true));
    return out.data();
}

QByteArray answerOf(const Mesh &m)
{
    return answerOf({std::make_shared<Mesh>(m), nullptr, nullptr});
}

QByteArray answerOf(const Table &t)
{
    return answerOf({nullptr, std::make_shared<Table>(t), nullptr});
}

/// Feeds @p answer in pieces.
State feed(ContentReceiver &receiver, const QByteArray &answer, int piece)
{
    QBuffer in;
    in.open(QIODevice::ReadOnly);
    for (int at = 0; at < answer.size(); at += piece) {
        EXPECT_NE(receiver.state(), State::Done);
        in.buffer().append(answer.mid(at, piece));
        receiver.take(in);
    }
    return receiver.state();
}

class InPieces : public testing::TestWithParam<int> {};

TEST_P(InPieces, AMeshArrivesAsItWasSent)
{
    Mesh sent = mesh();
    std::vector<quint32> more; // than one message holds
    for (quint32 i = 0; i < 100000; ++i)
        more.insert(more.end(), {i % 4, (i + 1) % 4, (i + 2) % 4});
    sent.indices.insert(sent.indices.begin() + 6, more.begin(), more.end());
    sent.parts[1].indexCount += 300000;
    sent.parts[2].firstIndex = sent.parts[3].firstIndex - 2;
    ContentReceiver receiver;
    ASSERT_EQ(feed(receiver, answerOf(sent), GetParam()), State::Done);
    EXPECT_EQ(receiver.announcedBytes(), sent.byteSize());
    EXPECT_EQ(receiver.fileSize(), 77);
    EXPECT_TRUE(receiver.isLast());
    const MeshPtr got = receiver.take().mesh;
    ASSERT_TRUE(got);
    EXPECT_TRUE(got->positions == sent.positions && got->normals == sent.normals);
    EXPECT_TRUE(got->colours == sent.colours && got->indices == sent.indices);
    EXPECT_TRUE(got->min == sent.min && got->max == sent.max);
    EXPECT_TRUE(got->notes == sent.notes && got->axes.of == sent.axes.of);
    EXPECT_EQ(got->origin, sent.origin);
    EXPECT_EQ(got->triangleCount(), 100002u);
    EXPECT_TRUE(got->lineCount() == 1 && got->pointCount() == 2 && got->normalCount() == 4);
    ASSERT_EQ(got->parts.size(), 4u);
    EXPECT_TRUE(got->parts[2].kind == sent.parts[2].kind && got->parts[2].indexCount == 2);
    EXPECT_TRUE(got->parts[3].firstVertex == 5 && got->parts[3].vertexCount == 2);
    EXPECT_EQ(got->unit, "mm");
    EXPECT_EQ(got->parts[0].material, "rubber");
    EXPECT_EQ(got->parts[1].name, sent.parts[1].name);
    EXPECT_EQ(got->parts[1].colour, sent.parts[1].colour);
    EXPECT_EQ(got->parts[1].firstIndex, 3u);
    EXPECT_EQ(got->parts[0].node, 1);
    ASSERT_EQ(got->nodes.size(), 2u);
    EXPECT_EQ(got->nodes[1].name + got->nodes[0].name, "leftaxle");
    EXPECT_TRUE(got->nodes[0].above == -1 && got->nodes[1].above == 0);
    const Cover &cover = got->parts[1].cover;
    EXPECT_TRUE(cover.texture == 1 && cover.wrapS == Cover::Mirror && cover.wrapT == Cover::Clamp &&
                !cover.smooth && cover.alpha == Cover::Blended && cover.cutoff == 0.25f);
    EXPECT_EQ(got->parts[0].cover.texture, -1);
    EXPECT_EQ(got->uvs, sent.uvs);
    ASSERT_EQ(got->textures.size(), 2u);
    EXPECT_TRUE(got->textures[0]->width == 3 && got->textures[0]->height == 2);
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(got->textures[i]->pixels, sent.textures[i]->pixels);
}

TEST_P(InPieces, ATableArrivesAsItWasSent)
{
    ContentReceiver receiver("rain.csv");
    ASSERT_EQ(feed(receiver, answerOf(table()), GetParam()), State::Done);
    EXPECT_EQ(receiver.fraction(), 1);
    const TablePtr got = receiver.take().table;
    ASSERT_TRUE(got && got->columns.size() == 2u);
    EXPECT_EQ(receiver.announcedBytes(), got->byteSize());
    EXPECT_EQ(got->name + got->xName + got->columns[1].name + got->skipped[0], "rain.csvdaybword");
    EXPECT_TRUE(got->xIsTime);
    EXPECT_EQ(got->x, table().x);
    EXPECT_TRUE(std::isnan(got->columns[0].values[1]));
    EXPECT_EQ(got->columns[1].values, table().columns[1].values);
    EXPECT_EQ(got->columns[1].pyramid.level(0)[0].max, 8);
}

INSTANTIATE_TEST_SUITE_P(Sizes, InPieces, testing::Values(1, 1013, 1 << 30));

TEST(ContentReceiverTest, CutAnywhereItIsNotDoneAndChangedAnywhereItKeepsItsPromises)
{
    for (const QByteArray &answer : {answerOf(rigged()), answerOf(table())}) {
        for (int at = 0; at < answer.size(); ++at) {
            ContentReceiver cut, changed;
            EXPECT_EQ(feed(cut, answer.left(at), 1 << 20), State::Reading) << at;
            QByteArray altered = answer;
            altered[at] = char(~altered[at]);
            const bool done = feed(changed, altered, 1 << 20) == State::Done;
            const Content content = changed.take();
            EXPECT_EQ(bool(content.mesh || content.table), done);
            if (content.mesh)
                expectPromises(*content.mesh);
        }
    }
}

TEST(ContentReceiverTest, ARefusalCarriesItsReasonAndALargeMeshIsRefusedBeforeItArrives)
{
    QBuffer out;
    out.open(QIODevice::ReadWrite);
    ASSERT_TRUE(sendBegin(out, 1) && sendFailure(out, "bad wheel"));
    ContentReceiver refused;
    EXPECT_EQ(feed(refused, out.data(), 1), State::Refused);
    EXPECT_EQ(refused.reason(), "bad wheel");
    MeshLimits limits;
    limits.indices = 3;
    ContentReceiver small({}, limits);
    EXPECT_EQ(feed(small, answerOf(mesh()).left(180), 180), State::Broken);
}

/// Answers of processes that lie.
template <class T> void expectBroken(const T &honest, const std::vector<void (*)(T &)> &lies)
{
    for (std::size_t i = 0; i < lies.size(); ++i) {
        T lie = honest;
        lies[i](lie);
        ContentReceiver receiver;
        EXPECT_EQ(feed(receiver, answerOf(lie), 1 << 20), State::Broken) << i;
        EXPECT_FALSE(receiver.reason().isEmpty());
    }
}

TEST(ContentReceiverTest, LiesAreRefused)
{
    expectBroken<Mesh>(mesh(), {[](Mesh &m) { m.indices[4] = 4; },
                                [](Mesh &m) { m.positions[7] = std::nanf(""); },
                                [](Mesh &m) { m.positions[7] = 1e20f; },
                                [](Mesh &m) { m.normals[0] = std::nanf(""); },
                                [](Mesh &m) { m.normals[9] = 0.99f; },
                                [](Mesh &m) { m.normals.resize(9); },
                                [](Mesh &m) { m.colours.resize(20); },
                                [](Mesh &m) { m.indices.resize(5); },
                                [](Mesh &m) { m.indices.clear(); },
                                [](Mesh &m) { m.parts.erase(m.parts.begin()); },
                                [](Mesh &m) { m.parts.clear(); },
                                [](Mesh &m) { m.indices[7] = 5; },
                                [](Mesh &m) { m.parts[2].kind = MeshPart::Kind::Triangles; },
                                [](Mesh &m) { m.parts[3].kind = MeshPart::Kind(3); },
                                [](Mesh &m) { std::swap(m.parts[2], m.parts[3]); },
                                [](Mesh &m) { m.parts[2].indexCount = 1; },
                                [](Mesh &m) { m.parts[3].vertexCount = 0; },
                                [](Mesh &m) { m.parts[3].vertexCount = 4; },
                                [](Mesh &m) { m.origin[2] = std::nan(""); },
                                [](Mesh &m) { m.origin[0] = -1e300; },
                                [](Mesh &m) { m.parts[1].indexCount = 6; },
                                [](Mesh &m) { m.parts[1].indexCount = 0xffffffffu; },
                                [](Mesh &m) { m.parts[1].name.clear(); },
                                [](Mesh &m) { m.parts[0].colour[2] = 2; },
                                [](Mesh &m) { m.nodes[1].above = 1; },
                                [](Mesh &m) { m.nodes[0].above = -2; },
                                [](Mesh &m) { m.nodes[0].name.clear(); },
                                [](Mesh &m) { m.nodes[0].name = QString(201, 'x'); },
                                [](Mesh &m) { m.parts[0].node = 2; },
                                [](Mesh &m) { m.parts[0].node = -2; },
                                [](Mesh &m) { m.axes.of[1] = 1; },
                                [](Mesh &m) { m.uvs[7] = 1.1e6f; },
                                [](Mesh &m) { m.uvs[0] = std::nanf(""); },
                                [](Mesh &m) { m.uvs.resize(6); },
                                [](Mesh &m) { m.uvs.resize(10); },
                                [](Mesh &m) { m.uvs.clear(); },
                                [](Mesh &m) { m.textures.clear(); },
                                [](Mesh &m) { m.parts[1].cover.texture = 2; },
                                [](Mesh &m) { m.parts[1].cover.texture = -2; },
                                [](Mesh &m) { m.parts[2].cover.texture = 0; },
                                [](Mesh &m) { m.parts[0].cover.wrapS = Cover::Wrap(3); },
                                [](Mesh &m) { m.parts[0].cover.wrapT = Cover::Wrap(3); },
                                [](Mesh &m) { m.parts[0].cover.alpha = Cover::Alpha(3); },
                                [](Mesh &m) { m.parts[0].cover.cutoff = 1.5f; },
                                [](Mesh &m) { m.parts[0].cover.cutoff = std::nanf(""); },
                                [](Mesh &m) { m.textures[0] = texture(3, 2, 20); },
                                [](Mesh &m) { m.textures[1] = texture(1, 4, 20); },
                                [](Mesh &m) { m.textures[1] = texture(1, 0, 0); },
                                [](Mesh &m) { m.textures[1] = texture(0, 1, 0); },
                                [](Mesh &m) { m.textures[1] = texture(4097, 1, 16388); },
                                [](Mesh &m) { m.textures[1] = texture(1, 4097, 16388); }});
    expectBroken<Table>(table(),
                        {[](Table &t) { t.x[2] = 1; }, [](Table &t) { t.x[0] = std::nan(""); },
                         [](Table &t) { t.columns[1].values[2] = HUGE_VAL; },
                         [](Table &t) { t.columns[0].values.pop_back(); },
                         [](Table &t) { t.columns[1].values.push_back(1); },
                         [](Table &t) { t.columns[0].name.clear(); }, [](Table &t) { t.x.clear(); },
                         [](Table &t) { t.columns.clear(); }});
}

} // namespace
} // namespace host
