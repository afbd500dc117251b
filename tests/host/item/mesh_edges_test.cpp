// SPDX-License-Identifier: MIT
// Which sides of triangles are edges, and what a thread leaves that found no memory.
#include "host/item/mesh_edges.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "host/item/background.h"
#include "tests/GL/table.h"

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

struct EdgesCase {
    const char *name;
    Points points;
    std::vector<quint32> indices;
    std::vector<quint32> parts; // where each ends in the indices
    const char *edges;          // of each part: its points, in any order
};

const EdgesCase edgesCases[] = {
    {"Flat", square, {0, 1, 2, 0, 2, 3}, {6}, "01 03 12 23"},
    {"FlatTheOtherWayRound", square, {0, 1, 2, 0, 3, 2}, {6}, "01 03 12 23"},
    {"HardlyFolded", folded(29.9), {0, 1, 2, 0, 3, 1}, {6}, "02 03 12 13"},
    {"Folded", folded(30.1), {0, 1, 2, 0, 3, 1}, {6}, "01 02 03 12 13"},
    {"FoldedTheOtherWayRound", folded(30.1), {0, 1, 2, 0, 1, 3}, {6}, "01 02 03 12 13"},
    {"FoldedDown", folded(-40), {0, 1, 2, 0, 3, 1}, {6}, "01 02 03 12 13"},
    {"FoldedBack", folded(175), {0, 1, 2, 0, 3, 1}, {6}, "01 02 03 12 13"},
    {"Small", folded(40, 1e-4f), {0, 1, 2, 0, 3, 1}, {6}, "01 02 03 12 13"},
    {"VerticesApart",
     {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {-0.0f, 0, 0}, {1, 1, -0.0f}, {0, 1, 0}},
     {0, 1, 2, 3, 4, 5},
     {6},
     "01 05 12 25"},
    {"BothSidesDrawn", square, {0, 1, 2, 0, 2, 3, 0, 2, 1, 0, 3, 2}, {12}, "01 03 12 23"},
    {"ThreeMeet",
     {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, -1, 0.1f}},
     {0, 1, 2, 0, 3, 1, 0, 4, 1},
     {9},
     "01 02 03 04 12 13 14"},
    {"PartsEndWhereTheyMeet", square, {0, 1, 2, 0, 2, 3}, {3, 6}, "01 02 12|02 03 23"},
    {"NothingInBetween", square, {0, 1, 2, 0, 2, 3}, {3, 3, 6}, "01 02 12||02 03 23"},
    {"OneCornerTwice", square, {0, 1, 2, 0, 2, 2}, {6}, "01 02 12"},
    {"TooThinToTell",
     {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5f, 0, 1e-7f}},
     {0, 1, 2, 0, 3, 1},
     {6},
     "02 03 12 13"},
};

TABLE(MeshEdgesOf, testing::Test, EdgesCase, edgesCases);

TEST_P(MeshEdgesOf, AreThoseThatTellTheShape)
{
    const EdgesCase &row = GetParam();
    Mesh mesh;
    for (const auto &p : row.points)
        mesh.positions.insert(mesh.positions.end(), p.begin(), p.end());
    mesh.indices = row.indices;
    mesh.max = {row.points[1][0], row.points[1][0], 0};
    for (quint32 end : row.parts) {
        MeshPart part;
        part.firstIndex =
            mesh.parts.empty() ? 0 : mesh.parts.back().firstIndex + mesh.parts.back().indexCount;
        part.indexCount = end - part.firstIndex;
        mesh.parts.push_back(part);
    }
    const MeshEdges found = edgesOf(mesh, std::atomic<bool>(false));
    ASSERT_EQ(found.ends.size(), row.parts.size());
    const auto point = [&](quint32 vertex) { // what stands at one place is one point
        return std::to_string(std::find(row.points.begin(), row.points.end(), row.points[vertex]) -
                              row.points.begin());
    };
    std::string words;
    quint32 at = 0;
    for (const quint32 &end : found.ends) {
        std::multiset<std::string> edges;
        for (; at < end; at += 2) {
            const std::string a = point(found.vertices[at]), b = point(found.vertices[at + 1]);
            edges.insert(std::min(a, b) + std::max(a, b));
        }
        words += &end == &found.ends[0] ? "" : "|";
        const char *gap = "";
        for (const std::string &edge : edges) {
            words += gap + edge;
            gap = " ";
        }
    }
    EXPECT_EQ(words, row.edges);
    EXPECT_TRUE(edgesOf(mesh, std::atomic<bool>(true)).vertices.empty());
}

TEST(Background, EndsWithWhatItMadeOrWithoutMemory)
{
    Background<int> work;
    EXPECT_FALSE(work.isStarted() || work.isBusy() || work.lackedMemory() || work.get());
    work.start([](const std::atomic<bool> &) -> int { throw std::bad_alloc(); });
    EXPECT_TRUE(work.isStarted());
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(work.lackedMemory() && !work.get() && !work.isBusy());
    std::atomic<bool> saw{false}, goesOn{false};
    work.start([&](const std::atomic<bool> &cancelled) {
        goesOn = true;
        while (!cancelled) {
        }
        saw = true;
        return 1;
    });
    EXPECT_TRUE(work.isBusy() && !work.get() && !work.lackedMemory());
    while (!goesOn) {
    }
    work.start([](const std::atomic<bool> &) { return 2; });
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(saw);
    ASSERT_TRUE(work.get());
    EXPECT_EQ(*work.get(), 2);
}

} // namespace
} // namespace host
