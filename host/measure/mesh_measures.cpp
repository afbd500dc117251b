// SPDX-License-Identifier: MIT
#include "host/measure/mesh_measures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include <Eigen/Geometry>

namespace host {

namespace {

/// A sum that keeps what each addition rounds off (A. Neumaier, "Rundungsfehleranalyse einiger
/// Verfahren zur Summation endlicher Summen", 1974).
class ExactSum {
public:
    void add(double value)
    {
        const double sum = sum_ + value;
        rest_ += std::abs(sum_) >= std::abs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
        sum_ = sum;
    }
    double value() const { return sum_ + rest_; }

private:
    double sum_ = 0, rest_ = 0;
};

struct Box {
    Vec min = Vec::Constant(std::numeric_limits<double>::infinity());
    Vec max = -min;

    void add(const Vec &p)
    {
        min = min.cwiseMin(p);
        max = max.cwiseMax(p);
    }
    bool holds(const Box &other) const
    {
        return (min.array() <= other.min.array()).all() && (other.max.array() <= max.array()).all();
    }
};

struct Shell {
    ExactSum volume; // negative if it faces inwards
    Box box;
};

class Measuring {
public:
    Measuring(const MeshTopology &topology, const std::atomic<bool> &cancel)
        : topology_(topology), cancel_(cancel)
    {
    }
    SurfaceMeasures run(const std::vector<bool> &parts);

private:
    void choose(const std::vector<bool> &parts);
    void sumArea(SurfaceMeasures &out) const;
    SurfaceMeasures::Bounds closedness() const;
    bool balances(quint32 place, std::vector<std::pair<quint32, int>> &edges, bool &odd) const;
    std::vector<Shell> shells(const Vec &middle);
    quint32 rootOf(quint32 place);
    SurfaceMeasures::Bounds sumVolume(double &volume);

