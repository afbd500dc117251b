// SPDX-License-Identifier: MIT
#include "host/item/rough_level.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include <meshoptimizer.h>

#include "host/item/mesh_patch.h"

namespace host {

namespace {

/// The places that triangles are among, and the normal of each.
struct Places {
    const std::vector<float> &positions;
    const std::vector<float> &normals; // of the mesh
    const std::vector<quint32>
        *numbers; // of each place's vertex in the mesh; null: they are the same

    QVector3D position(quint32 place) const { return vector(positions, place); }
    QVector3D normal(quint32 place) const
    {
        return vector(normals, numbers ? (*numbers)[place] : place);
    }

private:
    static QVector3D vector(const std::vector<float> &from, quint32 index)
    {
        const float *v = from.data() + std::size_t(index) * 3;
        return {v[0], v[1], v[2]};
    }
};

/// The grid whose cells meshopt_simplifySloppy() has joined, found again by what was left of each.
class Cells {
public:
    /// @p left are the places that are left: each is in a cell of its own, but for a few.
    Cells(const Places &places, const std::vector<quint32> &left) : places_(places)
    {
        QVector3D max = min_ = places.position(0);
        for (std::size_t i = 0; i < places.positions.size() / 3; ++i)
            for (int k = 0; k < 3; ++k) {
                min_[k] = std::min(min_[k], places.positions[i * 3 + std::size_t(k)]);
                max[k] = std::max(max[k], places.positions[i * 3 + std::size_t(k)]);
            }
        const QVector3D size = max - min_;
        scale_ = 1 / std::max({size.x(), size.y(), size.z(), std::numeric_limits<float>::min()});
        int few = 1, enough = 1025; // cells along the longest side
        std::vector<quint64> cells;
        while (enough - few > 1) {
            side_ = (few + enough) / 2;
            cells.clear();
            for (const quint32 place : left)
                cells.push_back(of(place));
            std::sort(cells.begin(), cells.end());
            const auto own = std::unique(cells.begin(), cells.end()) - cells.begin();
            (std::size_t(own) * 100 < left.size() * 99 ? few : enough) = side_;
        }
        side_ = enough;
    }
    quint64 of(quint32 place) const
    {
        const QVector3D at = inCells(place) + QVector3D(0.5f, 0.5f, 0.5f);
        return (quint64(at.x()) << 40) | (quint64(at.y()) << 20) | quint64(at.z());
    }
    /// How far apart two places are, in cells.
    float distance(quint32 a, quint32 b) const { return (inCells(a) - inCells(b)).length(); }

private:
    QVector3D inCells(quint32 place) const
    {
        return (places_.position(place) - min_) * (scale_ * float(side_ - 1));
    }

