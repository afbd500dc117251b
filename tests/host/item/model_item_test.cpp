// SPDX-License-Identifier: MIT
// What a model says of itself, what of it is selected and hidden, and how much of it is drawn.
#include "host/item/model_item.h"

#include <algorithm>
#include <cmath>

#include <QThreadPool>

#include "GL/glwidget.h"
#include "host/item/mesh_points.h"
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
    ModelItem item("a", std::make_shared<Mesh>(mesh));
    GLWidget glw(nullptr, "glw");
    if (row.up)
        item.standOn(&glw, *row.up);
    EXPECT_EQ(item.details().toStdString(), "1 triangle  ·  " + std::string(row.size));
    EXPECT_EQ(item.chosenUp(), row.up);
    EXPECT_EQ(item.mesh().max - item.mesh().min, row.world);
    EXPECT_EQ(item.centre(), (item.mesh().max + item.mesh().min) / 2);
    EXPECT_FLOAT_EQ(item.scale(), CameraMotion::worldRadius / std::sqrt(3.5f));
}

TEST(ModelItem, TellsOfLinesAndPointsAndIsBusyUntilAllAreDrawn)
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
    EXPECT_TRUE(item.hasPoints());
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(item.isBusy());
    item.passed(false, 1);
    EXPECT_FALSE(item.isBusy());
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

TEST(PointBudget, IsLessWhileFramesAreSlowAndAllAtRest)
{
    PointBudget budget;
    const std::tuple<bool, double, std::size_t> frames[] = {
        // moved, seconds, the most then
        {true, 9, 1'000'000},  {true, 0.05, 1'000'000}, {true, 0.1, 750'000},
        {true, 0.01, 937'500}, {false, 9, 2'812'500},   {false, 9, 8'437'500},
        {true, 9, 937'500},    {true, 0.14, 468'750},   {true, 0.02, 585'935}};
    for (const auto &[moved, seconds, most] : frames) {
        budget.advance(moved, seconds);
        EXPECT_EQ(budget.most(), most);
    }
    for (int i = 0; i < 100; ++i)
        budget.advance(true, 1);
    EXPECT_EQ(budget.most(), 100'000u);
    for (int i = 0; i < 200; ++i)
        budget.advance(i < 100, 0.001);
    EXPECT_EQ(budget.most(), std::size_t(1) << 40);
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

} // namespace
} // namespace host
