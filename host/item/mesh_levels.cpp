// SPDX-License-Identifier: MIT
#include "host/item/mesh_levels.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include <meshoptimizer.h>

namespace host {

namespace {

constexpr quint32 none = ~quint32(0);
constexpr std::size_t coarsest = 12'000; // triangles
constexpr std::size_t piece = 3 << 17;   // indices that are simplified at once
constexpr std::size_t stride = 3 * sizeof(float);
constexpr float anyError = 1; // of the size: what a frame may cost decides

/// Triangles and the places of their corners alone.
struct Patch {
    std::vector<float> positions;
    std::vector<quint32> vertices; // which one each place is, where the triangles come from
    std::vector<quint32> indices;  // of places

    std::size_t count() const { return vertices.size(); }
};

/// How many triangles of @p count the finest level and those after it shall have.
std::size_t shareOf(std::size_t count, std::size_t level)
{
    constexpr std::size_t fewest = 16; // of a part
    return std::max(count >> (level + 2), std::min(count, fewest));
}

std::size_t levelCount(std::size_t triangles)
{
    std::size_t count = 0;
    while (triangles >= MeshLevels::smallest && (triangles >> (count + 2)) >= coarsest)
        ++count;
    return count;
}

/// Whether vertices at one place differ in what must not be mixed.
bool hasSeams(const Mesh &mesh, const MeshPart &part)
{
    return part.cover.texture >= 0 || !mesh.colours.empty();
}

/// 1 if a triangle looks where its corners' normals do, -1 if the other way, 0 if neither.
int facing(const QVector3D &across, const float *normals, const quint32 *vertices)
{
    float agreement = 0;
    for (int k = 0; k < 3; ++k) {
        const float *n = &normals[std::size_t(vertices[k]) * 3];
        agreement += QVector3D::dotProduct(across, {n[0], n[1], n[2]});
    }
    return agreement > 0 ? 1 : agreement < 0 ? -1 : 0;
}

/// Across a triangle to its front, however long.
QVector3D across(const std::vector<float> &positions, const quint32 *corners)
{
    const auto at = [&](quint32 place) {
        const float *p = &positions[std::size_t(place) * 3];
        return QVector3D(p[0], p[1], p[2]);
    };
    const QVector3D origin = at(corners[0]);
    return QVector3D::crossProduct(at(corners[1]) - origin, at(corners[2]) - origin);
}

/// As nearly all triangles of a part do: in some files all are inside out. 0 if they do not agree.
int facingOf(const Mesh &mesh, const MeshPart &part)
{
    std::ptrdiff_t sum = 0;
    for (quint32 i = 0; i + 2 < part.indexCount; i += 3) {
        const quint32 *c = &mesh.indices[part.firstIndex + i];
        sum += facing(across(mesh.positions, c), mesh.normals.data(), c);
    }
    const bool agree = std::abs(sum) * 100 >= std::ptrdiff_t(part.indexCount / 3) * 98;
    return !agree ? 0 : sum < 0 ? -1 : 1;
}

class Maker {
public:
    Maker(const Mesh &mesh, const std::atomic<bool> &cancelled) : mesh_(mesh), cancelled_(cancelled)
    {
    }
    MeshLevels make();

private:
    using Indices = std::vector<quint32>;

    Patch gather(const std::vector<float> &positions, const quint32 *begin, const quint32 *end);
    void weld(Patch &patch);
    void addPart(const MeshPart &part, MeshLevels &made);
    Indices reduce(const Patch &patch, Indices all, std::size_t target);
    Indices simplify(const Patch &patch, const quint32 *begin, const quint32 *end,
                     std::size_t target, bool isPiece);
    Indices simplifyPieces(const Patch &patch, Indices all, std::size_t target);
    Indices join(const Patch &patch, Indices all, std::size_t target);
    void append(const Patch &patch, const Indices &indices, MeshLevel &level) const;
    quint32 cornerFor(const Patch &patch, quint32 place, const QVector3D &normal) const;

