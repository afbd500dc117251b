// SPDX-License-Identifier: MIT
#include "host/measure/snap.h"

#include <algorithm>

#include <QLineF>

namespace host {

namespace {

/// Edges that bend less than this are the triangulation's and not the shape's.
constexpr double flat = 0.5 / degrees;

/// The share of the way from @p a to @p b, in the picture, at which the pointer is nearest.
double shareNear(const QPointF &pointer, const QPointF &a, const QPointF &b)
{
    const QPointF along = b - a;
    const double square = QPointF::dotProduct(along, along);
    return square > 0 ? std::clamp(QPointF::dotProduct(pointer - a, along) / square, 0.0, 1.0)
                      : 0.0;
}

/// The place between two others that is seen that share of the way between them: what is far away
/// is seen shorter.
Vec between(const Vec &a, const Seen &seenA, const Vec &b, const Seen &seenB, double share)
{
    const double near = share * seenA.depth;
    const double far = seenB.depth - share * (seenB.depth - seenA.depth);
    return a + (b - a) * (far > 0 ? near / far : share);
}

class Snapping {
public:
    Snapping(const SnapWish &wish, const QPointF &pointer, const Sight &sight,
             const std::function<bool(const Vec &)> &visible)
        : mesh_(wish.mesh), pointer_(pointer), reach_(wish.reach), sight_(sight), visible_(visible)
    {
    }

    void tryVertex(quint32 corner)
    {
        offer(Snap::Kind::Vertex, corner, cornerOf(mesh_, corner / 3, corner % 3));
    }

    void tryEdge(quint32 corner)
    {
        const quint32 next = MeshTopology::next(corner);
        const Vec a = cornerOf(mesh_, corner / 3, corner % 3),
                  b = cornerOf(mesh_, next / 3, next % 3);
        const Seen seenA = sight_(a), seenB = sight_(b);
        const double share = shareNear(pointer_, seenA.pixel, seenB.pixel);
        offer(Snap::Kind::Edge, corner, between(a, seenA, b, seenB, share));
    }

    std::optional<Snap> best() const { return found_ ? std::optional(best_) : std::nullopt; }

private:
    void offer(Snap::Kind kind, quint32 corner, const Vec &at)
    {
        const double away = QLineF(sight_(at).pixel, pointer_).length();
        if ((found_ ? away < least_ : away <= reach_) && visible_(at)) {
            found_ = true;
            least_ = away;
            best_ = {kind, corner, at};
        }
    }

    const Mesh &mesh_;
    QPointF pointer_;
    double reach_;
    const Sight &sight_;
    const std::function<bool(const Vec &)> &visible_;
    bool found_ = false;
    double least_ = 0; // once there is one
    Snap best_;
};

} // namespace

std::optional<Snap> snapTo(const SnapWish &wish, const std::vector<quint32> &met,
                           const std::optional<SurfacePoint> &under, const QPointF &pointer,
                           const Sight &sight, const std::function<bool(const Vec &)> &visible)
{
    Snapping vertices(wish, pointer, sight, visible), edges(wish, pointer, sight, visible);
    for (quint32 triangle : met)
        for (quint32 k = 0; wish.to == SnapTo::All && k < 3; ++k)
            vertices.tryVertex(triangle * 3 + k);
    if (const auto best = vertices.best())
        return best;
    for (quint32 triangle : met)
        for (quint32 k = 0; wish.to != SnapTo::Faces && k < 3; ++k)
            if (!wish.topology || wish.topology->bend(triangle * 3 + k) > flat)
                edges.tryEdge(triangle * 3 + k);
    if (const auto best = edges.best())
        return best;
    if (!under)
        return {};
    return Snap{Snap::Kind::Face, under->triangle * 3, under->at};
}

} // namespace host
