// SPDX-License-Identifier: MIT
#include "host/item/mesh_levels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include <meshoptimizer.h>

#include "host/item/mesh_patch.h"

namespace host {

namespace {

constexpr quint32 none = ~quint32(0);
constexpr double coarsest = 12'000;    // triangles
constexpr std::size_t piece = 3 << 17; // indices that are simplified at once
constexpr float anyError = 1;          // of the size: what a frame may cost decides

/// How many triangles the levels shall have, the finest first. Software GL draws some hundred
/// thousand smoothly: there they are close to each other, so that none is much too coarse.
std::vector<std::size_t> sizesFor(std::size_t triangles)
{
    constexpr double close = 400'000, half = 2, closer = M_SQRT2;
    std::vector<std::size_t> sizes;
    if (triangles < MeshLevels::smallest)
        return sizes;
    const auto next = [&](double size) { return size / (size > 2 * close ? half : closer); };
    for (double size = next(double(triangles)); size >= coarsest; size = next(size))
        sizes.push_back(std::size_t(size));
    return sizes;
}

/// Whether vertices at one place differ in what must not be mixed.
bool hasSeams(const Mesh &mesh, const MeshPart &part)
{
    return part.cover.texture >= 0 || !mesh.colours.empty();
}

/// As nearly all triangles of a part do: in some files all are inside out. 0 if they do not agree.
int facingOf(const Mesh &mesh, const MeshPart &part)
{
    std::ptrdiff_t sum = 0;
    for (quint32 i = 0; i + 2 < part.indexCount; i += 3) {
        const quint32 *c = &mesh.indices[part.firstIndex + i];
        sum += facing(across(mesh.positions.data(), c), mesh.normals.data(), c);
    }
    const bool agree = std::abs(sum) * 100 >= std::ptrdiff_t(part.indexCount / 3) * 98;
    return !agree ? 0 : sum < 0 ? -1 : 1;
}

class Maker {
public:
    Maker(const Mesh &mesh, const std::atomic<bool> &cancelled) : mesh_(mesh), cancelled_(cancelled)
    {
    }
    void make(const MeshLevels::Add &add);

private:
    using Indices = std::vector<quint32>;

    void weld(Patch &patch);
    void addPart(std::size_t index, const MeshLevels::Add &add);
    void complete(MeshLevel &level, const MeshLevels::Add &add);
    std::size_t targetFor(const MeshPart &part, std::size_t level) const;
    Indices reduce(const Patch &patch, Indices all, std::size_t target);
    Indices simplify(const Patch &patch, const quint32 *begin, const quint32 *end,
                     std::size_t target, bool isPiece);
    Indices simplifyPieces(const Patch &patch, Indices all, std::size_t target);
    Indices join(const Patch &patch, Indices all, std::size_t target);
    void append(const Patch &patch, const Indices &indices, MeshLevel &level) const;
    quint32 cornerFor(const Patch &patch, quint32 place, const QVector3D &normal) const;

