// SPDX-License-Identifier: MIT
#include "host/measure/round.h"

#include <algorithm>
#include <cmath>

#include <Eigen/Eigenvalues>

namespace host {

namespace {

/// The sharpest turn between two chords of one circle, as in a prism of eight sides.
constexpr double sharpest = 46 / degrees;
/// How far points may be off their circle, and how far off one has to be to end it: shares of the
/// radius. In between, the curvature changes bit by bit, and it is no circle.
constexpr double onIt = 1e-3, offIt = 1e-2;
constexpr std::size_t longest = 4096; // stations on either side

/// Where a chain that may be a circle crosses the next edge: one point, or both ends of the edge.
using Station = std::vector<Vec>;

double off(const Circle &circle, const Station &station)
{
    double most = 0;
    for (const Vec &p : station)
        most = std::max(most, circle.distance(p));
    return most / circle.radius;
}

/// The stations from what was picked on, in both directions. A chain that closes is in both lists
/// whole, and counts twice everywhere.
struct Chain {
    std::vector<Station> ahead, behind;
};

/// A run of stations of a chain that lie on a circle.
class Arc {
public:
    /// Begins with so many stations of either direction.
    Arc(const Chain &chain, std::size_t ahead, std::size_t behind)
        : chain_(chain), ahead_(ahead), behind_(behind)
    {
        if (ahead <= chain.ahead.size() && behind <= chain.behind.size())
            fit();
    }

    std::optional<Circle> grown()
    {
        if (!circle_)
            return {};
        bool vague = false;
        for (std::size_t before = 0; before != ahead_ + behind_;) {
            before = ahead_ + behind_;
            vague = false;
            grow(chain_.ahead, ahead_, vague);
            grow(chain_.behind, behind_, vague);
            fit();
            if (!circle_)
                return {};
        }
        return vague || !isLongEnough() ? std::nullopt : circle_;
    }

private:
    void grow(const std::vector<Station> &stations, std::size_t &taken, bool &vague) const
    {
        while (taken < stations.size() && off(*circle_, stations[taken]) <= onIt)
            ++taken;
        vague = vague || (taken < stations.size() && off(*circle_, stations[taken]) < offIt);
    }

    /// Leaves no circle if one of the points is off it.
    void fit()
    {
        std::vector<Vec> points;
        const auto add = [&](const std::vector<Station> &stations, std::size_t count) {
            for (std::size_t i = 0; i < count; ++i)
                points.insert(points.end(), stations[i].begin(), stations[i].end());
        };
        add(chain_.ahead, ahead_);
        add(chain_.behind, behind_);
        circle_ = fitCircle(points);
        const auto isOff = [&](const Vec &p) { return off(*circle_, {p}) > onIt; };
        if (circle_ && std::any_of(points.begin(), points.end(), isOff))
            circle_.reset();
    }

    /// Four points that lie symmetrically, as the corners of a rectangle do, lie on a circle
    /// without any being meant.
    bool isLongEnough() const
    {
        if (ahead_ + behind_ != 4)
            return ahead_ + behind_ > 4;
        std::vector<Vec> points;
        for (std::size_t i = behind_; i-- > 0;)
            points.push_back(chain_.behind[i].front());
        for (std::size_t i = 0; i < ahead_; ++i)
            points.push_back(chain_.ahead[i].front());
        const double first = (points[1] - points[0]).norm();
        return std::abs((points[2] - points[1]).norm() - first) < 0.01 * first &&
               std::abs((points[3] - points[2]).norm() - first) < 0.01 * first;
    }

