// SPDX-License-Identifier: MIT
// Round edges and faces, and what measurements say.
#include "host/measure/measurement.h"

#include <QLocale>

#include "host/measure/round.h"
#include "shapes.h"
#include "tests/GL/table.h"

namespace host {
namespace {

std::vector<QPointF> disc(double radius, int sides)
{
    std::vector<QPointF> outline = arc({0, 0}, radius, 0, 360, sides);
    outline.pop_back();
    return outline;
}

/// A rectangle of 8 by 6 whose first corner is rounded with radius 2: its sides are the six of the
/// arc, then four flat ones.
std::vector<QPointF> rounded()
{
    std::vector<QPointF> outline = arc({2, 1}, 2, 0, 90, 6);
    outline.insert(outline.end(), {{-4, 3}, {-4, -3}, {4, -3}, {4, 1}});
    return outline;
}

std::vector<QPointF> ring()
{
    return arc({5, 0}, 1.5, 0, 360, 48);
}

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
    {"RoundedCorner", prism(rounded(), 4), true, 18, 2},
    {"RoundedCornerAtItsEnd", prism(rounded(), 4), true, 0, 2},
    {"RoundedCornerAtItsOtherEnd", prism(rounded(), 4), true, 30, 2},
    {"BesideARoundedCorner", prism(rounded(), 4), true, 36, 0},
    {"Ellipse", prism(disc(1, 64), 1).scale({3, 2, 1}), true, 0, 0},
    {"CoarseEllipse", prism(disc(1, 16), 1).scale({3, 1, 1}), true, 0, 0},
    {"RimOfACutTube", revolve(ring(), 40, 10), true, 29, 1.5},
    {"SmoothEdge", revolve(ring(), 40, 40), true, 29, 0},
    {"Cylinder", prism(disc(2.5, 64), 10), false, 45, 2.5},
    {"Hole", prism(disc(2.5, 200), 10).flip(), false, 45, 2.5},
    {"Fillet", prism(rounded(), 4), false, 18, 2},
    {"FilletAtItsEnd", prism(rounded(), 4), false, 33, 2},
    {"FaceOfABox", box({0, 0, 0}, {2, 2, 2}), false, 12, 0},
    {"BentTwoWays", revolve(ring(), 40, 40), false, 2700, 0},
    {"Cone", revolve({{4, 0}, {1, 5}}, 60, 60), false, 180, 0},
};

TABLE(Round, testing::Test, RoundCase, roundCases);

TEST_P(Round, HasItsRadius)
{
    const RoundCase &row = GetParam();
    const MeshTopology topology = row.shape.topology();
    const quint32 triangle = row.corner / 3;
    const Vec middle = (topology.at(triangle * 3) + topology.at(triangle * 3 + 1) +
                        topology.at(triangle * 3 + 2)) /
                       3;
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
    EXPECT_FALSE(fitCircle({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}}));
    EXPECT_FALSE(fitCircle({{0, 0, 0}, {1, 1, 1}}));
    EXPECT_FALSE(fitCircle({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
}

SurfaceMeasures measures(SurfaceMeasures::Bounds bounds)
{
    SurfaceMeasures m;
    m.area = 6.25;
    m.volume = 1.5;
    m.bounds = bounds;
    return m;
}

Mesh meshIn(const QString &unit)
{
    Mesh mesh;
    mesh.unit = unit;
    return mesh;
}

Circle circle()
{
    Circle c;
    c.centre = {1, 2, 3};
    c.radius = 0.125;
    return c;
}

const Vec o(0, 0, 0);
using Bounds = SurfaceMeasures::Bounds;

struct TextCase {
    const char *name;
    Measurement measurement;
    const char *text;
};

const TextCase textCases[] = {
    {"Point", Measurement::point({1.5, -0.0, 1234567.8}, "mm"),
     "Point|x 1.5   y 0   z 1.23457e+06 mm"},
    {"PointWithoutUnit", Measurement::point({1, 2, 3}, ""), "Point|x 1   y 2   z 3"},
    {"Distance", Measurement::distance({1, 2, 3}, {4, -2, 15}, "in"),
     "Distance|13 in|Δx 3   Δy -4   Δz 12"},
    {"SixDigits", Measurement::distance(o, {1, 1, 0}, ""), "Distance|1.41421|Δx 1   Δy 1   Δz 0"},
    {"FacesOfACube", Measurement::faceAngle({o, {1, 0, 0}}, {o, {0, 0, 9}}, "m"),
     "Angle of faces|90°"},
    {"FacesOfATetrahedron", Measurement::faceAngle({o, {1, 1, 1}}, {o, {1, -1, -1}}, "m"),
     "Angle of faces|70.5288°"},
    {"FacesBackToBack", Measurement::faceAngle({o, {0, 2, 0}}, {{5, -4, 6}, {0, -1, 0}}, "m"),
     "Angle of faces|0°|parallel, 4 m apart"},
    {"FacesOfASteps", Measurement::faceAngle({o, {0, 2, 0}}, {{5, 3, 6}, {0, 3, 0}}, ""),
     "Angle of faces|180°|parallel, 3 apart"},
    {"Points", Measurement::pointAngle({2, 0, 0}, {1, 0, 0}, {0, 0, 1}), "Angle of points|135°"},
    {"Radius", Measurement::radius(circle(), "cm"), "Radius|R 0.125 cm|⌀ 0.25 cm|x 1   y 2   z 3"},
    {"Volume", Measurement::surface(measures(Bounds::Volume), meshIn("m"), "all"),
     "Area and volume|all|area 6.25 m²|volume 1.5 m³"},
    {"Open", Measurement::surface(measures(Bounds::Open), meshIn(""), "all"),
     "Area and volume|all|area 6.25|no volume: it is not closed"},
    {"Disagree", Measurement::surface(measures(Bounds::Disagree), meshIn("m"), "a"),
     "Area and volume|a|area 6.25 m²|no volume: some faces look inwards"},
};

TEST(PlaceTest, GoesToTheFileAndBack)
{
    Mesh mesh;
    mesh.axes.of = {{3, -1, 2}};
    mesh.origin = {{1e6, 20, 300}};
    EXPECT_EQ(placeInFile(mesh, {1, 2, 4}), Vec(1e6 - 2, 24, 301));
    EXPECT_EQ(placeInMesh(mesh, {1e6 - 2, 24, 301}), Vec(1, 2, 4));
    EXPECT_EQ(toFile(mesh.axes, {1, 2, 4}), Vec(-2, 4, 1));
}

TABLE(MeasurementText, testing::Test, TextCase, textCases);

TEST_P(MeasurementText, SaysWhatWasMeasured)
{
    EXPECT_EQ(GetParam().measurement.text().replace('\t', '|').toStdString(), GetParam().text);
}

} // namespace
} // namespace host
