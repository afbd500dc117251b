// SPDX-License-Identifier: MIT
#include "host/read/mesh_stream.h"

#include <cmath>
#include <limits>

#include <QBuffer>

#include <gtest/gtest.h>

#include "tests/host/read/support.h"

namespace host {
namespace {

using State = MeshDecoder::State;

/// Two triangles in two parts, with colours.
Mesh sample()
{
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, -3};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0};
    mesh.colours = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    mesh.indices = {0, 1, 2, 0, 2, 3};
    mesh.parts.resize(2);
    mesh.parts[0] = {QStringLiteral("wheel"), QStringLiteral("rubber"), {0, 0.5f, 1, 1}, 0, 3};
    mesh.parts[1] = {QStringLiteral("räder"), {}, {1, 1, 1, 0.25f}, 3, 3};
    mesh.min = {0, 0, -3};
    mesh.max = {1, 2, 0};
    return mesh;
}

QByteArray streamOf(const Mesh &mesh)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    EXPECT_TRUE(writeStreamStart(out));
    EXPECT_TRUE(writeProgress(out, 0.5, QStringLiteral("reading")));
    EXPECT_TRUE(writeMesh(out, mesh));
    return out.data();
}

TEST(MeshStream, GivesTheSameMeshInPiecesOfAnySize)
{
    const Mesh sent = sample();
    const QByteArray stream = streamOf(sent);
    for (const int piece : {1, 13, stream.size()}) {
        MeshDecoder decoder;
        for (int at = 0; at < stream.size(); at += piece) {
            EXPECT_EQ(decoder.state(), State::Reading);
            decoder.feed(stream.mid(at, piece));
        }
        ASSERT_EQ(decoder.state(), State::Done) << piece;
        EXPECT_EQ(decoder.fraction(), 0.5);
        EXPECT_EQ(decoder.announcedBytes(), sent.byteSize());
        const MeshPtr mesh = decoder.take();
        ASSERT_TRUE(mesh);
        EXPECT_EQ(mesh->positions, sent.positions);
        EXPECT_EQ(mesh->normals, sent.normals);
        EXPECT_EQ(mesh->colours, sent.colours);
        EXPECT_EQ(mesh->indices, sent.indices);
        EXPECT_EQ(mesh->min, sent.min);
        EXPECT_EQ(mesh->max, sent.max);
        ASSERT_EQ(mesh->parts.size(), 2u);
        EXPECT_EQ(mesh->parts[0].material, sent.parts[0].material);
        EXPECT_EQ(mesh->parts[1].name, sent.parts[1].name);
        EXPECT_EQ(mesh->parts[1].colour, sent.parts[1].colour);
        EXPECT_EQ(mesh->parts[1].firstIndex, 3u);
    }
}

TEST(MeshStream, AMeshOfManyFramesArrivesWhole)
{
    Mesh mesh = sample();
    for (quint32 i = 0; i < 100000; ++i)
        mesh.indices.insert(mesh.indices.end(), {i % 4, (i + 1) % 4, (i + 2) % 4});
    mesh.parts[1].indexCount = quint32(mesh.indices.size()) - 3;
    MeshDecoder decoder;
    ASSERT_EQ(decoder.feed(streamOf(mesh)), State::Done);
    EXPECT_EQ(decoder.take()->indices, mesh.indices);
}

TEST(MeshStream, CutAnywhereItIsNotDone)
{
    const QByteArray stream = streamOf(sample());
    for (int size = 0; size < stream.size(); ++size) {
        MeshDecoder decoder;
        EXPECT_EQ(decoder.feed(stream.left(size)), State::Reading) << size;
        EXPECT_FALSE(decoder.take());
    }
}

TEST(MeshStream, AnyChangedByteIsNoticed)
{
    const QByteArray stream = streamOf(sample());
    for (int at = 0; at < stream.size(); ++at) {
        for (const int change : {0x01, 0x80, 0xff}) {
            QByteArray altered = stream;
            altered[at] = char(altered[at] ^ change);
            MeshDecoder decoder;
            EXPECT_NE(decoder.feed(altered), State::Done) << at << ' ' << change;
            EXPECT_FALSE(decoder.take());
        }
    }
}

/// Streams with good checksums from a child that lies.
struct LieCase {
    const char *name;
    void (*spoil)(Mesh &);
};

const LieCase lieCases[] = {
    {"IndexBeyondTheVertices", [](Mesh &m) { m.indices[4] = 4; }},
    {"NotFinite", [](Mesh &m) { m.positions[7] = std::numeric_limits<float>::quiet_NaN(); }},
    {"TooFarOut", [](Mesh &m) { m.positions[7] = 1e20f; }},
    {"NormalNotFinite", [](Mesh &m) { m.normals[0] = std::nanf(""); }},
    {"NormalsMissing", [](Mesh &m) { m.normals.resize(9); }},
    {"ColoursTooMany", [](Mesh &m) { m.colours.resize(20); }},
    {"HalfATriangle", [](Mesh &m) { m.indices.resize(5); }},
    {"NoTriangles", [](Mesh &m) { m.indices.clear(); }},
    {"PartsLeaveARest", [](Mesh &m) { m.parts.pop_back(); }},
    {"PartsReachBeyond", [](Mesh &m) { m.parts[1].indexCount = 6; }},
    {"PartsWrapAround", [](Mesh &m) { m.parts[1].indexCount = 0xffffffffu; }},
    {"ColourOutOfRange", [](Mesh &m) { m.parts[0].colour[2] = 2; }},
};

void PrintTo(const LieCase &c, std::ostream *out)
{
    *out << c.name;
}

class MeshStreamLie : public testing::TestWithParam<LieCase> {};

TEST_P(MeshStreamLie, IsRefused)
{
    Mesh mesh = sample();
    GetParam().spoil(mesh);
    MeshDecoder decoder;
    EXPECT_EQ(decoder.feed(streamOf(mesh)), State::Failed);
    EXPECT_FALSE(decoder.reason().isEmpty());
    EXPECT_FALSE(decoder.take());
}

INSTANTIATE_TEST_SUITE_P(Rows, MeshStreamLie, testing::ValuesIn(lieCases),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(MeshStream, MoreThanTheLimitsIsRefusedBeforeItArrives)
{
    MeshLimits limits;
    limits.indices = 3;
    MeshDecoder decoder(limits);
    EXPECT_EQ(decoder.feed(streamOf(sample()).left(80)), State::Failed);
}

TEST(MeshStream, AFailureCarriesItsReason)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    ASSERT_TRUE(writeStreamStart(out) && writeFailure(out, QStringLiteral("bad wheel")));
    MeshDecoder decoder;
    EXPECT_EQ(decoder.feed(out.data()), State::Failed);
    EXPECT_EQ(decoder.reason(), QStringLiteral("bad wheel"));
}

} // namespace
} // namespace host
