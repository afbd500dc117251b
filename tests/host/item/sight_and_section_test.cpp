// SPDX-License-Identifier: MIT
// What of triangles, lines and points a line of sight finds, and which is nearest; what planes
// leave of a mesh, and the faces that they cut: their size is known from geometry.
#include <cmath>
#include <random>
#include <set>

#include <QThreadPool>

#include <Eigen/Geometry>

#include "host/item/model_section.h"
#include "host/item/section.h"
#include "host/item/thin_tree.h"
#include "host/item/triangle_tree.h"
#include "tests/host/shapes.h"
#include "tests/support/table.h"

namespace host {
namespace {

/// Unit squares that face along Z, of two triangles, with their lower corners at these points.
MeshPtr squaresAt(const std::vector<QVector3D> &corners)
{
    Shape shape;
    for (const QVector3D &at : corners) {
        const Vec p(at.x(), at.y(), at.z());
        shape.quad(p, p + Vec(1, 0, 0), p + Vec(1, 1, 0), p + Vec(0, 1, 0));
    }
    return std::make_shared<Mesh>(shape.mesh);
}

const std::atomic<bool> goOn{false}, stop{true};
const Vec o(0, 0, 0);

TEST(TriangleTreeTest, MeetsTheFirstOfMany)
{
    std::vector<QVector3D> corners;
    for (int i = 0; i < 343; ++i)
        corners.push_back(QVector3D(float(i % 7), float(i / 7 % 7), float(i / 49)) * 3);
    const TriangleTree tree(squaresAt(corners), goOn), none(squaresAt(corners), stop);
    const QVector3D up(0, 0, 1), aslant(0.2f, 0.1f, -1);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto met = [&](float x, float y, float z, const QVector3D &along, quint32 but = ~0u) {
            const auto hit = tree.nearest({corners[i] + QVector3D(x, y, z), along},
                                          [=](const TriangleHit &h) { return h.triangle != but; });
            return hit ? int(hit->triangle) : -1;
        };
        const int here = int(2 * i), below = i >= 49 ? int(2 * (i - 49)) : -1;
        const QVector3D above = corners[i] + QVector3D(0.5f, 0.3f, 0.7f);
        const auto hit = tree.nearest({above, aslant.normalized()});
        EXPECT_NEAR(hit ? hit->distance : 0, 0.7 * double(aslant.length()), 1e-4) << i;
        EXPECT_EQ(hit ? int(hit->triangle) : -1, here);
        EXPECT_EQ(met(0.5f, 0.3f, -0.7f, up), here) << "from behind";
        EXPECT_EQ(met(0.5f, 0.5f, 0.7f, -up) / 2 * 2, here) << "the common edge of two";
        EXPECT_EQ(met(0.5f, 0.3f, 0.7f, -up, quint32(here)), below) << "the other is refused";
        EXPECT_EQ(met(0.5f, 0.3f, -0.1f, -up), below) << "behind the origin";
        EXPECT_EQ(met(1.01f, 0.5f, 0.7f, -up), -1) << "beside";
        EXPECT_EQ(met(-1, 0.5f, 0.5f, {1, 0, 0}), -1) << "along";
        EXPECT_FALSE(none.nearest({above, -up})) << "cancelled";
    }
}

TEST(TriangleTreeTest, FindsTheNearestPointAsTryingAllOfThemDoes)
{
    Shape shape;
    std::mt19937 random(7);
    const auto place = [&](double size) {
        std::uniform_real_distribution<double> to(-size, size);
        return Vec(to(random), to(random), to(random));
    };
    for (int i = 0; i < 60; ++i) {
        const Vec at = place(9);
        shape.triangle(at, at + place(2), at + place(2));
    }
    const auto mesh = std::make_shared<Mesh>(shape.mesh);
    const TriangleTree tree(mesh, goOn);
    std::set<int> places;
    for (int i = 0; i < 150; ++i) {
        const Vec p = place(12);
        double least = 1e9;
        for (quint32 t = 0; t < 60; ++t) {
            const Vec corners[] = {cornerOf(*mesh, t, 0), cornerOf(*mesh, t, 1),
                                   cornerOf(*mesh, t, 2)};
            const auto [at, where] = nearestOnTriangle(p, corners[0], corners[1], corners[2]);
            least = std::min(least, (at - p).norm());
            // A point of a convex shape is the nearest if none of it lies farther towards p.
            for (const Vec &corner : corners)
                EXPECT_LT((corner - at).dot(p - at), 1e-9);
            const Vec &from = corners[where % 3], &to = corners[(where + 1) % 3];
            const double way = (to - from).norm(), left = (at - from).norm() + (to - at).norm();
            EXPECT_TRUE(where >= NearestOnTriangle::Edge0 || at == from);
            EXPECT_TRUE(where == NearestOnTriangle::Inside || where < NearestOnTriangle::Edge0 ||
                        std::abs(left - way) < 1e-9);
            const Vec normal = normalOf(*mesh, t);
            double area = 0;
            for (int k = 0; k < 3; ++k)
                area += (corners[k] - at).cross(corners[(k + 1) % 3] - at).norm();
            EXPECT_NEAR(area, normal.norm(), 1e-7);
            places.insert(where);
        }
        const auto found = tree.nearestTo(p, least * 1.0001);
        ASSERT_TRUE(found);
        EXPECT_DOUBLE_EQ(found->distance, least);
        EXPECT_DOUBLE_EQ((found->nearest.at - p).norm(), least);
        EXPECT_FALSE(tree.nearestTo(p, least * 0.999));
    }
    EXPECT_EQ(places.size(), 7u);
    EXPECT_FALSE(TriangleTree(mesh, stop).nearestTo(o));
    const Vec flat[][4] = {{o, {4, 0, 0}, {1, 0, 0}, {2, 0, 0}},
                           {{2, 0, 0}, o, {4, 0, 0}, {2, 0, 0}},
                           {o, o, {2, 0, 0}, {2, 0, 0}},
                           {{2, 0, 0}, {2, 0, 0}, {2, 0, 0}, {2, 0, 0}}};
    for (const auto &[a, b, c, nearest] : flat)
        EXPECT_LT((nearestOnTriangle({2, 3, 1}, a, b, c).at - nearest).norm(), 1e-12);
}

using Kind = MeshPart::Kind;

/// A triangle, far off; a line along x at y = 20 and one along y at x = 50, which lies at z = 3;
/// points on a grid from 0 to 99 both ways at z = 0; and a point above one of these.
std::shared_ptr<Mesh> scan()
{
    auto mesh = std::make_shared<Mesh>();
    auto &p = mesh->positions;
    p = {900, 0, 0, 901, 0, 0, 900, 1, 0, 0, 20.5f, 3, 99, 20.5f, 3, 50.5f, 0, 3, 50.5f, 99, 3};
    for (int i = 0; i < 10000; ++i)
        p.insert(p.end(), {float(i * 77 % 10000 / 100), float(i * 77 % 100), 0});
    p.insert(p.end(), {70, 70, 9});
    mesh->normals = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    mesh->indices = {0, 1, 2, 3, 4, 5, 6};
    mesh->parts = {{"t", {}, {}, 0, 3},
                   {"x", {}, {}, 3, 2, Kind::Lines},
                   {"y", {}, {}, 5, 2, Kind::Lines},
                   {"grid", {}, {}, 7, 0, Kind::Points, 7, 10000},
                   {"top", {}, {}, 7, 0, Kind::Points, 10007, 1}};
    mesh->findBounds();
    return mesh;
}

struct AimCase {
    const char *name;
    Ray ray;
    double radius, slope;
    int part; // -1 for a miss
    QVector3D at;
    std::size_t refused = 9;
};

const QVector3D down(0, 0, -1);

const AimCase aimCases[] = {
    {"APoint", {{30.1f, 40.2f, 50}, down}, 0.3, 0, 3, {30, 40, 0}},
    {"Between", {{30.5f, 40.5f, 50}, down}, 0.6, 0, -1, {}},
    {"FromBehind", {{30.1f, 40.2f, -5}, -down}, 0.3, 0, 3, {30, 40, 0}},
    {"BehindTheOrigin", {{30, 40, -1}, down}, 0.3, 0, -1, {}},
    {"RoomThatGrows", {{30.2f, 40, 50}, down}, 0, 0.0041, 3, {30, 40, 0}},
    {"RoomThatGrowsTooLittle", {{30.2f, 40, 50}, down}, 0, 0.0039, -1, {}},
    {"TheNearerOne", {{70.3f, 70, 50}, down}, 0.9, 0, 4, {70, 70, 9}},
    {"ButTheOneUnderTheRay", {{71, 70, 50}, down}, 1.1, 0, 4, {70, 70, 9}},
    {"TheNextIfThatIsRefused", {{70.3f, 70, 50}, down}, 0.9, 0, 3, {70, 70, 0}, 4},
    {"ALine", {{33.3f, 20.6f, 50}, down}, 0.3, 0, 1, {33.3f, 20.5f, 3}},
    {"TheOtherLine", {{50.4f, 77.7f, 50}, down}, 0.3, 0, 2, {50.5f, 77.7f, 3}},
    {"ALinesEnd", {{-0.1f, 20.5f, 50}, down}, 0.2, 0, 1, {0, 20.5f, 3}},
    {"BeyondALinesEnd", {{-0.3f, 20.5f, 50}, down}, 0.2, 0, -1, {}},
    {"AlongALine", {{-5, 20.6f, 3}, {1, 0, 0}}, 0.2, 0, 1, {0, 20.5f, 3}},
};

TABLE(ThinTreeAim, testing::Test, AimCase, aimCases);

TEST_P(ThinTreeAim, FindsWhatOneMeans)
{
    const auto &[name, ray, radius, slope, part, at, refused] = GetParam();
    const auto accept = [no = refused](const ThinHit &h) { return h.part != no; };
    const ThinTree tree(scan(), goOn);
    EXPECT_GT(tree.byteSize(), 10003 * sizeof(quint32));
    const auto hit = tree.nearest({ray, radius, slope}, accept);
    ASSERT_EQ(hit ? int(hit->part) : -1, part);
    if (hit) {
        const float far = QVector3D::dotProduct(at - ray.origin, ray.direction);
        EXPECT_LT((hit->at - at).length(), 1e-3f);
        EXPECT_NEAR(hit->distance, double(far), 1e-3);
    }
    EXPECT_FALSE(ThinTree(scan(), stop).nearest({{at, -down}, 9, 9}, accept));
}

const QVector3D unit(1, 1, 1);
const Shape cube = box({0, 0, 0}, {1, 1, 1}), block = box({-1, -1, -1}, {3, 3, 3});
const Shape open = Shape(cube).drop(0).drop(0);
const double third = 1 / std::sqrt(3.0);
const QVector3D aslant = unit * float(third);

struct CapCase {
    const char *name;
    Shape shape;
    CutPlane plane;
    std::vector<double> areas;   // the largest first
    std::vector<quint32> inside; // parts of the faces that hold the plane's middle, (.5, .5, .5)
    float shift = 0;             // of all, along each axis
};

const CutPlane middle{{0, 0, 1}, .5};

const CapCase capCases[] = {
    {"Cube", cube, middle, {1}, {0}},
    {"FromTheOtherSide", cube, {{0, -1, 0}, -.5}, {1}, {0}},
    {"Inclined", cube, {aslant, 1.5 * third}, {1.29904}, {0}},
    {"Beside", cube, {{0, 0, 1}, 1.5}, {}, {}},
    {"CornersInThePlaneAreKept", cube, {{0, 0, 1}, 1}, {}, {}},
    {"AFaceInThePlane", cube, {{0, 0, 1}, 0}, {1}, {}},
    {"InsideOut", Shape(cube).flip(), middle, {1}, {0}},
    {"AFaceTurned", Shape(cube).flip(2, 2), middle, {1}, {0}},
    {"Open", open, middle, {}, {}},
    {"OpenBeside", box({5, 0, 0}, {6, 1, 1}).drop(0).drop(0).endPart() + cube, middle, {1}, {1}},
    {"Cavity", block + Shape(cube).flip(), middle, {15}, {}},
    {"TwoInOnePart", block + cube, middle, {16}, {0}},
    {"Nested", Shape(cube).endPart() + block, middle, {16, 1}, {1, 0}},
    {"ApartInOnePart", cube + box({2, 0, 0}, {3, 2, 1}), middle, {3}, {0}},
    {"AcrossParts", Shape(cube).split(6), middle, {1}, {0}},
    {"FarFromTheOrigin", cube, {{0, 0, 1}, 1e5 + .5}, {1}, {0}, 1e5f},
    {"FartherNearAnEnd", box({0, 0, .0625}, {1, 1, 1}), {{0, 0, 1}, 1e6 + .99}, {1}, {}, 1e6f},
};

TABLE(SectionCap, testing::Test, CapCase, capCases);

TEST_P(SectionCap, HasTheAreaAndThePartOfTheSolid)
{
    const CapCase &row = GetParam();
    Mesh mesh = row.shape.mesh;
    for (float &v : mesh.positions)
        v += row.shift;
    const Solids solids(mesh, std::atomic<bool>(false));
    const QVector3D centre = QVector3D(.25f, .25f, .25f) + unit * row.shift;
    const PlaneGrid grid(row.plane, centre, 2);
    const PlanePoint at = grid.onPlane(unit * (row.shift + .5f));
    std::vector<double> areas;
    std::vector<quint32> inside;
    for (const CapShape &shape : capShapes(mesh, solids, row.plane, grid)) {
        areas.push_back(std::round(shape.area / 4 * 1e5) / 1e5);
        if (shape.holds(at))
            inside.push_back(solids.all()[shape.solid].parts.front());
        EXPECT_FALSE(shape.holds(grid.onPlane({9, -.3f, -.3f})));
    }
    EXPECT_EQ(areas, row.areas);
    if (row.plane.beyond(unit * (row.shift + .5f)) != 0)
        return;
    EXPECT_EQ(inside, row.inside);
    EXPECT_LT((grid.inWorld(at) - unit / 2).length(), 1e-6f) << "twice as far from the centre";
}

TEST(SolidsTest, TakeColoursAndPartsOfTheirTriangles)
{
    Mesh mesh = (Shape(cube).split(4).endPart() + box({2, 0, 0}, {3, 1, 1})).mesh;
    mesh.parts[1].colour = {1, 0, 0, .5f};
    const Solids solids(mesh, goOn);
    ASSERT_EQ(solids.all().size(), 2u);
    EXPECT_EQ(solids.all()[0].parts, (std::vector<quint32>{1, 0})) << "most triangles first";
    EXPECT_EQ(solids.all()[0].colour, mesh.parts[1].colour);
    EXPECT_EQ(solids.all()[1].max * 9 + solids.all()[1].min, QVector3D(29, 9, 9));
    mesh.colours.assign(mesh.vertexCount() * 4, 51);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.2f);
    const Texture texture{1, 2, {102, 255, 0, 255, 9, 9, 9, 255}}; // the lower row is seen
    mesh.textures = {std::make_shared<Texture>(texture)};
    mesh.parts[1].cover.texture = 0;
    mesh.uvs.assign(mesh.vertexCount() * 2, -.6f);
    EXPECT_FLOAT_EQ(Solids(mesh, goOn).all()[0].colour[0], 0.08f);
    EXPECT_TRUE(Solids(mesh, stop).all().empty());
}

