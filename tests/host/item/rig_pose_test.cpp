// SPDX-License-Identifier: MIT
#include "host/item/rig_pose.h"

#include <cmath>

#include <gtest/gtest.h>

namespace host {
namespace {

/// Four points at (1, 2, 3): held by the root, by a node that moves, half by each, and by one that
/// is flat. The node is at (10, 0, 0); its clip shifts it along y, turns it about z and stretches
/// it.
Mesh mesh()
{
    Mesh m;
    for (int i = 0; i < 4; ++i) {
        m.positions.insert(m.positions.end(), {1, 2, 3});
        m.normals.insert(m.normals.end(), {1, 0, 0});
    }
    auto rig = std::make_shared<Rig>();
    rig->nodes.resize(3);
    rig->nodes[1].parent = rig->nodes[2].parent = 0;
    rig->nodes[1].local.translate(10, 0, 0);
    rig->nodes[2].local.scale(0);
    rig->bones = {{0, {}}, {1, {}}, {2, {}}};
    rig->vertexBones = {0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0, 0};
    rig->vertexWeights = {1, 0, 0, 0, 1, 0, 0, 0, 0.5f, 0.5f, 0, 0, 1, 0, 0, 0};
    Rig::Track track;
    track.node = 1;
    track.places = {{1, {10, 0, 0}}, {3, {10, 8, 0}}};
    track.turns = {{1, QQuaternion()}, {3, QQuaternion::fromAxisAndAngle(0, 0, 1, 90)}};
    track.scales = {{1, {1, 1, 1}}, {3, {3, 3, 3}}};
    rig->clips = {{"all", 4, {track}}};
    m.rig = rig;
    return m;
}

struct Row {
    const char *name;
    int clip;
    double seconds;
    std::size_t vertex;
    QVector3D place, normal;
};

TEST(RigPoseTest, VerticesGoWithTheirBones)
{
    const float h = std::sqrt(0.5f);
    const Row rows[] = {
        {"none", -1, 3, 1, {1, 2, 3}, {1, 0, 0}},
        {"root", 0, 3, 0, {1, 2, 3}, {1, 0, 0}},
        {"before the first key", 0, 0, 1, {1, 2, 3}, {1, 0, 0}},
        // At rest it is at (-9, 2, 3) of the node.
        {"half", 0, 2, 1, {10 + 2 * h * (-9 - 2), 4 + 2 * h * (-9 + 2), 6}, {h, h, 0}},
        {"at the last key", 0, 3, 1, {10 + 3 * -2, 8 + 3 * -9, 9}, {0, 1, 0}},
        {"after it", 0, 4, 1, {4, -19, 9}, {0, 1, 0}},
        // At rest half of both is a shift by 5.
        {"two bones",
         0,
         3,
         2,
         {(-4 + 10 - 6) / 2.0f, (2 + 8 - 12) / 2.0f, 6},
         {h * h * 2 / std::sqrt(10.0f), 3 / std::sqrt(10.0f), 0}},
        {"flat", 0, 3, 3, {1, 2, 3}, {1, 0, 0}},
        {"back", -1, 0, 1, {1, 2, 3}, {1, 0, 0}},
    };
    const Mesh m = mesh();
    RigPose pose(m);
    for (const Row &row : rows) {
        pose.pose(row.clip, row.seconds);
        for (int k = 0; k < 3; ++k) {
            const std::size_t i = row.vertex * 3 + std::size_t(k);
            EXPECT_NEAR(pose.positions()[i], row.place[k], 1e-4) << row.name << k;
            EXPECT_NEAR(pose.normals()[i], row.normal[k], 1e-5) << row.name << k;
        }
    }
}

TEST(RigPoseTest, AModelThatIsTurnedMovesTurned)
{
    Mesh m = mesh();
    m.standOn(FileAxes::Z); // y becomes the mesh's -z
    RigPose pose(m);
    pose.pose(0, 3);
    EXPECT_NEAR(pose.positions()[3], 4, 1e-4);
    EXPECT_NEAR(pose.positions()[4], 9, 1e-4);
    EXPECT_NEAR(pose.positions()[5], 19, 1e-4);
}

} // namespace
} // namespace host
