// SPDX-License-Identifier: MIT
#include "host/item/thin_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/measure/vec.h"

namespace host {

namespace {

constexpr std::size_t boxSize = 16; // lines or points in one box
constexpr std::size_t fanOut = 8;   // boxes in one box
constexpr double sideways = 4;      // what the way off the ray counts
constexpr double unreachable = std::numeric_limits<double>::infinity();

/// Every third bit of the result is one of the lowest ten of @p cell.
quint32 spread(quint32 cell)
{
    cell &= 0x3ff;
    cell = (cell | (cell << 16)) & 0x030000ff;
    cell = (cell | (cell << 8)) & 0x0300f00f;
    cell = (cell | (cell << 4)) & 0x030c30c3;
    return (cell | (cell << 2)) & 0x09249249;
}

/// Where a point lies to a ray.
struct Place {
    double distance; // along it
    double off;      // from it
};

Place placeOf(const Vec &point, const Aim &aim)
{
    const Vec from = point - toVec(aim.ray.origin), way = toVec(aim.ray.direction);
    const double distance = from.dot(way);
    return {distance, (from - way * distance).norm()};
}

/// The point of the line from @p p to @p q that is closest to the ray.
Vec closest(const Vec &p, const Vec &q, const Ray &ray)
{
    const Vec way = q - p, from = p - toVec(ray.origin), direction = toVec(ray.direction);
    const double square = way.squaredNorm(), lean = way.dot(direction);
    const double turn = square - lean * lean;
    const double share =
        turn > 1e-12 * square ? (lean * from.dot(direction) - from.dot(way)) / turn : 0;
    return p + way * std::clamp(share, 0.0, 1.0);
}

} // namespace

ThinTree::ThinTree(MeshPtr mesh, const std::atomic<bool> &cancel)
    : mesh_(std::move(mesh)), lines_(quint32(mesh_->lineCount()))
{
    sort(cancel);
    if (!cancel)
        gather();
}

ThinTree::Ends ThinTree::endsOf(quint32 element) const
{
    const float *positions = mesh_->positions.data();
    if (element >= lines_) {
        const float *p = positions + (mesh_->firstPoint() + (element - lines_)) * 3;
        return {p, p};
    }
    const quint32 *ends = &mesh_->indices[mesh_->triangleCount() * 3 + std::size_t(element) * 2];
    return {positions + std::size_t(ends[0]) * 3, positions + std::size_t(ends[1]) * 3};
}

/// Along a curve that fills the box around the mesh: what is near on it is near in space.
void ThinTree::sort(const std::atomic<bool> &cancel)
{
    const std::size_t count = lines_ + mesh_->pointCount();
    const QVector3D size = mesh_->max - mesh_->min;
    const float longest = std::max({size.x(), size.y(), size.z()});
    const float cells = longest > Mesh::noSize ? 1023 / longest : 0;
    std::vector<quint64> keys(count);
    for (std::size_t i = 0; i < count && !cancel; ++i) {
        const Ends ends = endsOf(quint32(i));
        quint32 code = 0;
        for (int k = 0; k < 3; ++k) {
            const float middle = (ends.first[k] + ends.second[k]) / 2;
            code |= spread(quint32((middle - mesh_->min[k]) * cells)) << k;
        }
        keys[i] = quint64(code) << 32 | i;
    }
    if (!cancel)
        std::sort(keys.begin(), keys.end());
    order_.reserve(count);
    for (const quint64 key : keys)
        order_.push_back(quint32(key));
}

void ThinTree::gather()
{
    constexpr float big = std::numeric_limits<float>::max();
    constexpr Box nothing{{big, big, big}, {-big, -big, -big}};
    const auto hold = [](Box &box, const float *low, const float *high) {
        for (int k = 0; k < 3; ++k) {
            box.min[k] = std::min(box.min[k], low[k]);
            box.max[k] = std::max(box.max[k], high[k]);
        }
    };
    std::vector<Box> level((order_.size() + boxSize - 1) / boxSize, nothing);
    for (std::size_t i = 0; i < order_.size(); ++i) {
        const Ends ends = endsOf(order_[i]);
        hold(level[i / boxSize], ends.first, ends.first);
        hold(level[i / boxSize], ends.second, ends.second);
    }
    while (level.size() > 1) {
        std::vector<Box> above((level.size() + fanOut - 1) / fanOut, nothing);
        for (std::size_t i = 0; i < level.size(); ++i)
            hold(above[i / fanOut], level[i].min, level[i].max);
        levels_.push_back(std::move(level));
        level = std::move(above);
    }
    levels_.push_back(std::move(level));
}

/// No more than what anything in the box can have; unreachable if all of it is out of reach.
double ThinTree::leastScore(const Box &box, const Aim &aim)
{
    const Vec low = toVec(box.min), high = toVec(box.max);
    const double radius = (high - low).norm() / 2;
    const Place middle = placeOf((low + high) / 2, aim);
    const double farthest = middle.distance + radius;
    const double off = std::max(0.0, middle.off - radius);
    if (farthest < 0 || off > aim.radius + aim.slope * farthest)
        return unreachable;
    return std::max(0.0, middle.distance - radius) + sideways * off;
}

std::size_t ThinTree::partOf(quint32 element) const
{
    const auto &parts = mesh_->parts;
    const bool line = element < lines_;
    const std::size_t at = line ? mesh_->triangleCount() * 3 + std::size_t(element) * 2
                                : mesh_->firstPoint() + (element - lines_);
    const auto first = parts.begin() + std::ptrdiff_t(mesh_->trianglePartCount());
    const auto after = std::partition_point(first, parts.end(), [&](const MeshPart &part) {
        if (part.kind == MeshPart::Kind::Lines)
            return !line || part.firstIndex <= at;
        return !line && part.firstVertex <= at;
    });
    return std::size_t(after - parts.begin()) - 1;
}

void ThinTree::tryLeaf(std::size_t leaf, const Aim &aim, const Accept &accept, Best &best) const
{
    const std::size_t end = std::min(order_.size(), (leaf + 1) * boxSize);
    for (std::size_t i = leaf * boxSize; i < end; ++i) {
        const Ends ends = endsOf(order_[i]);
        const Vec at = ends.first == ends.second
                           ? toVec(ends.first)
                           : closest(toVec(ends.first), toVec(ends.second), aim.ray);
        const Place place = placeOf(at, aim);
        const double score = place.distance + sideways * place.off;
        if (place.distance < 0 || place.off > aim.radius + aim.slope * place.distance ||
            score >= best.score)
            continue;
        const ThinHit hit{
            partOf(order_[i]), {float(at.x()), float(at.y()), float(at.z())}, place.distance};
        if (accept(hit))
            best = {hit, score};
    }
}

std::optional<ThinHit> ThinTree::nearest(const Aim &aim, const Accept &accept) const
{
    struct Step {
        std::size_t level, index;
        double least;
    };
    std::vector<Step> steps;
    const auto push = [&](std::size_t level, std::size_t begin, std::size_t end) {
        const std::size_t old = steps.size();
        for (std::size_t i = begin; i < std::min(end, levels_[level].size()); ++i) {
            const double least = leastScore(levels_[level][i], aim);
            if (least < unreachable)
                steps.push_back({level, i, least});
        }
        // The best on top, so that the others are mostly passed over.
        std::sort(steps.begin() + std::ptrdiff_t(old), steps.end(),
                  [](const Step &a, const Step &b) { return a.least > b.least; });
    };
    Best best{{}, unreachable};
    if (!levels_.empty())
        push(levels_.size() - 1, 0, 1);
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        if (step.least >= best.score)
            continue;
        if (step.level == 0)
            tryLeaf(step.index, aim, accept, best);
        else
            push(step.level - 1, step.index * fanOut, (step.index + 1) * fanOut);
    }
    return best.score < unreachable ? std::optional(best.hit) : std::nullopt;
}

std::size_t ThinTree::byteSize() const
{
    std::size_t bytes = order_.capacity() * sizeof(quint32);
    for (const std::vector<Box> &level : levels_)
        bytes += level.capacity() * sizeof(Box);
    return bytes;
}

} // namespace host
