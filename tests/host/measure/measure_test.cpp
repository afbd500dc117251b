// SPDX-License-Identifier: MIT
// Areas, volumes, round edges and faces, what measurements say, what a pointer means, and where
// labels stand.
#include "host/measure/common_frame.h"
#include "host/measure/label_layout.h"
#include "host/measure/measurement.h"
#include "host/measure/refined_mesh.h"
#include "host/measure/round.h"
#include "host/measure/snap.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

using Bounds = SurfaceMeasures::Bounds;
const Vec o(0, 0, 0);

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
    {"TheOtherOfTwoParts", inTwoParts, Bounds::Open, 1, 0, {true, false}},
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

TEST(SurfaceTest, CancelledItIsNotWhole)
{
    const SurfaceMeasures found = measureSurface(box(o, {1, 2, 3}).topology(), {}, goOn);
    EXPECT_TRUE(found.min == o && found.max == Vec(1, 2, 3));
    EXPECT_FALSE(
        MeshTopology(std::make_shared<Mesh>(cube().mesh), std::atomic<bool>(true)).isWhole());
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
    const quint32 first = row.corner / 3 * 3;
    const Vec middle = (topology.at(first) + topology.at(first + 1) + topology.at(first + 2)) / 3;
    const Vec at = row.edge ? topology.at(row.corner) : middle;
    const auto circle =
        row.edge ? roundEdge(topology, row.corner) : roundFace(topology, first / 3, at);
    EXPECT_NEAR(circle ? circle->radius : 0, row.radius, 5e-7 * row.radius);
    EXPECT_TRUE(!circle || std::abs((at - circle->centre).dot(circle->normal)) < 1e-5);
}

TEST(CircleFitTest, LeastSquaresOfScatteredPoints)
{
    std::vector<Vec> points; // of a short arc, half of them outside and half within
    for (const double radius : {4.99, 5.01})
        for (const QPointF &p : arc({1, 2}, radius, 20, 80, 30))
            points.emplace_back(p.x(), 7, p.y());
    EXPECT_NEAR(fitCircle(points)->radius, 5, 1e-4);
}

using M = Measurement;

M surface(Bounds bounds, const QString &unit)
{
    Mesh mesh;
    mesh.unit = unit;
    return M::surface({12, 6.25, bounds, 1.5, o, {2, 4, 6}}, mesh, "all");
}

TEST(MeasurementTest, SaysWhatWasMeasured)
{
    const auto angle = [](const Vec &normal, const FacePoint &other) {
        return M::faceAngle({o, normal}, other, "m");
    };
    const std::pair<M, const char *> rows[] = {
        {M::point({1.5, -0.0, 1234567.8}, "mm"), "Point|x 1.5   y 0   z 1.23457e+06 mm"},
        {M::point({1, 2, 3}, ""), "Point|x 1   y 2   z 3"},
        {M::distance({1, 2, 3}, {4, -2, 15}, "in"), "Distance|13 in|Δx 3   Δy -4   Δz 12"},
        {M::distance(o, {1, 1, 0}, ""), "Distance|1.41421|Δx 1   Δy 1   Δz 0"},
        {angle({1, 0, 0}, {o, {0, 0, 9}}), "Angle of faces|90°"},
        {angle({1, 1, 1}, {o, {1, -1, -1}}), "Angle of faces|70.5288°"},
        {angle({0, 2, 0}, {{5, -4, 6}, {0, -1, 0}}), "Angle of faces|0°|parallel, 4 m apart"},
        {angle({0, 2, 0}, {o, {.01, -1, 0}}), "Angle of faces|0.572939°"},
        {angle({0, 2, 0}, {o, {.01, 1, 0}}), "Angle of faces|179.427°"},
        {angle({0, 2, 0}, {{5, 3, 6}, {0, 3, 0}}), "Angle of faces|180°|parallel, 3 m apart"},
        {M::pointAngle({2, 0, 0}, {1, 0, 0}, {0, 0, 1}), "Angle of points|135°"},
        {M::radius({{1, 2, 3}, {0, 0, 1}, 0.125}, "cm"),
         "Radius|R 0.125 cm|⌀ 0.25 cm|x 1   y 2   z 3"},
        {M::radius({{9e-8, 0.4, -2e-7}, {0, 0, 1}, 0.6}, ""),
         "Radius|R 0.6|⌀ 1.2|x 0   y 0.4   z -2e-07"},
        {surface(Bounds::Volume, "m"), "Area and volume|all|area 6.25 m²|volume 1.5 m³"},
        {surface(Bounds::Open, ""), "Area and volume|all|area 6.25|no volume: it is not closed"},
        {surface(Bounds::Disagree, "m"),
         "Area and volume|all|area 6.25 m²|no volume: some faces look inwards"}};
    EXPECT_EQ(rows[11].first.line.size(), 73u);
    const std::tuple<int, Vec, std::vector<Vec>> places[] = {
        {1, {1, 2, 3}, {{1, 2, 3}}},  {2, {2.5, 0, 9}, {{1, 2, 3}, {4, -2, 15}}},
        {13, {1, 2, 3}, {}},          {6, {2.5, -2, 3}, {o, {5, -4, 6}}},
        {11, {1, 2, 3}, {{1, 2, 3}}}, {10, {1, 0, 0}, {{2, 0, 0}, {1, 0, 0}, {0, 0, 1}}}};
    for (const auto &[i, anchor, marks] : places) {
        const M &m = rows[i].first;
        EXPECT_TRUE(m.anchor == anchor && m.marks == marks &&
                    (i > 10 || i == 1 || m.line == marks));
    }
    for (const Vec &p : rows[11].first.line)
        EXPECT_NEAR((p - Vec(1, 2, 3)).norm(), .125, 1e-12);
    for (const auto &[measurement, text] : rows)
        EXPECT_EQ(measurement.text().replace('\t', '|').toStdString(), text);
}

