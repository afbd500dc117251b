// SPDX-License-Identifier: MIT
#include "host/item/triangle_tree.h"

#include <random>

#include "tests/GL/table.h"

namespace host {
namespace {

/// Unit squares that face along Z, at the given depths; each is two triangles.
MeshPtr squaresAt(const std::vector<float> &depths)
{
    auto mesh = std::make_shared<Mesh>();
    for (float z : depths) {
        const quint32 base = quint32(mesh->vertexCount());
        for (const auto &[x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            mesh->positions.insert(mesh->positions.end(), {float(x), float(y), z});
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
    {"OnTheirCommonEdge", {0.5f, 0.5f, 50}, {0, 0, -1}, 19},
};

TABLE(TriangleTreeRay, testing::Test, RayCase, rayCases);

TEST_P(TriangleTreeRay, MeetsTheFirstTriangle)
{
    std::vector<float> depths(20);
    for (std::size_t i = 0; i < depths.size(); ++i)
        depths[(i * 7) % 20] = float((i * 7) % 20);
    const TriangleTree tree(squaresAt(depths), goOn);
    const auto hit = tree.nearest({GetParam().origin, GetParam().direction});
    ASSERT_EQ(hit.has_value(), GetParam().square >= 0);
    if (hit) {
        EXPECT_EQ(int(hit->triangle / 2), GetParam().square);
        EXPECT_NEAR(hit->distance, std::fabs(GetParam().origin.z() - float(GetParam().square)),
                    1e-5);
    }
}

TEST(TriangleTreeTest, AgreesWithTestingEveryTriangle)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> anywhere(-1, 1);
    const auto point = [&] {
        return QVector3D(anywhere(random), anywhere(random), anywhere(random));
    };
    auto mesh = std::make_shared<Mesh>();
    std::vector<MeshPtr> single;
    for (quint32 i = 0; i < 500; ++i) {
        const QVector3D middle = point();
        auto one = std::make_shared<Mesh>();
        for (quint32 corner = 0; corner < 3; ++corner) {
            const QVector3D p = middle + point() * 0.4f;
            for (Mesh *m : {mesh.get(), one.get()})
                m->positions.insert(m->positions.end(), {p.x(), p.y(), p.z()});
            mesh->indices.push_back(3 * i + corner);
            one->indices.push_back(corner);
        }
        single.push_back(one);
    }
    const TriangleTree tree(mesh, goOn);
    int met = 0;
    for (int i = 0; i < 200; ++i) {
        const Ray ray{point() * 3, (point() * 0.5f - point() * 3).normalized()};
        double nearest = 1e30;
        quint32 which = 0;
        for (quint32 t = 0; t < single.size(); ++t) {
            const auto hit = TriangleTree(single[t], goOn).nearest(ray);
            if (hit && hit->distance < nearest) {
                nearest = hit->distance;
                which = t;
            }
        }
        const auto hit = tree.nearest(ray);
        ASSERT_EQ(hit.has_value(), nearest < 1e30);
        if (hit) {
            ++met;
            EXPECT_EQ(hit->triangle, which);
        }
    }
    EXPECT_GT(met, 20);
}

TEST(TriangleTreeTest, CancelledItFindsNothing)
{
    const std::atomic<bool> stop{true};
    EXPECT_FALSE(TriangleTree(squaresAt({0}), stop).nearest({{0.5f, 0.5f, 1}, {0, 0, -1}}));
}

} // namespace
} // namespace host
