// SPDX-License-Identifier: MIT
// What a model says of itself, what of it is selected and hidden, how much of it is drawn and
// how it moves.
#include "host/item/model_item.h"

#include <algorithm>
#include <cmath>

#include <QThreadPool>

#include "GL/glwidget.h"
#include "host/item/detail_budget.h"
#include "host/item/mesh_points.h"
#include "host/item/rig_pose.h"
#include "tests/support/table.h"

namespace host {
namespace {

struct AxesCase {
    const char *name;
    FileAxes axes;                    // of the mesh, which is 1 x 2 x 3 large
    std::optional<FileAxes::Axis> up; // that a person chooses
    const char *size;                 // the file's own, and its axis that points up
    QVector3D world;                  // from the least to the largest corner, before the scale
};

const AxesCase axesCases[] = {
    {"AsTheFileHasThem", {}, {}, "1 × 2 × 3  ·  Y up", {1, 2, 3}},
    {"TurnedByTheReader", {{{1, 3, -2}}}, {}, "1 × 3 × 2  ·  Z up", {1, 2, 3}},
    {"UpsideDown", {{{1, -2, -3}}}, {}, "1 × 2 × 3  ·  −Y up", {1, 2, 3}},
    {"ChosenAsItIs", {{{1, 3, -2}}}, FileAxes::Z, "1 × 3 × 2  ·  Z up", {1, 2, 3}},
    {"ChosenAnother", {{{1, 3, -2}}}, FileAxes::X, "1 × 3 × 2  ·  X up", {3, 1, 2}},
    {"ChosenOtherEnd", {{{1, -2, -3}}}, FileAxes::Y, "1 × 2 × 3  ·  Y up", {1, 2, 3}},
};

TABLE(ModelAxes, testing::Test, AxesCase, axesCases);

TEST_P(ModelAxes, AreTheFilesOwn)
{
    const AxesCase &row = GetParam();
    Mesh mesh;
    mesh.positions = {10, 0, 0, 11, 2, 0, 10, 2, 3};
    mesh.normals.assign(9, 0);
    mesh.indices = {0, 1, 2};
    mesh.findBounds();
    mesh.axes = row.axes;
    mesh.origin = {{500, 60, 7}};
    ModelItem item("a", std::make_shared<Mesh>(mesh));
    GLWidget glw(nullptr, "glw");
    if (row.up)
        item.standOn(&glw, *row.up);
    EXPECT_EQ(item.details().toStdString(), "1 triangle  ·  " + std::string(row.size));
    EXPECT_EQ(item.chosenUp(), row.up);
    EXPECT_EQ(item.mesh().max - item.mesh().min, row.world);
    EXPECT_EQ(item.centre(), (item.mesh().max + item.mesh().min) / 2);
    EXPECT_FLOAT_EQ(item.scale(), CameraMotion::worldRadius / std::sqrt(3.5f));
    for (const auto axis : {FileAxes::X, FileAxes::Y, FileAxes::Z}) { // as people know the file
        item.setSection({{item.planeOf({axis, true, false, 510.5})}});
        EXPECT_EQ(item.section()->planes[0].place() + item.sectionFrames()[0].origin, 510.5);
        EXPECT_EQ(item.sectionFrames()[0].origin, mesh.origin[std::size_t(axis)]);
    }
    mesh.positions = {0, 0, 0, 1e-39f, 0, 0, 0, 0, 0};
    mesh.findBounds();
    EXPECT_EQ(ModelItem("tiny", std::make_shared<Mesh>(mesh)).scale(), 1);
}

TEST(ModelItem, TellsOfLinesAndPoints)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->positions.assign(3 * 1200002, 0);
    mesh->positions[0] = 2;
    mesh->indices = {0, 1};
    mesh->parts = {{"l", {}, {}, 0, 2, MeshPart::Kind::Lines},
                   {"p", {}, {}, 2, 0, MeshPart::Kind::Points, 2, 1200000}};
    mesh->findBounds();
    ModelItem item("a", mesh);
    EXPECT_EQ(item.details().toStdString(), "1 line  ·  1,200,000 points  ·  2 × 0 × 0  ·  Y up");
    EXPECT_EQ(item.count(), 1200001u);
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(item.hasPoints() && !item.isBusy());
}

using M = PartMarks;

struct MarksCase {
    const char *name;
    void (*step)(M &);
    const char *after; // of four parts, of which the second is selected and the last one hidden
};

const std::vector<bool> ends{true, false, false, true};

const MarksCase marksCases[] = {
    {"HiddenIsNotSelected", [](M &m) { m.select(ends); }, "s..h"},
    {"NorOneByOne", [](M &m) { m.setSelected(3, true); }, ".s.h"},
    {"AddedAndTaken", [](M &m) { m.setSelected(0, true), m.setSelected(1, false); }, "s..h"},
    {"TwiceIsOnce", [](M &m) { m.setSelected(1, true), m.setHidden(3, true); }, ".s.h"},
    {"Cleared", [](M &m) { m.clearSelection(); }, "...h"},
    {"HidingTakesTheSelection", [](M &m) { m.hideSelected(); }, ".h.h"},
    {"HidingOne", [](M &m) { m.setHidden(0, true); }, "hs.h"},
    {"ShowingOne", [](M &m) { m.setHidden(3, false); }, ".s.."},
    {"ShowOnly", [](M &m) { m.showOnlySelected(); }, "hshh"},
    {"ShowOnlyNothing", [](M &m) { m.clearSelection(), m.showOnlySelected(); }, "...h"},
    {"ShowAll", [](M &m) { m.showAll(); }, ".s.."},
    {"BeyondTheCount", [](M &m) { m.setHidden(4, true), m.setSelected(4, true); }, ".s.h"},
};

TABLE(PartMarksStep, testing::Test, MarksCase, marksCases);

TEST_P(PartMarksStep, LeavesTheseMarks)
{
    PartMarks marks(4);
    marks.setSelected(1, true);
    marks.setHidden(3, true);
    GetParam().step(marks);
    std::string after;
    for (std::size_t i = 0; i < marks.count(); ++i)
        after += marks.isHidden(i) ? 'h' : marks.isSelected(i) ? 's' : '.';
    EXPECT_EQ(after, GetParam().after);
    EXPECT_EQ(marks.selectedCount(), std::size_t(std::count(after.begin(), after.end(), 's')));
    EXPECT_EQ(marks.hiddenCount(), std::size_t(std::count(after.begin(), after.end(), 'h')));
    EXPECT_FALSE(marks.isHidden(4) || marks.isSelected(4));
}

struct BudgetRow {
    bool moved;
    double seconds, took;
    std::size_t drawn, most; // by the last frame, and then
};

TEST(DetailBudget, IsLessWhileFramesAreSlowAndAllAtRest)
{
    constexpr std::size_t all = DetailBudget::all;
    const BudgetRow rows[] = {{true, 0.1, 9, 200'000, 300'000},
                              {true, 0.1, 0.041, 200'000, 300'000},
                              {true, 0.1, 0.05, 200'000, 300'000},
                              {true, 0.1, 0.0625, 200'000, 114'285},
                              {true, 0.1, 0.032, 100'000, 125'000},
                              {true, 0.1, 0.05, 120'000, 125'000},
                              {true, 0.1, 0.045, 120'000, 125'000},
                              {true, 0.1, 0.05, 120'000, 125'000},
                              {true, 0.1, 0.25, 120'000, 17'142},
                              {true, 0.1, 0.25, 20'000, 10'000},
                              {true, 0.1, 0.01, 15'000, 12'500},
                              {false, 0.1, 9, 15'000, 12'500},
                              {true, 0.1, 9, 15'000, 12'500},
                              {true, 0.1, 0.01, 15'000, 15'625},
                              {true, 0.1, 0.01, 15'000, 19'530},
                              {true, 0.1, 0.01, 15'000, 19'999},
                              {false, 0.15, 0, 0, 19'999},
                              {false, 0.05, 0, 0, all},
                              {true, 0.1, 9, 0, 19'999},
                              {true, 0.1, 0.01, 15'000, 24'995},
                              {true, 0.1, 9, 0, 24'995}}; // of others: it drew nothing
    DetailBudget budget;
    for (const BudgetRow &row : rows) {
        budget.drew(row.drawn);
        budget.advance(row.moved, row.seconds, row.took);
        EXPECT_EQ(budget.most(), row.most) << &row - rows;
        EXPECT_EQ(budget.rests(), row.most == all) << &row - rows;
    }
    budget.drew(all);
    for (int i = 0; i < 100; ++i)
        budget.advance(true, 1, 0.001);
    EXPECT_EQ(budget.most(), all);
    for (const auto &[pixels, least] :
         {std::pair(0, 10'000), {240'000, 20'000}, {9'999'999, 80'000}})
        EXPECT_EQ(DetailBudget::leastTriangles(pixels), std::size_t(least));
}

TEST(PointLook, PointsTouchWithinBounds)
{
    Mesh mesh;
    mesh.positions.resize(30003);
    mesh.parts = {{"p", {}, {}, 0, 0, MeshPart::Kind::Points, 0, 10001}};
    mesh.max = {40, 90, 70}; // 10,001 points on half of its sides
    EXPECT_NEAR(pointSpacing(mesh), std::sqrt(12700 / 10001.0), 1e-9);
    mesh.max = {20002, 0, 0};
    EXPECT_NEAR(pointSpacing(mesh), 2, 1e-9);
    Display display;
    const std::pair<PointLook, double> rows[] = {
        {{2, 3, 10001}, 2.25}, {{4, 3, 20000}, 1.125}, {{1, 0.1, 10001}, 1},
        {{1, 9, 10001}, 4},    {{0, 9, 10001}, 1},     {{8, 3, 1000}, 0.5625 * std::sqrt(10.001)}};
    for (const auto &[look, size] : rows)
        EXPECT_NEAR(pointSize(mesh, display, look), size, 1e-9);
    display.pointScale = 2;
    EXPECT_NEAR(pointSize(mesh, display, {1, 9, 10001}), 8, 1e-9);
    EXPECT_EQ(pointSpacing(Mesh()), 0);
}

/// Four points at (1, 2, 3): held by the root, by a node that moves, half by each, and by one that
/// is flat. The node is at (10, 0, 0); its clip shifts it along y, turns it about z and stretches
/// it.
Mesh rigged()
{
    Mesh m;
    for (int i = 0; i < 4; ++i) {
        m.positions.insert(m.positions.end(), {1, 2, 3});
        m.normals.insert(m.normals.end(), {1, 0, 0});
    }
    auto rig = std::make_shared<Rig>();
    rig->nodes.resize(3);
    rig->nodes[1].parent = rig->nodes[2].parent = 0;
    rig->nodes[1].local.translate(10, 0, 0);
    rig->nodes[2].local.scale(0);
    rig->bones = {{0, {}}, {1, {}}, {2, {}}};
    rig->vertexBones = {0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0, 0};
    rig->vertexWeights = {1, 0, 0, 0, 1, 0, 0, 0, 0.5f, 0.5f, 0, 0, 1, 0, 0, 0};
    Rig::Track track;
    track.node = 1;
    track.places = {{1, {10, 0, 0}}, {3, {10, 8, 0}}};
    track.turns = {{1, QQuaternion()}, {3, QQuaternion::fromAxisAndAngle(0, 0, 1, 90)}};
    track.scales = {{1, {1, 1, 1}}, {3, {3, 3, 3}}};
    rig->clips = {{"all", 4, {track}}};
    m.rig = rig;
    return m;
}

struct PoseRow {
    const char *name;
    int clip;
    double seconds;
    std::size_t vertex;
    QVector3D place, normal;
};

// At rest the points are at (-9, 2, 3) of the node; half of both bones shifts them by 5.
const float h = std::sqrt(0.5f), t = std::sqrt(0.1f);
const PoseRow poseRows[] = {
    {"none", -1, 3, 1, {1, 2, 3}, {1, 0, 0}},
    {"root", 0, 3, 0, {1, 2, 3}, {1, 0, 0}},
    {"before the first key", 0, 0, 1, {1, 2, 3}, {1, 0, 0}},
    {"half", 0, 2, 1, {10 + 2 * h * (-9 - 2), 4 + 2 * h *(-9 + 2), 6}, {h, h, 0}},
    {"at the last key", 0, 3, 1, {10 + 3 * -2, 8 + 3 * -9, 9}, {0, 1, 0}},
    {"after it", 0, 4, 1, {4, -19, 9}, {0, 1, 0}},
    {"two bones", 0, 3, 2, {(-4 + 10 - 6) / 2.0f, (2 + 8 - 12) / 2.0f, 6}, {t, 3 * t, 0}},
    {"flat", 0, 3, 3, {1, 2, 3}, {1, 0, 0}},
    {"back", -1, 0, 1, {1, 2, 3}, {1, 0, 0}},
};

TEST(RigPoseTest, VerticesGoWithTheirBonesHoweverTheModelStands)
{
    for (const bool turned : {false, true}) {
        Mesh m = rigged();
        if (turned)
            m.standOn(FileAxes::Z); // y becomes the mesh's -z
        RigPose pose(m);
        const auto at = [](const std::vector<float> &all, std::size_t i) {
            return QVector3D(all[i * 3], all[i * 3 + 1], all[i * 3 + 2]);
        };
        for (const PoseRow &row : poseRows) {
            pose.pose(row.clip, row.seconds);
            const QVector3D place = at(pose.positions(), row.vertex);
            EXPECT_LT((place - m.axes.fromFile(row.place)).length(), 1e-4f) << row.name;
            const QVector3D normal = at(pose.normals(), row.vertex);
            EXPECT_LT((normal - m.axes.fromFile(row.normal)).length(), 1e-5f) << row.name;
        }
    }
}

} // namespace
} // namespace host
