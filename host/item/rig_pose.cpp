// SPDX-License-Identifier: MIT
#include "host/item/rig_pose.h"

#include <algorithm>
#include <cmath>

#include <QMatrix4x4>

namespace host {
namespace {

/// The two keys around a time, and how far it is between them, 0 to 1.
template <class Key> struct Between {
    const Key &before, &after;
    float share;
};

template <class Key> Between<Key> around(const std::vector<Key> &keys, double seconds)
{
    const auto next = std::upper_bound(keys.begin(), keys.end(), seconds,
                                       [](double t, const Key &key) { return t < key.seconds; });
    if (next == keys.begin())
        return {keys.front(), keys.front(), 0};
    const Key &before = *(next - 1);
    if (next == keys.end())
        return {before, before, 0};
    return {before, *next, float((seconds - before.seconds) / (next->seconds - before.seconds))};
}

QVector3D at(const std::vector<Rig::VectorKey> &keys, double seconds)
{
    const auto [before, after, share] = around(keys, seconds);
    return before.value + (after.value - before.value) * share;
}

QQuaternion at(const std::vector<Rig::TurnKey> &keys, double seconds)
{
    const auto [before, after, share] = around(keys, seconds);
    return QQuaternion::slerp(before.value, after.value, share);
}

QMatrix4x4 at(const Rig::Track &track, double seconds)
{
    QMatrix4x4 local;
    local.translate(at(track.places, seconds));
    local.rotate(at(track.turns, seconds));
    local.scale(at(track.scales, seconds));
    return local;
}

using Affine = std::array<float, 12>;

/// Moves @p in, three numbers; a direction is not shifted.
void apply(const Affine &m, const float *in, float shift, float *out)
{
    for (std::size_t row = 0; row < 3; ++row)
        out[row] = m[row * 4] * in[0] + m[row * 4 + 1] * in[1] + m[row * 4 + 2] * in[2] +
                   m[row * 4 + 3] * shift;
}

/// The inverse by cofactors. Returns whether there is one.
bool invert(const Affine &m, Affine &out)
{
    const auto e = [&](std::size_t row, std::size_t column) { return double(m[row * 4 + column]); };
    const auto cofactor = [&](std::size_t r, std::size_t c) {
        const std::size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
        return e(r1, c1) * e(r2, c2) - e(r1, c2) * e(r2, c1);
    };
    const double determinant =
        e(0, 0) * cofactor(0, 0) + e(0, 1) * cofactor(0, 1) + e(0, 2) * cofactor(0, 2);
    for (std::size_t r = 0; r < 3; ++r) {
        double shift = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const double value = cofactor(c, r) / determinant;
            out[r * 4 + c] = float(value);
            shift -= value * e(c, 3);
        }
        out[r * 4 + 3] = float(shift);
    }
    return std::all_of(out.begin(), out.end(), [](float v) { return std::isfinite(v); });
}

} // namespace

RigPose::RigPose(const Mesh &mesh) : mesh_(mesh), positions_(mesh.positions), normals_(mesh.normals)
{
    findMatrices(-1, 0);
    findRest();
}

void RigPose::findMatrices(int clip, double seconds)
{
    const Rig &rig = *mesh_.rig;
    std::vector<QMatrix4x4> worlds;
    worlds.reserve(rig.nodes.size());
    for (const Rig::Node &node : rig.nodes)
        worlds.push_back(node.local);
    if (clip >= 0) {
        for (const Rig::Track &track : rig.clips[std::size_t(clip)].tracks)
            worlds[track.node] = at(track, seconds);
    }
    for (std::size_t i = 1; i < worlds.size(); ++i)
        worlds[i] = worlds[std::size_t(rig.nodes[i].parent)] * worlds[i];
    bones_.resize(rig.bones.size());
    for (std::size_t i = 0; i < bones_.size(); ++i) {
        const QMatrix4x4 m = worlds[rig.bones[i].node] * rig.bones[i].offset;
        for (std::size_t k = 0; k < 12; ++k)
            bones_[i][k] = m(int(k / 4), int(k % 4));
    }
}

RigPose::Affine RigPose::blend(std::size_t vertex) const
{
    const quint16 *bone = &mesh_.rig->vertexBones[vertex * 4];
    const float *weight = &mesh_.rig->vertexWeights[vertex * 4];
    Affine sum{};
    for (std::size_t k = 0; k < 4; ++k) {
        if (weight[k] <= 0)
            continue;
        const Affine &m = bones_[bone[k]];
        for (std::size_t i = 0; i < 12; ++i)
            sum[i] += weight[k] * m[i];
    }
    return sum;
}

void RigPose::findRest()
{
    const std::size_t count = mesh_.normalCount();
    rest_ = mesh_.positions;
    face_ = mesh_.normals;
    fixed_.assign(count, false);
    for (std::size_t i = 0; i < count; ++i) {
        Affine back;
        if (!invert(blend(i), back)) {
            fixed_[i] = true;
            continue;
        }
        apply(back, &mesh_.positions[i * 3], 1, &rest_[i * 3]);
        apply(back, &mesh_.normals[i * 3], 0, &face_[i * 3]);
    }
}

void RigPose::pose(int clip, double seconds)
{
    if (clip < 0) { // exactly, without the errors of going there and back
        positions_ = mesh_.positions;
        normals_ = mesh_.normals;
        return;
    }
    findMatrices(clip, seconds);
    for (std::size_t i = 0; i < fixed_.size(); ++i) {
        if (fixed_[i])
            continue;
        const Affine m = blend(i);
        float place[3], normal[3];
        apply(m, &rest_[i * 3], 1, place);
        const auto fits = [](float v) { return std::abs(v) <= Mesh::maxCoordinate; };
        if (!std::all_of(place, place + 3, fits))
            continue; // tracks may lead to what no float holds
        std::copy(place, place + 3, &positions_[i * 3]);
        apply(m, &face_[i * 3], 0, normal);
        const float length = std::hypot(normal[0], normal[1], normal[2]);
        if (length > 0 && std::isfinite(length))
            for (std::size_t k = 0; k < 3; ++k)
                normals_[i * 3 + k] = normal[k] / length;
    }
}

} // namespace host
