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

// At rest the points are at (-9, 2, 3) of the node; half of both bones shifts them by 5.
const float h = std::sqrt(0.5f), t = std::sqrt(0.1f);
const Row rows[] = {
    {"none", -1, 3, 1, {1, 2, 3}, {1, 0, 0}},
    {"root", 0, 3, 0, {1, 2, 3}, {1, 0, 0}},
    {"before the first key", 0, 0, 1, {1, 2, 3}, {1, 0, 0}},
    {"half", 0, 2, 1, {10 + 2 * h * (-9 - 2), 4 + 2 * h *(-9 + 2), 6}, {h, h, 0}},
    {"at the last key", 0, 3, 1, {10 + 3 * -2, 8 + 3 * -9, 9}, {0, 1, 0}},
    {"after it", 0, 4, 1, {4, -19, 9}, {0, 1, 0}},
    {"two bones", 0, 3, 2, {(-4 + 10 - 6) / 2.0f, (2 + 8 - 12) / 2.0f, 6}, {t, 3 * t, 0}},
    {"flat", 0, 3, 3, {1, 2, 3}, {1, 0, 0}},
    {"back", -1, 0, 1, {1, 2, 3}, {1, 0, 0}},
};

TEST(RigPoseTest, VerticesGoWithTheirBonesHoweverTheModelStands)
{
    for (const bool turned : {false, true}) {
        Mesh m = mesh();
        if (turned)
            m.standOn(FileAxes::Z); // y becomes the mesh's -z
        const auto inMesh = [=](const QVector3D &v) {
            return turned ? QVector3D(v.x(), v.z(), -v.y()) : v;
        };
        RigPose pose(m);
        const auto at = [](const std::vector<float> &all, std::size_t i) {
            return QVector3D(all[i * 3], all[i * 3 + 1], all[i * 3 + 2]);
        };
        for (const Row &row : rows) {
            pose.pose(row.clip, row.seconds);
            const QVector3D place = at(pose.positions(), row.vertex);
            EXPECT_LT((place - inMesh(row.place)).length(), 1e-4f) << row.name;
            const QVector3D normal = at(pose.normals(), row.vertex);
            EXPECT_LT((normal - inMesh(row.normal)).length(), 1e-5f) << row.name;
        }
    }
}

} // namespace
} // namespace host
