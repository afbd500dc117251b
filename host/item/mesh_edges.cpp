// SPDX-License-Identifier: MIT
#include "host/item/mesh_edges.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/read/first_of_each.h"

namespace host {

namespace {

using Corners = std::array<quint32, 3>; // of a triangle

/// A side of a triangle, in the list of its lower place.
struct Side {
    quint32 high; // its other place
    quint32 triangle;
};

struct Edge {
    quint32 part;
    quint32 from, to; // vertices
};

class Finder {
public:
    Finder(const Mesh &mesh, const std::atomic<bool> &cancelled);
    MeshEdges find();

private:
    Corners placesOfTriangle(std::size_t triangle) const;
    void listSides();
    void addEdges(quint32 low, const Side *begin, const Side *end);
    bool isEdge(quint32 low, const Side *begin, const Side *end) const;
    bool isFolded(quint32 low, quint32 high, quint32 third, quint32 fourth) const;
    quint32 partOf(quint32 triangle) const;
    quint32 vertexAt(quint32 triangle, quint32 place) const;
    MeshEdges byParts() const;

    const Mesh &mesh_;
    const std::atomic<bool> &cancelled_;
    std::vector<quint32> places_;
    std::vector<quint32> ends_; // of each place's sides, in sides_
    std::vector<Side> sides_;
    std::vector<Edge> edges_;
    double thin_; // the square of a height below which that of a triangle is chance
};

Finder::Finder(const Mesh &mesh, const std::atomic<bool> &cancelled)
    : mesh_(mesh), cancelled_(cancelled), places_(firstAtPlace(mesh, mesh.normalCount(), cancelled))
{
    double extent = 0;
    for (int i = 0; i < 3; ++i)
        extent = std::max({extent, std::abs(double(mesh.min[i])), std::abs(double(mesh.max[i]))});
    thin_ = std::pow(extent * 1e-6, 2); // some eight of the steps of a float
}

Corners Finder::placesOfTriangle(std::size_t triangle) const
{
    const quint32 *c = &mesh_.indices[triangle * 3];
    return {places_[c[0]], places_[c[1]], places_[c[2]]};
}

/// Fills sides_, place by place. Triangles with two corners at one place have none.
void Finder::listSides()
{
    const auto forEachSide = [this](const auto &take) {
        for (std::size_t t = 0; t < mesh_.triangleCount() && !cancelled_; ++t) {
            const Corners c = placesOfTriangle(t);
            if (c[0] == c[1] || c[1] == c[2] || c[2] == c[0])
                continue;
            for (std::size_t k = 0; k < 3; ++k) {
                const auto [low, high] = std::minmax(c[k], c[(k + 1) % 3]);
                take(low, Side{high, quint32(t)});
            }
        }
    };
    ends_.assign(places_.size() + 1, 0);
    forEachSide([this](quint32 low, const Side &) { ++ends_[low + 1]; });
    for (std::size_t i = 1; i < ends_.size(); ++i)
        ends_[i] += ends_[i - 1];
    sides_.resize(ends_.back());
    // Each place's entry moves from its sides' begin to their end; that of the next begins there.
    ends_.pop_back();
    forEachSide([this](quint32 low, const Side &side) {
        if (ends_[low] < sides_.size()) // whatever the first time was cancelled at
            sides_[ends_[low]++] = side;
    });
}

quint32 Finder::partOf(quint32 triangle) const
{
    return quint32(mesh_.partOfIndex(std::size_t(triangle) * 3));
}

quint32 Finder::vertexAt(quint32 triangle, quint32 place) const
{
    const quint32 *c = &mesh_.indices[std::size_t(triangle) * 3];
    return places_[c[0]] == place ? c[0] : places_[c[1]] == place ? c[1] : c[2];
}

/// Whether two triangles with a side from @p low to @p high, and a corner each beside it, meet at
/// an angle. Says no where one of them is too thin to tell.
bool Finder::isFolded(quint32 low, quint32 high, quint32 third, quint32 fourth) const
{
    using V = std::array<double, 3>;
    const float *origin = &mesh_.positions[std::size_t(low) * 3];
    const auto from = [&](quint32 place) {
        const float *p = &mesh_.positions[std::size_t(place) * 3];
        return V{double(p[0]) - origin[0], double(p[1]) - origin[1], double(p[2]) - origin[2]};
    };
    const auto dot = [](const V &a, const V &b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; };
    const V side = from(high);
    const double length = dot(side, side);
    // The height over the side: whichever way round the triangles are, it tells where they go.
    const auto height = [&](quint32 place) {
        V v = from(place);
        const double along = dot(v, side) / length;
        for (std::size_t i = 0; i < 3; ++i)
            v[i] -= side[i] * along;
        return v;
    };
    const V a = height(third), b = height(fourth);
    const double aa = dot(a, a), bb = dot(b, b);
    if (!(length > 0 && aa > thin_ && bb > thin_))
        return false;
    static const double flat = std::cos(MeshEdges::sharpest * 3.141592653589793 / 180);
    return -dot(a, b) < flat * std::sqrt(aa * bb);
}

/// Of the sides of one part's triangles between the same two places.
bool Finder::isEdge(quint32 low, const Side *begin, const Side *end) const
{
    std::array<quint32, 2> thirds{};
    std::size_t count = 0; // of different ones
    for (const Side *side = begin; side != end; ++side) {
        const Corners c = placesOfTriangle(side->triangle);
        const quint32 third = *std::find_if(c.begin(), c.end(),
                                            [&](quint32 p) { return p != low && p != side->high; });
        if (std::find(thirds.begin(), thirds.begin() + count, third) != thirds.begin() + count)
            continue;
        if (count == thirds.size())
            return true;
        thirds[count++] = third;
    }
    return count == 1 || isFolded(low, begin->high, thirds[0], thirds[1]);
}

/// Of the sides at one place, ordered by their other place and their triangle, so by parts too.
void Finder::addEdges(quint32 low, const Side *begin, const Side *end)
{
    while (begin != end) {
        const quint32 part = partOf(begin->triangle);
        const Side *next = std::find_if(begin + 1, end, [&](const Side &side) {
            return side.high != begin->high || partOf(side.triangle) != part;
        });
        if (isEdge(low, begin, next))
            edges_.push_back(
                {part, vertexAt(begin->triangle, low), vertexAt(begin->triangle, begin->high)});
        begin = next;
    }
}

MeshEdges Finder::byParts() const
{
    MeshEdges found;
    found.ends.assign(mesh_.parts.size() + 1, 0);
    for (const Edge &edge : edges_)
        found.ends[edge.part + 1] += 2;
    for (std::size_t i = 1; i < found.ends.size(); ++i)
        found.ends[i] += found.ends[i - 1];
    found.vertices.resize(found.ends.back());
    found.ends.pop_back();
    for (const Edge &edge : edges_) {
        found.vertices[found.ends[edge.part]++] = edge.from;
        found.vertices[found.ends[edge.part]++] = edge.to;
    }
    return found;
}

MeshEdges Finder::find()
{
    listSides();
    std::size_t begin = 0;
    for (std::size_t low = 0; low < ends_.size() && !cancelled_; ++low) {
        Side *const first = sides_.data() + begin, *const end = sides_.data() + ends_[low];
        std::sort(first, end, [](const Side &a, const Side &b) {
            return a.high != b.high ? a.high < b.high : a.triangle < b.triangle;
        });
        addEdges(quint32(low), first, end);
        begin = ends_[low];
    }
    return byParts();
}

} // namespace

MeshEdges edgesOf(const Mesh &mesh, const std::atomic<bool> &cancelled)
{
    return Finder(mesh, cancelled).find();
}

} // namespace host
