// SPDX-License-Identifier: MIT
// What a model says of itself, under the names of its file.
#include "host/item/model_item.h"

#include <cmath>

#include <QThreadPool>

#include "GL/glwidget.h"
#include "tests/GL/table.h"

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
    auto mesh = std::make_shared<Mesh>();
    mesh->positions = {10, 0, 0, 11, 2, 0, 10, 2, 3};
    mesh->normals = {0, 1, 0, 0, 1, 0, 0, 1, 0};
    mesh->indices = {0, 1, 2};
    mesh->min = {10, 0, 0};
    mesh->max = {11, 2, 3};
    mesh->axes = row.axes;
    ModelItem item("a", mesh);
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

} // namespace
} // namespace host