    const Mesh &mesh_;
    const std::atomic<bool> &cancelled_;
    std::vector<quint32> slots_; // of gather(): none, but while it runs
    int facing_ = 1;             // of the part
    std::vector<quint32> twins_; // of each place that was welded, the next at the same place
};

/// The triangles from @p begin to @p end, whose corners are in @p positions.
Patch Maker::gather(const std::vector<float> &positions, const quint32 *begin, const quint32 *end)
{
    Patch patch;
    slots_.resize(std::max(slots_.size(), positions.size() / 3), none);
    patch.indices.reserve(std::size_t(end - begin));
    for (const quint32 *index = begin; index != end; ++index) {
        quint32 &slot = slots_[*index];
        if (slot == none) {
            slot = quint32(patch.count());
            patch.vertices.push_back(*index);
        }
        patch.indices.push_back(slot);
    }
    patch.positions.reserve(patch.count() * 3);
    for (const quint32 vertex : patch.vertices) {
        slots_[vertex] = none;
        const float *p = &positions[std::size_t(vertex) * 3];
        patch.positions.insert(patch.positions.end(), p, p + 3);
    }
    return patch;
}

/// Lets corners at one place be the same, so that a surface whose normals break hangs together.
void Maker::weld(Patch &patch)
{
    constexpr quint32 unknown = none - 1;
    Indices welded(patch.indices.size());
    meshopt_generateShadowIndexBuffer(welded.data(), patch.indices.data(), welded.size(),
                                      patch.positions.data(), patch.count(), stride, stride);
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
            across(patch.positions, &indices[i]) * (facing_ < 0 ? -1.0f : 1.0f);
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
    const Patch own = gather(patch.positions, begin, end);
    const std::size_t count = own.indices.size();
    Indices few(count);
    few.resize(meshopt_simplify(few.data(), own.indices.data(), count, own.positions.data(),
                                own.count(), stride, target * 3, anyError,
                                isPiece ? meshopt_SimplifyLockBorder : 0, nullptr));
    for (quint32 &index : few)
        index = own.vertices[index];
    return few;
}

/// Joins what lies in the same cell of a grid: what cannot be simplified is that at least.
Maker::Indices Maker::join(const Patch &patch, Indices all, std::size_t target)
{
    const Patch own = gather(patch.positions, all.data(), all.data() + all.size());
    Indices few(all.size());
    few.resize(meshopt_simplifySloppy(few.data(), own.indices.data(), few.size(),
                                      own.positions.data(), own.count(), stride, target * 3,
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
    const bool isStuck = all.size() > target * 3 / 2 * 3;
    return isStuck && !cancelled_ ? join(patch, std::move(all), target) : all;
}

/// Pieces that lie together go one by one, since simplifying takes much memory for a while.
Maker::Indices Maker::simplifyPieces(const Patch &patch, Indices all, std::size_t target)
{
    {
        Indices sorted(all.size());
        meshopt_spatialSortTriangles(sorted.data(), all.data(), all.size(), patch.positions.data(),
                                     patch.count(), stride);
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

void Maker::addPart(const MeshPart &part, MeshLevels &made)
{
    const quint32 *first = mesh_.indices.data() + part.firstIndex;
    Patch patch = gather(mesh_.positions, first, first + part.indexCount);
    facing_ = facingOf(mesh_, part);
    twins_.clear();
    if (!hasSeams(mesh_, part))
        weld(patch);
    Indices left = std::move(patch.indices);
    for (std::size_t i = 0; i < made.levels.size(); ++i) {
        MeshLevel &level = made.levels[i];
        const std::size_t target = shareOf(part.indexCount / 3, i);
        if (left.size() > target * 3 && !cancelled_)
            left = reduce(patch, std::move(left), target);
        append(patch, left, level);
        level.ends.push_back(quint32(level.indices.size()));
    }
}

MeshLevels Maker::make()
{
    MeshLevels made;
    const std::size_t triangles = mesh_.triangleCount();
    made.levels.resize(levelCount(triangles));
    if (made.levels.empty())
        return made;
    for (std::size_t i = 0; i < mesh_.trianglePartCount() && !cancelled_; ++i)
        addPart(mesh_.parts[i], made);
    std::size_t finer = triangles;
    const auto isNoGain = [&](const MeshLevel &level) {
        const bool gains = level.triangleCount() * 4 <= finer * 3;
        finer = gains ? level.triangleCount() : finer;
        return !gains;
    };
    auto &all = made.levels;
    all.erase(std::remove_if(all.begin(), all.end(), isNoGain), all.end());
    for (MeshLevel &level : all)
        level.indices.shrink_to_fit();
    return made;
}

} // namespace

std::size_t MeshLevels::byteSize() const
{
    std::size_t bytes = 0;
    for (const MeshLevel &level : levels)
        bytes += (level.indices.capacity() + level.ends.capacity()) * sizeof(quint32);
    return bytes;
}

std::size_t MeshLevels::expectedBytes(const Mesh &mesh)
{
    std::size_t bytes = 0;
    const std::size_t triangles = mesh.triangleCount();
    for (std::size_t i = 0; i < levelCount(triangles); ++i)
        bytes += (3 * (triangles >> (i + 2)) + mesh.parts.size()) * sizeof(quint32);
    return bytes;
}

MeshLevels levelsOf(const Mesh &mesh, const std::atomic<bool> &cancelled)
{
    return Maker(mesh, cancelled).make();
}

} // namespace host