TEST(SectionTest, KeepsWhatNoPlaneCutsAwayInAnyAxes)
{
    Section section{{{{0, 0, 1}, 2}, {{-1, 0, 0}, 0}}};
    EXPECT_TRUE(section.keeps({0, 9, 2}) && section.keeps({-1, 9, 2}, 1));
    EXPECT_FALSE(section.keeps({0, 9, 2.1f}) || section.keeps({-1, 9, 2}));
    const CutPlane flipped = section.planes[0].flipped();
    EXPECT_TRUE(flipped.beyond({0, 0, 5}) == -3 && flipped.place() == 2 && flipped.axis() == 2 &&
                (CutPlane{aslant, 4}).axis() == -1);
    section.on = false;
    EXPECT_TRUE(section.keeps({-1, 9, 9}) && !section.isCutting());
}

TEST(ModelSectionTest, IsThatOfTheMeshThatItHas)
{
    ModelSection section;
    for (const float half : {2.0f, 1.0f}) { // the second one ends beside the ray
        Mesh mesh = box(Vec::Constant(double(-half)), Vec::Constant(double(half))).mesh;
        mesh.findBounds();
        mesh.origin = {{5, 6, 7}};
        section.setMesh(std::make_shared<Mesh>(mesh), {0, 0, 0}, .5f);
        section.set({{{{0, 0, 1}, .5}, {{0, 0, -1}, .5}, {{1, 0, 0}, 1.9}, {{0, 1, 0}, 9}}});
        QThreadPool::globalInstance()->waitForDone();
        EXPECT_TRUE(section.planes().size() == 3 && section.keeps({1.8f, 0, .4f}));
        EXPECT_FALSE(section.keeps({1.8f, 0, .6f}));
        const auto hit = section.hit({{.7f, .6f, 3}, {0, 0, -1}}, PartMarks(1));
        EXPECT_EQ(hit ? hit->distance : 0, half > 1 ? 2.75 : 0);
        EXPECT_FALSE(section.hit({{.97f, .6f, 3}, {0, 0, -1}}, PartMarks(1))) << "cut away";
        const SectionFrame frame = section.frames().at(0);
        EXPECT_TRUE(frame.least == double(-half) && frame.most == double(half));
        EXPECT_TRUE(frame.origin == 7 && frame.scale == .5 && frame.normal == QVector3D(0, 0, 1));
        const float e = .56f * half; // with air
        const QVector3D corners[] = {{-e, -e, .25f}, {e, -e, .25f}, {e, e, .25f}, {-e, e, .25f}};
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LT((frame.corners[i] - corners[i]).length(), 1e-6f);
    }
    section.set({section.get().planes, false});
    EXPECT_TRUE(section.planes().empty() && section.frames().empty() && !section.isCutting());
}

