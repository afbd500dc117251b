// SPDX-License-Identifier: MIT
#include "host/measure/refined_mesh.h"

#include <algorithm>
#include <unordered_map>

#include "host/measure/vec.h"

namespace host {

namespace {

/// Triangles that are made smaller, with the vertices that belong to them alone.
class Refining {
public:
    Refining(const Mesh &mesh, double longest)
        : longest_(longest),
          positions(mesh.positions.begin(),
                    mesh.positions.begin() + std::ptrdiff_t(mesh.normals.size())),
          normals(mesh.normals)
    {
    }
    /// Begins a round: an edge that was halved in the one before is there no more.
    void begin() { middles_.clear(); }
    /// Halves the edges of triangles that are too long, once each. Returns whether there was one;
    /// false, with nothing done, if it was cancelled.
    bool halve(std::vector<quint32> &indices, const std::atomic<bool> &cancel);

private:
    bool isLong(quint32 a, quint32 b) const;
    quint32 middle(quint32 a, quint32 b);
    void split(const quint32 *corners, std::vector<quint32> &out);

    double longest_;
    std::unordered_map<quint64, quint32> middles_; // of this round's, by the ends of their edges

public:
    std::vector<float> positions, normals;
};

bool Refining::isLong(quint32 a, quint32 b) const
{
    double square = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        const double d =
            double(positions[a * std::size_t(3) + k]) - double(positions[b * std::size_t(3) + k]);
        square += d * d;
    }
    return square > longest_ * longest_;
}

/// The same place from both of the triangles that meet there.
quint32 Refining::middle(quint32 a, quint32 b)
{
    const quint64 key = quint64(std::min(a, b)) << 32 | std::max(a, b);
    const auto [found, isNew] = middles_.emplace(key, quint32(positions.size() / 3));
    if (!isNew)
        return found->second;
    Vec normal = Vec::Zero();
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t i = a * std::size_t(3) + k, j = b * std::size_t(3) + k;
        positions.push_back(float((double(positions[i]) + double(positions[j])) / 2));
        normal[Eigen::Index(k)] = double(normals[i]) + double(normals[j]);
    }
    normal.normalize();
    for (int k = 0; k < 3; ++k)
        normals.push_back(float(normal[k]));
    return found->second;
}

void Refining::split(const quint32 *corners, std::vector<quint32> &out)
{
    quint32 at[3], between[3] = {};
    int count = 0, first = 0;
    bool tooLong[3];
    for (int k = 0; k < 3; ++k) {
        tooLong[k] = isLong(corners[k], corners[(k + 1) % 3]);
        count += tooLong[k];
    }
    // Turned so that the first edge is long, or with two of them the last is not.
    while (count > 0 && count < 3 && !(tooLong[first] && !tooLong[(first + 2) % 3]))
        ++first;
    for (int k = 0; k < 3; ++k)
        at[k] = corners[(first + k) % 3];
    for (int k = 0; k < count; ++k)
        between[k] = middle(at[k], at[(k + 1) % 3]);
    const auto add = [&out](quint32 a, quint32 b, quint32 c) { out.insert(out.end(), {a, b, c}); };
    if (count == 0) {
        add(at[0], at[1], at[2]);
    } else if (count == 1) {
        add(at[0], between[0], at[2]);
        add(between[0], at[1], at[2]);
    } else {
        add(between[0], at[1], between[1]);
        if (count == 2) {
            add(at[0], between[0], between[1]);
            add(at[0], between[1], at[2]);
        } else {
            add(at[0], between[0], between[2]);
            add(between[2], between[1], at[2]);
            add(between[0], between[1], between[2]);
        }
    }
}

bool Refining::halve(std::vector<quint32> &indices, const std::atomic<bool> &cancel)
{
    constexpr std::size_t often = 0xFFFF;
    std::vector<quint32> out;
    out.reserve(indices.size());
    for (std::size_t t = 0; t < indices.size() / 3; ++t) {
        if ((t & often) == 0 && cancel)
            return false;
        split(&indices[t * 3], out);
    }
    indices.swap(out);
    return indices.size() != out.size();
}

} // namespace

Mesh refinedMesh(const Mesh &mesh, double longest, std::size_t enough,
                 const std::atomic<bool> &cancel)
{
    Refining refining(mesh, longest);
    std::vector<std::vector<quint32>> triangles; // of each part
    for (std::size_t i = 0; i < mesh.trianglePartCount(); ++i) {
        const auto begin = mesh.indices.begin() + std::ptrdiff_t(mesh.parts[i].firstIndex);
        triangles.emplace_back(begin, begin + std::ptrdiff_t(mesh.parts[i].indexCount));
    }
    // All parts by turns: where it ends early, none is finer than the others.
    std::size_t count = mesh.triangleCount();
    for (bool goesOn = true; goesOn && !cancel && count < enough;) {
        goesOn = false;
        count = 0;
        refining.begin();
        for (std::vector<quint32> &part : triangles) {
            goesOn = refining.halve(part, cancel) || goesOn;
            count += part.size() / 3;
        }
    }

    Mesh fine;
    fine.axes = mesh.axes;
    fine.origin = mesh.origin;
    fine.unit = mesh.unit;
    fine.nodes = mesh.nodes;
    fine.parts = mesh.parts;
    const std::size_t before = mesh.normals.size(); // floats of what belongs to triangles
    const auto shift = quint32((refining.normals.size() - before) / 3);
    fine.positions = std::move(refining.positions);
    fine.positions.insert(fine.positions.end(), mesh.positions.begin() + std::ptrdiff_t(before),
                          mesh.positions.end());
    fine.normals = std::move(refining.normals);
    for (std::size_t i = 0; i < fine.parts.size(); ++i) {
        MeshPart &part = fine.parts[i];
        const auto first = std::size_t(part.firstIndex);
        part.cover = Cover();
        part.firstIndex = quint32(fine.indices.size());
        if (i < triangles.size()) {
            part.indexCount = quint32(triangles[i].size());
            fine.indices.insert(fine.indices.end(), triangles[i].begin(), triangles[i].end());
            continue;
        }
        part.firstVertex += part.kind == MeshPart::Kind::Points ? shift : 0;
        for (std::size_t k = first; k < first + part.indexCount; ++k)
            fine.indices.push_back(mesh.indices[k] +
                                   (mesh.indices[k] * std::size_t(3) < before ? 0 : shift));
    }
    fine.findBounds();
    return fine;
}

} // namespace host
