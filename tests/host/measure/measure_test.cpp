// SPDX-License-Identifier: MIT
// Areas, volumes, round edges and faces, and what measurements say.
#include "host/measure/measurement.h"
#include "host/measure/round.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

using Bounds = SurfaceMeasures::Bounds;

const std::atomic<bool> goOn{false};

Shape cube(double at = 0, double side = 1)
{
    return box(Vec::Constant(at), Vec::Constant(at + side));
}

struct SurfaceCase {
    const char *name;
    Shape shape;
    Bounds bounds;
    double area;
    double volume;
    std::vector<bool> parts = {};
};

const Shape inTwoParts = cube().split(2);

Shape wall() // from an edge of the cube to the opposite one
{
    Shape shape;
    shape.quad({0, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 0, 1});
    return shape;
}

const SurfaceCase surfaceCases[] = {
    {"UnitCube", cube(), Bounds::Volume, 6, 1},
    {"FarOut", box({65536, -65536, 65535}, {65537, -65534, 65538}), Bounds::Volume, 22, 6},
    {"ATriangleMissing", cube().drop(5), Bounds::Open, 5.5, 0},
    {"ATriangleFlipped", cube().flip(4, 1), Bounds::Disagree, 6, 0},
    {"InsideOut", cube().flip(), Bounds::Volume, 6, 1},
    {"Hollow", cube() + cube(0.25, 0.5).flip(), Bounds::Volume, 7.5, 0.875},
    {"HollowInsideOut", cube().flip() + cube(0.25, 0.5), Bounds::Volume, 7.5, 0.875},
    {"Apart", cube() + cube(2, 2), Bounds::Volume, 30, 9},
    {"ApartAndOneInsideOut", cube() + cube(2, 2).flip(), Bounds::Disagree, 30, 0},
    {"SideBySide", cube() + box({1, 0, 0}, {2, 1, 1}), Bounds::Volume, 12, 2},
    {"InnerWall", cube() + wall(), Bounds::Open, 7.4142135624, 0},
    {"ClosedByTwoParts", inTwoParts, Bounds::Volume, 6, 1, {true, true}},
    {"OneOfTwoParts", inTwoParts, Bounds::Open, 5, 0, {false, true}},
    {"NoPart", inTwoParts, Bounds::Open, 0, 0, {false, false}},
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

// What is missing from the round shape falls with the square of the number of sides, so that two
// numbers of them tell it.
TEST(SurfaceTest, BallsAndRingsFollowTheirFormulas)
{
    constexpr double pi = 3.14159265358979;
    const auto roundness = [](bool ball, int sides, int part) {
        std::vector<QPointF> outline =
            ball ? arc({0, 0}, 3, -90, 90, sides) : arc({2, 0}, 0.5, 0, 360, sides);
        if (ball)
            outline.front().setX(0), outline.back().setX(0); // exactly on the axis
        return measureSurface(revolve(outline, sides, sides / part).topology(), {}, goOn);
    };
    const struct {
        bool ball;
        int part;
        Bounds bounds;
        double area, volume;
    } rows[] = {{true, 1, Bounds::Volume, 36 * pi, 36 * pi},
                {false, 1, Bounds::Volume, 4 * pi * pi, pi * pi},
                {false, 3, Bounds::Open, 4 * pi * pi / 3, 0}};
    for (const auto &row : rows) {
        const SurfaceMeasures coarse = roundness(row.ball, 120, row.part);
        const SurfaceMeasures fine = roundness(row.ball, 240, row.part);
        EXPECT_EQ(int(fine.bounds), int(row.bounds));
        EXPECT_NEAR((4 * fine.area - coarse.area) / 3, row.area, 5e-7 * row.area);
        EXPECT_NEAR((4 * fine.volume - coarse.volume) / 3, row.volume, 5e-7 * row.volume);
    }
}

TEST(SurfaceTest, CancelledItIsNotWhole)
{
    const std::atomic<bool> stop{true};
    EXPECT_FALSE(MeshTopology(std::make_shared<Mesh>(cube().mesh), stop).isWhole());
    EXPECT_TRUE(cube().topology().isWhole());
}

std::vector<QPointF> disc(double radius, int sides, double stretch = 1)
{
    std::vector<QPointF> outline = arc({}, radius, 0, 360, sides);
    outline.pop_back();
    for (QPointF &p : outline)
        p.rx() *= stretch;
    return outline;
}

/// 8 by 6 and 4 high, with one corner rounded with radius 2: its sides are the six of the arc, then
/// four flat ones.
Shape rounded(int chords = 6)
{
    std::vector<QPointF> outline = arc({2, 1}, 2, 0, 90, chords);
    outline.insert(outline.end(), {{-4, 3}, {-4, -3}, {4, -3}, {4, 1}});
    return prism(outline, 4);
}

const Shape tube = revolve(arc({5, 0}, 1.5, 0, 360, 48), 40, 40);

struct RoundCase {
    const char *name;
    Shape shape;
    bool edge; // that which begins at the corner, else the face of its triangle
    quint32 corner;
    double radius; // 0: there is no circle
};

// Each side of a prism has six corners; its lower rim begins at the first of them.
const RoundCase roundCases[] = {
    {"Rim", prism(disc(2.5, 64), 10), true, 42, 2.5},
    {"RimOfEightSides", prism(disc(2.5, 8), 10), true, 42, 2.5},
    {"RimOfSix", prism(disc(2.5, 6), 10), true, 12, 0},
    {"EdgeOfABox", box({0, 0, 0}, {2, 2, 2}), true, 12, 0},
    {"RoundedCorner", rounded(), true, 18, 2},
    {"RoundedInThreeChords", rounded(3), true, 6, 2},
    {"RoundedCornerAtItsEnd", rounded(), true, 0, 2},
    {"RoundedCornerAtItsOtherEnd", rounded(), true, 30, 2},
    {"BesideARoundedCorner", rounded(), true, 36, 0},
    {"Ellipse", prism(disc(2, 64, 1.5), 1), true, 0, 0},
    {"CoarseEllipse", prism(disc(1, 16, 3), 1), true, 0, 0},
    {"RimOfACutTube", revolve(arc({5, 0}, 1.5, 0, 360, 48), 40, 10), true, 29, 1.5},
    {"SmoothEdge", tube, true, 29, 0},
    {"Cylinder", prism(disc(2.5, 64), 10), false, 45, 2.5},
    {"Hole", prism(disc(2.5, 200), 10).flip(), false, 45, 2.5},
    {"Fillet", rounded(), false, 18, 2},
    {"FilletAtItsEnd", rounded(), false, 33, 2},
    {"FaceOfABox", box({0, 0, 0}, {2, 2, 2}), false, 12, 0},
    {"BentTwoWays", tube, false, 2700, 0},
    {"Cone", revolve({{4, 0}, {1, 5}}, 60, 60), false, 180, 0},
};

TABLE(Round, testing::Test, RoundCase, roundCases);

TEST_P(Round, HasItsRadius)
{
    const RoundCase &row = GetParam();
    const MeshTopology topology = row.shape.topology();
    const quint32 triangle = row.corner / 3;
    const auto corner = [&](quint32 k) { return topology.at(triangle * 3 + k); };
    const Vec middle = (corner(0) + corner(1) + corner(2)) / 3;
    const auto circle =
        row.edge ? roundEdge(topology, row.corner) : roundFace(topology, triangle, middle);
    ASSERT_EQ(circle.has_value(), row.radius > 0);
    if (!circle)
        return;
    EXPECT_NEAR(circle->radius, row.radius, 5e-7 * row.radius);
    const Vec inPlane = row.edge ? topology.at(row.corner) : middle;
    EXPECT_NEAR((inPlane - circle->centre).dot(circle->normal), 0, 1e-5);
}

TEST(CircleFitTest, LeastSquaresOfScatteredPoints)
{
    // Half of the points 0.01 inside of the circle and half of them outside, on a short arc.
    std::vector<Vec> points;
    for (const double radius : {4.99, 5.01})
        for (const QPointF &p : arc({1, 2}, radius, 20, 80, 30))
            points.emplace_back(p.x(), 7, p.y());
    const auto circle = fitCircle(points);
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->radius, 5, 1e-4);
    EXPECT_LT((circle->centre - Vec(1, 7, 2)).norm(), 2e-4);
    EXPECT_NEAR(std::abs(circle->normal.y()), 1, 1e-12);
    EXPECT_NEAR(circle->distance({1, 10, 11}), 5, 1e-3);
    const Vec o(0, 0, 0), a(1, 1, 1);
    for (const std::vector<Vec> &none :
         {std::vector{o, a, Vec(2 * a), Vec(5 * a)}, {o, a}, {a, a, a}})
        EXPECT_FALSE(fitCircle(none));
}