/// A box seen from above, along -z: its top reaches from (0, 0) to (4, 2), 100 pixels a unit.
const Shape shape = box({0, 0, 0}, {4, 2, 1});

struct SnapCase {
    const char *name;
    QPointF pointer;
    const char *kind; // of vertex, edge, face; empty: nothing
    Vec at;
    SnapTo to = SnapTo::All;
    bool known = true;  // the topology
    double hidden = -1; // places left of this x are not seen
};

const SnapCase snapCases[] = {
    {"Corner", {3, 4}, "vertex", {0, 0, 1}},
    {"CornerFromOutside", {406, 207}, "vertex", {4, 2, 1}},
    {"CornerAtTheReach", {6, 8}, "vertex", {0, 0, 1}},
    {"CornerOutOfReach", {8, 7}, "edge", {0.08, 0, 1}},
    {"Edge", {150, 6}, "edge", {1.5, 0, 1}},
    {"EdgeFromOutside", {150, -6}, "edge", {1.5, 0, 1}},
    {"NotTheDiagonal", {200, 100}, "face", {2, 1, 1}},
    {"DiagonalIfUnknown", {200, 101}, "edge", {2.004, 1.002, 1}, SnapTo::All, false},
    {"Face", {50, 150}, "face", {0.5, 1.5, 1}},
    {"Outside", {150, -60}, "", {0, 0, 0}},
    {"EdgesAlone", {3, 4}, "edge", {0, 0.04, 1}, SnapTo::Edges},
    {"BeyondAnEdgesEnd", {406, 207}, "edge", {4, 2, 1}, SnapTo::Edges},
    {"BeforeAnEdge", {-3, -4}, "edge", {0, 0, 1}, SnapTo::Edges},
    {"FacesAlone", {3, 4}, "face", {0.03, 0.04, 1}, SnapTo::Faces},
    {"HiddenCorner", {3, 4}, "edge", {0.03, 0, 1}, SnapTo::All, true, 0.02},
};

TABLE(Snaps, testing::Test, SnapCase, snapCases);

TEST_P(Snaps, ToTheNearest)
{
    const SnapCase &row = GetParam();
    const MeshTopology topology = shape.topology();
    const auto sight = [](const Vec &p) { return Seen{QPointF(p[0], p[1]) * 100, 1}; };
    const auto shown = [&](const Vec &v) { return v[0] > row.hidden; };
    std::optional<SurfacePoint> under;
    const QPointF p = row.pointer / 100;
    if (QRectF(0, 0, 4, 2).contains(p))
        under = SurfacePoint{10, {p.x(), p.y(), 1}};
    const SnapWish wish{shape.mesh, row.known ? &topology : nullptr, row.to, 10};
    const auto snap = snapTo(wish, {10, 11}, under, row.pointer, sight, shown);
    const char *kinds[] = {"vertex", "edge", "face"};
    EXPECT_STREQ(snap ? kinds[int(snap->kind)] : "", row.kind);
    EXPECT_LT((snap.value_or(Snap()).at - row.at).norm(), 1e-6);
}

