// SPDX-License-Identifier: MIT
// What is made of a mesh: which sides of triangles are edges, what is left of it in its levels,
// part by part; what a thread leaves that found no memory; and what items say that they hold,
// against what the heap says.
#include "host/item/mesh_edges.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <malloc.h>

#include "host/item/background.h"
#include "host/item/model_item.h"
#include "host/item/rough_level.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // has no header everywhere
#endif

namespace host {
namespace {

using Points = std::vector<std::array<float, 3>>;

/// Two triangles on the side from point 0 to point 1 that meet at @p degrees: 0 is flat.
Points folded(double degrees, float size = 1)
{
    const double angle = degrees * 3.14159265358979 / 180;
    return {{0, 0, 0},
            {size, 0, 0},
            {0, size, 0},
            {size, -size * float(std::cos(angle)), size * float(std::sin(angle))}};
}

const Points square{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
const Points doubled{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-0.0f, 0, 0}, {1, 1, -0.0f}, {0, 1, 0}};
const Points three{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, -1, 0.1f}};
const Points thin{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5f, 0, 1e-7f}};

struct EdgesCase {
    const char *name;
    Points points;
    const char *indices; // of each part
    const char *edges;   // of each part: its points, in any order
};

const EdgesCase edgesCases[] = {
    {"Flat", square, "012023", "01 03 12 23"},
    {"HardlyFolded", folded(29.9), "012031", "02 03 12 13"},
    {"Folded", folded(30.1), "012031", "01 02 03 12 13"},
    {"FoldedTheOtherWayRound", folded(30.1), "012013", "01 02 03 12 13"},
    {"FoldedBack", folded(175), "012031", "01 02 03 12 13"},
    {"Small", folded(40, 1e-4f), "012031", "01 02 03 12 13"},
    {"VerticesApart", doubled, "012345", "01 05 12 25"},
    {"BothSidesDrawn", square, "012023021032", "01 03 12 23"},
    {"ThreeMeet", three, "012031041", "01 02 03 04 12 13 14"},
    {"PartsEndWhereTheyMeet", square, "012|023", "01 02 12|02 03 23"},
    {"NothingInBetween", square, "012||023", "01 02 12||02 03 23"},
    {"OneCornerTwice", square, "012022", "01 02 12"},
    {"TooThinToTell", thin, "012031", "02 03 12 13"},
};

TABLE(MeshEdgesOf, testing::Test, EdgesCase, edgesCases);

TEST_P(MeshEdgesOf, AreThoseThatTellTheShape)
{
    const EdgesCase &row = GetParam();
    Mesh mesh;
    for (const auto &p : row.points)
        mesh.positions.insert(mesh.positions.end(), p.begin(), p.end());
    mesh.normals = mesh.positions;
    mesh.max = {row.points[1][0], row.points[1][0], 0};
    for (const QString &part : QString(row.indices).split('|')) {
        mesh.parts.push_back({"a", {}, {}, quint32(mesh.indices.size()), quint32(part.size())});
        for (const QChar c : part)
            mesh.indices.push_back(quint32(c.digitValue()));
    }
    const MeshEdges found = edgesOf(mesh, std::atomic<bool>(false));
    const auto point = [&](quint32 vertex) { // what stands at one place is one point
        const auto &all = row.points;
        return int(std::find(all.begin(), all.end(), all[vertex]) - all.begin());
    };
    QString words;
    quint32 at = 0;
    for (const quint32 end : found.ends) {
        QStringList edges;
        for (; at < end; at += 2) {
            const int a = point(found.vertices[at]), b = point(found.vertices[at + 1]);
            edges << QString::number(std::min(a, b)) + QString::number(std::max(a, b));
        }
        edges.sort();
        words += edges.join(' ') + '|';
    }
    words.chop(1);
    EXPECT_EQ(words.toStdString(), row.edges);
    EXPECT_TRUE(edgesOf(mesh, std::atomic<bool>(true)).vertices.empty());
}

TEST(Background, EndsWithWhatItMadeOrWithoutMemory)
{
    Background<int> work;
    EXPECT_FALSE(work.isStarted() || work.isBusy() || work.lackedMemory() || work.get());
    work.start([](const std::atomic<bool> &) -> int { throw std::bad_alloc(); });
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(work.lackedMemory() && !work.get() && !work.isBusy());
    std::atomic<bool> saw{false}, goesOn{false};
    work.start([&](const std::atomic<bool> &cancelled) {
        for (goesOn = true; !cancelled;) {
        }
        return saw = true, 1;
    });
    EXPECT_TRUE(work.isBusy() && !work.get() && !work.lackedMemory());
    while (!goesOn) {
    }
    work.start([](const std::atomic<bool> &) { return 2; });
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(saw && work.get() && *work.get() == 2);
}

struct LevelsCase {
    const char *name;
    int cells;
    bool facets, coloured; // vertices that differ in colour are never one
    std::size_t levels;
    bool keepsShape;
};

const LevelsCase levelsCases[] = {
    {"Small", 220, false, false, 0, true},   {"Shared", 226, false, false, 6, true},
    {"Facets", 226, true, false, 6, true},   {"InPieces", 400, true, false, 9, true},
    {"Coloured", 226, false, true, 6, true}, {"ColouredFacets", 226, true, true, 6, false},
};

