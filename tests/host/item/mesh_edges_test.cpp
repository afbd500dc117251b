// SPDX-License-Identifier: MIT
// Which sides of triangles are edges, and what a thread leaves that found no memory.
#include "host/item/mesh_edges.h"

#include <algorithm>
#include <cmath>

#include "host/item/background.h"
#include "tests/support/table.h"

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

} // namespace
} // namespace host
