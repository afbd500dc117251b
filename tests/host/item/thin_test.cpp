// SPDX-License-Identifier: MIT
// Lines and points: what the pointer finds of them, how wide and how many are drawn.
#include "host/item/mesh_points.h"
#include "host/item/point_budget.h"
#include "host/item/thin_tree.h"
#include "host/ui/metrics.h"
#include "tests/GL/table.h"

namespace host {
namespace {

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
    QVector3D origin, direction;
    double radius, slope;
    int part; // -1 for a miss
    QVector3D at;
    std::size_t refused = 0;
};

const AimCase aimCases[] = {
    {"APoint", {30.1f, 40.2f, 50}, {0, 0, -1}, 0.3, 0, 3, {30, 40, 0}},
    {"TheCloserOne", {30.6f, 40.2f, 50}, {0, 0, -1}, 0.9, 0, 3, {31, 40, 0}},
    {"Between", {30.5f, 40.5f, 50}, {0, 0, -1}, 0.6, 0, -1, {}},
    {"FromBehind", {30.1f, 40.2f, -5}, {0, 0, 1}, 0.3, 0, 3, {30, 40, 0}},
    {"BehindTheOrigin", {30, 40, -1}, {0, 0, -1}, 0.3, 0, -1, {}},
    {"RoomThatGrows", {30.2f, 40, 50}, {0, 0, -1}, 0, 0.0041, 3, {30, 40, 0}},
    {"RoomThatGrowsTooLittle", {30.2f, 40, 50}, {0, 0, -1}, 0, 0.0039, -1, {}},
    {"TheNearerOne", {70.3f, 70, 50}, {0, 0, -1}, 0.9, 0, 4, {70, 70, 9}},
    {"ButTheOneUnderTheRay", {71, 70, 50}, {0, 0, -1}, 1.1, 0, 4, {70, 70, 9}},
    {"TheNextIfThatIsRefused", {70.3f, 70, 50}, {0, 0, -1}, 0.9, 0, 3, {70, 70, 0}, 4},
    {"ALine", {33.3f, 20.6f, 50}, {0, 0, -1}, 0.3, 0, 1, {33.3f, 20.5f, 3}},
    {"TheOtherLine", {50.4f, 77.7f, 50}, {0, 0, -1}, 0.3, 0, 2, {50.5f, 77.7f, 3}},
    {"ALinesEnd", {-0.1f, 20.5f, 50}, {0, 0, -1}, 0.2, 0, 1, {0, 20.5f, 3}},
    {"BeyondALinesEnd", {-0.3f, 20.5f, 50}, {0, 0, -1}, 0.2, 0, -1, {}},
    {"AlongALine", {-5, 20.6f, 3}, {1, 0, 0}, 0.2, 0, 1, {0, 20.5f, 3}},
};

TABLE(ThinTreeAim, testing::Test, AimCase, aimCases);

TEST_P(ThinTreeAim, FindsWhatOneMeans)
{
    const AimCase &row = GetParam();
    std::atomic<bool> cancel{false};
    const ThinTree tree(scan(), cancel);
    EXPECT_GT(tree.byteSize(), 10003 * sizeof(quint32));
    const auto hit =
        tree.nearest({{row.origin, row.direction}, row.radius, row.slope},
                     [&](const ThinHit &h) { return row.refused == 0 || h.part != row.refused; });
    ASSERT_EQ(hit.has_value(), row.part >= 0);
    if (hit) {
        EXPECT_EQ(int(hit->part), row.part);
        EXPECT_LT((hit->at - row.at).length(), 1e-3f);
        EXPECT_NEAR(hit->distance,
                    double(QVector3D::dotProduct(row.at - row.origin, row.direction)), 1e-3);
    }
    cancel = true;
    EXPECT_FALSE(
        ThinTree(scan(), cancel).nearest({{row.at, {0, 0, 1}}, 9, 9}, [](auto &) { return true; }));
}

TEST(PointBudget, IsLessWhileFramesAreSlowAndAllAtRest)
{
    PointBudget budget;
    const struct {
        bool moved;
        double seconds;
        std::size_t most;
    } frames[] = {{true, 9, 1'000'000},  {true, 0.05, 1'000'000}, {true, 0.1, 750'000},
                  {true, 0.01, 937'500}, {false, 9, 2'812'500},   {false, 9, 8'437'500},
                  {true, 9, 937'500},    {true, 0.14, 468'750},   {true, 0.02, 585'935}};
    for (const auto &frame : frames) {
        budget.advance(frame.moved, frame.seconds);
        EXPECT_EQ(budget.most(), frame.most);
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
    Mesh mesh = *scan();
    mesh.min = {0, 0, 0};
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
