// SPDX-License-Identifier: MIT
#include "host/view/compare/difference.h"

#include <cmath>
#include <limits>

#include "host/item/triangle_tree.h"
#include "host/measure/refined_mesh.h"
#include "host/measure/surface_sides.h"

namespace host {

namespace {

constexpr std::size_t enough = 1'000'000; // triangles; a file may have more
constexpr double prepared = 0.3;          // of all the work

/// Distances from one surface, of points each of which mostly lies near the one before.
class Measuring {
public:
    Measuring(const MeshPtr &from, const std::atomic<bool> &cancel)
        : tree_(from, cancel), topology_(from, cancel), sides_(topology_, cancel)
    {
    }
    bool isSigned() const { return sides_.isClosed(); }

    double operator()(const Vec &p)
    {
        // No farther than the last one's distance and the way from there, rounding apart.
        const double within = (last_ + (p - at_).norm()) * (1 + 1e-9);
        auto found = tree_.nearestTo(p, within);
        if (!found)
            found = tree_.nearestTo(p);
        at_ = p;
        last_ = found ? found->distance : 0;
        return found && sides_.isClosed() ? last_ * sides_.side(p, found->triangle, found->nearest)
                                          : last_;
    }

private:
    TriangleTree tree_;
    MeshTopology topology_;
    SurfaceSides sides_;
    Vec at_ = Vec::Zero();
    double last_ = std::numeric_limits<double>::infinity();
};

/// The vertices that are in one place are measured once.
std::vector<float> distancesOf(const MeshPtr &mesh, Measuring &measure,
                               const std::atomic<bool> &cancel, std::atomic<double> &progress)
{
    constexpr std::size_t often = 0x3FF;
    std::vector<float> distances(mesh->vertexCount(), Deviation::unknown);
    const MeshTopology topology(mesh, cancel);
    if (!topology.isWhole())
        return distances;
    const std::size_t corners = mesh->triangleCount() * 3, points = mesh->firstPoint();
    const double all = double(corners + mesh->vertexCount() - points);
    std::vector<float> ofPlace(topology.placeCount(), Deviation::unknown);
    const auto tell = [&](std::size_t done) {
        if ((done & often) == 0)
            progress = prepared + (1 - prepared) * double(done) / all;
        return !cancel;
    };
    for (quint32 c = 0; c < corners && tell(c); ++c) {
        float &distance = ofPlace[topology.place(c)];
        if (distance == Deviation::unknown)
            distance = float(measure(topology.at(c)));
        distances[mesh->indices[c]] = distance;
    }
    for (std::size_t i = points; i < mesh->vertexCount() && tell(corners + i - points); ++i)
        distances[i] = float(measure(vertexOf(*mesh, quint32(i))));
    return distances;
}

} // namespace

QString Difference::fault(const Mesh &from, const Mesh &mesh)
{
    if (from.triangleCount() == 0)
        return tr("The first model has no surface to measure from.");
    if (mesh.triangleCount() == 0 && mesh.pointCount() == 0)
        return tr("The second model has neither a surface nor points.");
    return {};
}

void Difference::start(const MeshPtr &from, const MeshPtr &mesh, double fineness)
{
    progress_ = std::make_shared<std::atomic<double>>(0);
    work_.start([from, mesh, fineness, progress = progress_](const std::atomic<bool> &cancel) {
        Found found;
        Measuring measure(from, cancel);
        *progress = prepared / 2;
        const double size = double((mesh->max - mesh->min).length());
        const auto fine =
            std::make_shared<Mesh>(refinedMesh(*mesh, size / fineness, enough, cancel));
        *progress = prepared;
        found.deviation.isSigned = measure.isSigned();
        found.deviation.distances = distancesOf(fine, measure, cancel, *progress);
        if (cancel)
            return Found();
        found.deviation.sumUp(*fine);
        found.mesh = fine;
        *progress = 1;
        return found;
    });
}

} // namespace host