    const MeshTopology &topology_;
    const std::atomic<bool> &cancel_;
    std::vector<bool> chosen_;    // triangles
    std::vector<quint32> parent_; // of places: those of a shell lead to the same one
    Box box_;
};

void Measuring::choose(const std::vector<bool> &parts)
{
    const Mesh &mesh = topology_.mesh();
    const std::size_t count = mesh.triangleCount();
    chosen_.assign(count, parts.empty());
    for (std::size_t i = 0; i < parts.size() && i < mesh.parts.size(); ++i) {
        const std::size_t first = mesh.parts[i].firstIndex / 3;
        const std::size_t end = std::min<std::size_t>(first + mesh.parts[i].indexCount / 3, count);
        for (std::size_t t = first; parts[i] && t < end; ++t)
            chosen_[t] = true;
    }
}

void Measuring::sumArea(SurfaceMeasures &out) const
{
    ExactSum area;
    for (std::size_t t = 0; t < chosen_.size() && !cancel_; ++t) {
        if (!chosen_[t])
            continue;
        ++out.triangles;
        area.add(normalOf(topology_.mesh(), quint32(t)).norm() / 2);
    }
    out.area = area.value();
}

/// Whether each edge from @p place to a later one is run through as often both ways. Sets @p odd if
/// one is run through an odd number of times.
bool Measuring::balances(quint32 place, std::vector<std::pair<quint32, int>> &edges,
                         bool &odd) const
{
    edges.clear();
    const auto note = [&](quint32 other, int way) {
        if (other > place)
            edges.emplace_back(other, way);
    };
    for (const quint32 *c = topology_.begin(place); c != topology_.end(place); ++c) {
        if (!chosen_[*c / 3])
            continue;
        note(topology_.place(MeshTopology::next(*c)), 1);
        note(topology_.place(MeshTopology::previous(*c)), -1);
    }
    std::sort(edges.begin(), edges.end());
    bool balanced = true;
    for (std::size_t i = 0; i < edges.size();) {
        int sum = 0;
        std::size_t k = i;
        for (; k < edges.size() && edges[k].first == edges[i].first; ++k)
            sum += edges[k].second;
        balanced = balanced && sum == 0;
        odd = odd || (k - i) % 2 == 1;
        i = k;
    }
    return balanced;
}

SurfaceMeasures::Bounds Measuring::closedness() const
{
    std::vector<std::pair<quint32, int>> edges;
    bool balanced = true, odd = false;
    for (quint32 place = 0; place < topology_.placeCount() && !odd && !cancel_; ++place)
        balanced = balances(place, edges, odd) && balanced;
    return odd         ? SurfaceMeasures::Bounds::Open
           : !balanced ? SurfaceMeasures::Bounds::Disagree
                       : SurfaceMeasures::Bounds::Volume;
}

quint32 Measuring::rootOf(quint32 place)
{
    while (parent_[place] != place)
        place = parent_[place] = parent_[parent_[place]];
    return place;
}

/// The volume of each shell by the theorem of Gauss: a sixth of the sum of a · (b × c) over its
/// triangles, the corners counted from @p middle, so that a place far from the origin costs no
/// digits.
std::vector<Shell> Measuring::shells(const Vec &middle)
{
    parent_.resize(topology_.placeCount());
    std::iota(parent_.begin(), parent_.end(), 0u);
    for (std::size_t t = 0; t < chosen_.size(); ++t) {
        const quint32 corner = quint32(t) * 3;
        for (quint32 k = 1; chosen_[t] && k < 3; ++k)
            parent_[rootOf(topology_.place(corner + k))] = rootOf(topology_.place(corner));
    }
    std::vector<quint32> numbers(parent_.size(), MeshTopology::none); // by roots
    std::vector<Shell> found;
    for (std::size_t t = 0; t < chosen_.size() && !cancel_; ++t) {
        if (!chosen_[t])
            continue;
        const quint32 corner = quint32(t) * 3;
        quint32 &number = numbers[rootOf(topology_.place(corner))];
        if (number == MeshTopology::none) {
            number = quint32(found.size());
            found.emplace_back();
        }
        Shell &shell = found[number];
        const Vec a = topology_.at(corner), b = topology_.at(corner + 1),
                  c = topology_.at(corner + 2);
        shell.volume.add((a - middle).dot((b - middle).cross(c - middle)) / 6);
        for (const Vec &p : {a, b, c})
            shell.box.add(p);
    }
    return found;
}

SurfaceMeasures::Bounds Measuring::sumVolume(double &volume)
{
    const std::vector<Shell> all = shells((box_.min + box_.max) / 2);
    double largest = 0;
    for (const Shell &shell : all)
        if (std::abs(shell.volume.value()) > std::abs(largest))
            largest = shell.volume.value();
    const auto isOuter = [&](const Shell &s) { return s.volume.value() * largest >= 0; };
    ExactSum sum;
    for (const Shell &shell : all) {
        if (cancel_)
            break;
        sum.add(shell.volume.value());
        const auto around = [&](const Shell &other) {
            return isOuter(other) && other.box.holds(shell.box);
        };
        if (!isOuter(shell) && std::none_of(all.begin(), all.end(), around))
            return SurfaceMeasures::Bounds::Disagree;
    }
    volume = std::abs(sum.value());
    return SurfaceMeasures::Bounds::Volume;
}

SurfaceMeasures Measuring::run(const std::vector<bool> &parts)
{
    SurfaceMeasures out;
    choose(parts);
    sumArea(out);
    if (out.triangles == 0 || cancel_)
        return out;
    for (std::size_t t = 0; t < chosen_.size(); ++t)
        for (quint32 k = 0; chosen_[t] && k < 3; ++k)
            box_.add(topology_.at(quint32(t) * 3 + k));
    out.min = box_.min;
    out.max = box_.max;
    out.bounds = closedness();
    if (out.bounds == SurfaceMeasures::Bounds::Volume)
        out.bounds = sumVolume(out.volume);
    return out;
}

} // namespace

SurfaceMeasures measureSurface(const MeshTopology &topology, const std::vector<bool> &parts,
                               const std::atomic<bool> &cancel)
{
    return Measuring(topology, cancel).run(parts);
}

} // namespace host