using M = Measurement;
const Vec o(0, 0, 0);

M surface(Bounds bounds, const QString &unit, const QString &what)
{
    SurfaceMeasures measures;
    measures.area = 6.25;
    measures.volume = 1.5;
    measures.bounds = bounds;
    Mesh mesh;
    mesh.unit = unit;
    return M::surface(measures, mesh, what);
}

M radius()
{
    Circle circle;
    circle.centre = {1, 2, 3};
    circle.radius = 0.125;
    return M::radius(circle, "cm");
}

struct TextCase {
    const char *name;
    M measurement;
    const char *text;
};

const TextCase textCases[] = {
    {"Point", M::point({1.5, -0.0, 1234567.8}, "mm"), "Point|x 1.5   y 0   z 1.23457e+06 mm"},
    {"WithoutUnit", M::point({1, 2, 3}, ""), "Point|x 1   y 2   z 3"},
    {"Distance", M::distance({1, 2, 3}, {4, -2, 15}, "in"), "Distance|13 in|Δx 3   Δy -4   Δz 12"},
    {"SixDigits", M::distance(o, {1, 1, 0}, ""), "Distance|1.41421|Δx 1   Δy 1   Δz 0"},
    {"Cube", M::faceAngle({o, {1, 0, 0}}, {o, {0, 0, 9}}, "m"), "Angle of faces|90°"},
    {"Tetra", M::faceAngle({o, {1, 1, 1}}, {o, {1, -1, -1}}, "m"), "Angle of faces|70.5288°"},
    {"BackToBack", M::faceAngle({o, {0, 2, 0}}, {{5, -4, 6}, {0, -1, 0}}, "m"),
     "Angle of faces|0°|parallel, 4 m apart"},
    {"Steps", M::faceAngle({o, {0, 2, 0}}, {{5, 3, 6}, {0, 3, 0}}, ""),
     "Angle of faces|180°|parallel, 3 apart"},
    {"Points", M::pointAngle({2, 0, 0}, {1, 0, 0}, {0, 0, 1}), "Angle of points|135°"},
    {"Radius", radius(), "Radius|R 0.125 cm|⌀ 0.25 cm|x 1   y 2   z 3"},
    {"Volume", surface(Bounds::Volume, "m", "all"),
     "Area and volume|all|area 6.25 m²|volume 1.5 m³"},
    {"Open", surface(Bounds::Open, "", "all"),
     "Area and volume|all|area 6.25|no volume: it is not closed"},
    {"Disagree", surface(Bounds::Disagree, "m", "a"),
     "Area and volume|a|area 6.25 m²|no volume: some faces look inwards"},
};

TABLE(MeasurementText, testing::Test, TextCase, textCases);

TEST_P(MeasurementText, SaysWhatWasMeasured)
{
    EXPECT_EQ(GetParam().measurement.text().replace('\t', '|').toStdString(), GetParam().text);
}

TEST(PlaceTest, GoesToTheFileAndBack)
{
    Mesh mesh;
    mesh.axes.of = {{3, -1, 2}};
    mesh.origin = {{1e6, 20, 300}};
    EXPECT_EQ(placeInFile(mesh, {1, 2, 4}), Vec(1e6 - 2, 24, 301));
    EXPECT_EQ(placeInMesh(mesh, {1e6 - 2, 24, 301}), Vec(1, 2, 4));
    EXPECT_EQ(toFile(mesh.axes, {1, 2, 4}), Vec(-2, 4, 1));
}

} // namespace
} // namespace host