    const Places &places_;
    QVector3D min_;
    float scale_ = 1;
    int side_ = 1;
};

/// Lets each corner in @p few be that place of its cell whose normal is most like those of the
/// triangles that meet there now: what was left may look anywhere, as down into a groove, and would
/// let large triangles be dark.
void smoothen(const Places &places, const quint32 *indices, std::size_t count,
              std::vector<quint32> &few)
{
    struct Corner {
        quint32 left, best;
        QVector3D across; // of all triangles that meet in it
        float fitness;
    };
    std::vector<quint32> left(few);
    std::sort(left.begin(), left.end());
    left.erase(std::unique(left.begin(), left.end()), left.end());
    const Cells cells(places, left);
    std::unordered_map<quint64, Corner> corners;
    corners.reserve(left.size());
    for (const quint32 place : left)
        corners.insert({cells.of(place), {place, place, {}, -2}});
    for (std::size_t i = 0; i < few.size(); ++i) {
        const quint32 *triangle = &few[i - i % 3];
        const QVector3D front = across(places.positions.data(), triangle);
        QVector3D shared;
        for (int k = 0; k < 3; ++k)
            shared += places.normal(triangle[k]);
        if (Corner &corner = corners.at(cells.of(few[i])); corner.left == few[i])
            corner.across += QVector3D::dotProduct(front, shared) < 0 ? -front : front;
    }
    for (auto &[cell, corner] : corners)
        if (const float length = std::sqrt(QVector3D::dotProduct(corner.across, corner.across));
            length > 0)
            corner.across /= length;
    const auto lookAt = [&](quint32 place) {
        constexpr float apart = 0.1f; // what a cell's length counts, against a normal's cosine
        const auto found = corners.find(cells.of(place));
        if (found == corners.end())
            return;
        Corner &corner = found->second;
        const float fitness = QVector3D::dotProduct(places.normal(place), corner.across) -
                              apart * cells.distance(place, corner.left);
        if (fitness > corner.fitness) {
            corner.fitness = fitness;
            corner.best = place;
        }
    };
    constexpr std::size_t looks = 8; // at places of a cell, about
    const std::size_t step = std::max<std::size_t>(1, count / 3 / (left.size() * looks)) * 3;
    for (std::size_t i = 0; i < count; i += step)
        lookAt(indices[i]);
    std::for_each(left.begin(), left.end(), lookAt);
    for (quint32 &place : few)
        if (const Corner &corner = corners.at(cells.of(place)); corner.left == place)
            place = corner.best;
}

/// Triangles of @p indices, @p target of them at most, and if that cannot be, all.
std::vector<quint32> joined(const Places &places, const quint32 *indices, std::size_t count,
                            std::size_t target)
{
    std::vector<quint32> few(count);
    const float *positions = places.positions.data();
    const std::size_t all = places.positions.size() / 3;
    few.resize(meshopt_simplifySloppy(few.data(), indices, count, positions, all, Patch::stride,
                                      target * 3, 1, nullptr));
    if (few.empty())
        few.assign(indices, indices + count);
    else
        smoothen(places, indices, count, few);
    constexpr unsigned corners = 64; // that the GL keeps, about
    meshopt_optimizeVertexCacheFifo(few.data(), few.data(), few.size(), all, corners);
    return few;
}

/// The cosine of the angle between a triangle's front and the normals of its corners together.
float agreement(const Mesh &mesh, const quint32 *corners)
{
    QVector3D normal;
    for (int k = 0; k < 3; ++k) {
        const float *n = mesh.normals.data() + std::size_t(corners[k]) * 3;
        normal += QVector3D(n[0], n[1], n[2]);
    }
    // QVector3D::normalized() takes a small triangle's for no direction.
    const QVector3D front = across(mesh.positions.data(), corners);
    const double size = std::sqrt(double(front.lengthSquared())) * normal.length();
    return size > 0 ? float(QVector3D::dotProduct(front, normal) / size) : 0;
}

/// Lets triangles that were turned over look where their normals do, or they would be dark. What
/// stands across its surface is seen from the side that it shared with the others before, and
/// would be dark if it were turned.
void turnToNormals(const Mesh &mesh, std::vector<quint32> &indices)
{
    std::ptrdiff_t front = 0, all = 0;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3, ++all)
        front += agreement(mesh, &indices[i]) >= 0;
    const bool insideOut = front * 2 < all;
    const bool agree = std::max(front, all - front) * 10 > all * 9;
    const float turnedOver = agree ? -0.75f : 0.0f;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const float alike = agreement(mesh, &indices[i]) * (insideOut ? -1.0f : 1.0f);
        if ((alike < turnedOver) != insideOut)
            std::swap(indices[i + 1], indices[i + 2]);
    }
}

} // namespace

MeshLevel roughLevelOf(const Mesh &mesh, const std::atomic<bool> &cancelled)
{
    constexpr std::size_t fewest = 16; // triangles of a part
    MeshLevel level;
    PatchGatherer gatherer;
    const double share = double(roughSize) / double(mesh.triangleCount());
    for (std::size_t i = 0; i < mesh.trianglePartCount() && !cancelled; ++i) {
        const MeshPart &part = mesh.parts[i];
        const quint32 *first = mesh.indices.data() + part.firstIndex;
        const auto target = std::size_t(double(part.indexCount / 3) * share);
        std::vector<quint32> few;
        if (target < fewest) {
            few.assign(first, first + part.indexCount);
        } else if (part.indexCount == mesh.indices.size()) { // needs no copy
            few = joined({mesh.positions, mesh.normals, nullptr}, first, part.indexCount, target);
        } else {
            const Patch patch = gatherer.gather(mesh.positions, first, first + part.indexCount);
            few = joined({patch.positions, mesh.normals, &patch.vertices}, patch.indices.data(),
                         part.indexCount, target);
            for (quint32 &index : few)
                index = patch.vertices[index];
        }
        turnToNormals(mesh, few);
        level.indices.insert(level.indices.end(), few.begin(), few.end());
        level.ends.push_back(quint32(level.indices.size()));
    }
    level.indices.shrink_to_fit();
    return level.triangleCount() > 2 * roughSize ? MeshLevel() : level;
}

} // namespace host