TABLE(MeshLevelsOf, testing::Test, LevelsCase, levelsCases);

TEST_P(MeshLevelsOf, HaveTheSameShapeOfFewerTriangles)
{
    const LevelsCase &row = GetParam();
    Mesh mesh = roof(row.cells, row.facets);
    if (row.coloured)
        mesh.colours.assign(mesh.vertexCount() * 4, 255);
    MeshLevels made(mesh);
    made.make(mesh, std::atomic<bool>(false));
    ASSERT_EQ(made.count(), row.levels);
    const std::size_t expected = MeshLevels::expectedBytes(mesh);
    EXPECT_NEAR(double(expected), double(made.byteSize()), 0.2 * double(expected));
    const double share = double(row.cells / 4) / row.cells; // of the first part
    const bool hasRough = row.levels == 9;                  // it is the same for all
    double whole = double(mesh.triangleCount());
    for (std::size_t i = 0; i < made.count() + hasRough; ++i) {
        const bool isRough = i == made.count(), keepsShape = row.keepsShape && !isRough;
        for (std::size_t v = 0; isRough && v < mesh.normals.size(); v += 6) // every second one
            std::copy_n(std::array<float, 3>{0, 0.9f, 0.436f}.begin(), 3, &mesh.normals[v]);
        const MeshLevel &level = isRough ? roughLevelOf(mesh, std::atomic<bool>(false)) : made[i];
        whole = isRough ? double(roughSize) : whole / M_SQRT2;
        EXPECT_LE(double(level.triangleCount()), whole * (keepsShape ? 1.2 : 1) + 16);
        EXPECT_GE(double(level.triangleCount()), whole * 0.6);
        ASSERT_EQ(level.ends.size(), 3u);
        EXPECT_EQ(level.ends[2], level.indices.size());
        EXPECT_EQ(level.ends[2] - level.ends[1], 3u) << "a small part is whole";
        if (i % 4 != 2 && !isRough)
            continue; // they are made the same way, and looking at all takes long
        quint32 at = 0;
        for (const std::size_t part : {0, 1}) {
            double area = 0, bent = 0, off = 0, least = 1; // bent: lit as beyond the ridge
            for (; at < level.ends[part]; at += 3) {
                const quint32 *c = &level.indices[at];
                const QVector3D p = mesh.position(c[0]), q = mesh.position(c[1]);
                const QVector3D middle = (p + q + mesh.position(c[2])) / 3;
                const QVector3D across = QVector3D::crossProduct(q - p, mesh.position(c[2]) - p);
                float lit = across.length();
                for (int k = 0; k < 3; ++k) {
                    const float *n = &mesh.normals[c[k] * 3];
                    lit = std::min(lit, QVector3D::dotProduct(across, {n[0], n[1], n[2]}));
                }
                bent += lit < 0.999f * across.length() ? double(across.length()) / 2 : 0;
                area += double(across.z()) / 2;
                least = std::min(least, double(across.z()));
                off = std::max(off, std::abs(double(middle.z()) - 0.2 +
                                             0.4 * std::abs(double(middle.x()) - 0.5)));
            }
            EXPECT_GE(least, -1e-9) << "turned over";
            EXPECT_LT(bent, isRough ? 0.02 : 1) << "lit as what it is not";
            if (keepsShape) {
                const double over = area - (part == 0 ? share : 1 - share);
                EXPECT_GT(over, -1e-4) << "a gap";
                EXPECT_LT(over, 0.05) << "folds";
                EXPECT_LT(off, 1e-5);
                EXPECT_TRUE(bent < 1e-4 || !row.facets) << bent;
            }
        }
    }
    MeshLevels cancelled(mesh);
    cancelled.make(mesh, std::atomic<bool>(true));
    EXPECT_EQ(cancelled.count() + roughLevelOf(mesh, std::atomic<bool>(true)).ends.size(), 0u);
}

std::size_t held()
{
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

template <class Make> void expectHonest(const char *name, const Make &make)
{
    const std::size_t before = held();
    const std::unique_ptr<Item> item = make();
    QThreadPool::globalInstance()->waitForDone();
    const double share = double(item->byteSize()) / double(held() - before);
    EXPECT_NEAR(share, 1, 0.1) << name;
}

TEST(MemoryTest, WhatItemsSayIsWithinATenthOfWhatTheyHold)
{
    const Mesh ring = revolve(arc({5, 0}, 1, -90, 90, 100), 100, 100).mesh;
    expectHonest("triangles",
                 [&] { return std::make_unique<ModelItem>("a", std::make_shared<Mesh>(ring)); });
    expectHonest("posed", [&] {
        Mesh mesh = ring;
        mesh.textures = {
            std::make_shared<Texture>(Texture{1000, 1000, std::vector<quint8>(4000000)})};
        auto item = std::make_unique<ModelItem>("a", flattening(mesh));
        item->playback()->setTime(1);
        EXPECT_TRUE(item->play(0) && item->play(0));
        return item;
    });
}

} // namespace
} // namespace host