    const Chain &chain_;
    std::size_t ahead_, behind_;
    std::optional<Circle> circle_;
};

std::optional<Circle> circleOf(const Chain &chain)
{
    // What was picked may be the middle or either end of the arc.
    for (const auto &[ahead, behind] : {std::pair<std::size_t, std::size_t>(2, 2), {3, 1}, {1, 3}})
        if (const auto circle = Arc(chain, ahead, behind).grown())
            return circle;
    return {};
}

bool isFeature(const MeshTopology &topology, quint32 corner)
{
    return topology.bend(corner) >= MeshTopology::featureBend;
}

/// The end of the edge that goes on from @p from over @p to with the least turn: a corner there;
/// none if all turn sharply.
quint32 nextInChain(const MeshTopology &topology, quint32 from, quint32 to)
{
    const quint32 here = topology.place(to);
    const Vec way = topology.at(to) - topology.at(from);
    quint32 best = MeshTopology::none;
    double least = sharpest;
    const auto look = [&](quint32 edge, quint32 end) {
        if (topology.place(end) == topology.place(from))
            return;
        const double turn = angleBetween(way, topology.at(end) - topology.at(to));
        if (turn <= least && isFeature(topology, edge)) {
            least = turn;
            best = end;
        }
    };
    for (const quint32 *c = topology.begin(here); c != topology.end(here); ++c) {
        look(*c, MeshTopology::next(*c));
        look(MeshTopology::previous(*c), MeshTopology::previous(*c));
    }
    return best;
}

/// The points of the chain from @p to on, up to the place @p stop.
std::vector<Station> follow(const MeshTopology &topology, quint32 from, quint32 to, quint32 stop)
{
    std::vector<Station> stations{{topology.at(to)}};
    while (stations.size() < longest) {
        const quint32 end = nextInChain(topology, from, to);
        if (end == MeshTopology::none || topology.place(end) == stop)
            break;
        from = to;
        to = end;
        stations.push_back({topology.at(to)});
    }
    return stations;
}

/// The direction along which the surface around @p triangle does not bend; null if there is none,
/// or more than one.
Vec axisAround(const MeshTopology &topology, quint32 triangle)
{
    constexpr std::size_t enough = 24; // triangles: what lies farther may be of another shape
    std::vector<quint32> around{triangle};
    Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
    for (std::size_t i = 0; i < around.size(); ++i) {
        const Vec n = normalOf(topology.mesh(), around[i]).normalized();
        sum += n * n.transpose();
        for (quint32 k = 0; k < 3 && around.size() < enough; ++k) {
            const quint32 edge = around[i] * 3 + k, other = topology.across(edge);
            if (other != MeshTopology::none && topology.bend(edge) <= sharpest &&
                std::find(around.begin(), around.end(), other / 3) == around.end())
                around.push_back(other / 3);
        }
    }
    // The normals of a cylinder lie in a plane.
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> spread(sum);
    const auto &values = spread.eigenvalues();
    if (!(values[1] > 1e-9 * values[2]) || !(values[0] < 1e-4 * values[1]))
        return Vec::Zero();
    return spread.eigenvectors().col(0);
}

/// Walks from triangle to triangle through the plane across an axis.
class Slice {
public:
    Slice(const MeshTopology &topology, const Vec &axis, const Vec &at)
        : topology_(topology), axis_(axis), at_(at)
    {
    }

    /// The edges that the plane cuts on the way out of @p triangle over its edge @p edge and on.
    std::vector<Station> follow(quint32 triangle, quint32 edge) const
    {
        std::vector<Station> stations;
        for (std::size_t steps = 0; steps < longest; ++steps) {
            const double bend = topology_.bend(edge);
            if (bend > 1e-4) // else it runs within a flat facet
                stations.push_back({flat(edge), flat(MeshTopology::next(edge))});
            const quint32 other = topology_.across(edge);
            if (bend > sharpest || other == MeshTopology::none || other / 3 == triangle)
                break;
            edge = otherCut(other);
            if (edge == MeshTopology::none)
                break;
        }
        return stations;
    }

    /// The edge of its triangle that the plane cuts too.
    quint32 otherCut(quint32 edge) const
    {
        for (quint32 e : {MeshTopology::next(edge), MeshTopology::previous(edge)})
            if (isCut(e))
                return e;
        return MeshTopology::none;
    }

    bool isCut(quint32 edge) const { return above(edge) != above(MeshTopology::next(edge)); }

private:
    bool above(quint32 corner) const { return height(corner) >= 0; }
    double height(quint32 corner) const { return (topology_.at(corner) - at_).dot(axis_); }
    Vec flat(quint32 corner) const { return topology_.at(corner) - axis_ * height(corner); }

    const MeshTopology &topology_;
    Vec axis_, at_;
};

} // namespace

std::optional<Circle> roundEdge(const MeshTopology &topology, quint32 corner)
{
    if (!isFeature(topology, corner))
        return {};
    const quint32 from = corner, to = MeshTopology::next(corner);
    return circleOf({follow(topology, from, to, topology.place(from)),
                     follow(topology, to, from, topology.place(to))});
}

std::optional<Circle> roundFace(const MeshTopology &topology, quint32 triangle, const Vec &at)
{
    const Vec axis = axisAround(topology, triangle);
    if (axis.isZero())
        return {};
    const Slice slice(topology, axis, at);
    quint32 edge = triangle * 3;
    for (quint32 k = 0; k < 2 && !slice.isCut(edge); ++k)
        ++edge;
    const quint32 other = slice.isCut(edge) ? slice.otherCut(edge) : MeshTopology::none;
    if (other == MeshTopology::none)
        return {};
    return circleOf({slice.follow(triangle, edge), slice.follow(triangle, other)});
}

} // namespace host
