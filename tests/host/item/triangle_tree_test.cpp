// SPDX-License-Identifier: MIT
#include "host/item/triangle_tree.h"

#include "tests/GL/table.h"

namespace host {
namespace {

/// Unit squares that face along Z, with their lower corners at the given points; each is two
/// triangles.
MeshPtr squaresAt(const std::vector<QVector3D> &corners)
{
    auto mesh = std::make_shared<Mesh>();
    for (const QVector3D &at : corners) {
        const quint32 base = quint32(mesh->vertexCount());
        for (const auto &[x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            mesh->positions.insert(mesh->positions.end(),
                                   {at.x() + float(x), at.y() + float(y), at.z()});
        for (quint32 corner : {0u, 1u, 2u, 0u, 2u, 3u})
            mesh->indices.push_back(base + corner);
    }
    return mesh;
}

const std::atomic<bool> goOn{false};

struct RayCase {
    const char *name;
    QVector3D origin;
    QVector3D direction;
    int square; // of those at depths 0 to 19; -1 for a miss
};

const RayCase rayCases[] = {
    {"FromTheFrontMeetsTheHighest", {0.3f, 0.6f, 50}, {0, 0, -1}, 19},
    {"FromBehindMeetsTheLowest", {0.3f, 0.6f, -50}, {0, 0, 1}, 0},
    {"FromBetweenMeetsTheNextOne", {0.7f, 0.2f, 7.5f}, {0, 0, -1}, 7},
    {"WhatLiesBehindTheOriginIsNotMet", {0.7f, 0.2f, -0.5f}, {0, 0, -1}, -1},
    {"Beside", {1.01f, 0.5f, 50}, {0, 0, -1}, -1},
    {"AlongTheSquares", {-1, 0.5f, 3.5f}, {1, 0, 0}, -1},
    {"Aslant", {-4.6f, -1.5f, 29}, {5, 2, -10}, 19},
    {"OnTheirCommonEdge", {0.5f, 0.5f, 50}, {0, 0, -1}, 19},
};

TABLE(TriangleTreeRay, testing::Test, RayCase, rayCases);

TEST_P(TriangleTreeRay, MeetsTheFirstTriangle)
{
    std::vector<QVector3D> corners(20);
    for (int i = 0; i < 20; ++i)
        corners[std::size_t(i * 7 % 20)].setZ(float(i * 7 % 20));
    const RayCase &row = GetParam();
    const auto hit =
        TriangleTree(squaresAt(corners), goOn).nearest({row.origin, row.direction.normalized()});
    ASSERT_EQ(hit.has_value(), row.square >= 0);
    if (hit) {
        EXPECT_EQ(int(hit->triangle / 2), row.square);
        const float along = (float(row.square) - row.origin.z()) / row.direction.z();
        EXPECT_NEAR(hit->distance, along * row.direction.length(), 1e-4);
    }
}

TEST(TriangleTreeTest, FindsEachOfMany)
{
    std::vector<QVector3D> corners;
    for (int i = 0; i < 343; ++i)
        corners.push_back(QVector3D(float(i % 7), float(i / 7 % 7), float(i / 49)) * 3);
    const TriangleTree tree(squaresAt(corners), goOn);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const QVector3D above = corners[i] + QVector3D(0.5f, 0.3f, 0.7f);
        const auto hit = tree.nearest({above, QVector3D(0.2f, 0.1f, -1).normalized()});
        EXPECT_TRUE(hit && hit->triangle == 2 * i) << i;
        const auto refuse = [&](const TriangleHit &each) { return each.triangle != 2 * i; };
        const auto next = tree.nearest({above, {0, 0, -1}}, refuse); // the square below
        ASSERT_EQ(next.has_value(), i >= 49) << i;
        if (next) {
            EXPECT_EQ(next->triangle, 2 * (i - 49));
        }
    }
}

TEST(TriangleTreeTest, CancelledItFindsNothing)
{
    const std::atomic<bool> stop{true};
    EXPECT_FALSE(TriangleTree(squaresAt({{0, 0, 0}}), stop).nearest({{0.5f, 0.5f, 1}, {0, 0, -1}}));
}

} // namespace
} // namespace host
