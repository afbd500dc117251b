// SPDX-License-Identifier: MIT
// How far surfaces and points lie from surfaces, against known geometry; and its colours.
#include <QThreadPool>

#include "host/view/compare/colour_scale.h"
#include "host/view/compare/difference.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

Shape cube(double low, double high)
{
    return box(Vec::Constant(low), Vec::Constant(high));
}

Shape sheet(double from, double to, double height)
{
    Shape shape;
    shape.quad({from, 0, height}, {to, 0, height}, {to, 1, height}, {from, 1, height});
    return shape;
}

Difference::Found measured(Mesh from, Mesh mesh)
{
    from.findBounds(), mesh.findBounds();
    Difference difference;
    difference.start(std::make_shared<Mesh>(from), std::make_shared<Mesh>(mesh), 20);
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_TRUE(!difference.isBusy() && difference.fraction() == 1);
    return difference.get() ? *difference.get() : Difference::Found();
}

const double s3 = std::sqrt(3.0);

struct SurfacesCase {
    const char *name;
    Shape from, shape;
    bool isSigned;
    double least, greatest;
    double mean = -1, rms = -1; // below 0: not known
    double tolerance = 1e9, share = 1;
};

const SurfacesCase surfacesCases[] = {
    {"Same", cube(0, 2), cube(0, 2), true, 0, 0, 0, 0, 0, 1},
    {"OffsetInwards", cube(0, 4), cube(1, 3), true, -1, -1, 1, 1, 0.999, 0},
    {"OffsetOutwards", cube(0, 2), cube(-0.5, 2.5), true, 0.5, s3 / 2},
    {"OffsetInsideOut", cube(0, 4).flip(), cube(1, 3), true, -1, -1, 1, 1, 1, 1},
    {"OpenSurface", sheet(0, 2, 0), sheet(0, 2, -0.25), false, 0.25, 0.25, 0.25, 0.25},
    {"Beyond", sheet(0, 1, 0), sheet(0, 2, 0.5), false, 0.5, std::sqrt(1.25)},
    {"ByArea", sheet(-9, 9, 0), sheet(0, 3, 0) + sheet(3, 4, 1), false, 0, 1, 0.25, 0.5, 0.5,
     0.75}};

TABLE(Surfaces, testing::Test, SurfacesCase, surfacesCases);

TEST_P(Surfaces, AreMeasured)
{
    const SurfacesCase &row = GetParam();
    const auto [mesh, found] = measured(row.from.mesh, row.shape.mesh);
    ASSERT_TRUE(mesh);
    EXPECT_EQ(found.isSigned, row.isSigned);
    EXPECT_NEAR(found.least, row.least, 1e-6 * std::abs(row.least));
    EXPECT_NEAR(found.greatest, row.greatest, 1e-6 * std::abs(row.greatest));
    EXPECT_EQ(found.largest, std::max(std::abs(found.least), std::abs(found.greatest)));
    EXPECT_NEAR(row.mean < 0 ? -1 : found.mean, row.mean, 1e-6 * std::abs(row.mean));
    EXPECT_NEAR(row.mean < 0 ? -1 : found.rms, row.rms, 1e-6 * std::abs(row.rms));
    EXPECT_NEAR(found.shareWithin(row.tolerance), row.share, 1e-5);
}

/// A wedge along z whose sharp edge is the z-axis.
const Shape wedge = prism({{0, 0}, {10, -1}, {10, 1}}, 4);
/// A notch into the middle of a block.
const Shape notched = prism({{0, 0}, {4, 0}, {4, 4}, {3, 4}, {2, 1}, {1, 4}, {0, 4}}, 4);
const Shape hollow = cube(0, 4) + cube(1, 3).flip();

struct PointCase {
    const char *name;
    Shape from;
    Vec at;
    double distance;
};

const PointCase pointCases[] = {{"BeforeAFace", cube(0, 2), {1, 1, 5}, 3},
                                {"BeforeAnEdge", cube(0, 2), {5, 1, 6}, 5},
                                {"Inside", cube(0, 2), {1, 1.25, 1}, -0.75},
                                {"InsideNearACorner", cube(0, 2), {1.75, 1.75, 1.75}, -0.25},
                                {"InsideOut", cube(0, 2).flip(), {1, 1, 1.5}, -0.5},
                                {"OnIt", cube(0, 2), {2, 1, 1}, 0},
                                {"InTheWall", hollow, {0.5, 2, 2}, -0.5},
                                {"InTheHollow", hollow, {2, 2, 1.25}, 0.25},
                                {"BehindASharpEdge", wedge, {-1, 0.75, 2}, 1.25},
                                {"BehindASharpCorner", wedge, {-2, 0.5, 5}, std::sqrt(5.25)},
                                {"InANotch", notched, {2, 2, 2}, 1 / std::sqrt(10.0)},
                                {"BelowANotch", notched, {2, 0.75, 2}, -0.25}};

TABLE(Points, testing::Test, PointCase, pointCases);

TEST_P(Points, AreMeasured)
{
    const PointCase &row = GetParam();
    Mesh points;
    for (int i = 0; i < 2; ++i) // a far one before, which is no good guess
        for (int k = 0; k < 3; ++k)
            points.positions.push_back(i == 0 ? -90.0f : float(row.at[k]));
    points.parts.emplace_back();
    points.parts[0].kind = MeshPart::Kind::Points;
    points.parts[0].vertexCount = 2;
    const auto [mesh, found] = measured(row.from.mesh, points);
    ASSERT_TRUE(mesh);
    EXPECT_NEAR(double(found.distances[1]), row.distance, 1e-6 * std::abs(row.distance));
    const double other = std::abs(double(found.distances[0]));
    EXPECT_NEAR(found.mean, (other + std::abs(row.distance)) / 2, 1e-4);
    EXPECT_FALSE(Difference::fault(points, points).isEmpty());
    EXPECT_TRUE(Difference::fault(row.from.mesh, points).isEmpty());
    EXPECT_FALSE(Difference::fault(row.from.mesh, {}).isEmpty());
}

TEST(ColourScaleTest, RunsFromBlueToRedInRoundSteps)
{
    const ColourScale both{true, 2};
    const std::pair<double, const char *> rows[] = {{-9, "#3b4cc0"}, {-2, "#3b4cc0"},
                                                    {0, "#dddddd"},  {0.125, "#e5d8d1"},
                                                    {2, "#b40426"},  {7, "#b40426"}};
    for (const auto &[distance, name] : rows)
        EXPECT_EQ(both.at(distance).name(), name) << distance;
    EXPECT_EQ(both.colours({-2, Deviation::unknown}),
              (std::vector<quint8>{0x3b, 0x4c, 0xc0, 255, 128, 138, 150, 255}));
    // Value, rounded, the next, the one before.
    const double rounds[][4] = {{0.3, 0.5, 1, 0.2}, {0, 1, 2, 0.5}};
    for (const auto &[value, rounded, next, before] : rounds) {
        EXPECT_DOUBLE_EQ(ColourScale::roundUp(value), rounded);
        EXPECT_DOUBLE_EQ(ColourScale::step(rounded, true), next);
        EXPECT_DOUBLE_EQ(ColourScale::step(rounded, false), before);
    }
}

} // namespace
} // namespace host