TEST(SnapTest, PerspectiveIsTakenOutOfEdges)
{
    // An edge that runs away from the eye at depth 1 to depth 3: its middle is seen at a third of
    // its other end's place.
    Shape slope;
    slope.triangle({1, 0, 0}, {1, 0, 2}, {9, 9, 0});
    slope.triangle({1, 0, 2}, {1, 0, 0}, {-6.89, -9.1, 0}); // bent by 0.7 degrees
    const MeshTopology topology = slope.topology();
    const auto sight = [](const Vec &p) {
        return Seen{QPointF(p[0], p[1]) * 300 / (1 + p[2]), 1 + p[2]};
    };
    const auto snap = snapTo({slope.mesh, &topology, SnapTo::All, 5}, {0}, {}, {150, -2}, sight,
                             [](const Vec &) { return true; });
    ASSERT_TRUE(snap);
    EXPECT_LT((snap->at - Vec(1, 0, 1)).norm(), 1e-9) << snap->at.transpose();
}

TEST(LabelLayoutTest, LabelsStayInsideAndApart)
{
    const QRectF bounds(0, 0, 300, 200);
    std::vector<LabelWish> wishes{{{100, 100}, {60, 20}}, {{290, 10}, {60, 20}}};
    EXPECT_EQ(layLabels(wishes, bounds, 4),
              (std::vector<QRectF>{{108, 72, 60, 20}, {240, 0, 60, 20}}));
    const LabelWish same = wishes[0]; // beside it, below it, and below on the other side
    const auto four = layLabels({same, same, same, same}, bounds, 4);
    EXPECT_TRUE(four[1] == QRectF(44, 72, 60, 20) && four[2] == QRectF(108, 96, 60, 20) &&
                four[3] == QRectF(44, 120, 60, 20));
    wishes.assign(32, {{0, 200}, {60, 20}}); // no more fit in
    const auto places = layLabels(wishes, bounds, 4);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(bounds.contains(places[i])) << i;
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_FALSE(places[i].intersects(places[k])) << i << " on " << k;
    }
}

TEST(CommonFrameTest, WhatHasTheSameCoordinatesLiesInTheSamePlace)
{
    struct Row {
        const char *name;
        FileAxes axes;
        std::array<double, 3> origin;
        QString unit;
        Vec at; // in its file, of what lies at 1, 2, 3 in the file of the other
    };
    std::vector<Row> rows{
        {"Same", FileAxes::standing(FileAxes::Z), {{10, 20, 30}}, "mm", {1, 2, 3}},
        {"YUp", FileAxes(), {{10, 20, 30}}, "mm", {1, 2, 3}},
        {"Mirrored", {{{1, 2, -3}}}, {{10, 20, 30}}, "", {1, 2, 3}},
        {"Origin", FileAxes::standing(FileAxes::X), {{7, -5, 64}}, "mm", {1, 2, 3}},
        {"UnitUnknown", FileAxes(), {{0, 0, 0}}, "el", {1, 2, 3}}};
    for (const auto &[unit, size] :
         {std::pair("in", 25.4), {"cm", 10}, {"m", 1e3}, {"km", 1e6}, {"ft", 304.8}, {"yd", 914.4}})
        rows.push_back({unit, FileAxes(), {{0, 0, 0}}, unit, Vec(1, 2, 3) / size});
    Mesh other;
    other.axes = FileAxes::standing(FileAxes::Z);
    other.origin = {{10, 20, 30}};
    other.unit = "mm";
    const Vec wanted = placeInMesh(other, {1, 2, 3});
    for (const auto &row : rows) {
        Mesh mesh = cube().mesh;
        mesh.axes = row.axes;
        mesh.origin = row.origin;
        mesh.unit = row.unit;
        const Vec corner = placeInMesh(mesh, row.at);
        for (int k = 0; k < 3; ++k)
            mesh.positions[std::size_t(k)] = float(corner[k]);
        const Vec normal = toFile(mesh.axes, {0, 0, 1});
        const auto given = std::make_shared<Mesh>(mesh);
        const MeshPtr moved = inFrameOf(other, given);
        EXPECT_LT((vertexOf(*moved, 0) - wanted).norm(), 1e-5) << row.name;
        const Vec turned(moved->normals[0], moved->normals[1], moved->normals[2]);
        EXPECT_LT((toFile(moved->axes, turned) - normal).norm(), 1e-6) << row.name;
        EXPECT_GT(
            toFile(moved->axes, normalOf(*moved, 5)).dot(toFile(mesh.axes, normalOf(mesh, 5))), 0);
        EXPECT_TRUE((moved == given) == (QString(row.name) == "Same") &&
                    moved->axes.of == other.axes.of);
        EXPECT_TRUE(moved == given || (moved->origin == other.origin && moved->max != mesh.max));
        EXPECT_EQ(moved->unit, row.unit == "el" || row.unit.isEmpty() ? row.unit : "mm");
    }
    Mesh large = cube().mesh;
    large.unit = "km";
    large.max.setX(2e9f);
    const MeshPtr given = std::make_shared<Mesh>(large);
    EXPECT_EQ(inFrameOf(other, given)->unit, "km") << "2e15 of its millimetres are too many";
}

