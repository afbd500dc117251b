// SPDX-License-Identifier: MIT
// Areas, volumes, and whether there is one.
#include "host/measure/mesh_measures.h"

#include "shapes.h"
#include "tests/GL/table.h"

namespace host {
namespace {

using Bounds = SurfaceMeasures::Bounds;

const std::atomic<bool> goOn{false};

/// The profile of a tube of radius 0.5 around a ring of radius 2; that of a ball, with its poles
/// exactly on the axis.
std::vector<QPointF> ring()
{
    std::vector<QPointF> profile = arc({2, 0}, 0.5, 0, 360, 80);
    profile.back() = profile.front();
    return profile;
}
std::vector<QPointF> meridian()
{
    std::vector<QPointF> profile = arc({0, 0}, 3, -90, 90, 100);
    profile.front().setX(0);
    profile.back().setX(0);
    return profile;
}

Shape cube(double at = 0, double side = 1)
{
    return box(Vec::Constant(at), Vec::Constant(at + side));
}
Shape both(Shape a, const Shape &b)
{
    return a += b;
}

struct SurfaceCase {
    const char *name;
    Shape shape;
    Bounds bounds;
    double area;
    double volume;
    std::vector<bool> parts = {};
};

Shape inTwoParts()
{
    Shape shape = cube();
    shape.mesh.parts[0].indexCount = 6;
    shape.mesh.parts.push_back(shape.mesh.parts[0]);
    shape.mesh.parts[1].firstIndex = 6;
    shape.mesh.parts[1].indexCount = 30;
    return shape;
}

Shape withInnerWall()
{
    Shape shape = cube();
    shape.quad({0, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 0, 1});
    return shape;
}

const SurfaceCase surfaceCases[] = {
    {"UnitCube", cube(), Bounds::Volume, 6, 1},
    {"FarFromTheOrigin", box({65536, -65536, 65535}, {65537, -65534, 65538}), Bounds::Volume, 22,
     6},
    {"Sphere", revolve(meridian(), 120, 120), Bounds::Volume, revolvedArea(meridian(), 120),
     revolvedVolume(meridian(), 120)},
    {"Torus", revolve(ring(), 120, 120), Bounds::Volume, revolvedArea(ring(), 120),
     revolvedVolume(ring(), 120)},
    {"PartOfATorus", revolve(ring(), 120, 40), Bounds::Open, revolvedArea(ring(), 120) / 3, 0},
    {"ATriangleMissing", cube().drop(5), Bounds::Open, 5.5, 0},
    {"ATriangleFlipped", cube().flip(4, 1), Bounds::Disagree, 6, 0},
    {"InsideOut", cube().flip(), Bounds::Volume, 6, 1},
    {"Hollow", both(cube(), cube(0.25, 0.5).flip()), Bounds::Volume, 7.5, 0.875},
    {"HollowInsideOut", both(cube().flip(), cube(0.25, 0.5)), Bounds::Volume, 7.5, 0.875},
    {"Apart", both(cube(), cube(2, 2)), Bounds::Volume, 30, 9},
    {"ApartAndOneInsideOut", both(cube(), cube(2, 2).flip()), Bounds::Disagree, 30, 0},
    {"SideBySide", both(cube(), box({1, 0, 0}, {2, 1, 1})), Bounds::Volume, 12, 2},
    {"InnerWall", withInnerWall(), Bounds::Open, 7.4142135624, 0},
    {"ClosedByTwoParts", inTwoParts(), Bounds::Volume, 6, 1, {true, true}},
    {"OneOfTwoParts", inTwoParts(), Bounds::Open, 5, 0, {false, true}},
    {"NoPart", inTwoParts(), Bounds::Open, 0, 0, {false, false}},
};

TABLE(Surface, testing::Test, SurfaceCase, surfaceCases);

TEST_P(Surface, IsMeasured)
{
    const SurfaceCase &row = GetParam();
    const SurfaceMeasures m = measureSurface(row.shape.topology(), row.parts, goOn);
    EXPECT_EQ(int(m.bounds), int(row.bounds));
    EXPECT_NEAR(m.area, row.area, 3e-7 * row.area);
    EXPECT_NEAR(m.volume, row.volume, 3e-7 * row.volume);
}

TEST(SurfaceTest, TheFormulasOfTheBallAndTheRingAreNear)
{
    constexpr double pi = 3.14159265358979;
    EXPECT_NEAR(revolvedVolume(meridian(), 9000) / (36 * pi), 1, 1e-3);
    EXPECT_NEAR(revolvedVolume(ring(), 9000) / (pi * pi), 1, 2e-3);
}

TEST(SurfaceTest, CancelledItIsNotWhole)
{
    const std::atomic<bool> stop{true};
    EXPECT_FALSE(MeshTopology(std::make_shared<Mesh>(cube().mesh), stop).isWhole());
    EXPECT_TRUE(cube().topology().isWhole());
}

} // namespace
} // namespace host
