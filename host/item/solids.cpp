// SPDX-License-Identifier: MIT
#include "host/item/solids.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "host/read/first_of_each.h"

namespace host {

namespace {

constexpr quint32 none = ~0u;

/// Spreads the bits of a number over all of them (the finaliser of SplitMix64).
quint64 spread(quint64 x)
{
    x += 0x9e3779b97f4a7c15u;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
    return x ^ (x >> 31);
}

/// Sets that are joined, each known by one of its members.
class Joined {
public:
    explicit Joined(std::size_t count) : parent_(count)
    {
        for (std::size_t i = 0; i < count; ++i)
            parent_[i] = quint32(i);
    }
    quint32 find(quint32 a)
    {
        while (parent_[a] != a)
            a = parent_[a] = parent_[parent_[a]];
        return a;
    }
    void join(quint32 a, quint32 b)
    {
        a = find(a);
        b = find(b);
        parent_[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<quint32> parent_;
};

/// What hangs together, while its edges are counted: each edge stands for a random number, so that
/// sums tell whether all cancel out; that they do by chance happens once in 2^64.
struct Shell {
    quint64 evenly = 0; // exclusive or: 0 if each edge is met an even number of times
    quint64 ways = 0;   // sum by direction: 0 if each is run through equally in both
    quint32 part = none;
    bool severalParts = false;
};

/// The shells of a mesh.
class Shells {
public:
    Shells(const Mesh &mesh, const std::atomic<bool> &cancel);

    const std::vector<Shell> &all() const { return shells_; }
    quint32 of(std::size_t triangle) { return number(triangle); }

private:
    quint32 &number(std::size_t triangle)
    {
        return numbers_[joined_.find(corner_[mesh_.indices[triangle * 3]])];
    }
    void count(std::size_t triangle, quint32 part);

    const Mesh &mesh_;
    std::vector<quint32> corner_; // of each vertex: which place it stands in
    Joined joined_;
    std::vector<quint32> numbers_; // of shells, by what their places are known by
    std::vector<Shell> shells_;
};

Shells::Shells(const Mesh &mesh, const std::atomic<bool> &cancel)
    : mesh_(mesh), corner_(firstAtPlace(mesh, mesh.normalCount(), cancel)), joined_(corner_.size())
{
    const std::size_t triangles = mesh.triangleCount();
    for (std::size_t i = 0; i < triangles && !cancel; ++i)
        for (std::size_t k = 1; k < 3; ++k)
            joined_.join(corner_[mesh.indices[i * 3]], corner_[mesh.indices[i * 3 + k]]);
    numbers_.assign(corner_.size(), none);
    for (std::size_t p = 0; p < mesh.parts.size() && !cancel; ++p) {
        const std::size_t first = mesh.parts[p].firstIndex / 3;
        const std::size_t end = std::min(first + mesh.parts[p].indexCount / 3, triangles);
        for (std::size_t i = first; i < end; ++i)
            count(i, quint32(p));
    }
}

/// Adds a triangle to its shell.
void Shells::count(std::size_t triangle, quint32 part)
{
    quint32 &at = number(triangle);
    if (at == none) {
        at = quint32(shells_.size());
        shells_.emplace_back();
        shells_.back().part = part;
    }
    Shell &shell = shells_[at];
    shell.severalParts |= shell.part != part;
    for (std::size_t k = 0; k < 3; ++k) {
        const quint32 a = corner_[mesh_.indices[triangle * 3 + k]];
        const quint32 b = corner_[mesh_.indices[triangle * 3 + (k + 1) % 3]];
        if (a == b)
            continue;
        const quint64 edge = spread(quint64(std::min(a, b)) << 32 | std::max(a, b));
        shell.evenly ^= edge;
        shell.ways += a < b ? edge : 0 - edge;
    }
}

/// What is seen at a vertex of triangles, without light: RGB, 0 to 1.
std::array<float, 3> colourAt(const Mesh &mesh, const MeshPart &part, std::size_t vertex)
{
    std::array<float, 3> colour{part.colour[0], part.colour[1], part.colour[2]};
    for (std::size_t c = 0; c < 3 && !mesh.colours.empty(); ++c)
        colour[c] = float(mesh.colours[vertex * 4 + c]) / 255;
    if (part.cover.texture < 0 || mesh.uvs.empty())
        return colour;
    const Texture &texture = *mesh.textures[std::size_t(part.cover.texture)];
    const auto pixel = [](float at, quint32 size) {
        return std::min(quint32((at - std::floor(at)) * float(size)), size - 1);
    };
    const std::size_t at =
        std::size_t(pixel(mesh.uvs[vertex * 2 + 1], texture.height)) * texture.width +
        pixel(mesh.uvs[vertex * 2], texture.width);
    for (std::size_t c = 0; c < 3; ++c)
        colour[c] *= float(texture.pixels[at * 4 + c]) / 255;
    return colour;
}

} // namespace

Solids::Solids(const Mesh &mesh, const std::atomic<bool> &cancel)
{
    Shells shells(mesh, cancel);
    // Shells of one part share a solid, and with it a colour and whether they are hidden.
    std::map<quint32, quint32> ofPart;
    std::vector<quint32> solidOf;
    for (const Shell &shell : shells.all()) {
        solidOf.push_back(none);
        if (shell.evenly != 0)
            continue;
        const auto made = shell.severalParts ? ofPart.end() : ofPart.find(shell.part);
        solidOf.back() = made == ofPart.end() ? quint32(solids_.size()) : made->second;
        if (solidOf.back() == solids_.size())
            solids_.emplace_back();
        if (!shell.severalParts)
            ofPart.emplace(shell.part, solidOf.back());
        solids_[solidOf.back()].oriented &= shell.ways == 0;
    }
    const auto ofTriangle = [&](std::size_t i) {
        const quint32 shell = shells.of(i);
        return shell == none ? none : solidOf[shell];
    };
    for (std::size_t i = 0; i < mesh.triangleCount() && !cancel; ++i)
        if (const quint32 solid = ofTriangle(i); solid != none)
            ++solids_[solid].count;
    std::size_t end = 0;
    for (Solid &solid : solids_) {
        solid.first = end;
        end += solid.count;
        solid.count = 0;
    }
    triangles_.resize(end);
    for (std::size_t i = 0; i < mesh.triangleCount() && !cancel; ++i)
        if (const quint32 solid = ofTriangle(i); solid != none)
            triangles_[solids_[solid].first + solids_[solid].count++] = quint32(i);
    for (Solid &solid : solids_)
        if (!cancel)
            describe(mesh, solid);
    if (cancel)
        solids_.clear();
}

/// Finds box, parts and colour of what has its triangles.
void Solids::describe(const Mesh &mesh, Solid &solid) const
{
    struct Share {
        std::size_t triangles = 0;
        double sum[3] = {0, 0, 0}; // of the colours at their corners
    };
    std::map<quint32, Share> shares; // of each part
    bool first = true;
    const MeshPart *part = nullptr;
    for (std::size_t t = solid.first; t < solid.first + solid.count; ++t) {
        const quint32 index = triangles_[t] * 3;
        if (!part || index >= part->firstIndex + part->indexCount)
            part = &mesh.parts[mesh.partOfIndex(index)];
        Share &share = shares[quint32(part - mesh.parts.data())];
        ++share.triangles;
        for (quint32 k = 0; k < 3; ++k) {
            const std::size_t vertex = mesh.indices[index + k];
            const float *p = &mesh.positions[vertex * 3];
            for (int axis = 0; axis < 3; ++axis) {
                solid.min[axis] = first ? p[axis] : std::min(solid.min[axis], p[axis]);
                solid.max[axis] = first ? p[axis] : std::max(solid.max[axis], p[axis]);
            }
            first = false;
            const std::array<float, 3> colour = colourAt(mesh, *part, vertex);
            for (std::size_t c = 0; c < 3; ++c)
                share.sum[c] += double(colour[c]);
        }
    }
    for (const auto &[index, share] : shares)
        solid.parts.push_back(index);
    std::stable_sort(solid.parts.begin(), solid.parts.end(), [&](quint32 a, quint32 b) {
        return shares[a].triangles > shares[b].triangles;
    });
    solid.colour = mesh.parts[solid.parts.front()].colour;
    const Share &most = shares[solid.parts.front()];
    for (std::size_t c = 0; c < 3; ++c)
        solid.colour[c] = float(most.sum[c] / (3 * double(most.triangles)));
}

std::size_t Solids::byteSize() const
{
    return triangles_.capacity() * sizeof(quint32) + solids_.capacity() * sizeof(Solid);
}

} // namespace host