TEST(SectionTest, IsAskedForByText)
{
    const std::pair<const char *, CutPlane> read[] = {{"x", {{1, 0, 0}, .5}},
                                                      {"y:30%", {{0, 1, 0}, 13}},
                                                      {"Z:-2.5", {{0, 0, 1}, -2.5}},
                                                      {"-y:12", {{0, -1, 0}, -12}}};
    for (const auto &[text, expected] : read) {
        const std::optional<SectionRequest> request = parseSection(text);
        ASSERT_TRUE(request) << text;
        const CutPlane plane = request->plane({0, 10, -4}, {1, 20, 4});
        EXPECT_EQ(plane.normal, expected.normal) << text;
        EXPECT_DOUBLE_EQ(plane.offset, expected.offset) << text;
    }
    for (const char *text : {"w", "x:much", "x:", "x:101%", "x:-1%", "x:inf", "x:nan", "x:5%%"})
        EXPECT_FALSE(parseSection(text)) << text;
}

TEST(SectionTest, AFacesPlaneLiesJustBelowIt)
{
    Mesh mesh = box({0, 0, 0}, {1, 2, 2}).mesh;
    mesh.findBounds();
    mesh.axes = {{{1, 3, -2}}};
    const auto top = planeThrough(mesh, 6, {0.1f, -1, 0}); // of the face at +y, the file's +z
    ASSERT_TRUE(top);
    EXPECT_EQ(top->normal, QVector3D(0, 0, 1));
    EXPECT_NEAR(top->offset, 2 - 3e-4, 1e-7);
    EXPECT_EQ(planeThrough(mesh, 6, {0.1f, 1, 0})->normal, QVector3D(0, 0, -1)) << "from below";
    mesh.indices[1] = mesh.indices[0];
    EXPECT_FALSE(planeThrough(mesh, 0, {1, 0, 0}));
}

} // namespace
} // namespace host