TEST(RefinedMeshTest, HalvesTheSidesThatAreTooLong)
{
    const std::tuple<double, quint32, std::string> rows[] = {
        {5, 0, "012"},       {4.5, 1, "032312"},    {4.5, 2, "032312"},    {4, 0, "032312"},
        {3, 0, "314034042"}, {3.7, 1, "314034042"}, {3.7, 2, "314034042"}, {2.6, 0, "314035542345"},
    };
    for (const auto &[longest, turn, indices] : rows) {
        Mesh mesh;
        mesh.positions = {3, 0, 0, 0, 4, 0, 0, 0, 0};
        mesh.normals = {1, 0, 0, 0, 1, 0, 0, 0, 1};
        mesh.indices = {turn, (turn + 1) % 3, (turn + 2) % 3};
        mesh.parts = {{"a", {}, {}, 0, 3}};
        const Mesh fine = refinedMesh(mesh, longest, longest == 3 ? 2 : 99, goOn);
        std::string made;
        for (const quint32 index : fine.indices)
            made += char('0' + index);
        EXPECT_EQ(made, indices) << longest << ' ' << turn;
        if (longest < 5) {
            EXPECT_EQ(vertexOf(fine, 3), Vec(1.5, 2, 0));
            EXPECT_FLOAT_EQ(fine.normals[9] + fine.normals[10], std::sqrt(2.0f));
        }
    }
}

TEST(RefinedMeshTest, HasTheSameSurfaceInSmallTriangles)
{
    Mesh mesh = box({0, 0, 0}, {4, 2, 1}).split(5).mesh;
    mesh.positions.insert(mesh.positions.end(), {7, 0, 0, 8, 0, 0, 9, 1, 2});
    mesh.indices.insert(mesh.indices.end(), {0, 37});
    mesh.parts.push_back({"line", {}, {}, 36, 2, MeshPart::Kind::Lines});
    mesh.parts.push_back({"point", {}, {}, 38, 0, MeshPart::Kind::Points, 38, 1});
    const auto fine = std::make_shared<Mesh>(refinedMesh(mesh, 0.3, 1000000, goOn));
    EXPECT_GT(fine->triangleCount(), 10 * mesh.triangleCount());
    const MeshTopology topology(fine, goOn);
    const SurfaceMeasures all = measureSurface(topology, {}, goOn);
    EXPECT_EQ(int(all.bounds), int(Bounds::Volume));
    EXPECT_NEAR(all.volume, 8, 1e-9);
    EXPECT_NEAR(measureSurface(topology, {true}, goOn).area, 2 + 2 + 2, 1e-9);
    EXPECT_EQ(fine->normals.size(), fine->firstPoint() * 3 - 6) << "two are the line's";
    const quint32 *line = &fine->indices[fine->parts[2].firstIndex];
    EXPECT_TRUE(vertexOf(*fine, line[0]) == vertexOf(mesh, 0) &&
                vertexOf(*fine, line[1]) == Vec(8, 0, 0) && fine->max == QVector3D(9, 2, 2));
    EXPECT_EQ(vertexOf(*fine, fine->parts[3].firstVertex), Vec(9, 1, 2));
}

} // namespace
} // namespace host