    const Mesh &mesh_;
    const std::atomic<bool> &cancelled_;
    std::vector<std::size_t> sizes_;
    std::vector<MeshLevel> levels_; // of the parts until now
    std::size_t finer_ = 0;         // triangles of the last one that was complete
    PatchGatherer gatherer_;
    int facing_ = 1;             // of the part
    std::vector<quint32> twins_; // of each place that was welded, the next at the same place
};

/// Lets corners at one place be the same, so that a surface whose normals break hangs together.
void Maker::weld(Patch &patch)
{
    constexpr quint32 unknown = none - 1;
    Indices welded(patch.indices.size());
    meshopt_generateShadowIndexBuffer(welded.data(), patch.indices.data(), welded.size(),
                                      patch.positions.data(), patch.count(), Patch::stride,
                                      Patch::stride);
    twins_.assign(patch.count(), unknown);
    for (const quint32 first : welded)
        twins_[first] = none;
    for (std::size_t i = 0; i < welded.size(); ++i) {
        quint32 &twin = twins_[patch.indices[i]];
        if (twin == unknown) {
            twin = twins_[welded[i]];
            twins_[welded[i]] = patch.indices[i];
        }
    }
    patch.indices = std::move(welded);
}

/// Of the corners that were welded at @p place the one whose normal suits a triangle best.
quint32 Maker::cornerFor(const Patch &patch, quint32 place, const QVector3D &normal) const
{
    constexpr int most = 64; // that are looked at: thousands may meet in a tip
    quint32 best = place;
    float highest = -std::numeric_limits<float>::infinity();
    int looked = 0;
    for (quint32 at = place; at != none && looked < most; at = twins_[at], ++looked) {
        const float *n = &mesh_.normals[std::size_t(patch.vertices[at]) * 3];
        const float agreement = QVector3D::dotProduct(normal, {n[0], n[1], n[2]});
        if (agreement > highest) {
            highest = agreement;
            best = at;
        }
    }
    return best;
}

/// Adds triangles of a part, as those of the mesh's vertices. What was turned over on a plane lies
/// over others there, and would be dark: it is left out.
void Maker::append(const Patch &patch, const Indices &indices, MeshLevel &level) const
{
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const QVector3D normal =
            across(patch.positions.data(), &indices[i]) * (facing_ < 0 ? -1.0f : 1.0f);
        quint32 corners[3];
        for (std::size_t k = 0; k < 3; ++k) {
            const quint32 place = indices[i + k];
            corners[k] = patch.vertices[twins_.empty() ? place : cornerFor(patch, place, normal)];
        }
        if (facing_ == 0 || facing(normal, mesh_.normals.data(), corners) >= 0)
            level.indices.insert(level.indices.end(), corners, corners + 3);
    }
}

/// What is a piece of a larger surface keeps its border, where the others meet it.
Maker::Indices Maker::simplify(const Patch &patch, const quint32 *begin, const quint32 *end,
                               std::size_t target, bool isPiece)
{
    const Patch own = gatherer_.gather(patch.positions, begin, end);
    const std::size_t count = own.indices.size();
    Indices few(count);
    few.resize(meshopt_simplify(few.data(), own.indices.data(), count, own.positions.data(),
                                own.count(), Patch::stride, target * 3, anyError,
                                isPiece ? meshopt_SimplifyLockBorder : 0, nullptr));
    // What shares corners comes together, so that the GL finds them done.
    constexpr unsigned corners = 64; // that it keeps, about
    meshopt_optimizeVertexCacheFifo(few.data(), few.data(), few.size(), own.count(), corners);
    for (quint32 &index : few)
        index = own.vertices[index];
    return few;
}

/// Joins what lies in the same cell of a grid: what cannot be simplified is that at least.
Maker::Indices Maker::join(const Patch &patch, Indices all, std::size_t target)
{
    const Patch own = gatherer_.gather(patch.positions, all.data(), all.data() + all.size());
    Indices few(all.size());
    few.resize(meshopt_simplifySloppy(few.data(), own.indices.data(), few.size(),
                                      own.positions.data(), own.count(), Patch::stride, target * 3,
                                      anyError, nullptr));
    if (few.empty())
        return all;
    for (quint32 &index : few)
        index = own.vertices[index];
    return few;
}

Maker::Indices Maker::reduce(const Patch &patch, Indices all, std::size_t target)
{
    all = all.size() <= piece ? simplify(patch, all.data(), all.data() + all.size(), target, false)
                              : simplifyPieces(patch, std::move(all), target);
    const bool isStuck = all.size() > target * 5 / 4 * 3;
    return isStuck && !cancelled_ ? join(patch, std::move(all), target) : all;
}

/// Pieces that lie together go one by one, since simplifying takes much memory for a while.
Maker::Indices Maker::simplifyPieces(const Patch &patch, Indices all, std::size_t target)
{
    {
        Indices sorted(all.size());
        meshopt_spatialSortTriangles(sorted.data(), all.data(), all.size(), patch.positions.data(),
                                     patch.count(), Patch::stride);
        all = std::move(sorted);
    }
    Indices few;
    const std::size_t triangles = all.size() / 3;
    for (std::size_t at = 0; at < all.size() && !cancelled_; at += piece) {
        const std::size_t size = std::min(piece, all.size() - at);
        const Indices reduced = simplify(patch, &all[at], all.data() + at + size,
                                         target * (size / 3) / triangles, true);
        few.insert(few.end(), reduced.begin(), reduced.end());
    }
    return few;
}

std::size_t Maker::targetFor(const MeshPart &part, std::size_t level) const
{
    constexpr std::size_t fewest = 16; // of a part
    const std::size_t count = part.indexCount / 3;
    const double share = double(sizes_[level]) / double(mesh_.triangleCount());
    return std::max(std::size_t(double(count) * share), std::min(count, fewest));
}

/// Hands over a level that all parts are in, if that is much coarser than the one before.
void Maker::complete(MeshLevel &level, const MeshLevels::Add &add)
{
    if (cancelled_ || level.triangleCount() * 20 > finer_ * 17)
        return;
    finer_ = level.triangleCount();
    level.indices.shrink_to_fit();
    add(std::move(level));
}

void Maker::addPart(std::size_t index, const MeshLevels::Add &add)
{
    const MeshPart &part = mesh_.parts[index];
    const bool isLast = index + 1 == mesh_.trianglePartCount();
    const quint32 *first = mesh_.indices.data() + part.firstIndex;
    Patch patch = gatherer_.gather(mesh_.positions, first, first + part.indexCount);
    facing_ = facingOf(mesh_, part);
    twins_.clear();
    if (!hasSeams(mesh_, part))
        weld(patch);
    Indices left = std::move(patch.indices);
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        const std::size_t target = targetFor(part, i);
        if (left.size() > target * 3 && !cancelled_)
            left = reduce(patch, std::move(left), target);
        append(patch, left, levels_[i]);
        levels_[i].ends.push_back(quint32(levels_[i].indices.size()));
        if (isLast)
            complete(levels_[i], add);
    }
}

void Maker::make(const MeshLevels::Add &add)
{
    finer_ = mesh_.triangleCount();
    sizes_ = sizesFor(finer_);
    levels_.resize(sizes_.size());
    for (std::size_t i = 0; !levels_.empty() && i < mesh_.trianglePartCount() && !cancelled_; ++i)
        addPart(i, add);
}

} // namespace

MeshLevels::MeshLevels(const Mesh &mesh) : levels_(sizesFor(mesh.triangleCount()).size()) {}

std::size_t MeshLevels::byteSize() const
{
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < count(); ++i)
        bytes += (levels_[i].indices.capacity() + levels_[i].ends.capacity()) * sizeof(quint32);
    return bytes;
}

std::size_t MeshLevels::expectedBytes(const Mesh &mesh)
{
    std::size_t bytes = 0;
    for (const std::size_t triangles : sizesFor(mesh.triangleCount()))
        bytes += (3 * triangles + mesh.parts.size()) * sizeof(quint32);
    return bytes;
}

void MeshLevels::make(const Mesh &mesh, const std::atomic<bool> &cancelled)
{
    Maker(mesh, cancelled).make([this](MeshLevel level) {
        const std::size_t count = count_;
        levels_[count] = std::move(level);
        count_ = count + 1;
    });
}

} // namespace host
