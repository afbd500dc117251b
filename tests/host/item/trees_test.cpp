// SPDX-License-Identifier: MIT
// What of triangles, lines and points a line of sight finds, and which is nearest.
#include <random>
#include <set>

#include <Eigen/Geometry>

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

} // namespace
} // namespace host
