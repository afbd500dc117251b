// SPDX-License-Identifier: MIT
#include "host/item/cap_shapes.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <memory>

#include <GL/glu.h>

namespace host {

namespace {

double dot(const QVector3D &a, const QVector3D &b)
{
    return double(a.x()) * double(b.x()) + double(a.y()) * double(b.y()) +
           double(a.z()) * double(b.z());
}

/// Whether @p solid has something on both sides of @p plane.
bool reaches(const Solids::Solid &solid, const CutPlane &plane)
{
    double middle = -plane.offset, reach = 0; // beyond the plane; along its normal
    for (int k = 0; k < 3; ++k) {
        const double low = double(solid.min[k]), high = double(solid.max[k]);
        const double normal = double(plane.normal[k]) / 2;
        middle += normal * (low + high);
        reach += std::abs(normal * (high - low));
    }
    // A little more than the box: what is rounded here is rounded otherwise at its corners.
    return std::abs(middle) <= reach * 1.001;
}

/// Where the edge between two corners on different sides meets the plane. Both triangles at the
/// edge find the same point, to the bit, whichever way they run through it.
PlanePoint crossing(QVector3D a, double beyondA, QVector3D b, double beyondB, const PlaneGrid &grid)
{
    const auto key = [](const QVector3D &v) { return std::make_tuple(v.x(), v.y(), v.z()); };
    if (key(b) < key(a)) {
        std::swap(a, b);
        std::swap(beyondA, beyondB);
    }
    const double share = beyondA / (beyondA - beyondB);
    const PlanePoint p = grid.onPlane(a), q = grid.onPlane(b);
    return {p[0] + (q[0] - p[0]) * share, p[1] + (q[1] - p[1]) * share};
}

/// Cuts the solid's triangles. A corner in the plane counts as kept, so none lies on no side.
std::vector<PlanePoint> outlineOf(const Mesh &mesh, const Solids &solids,
                                  const Solids::Solid &solid, const CutPlane &plane,
                                  const PlaneGrid &grid)
{
    std::vector<PlanePoint> outline;
    for (std::size_t t = solid.first; t < solid.first + solid.count; ++t) {
        const std::size_t index = std::size_t(solids.triangles()[t]) * 3;
        QVector3D corner[3];
        double beyond[3];
        int kept = 0;
        for (int k = 0; k < 3; ++k) {
            corner[k] = mesh.position(mesh.indices[index + std::size_t(k)]);
            beyond[k] = plane.beyond(corner[k]);
            kept += beyond[k] <= 0;
        }
        if (kept == 0 || kept == 3)
            continue;
        PlanePoint from{}, to{};
        for (int k = 0; k < 3; ++k) {
            const int next = (k + 1) % 3;
            if ((beyond[k] <= 0) == (beyond[next] <= 0))
                continue;
            // From where the triangle comes back to what is kept: the inside is on the left then.
            (beyond[k] <= 0 ? to : from) =
                crossing(corner[k], beyond[k], corner[next], beyond[next], grid);
        }
        if (from != to) {
            outline.push_back(from);
            outline.push_back(to);
        }
    }
    return outline;
}

/// Closed ways along pieces of an outline, each as a list of corners.
std::vector<std::vector<PlanePoint>> waysAlong(const std::vector<PlanePoint> &outline,
                                               bool oriented)
{
    std::multimap<PlanePoint, std::size_t> at; // ends of pieces where a way may go on
    for (std::size_t i = 0; i < outline.size(); ++i)
        if (!oriented || i % 2 == 0)
            at.emplace(outline[i], i);
    std::vector<bool> used(outline.size() / 2);
    std::vector<std::vector<PlanePoint>> ways;
    for (std::size_t start = 0; start < used.size(); ++start) {
        if (used[start])
            continue;
        ways.emplace_back();
        // As many pieces end in each point as begin there, so a way ends where it began.
        for (std::size_t end = start * 2;;) {
            used[end / 2] = true;
            ways.back().push_back(outline[end]);
            const PlanePoint next = outline[end ^ 1];
            auto found = at.lower_bound(next);
            while (found != at.end() && found->first == next && used[found->second / 2])
                found = at.erase(found);
            if (found == at.end() || found->first != next)
                break;
            end = found->second;
        }
    }
    return ways;
}

/// What GLU's tessellator fills.
struct Filling {
    std::vector<PlanePoint> corners;
    std::deque<std::array<double, 3>> made; // where lines cross; they must not move
};

#ifndef CALLBACK
#define CALLBACK
#endif

void CALLBACK takeCorner(void *corner, void *filling)
{
    const auto *p = static_cast<const double *>(corner);
    static_cast<Filling *>(filling)->corners.push_back({p[0], p[1]});
}

void CALLBACK makeCorner(GLdouble at[3], void *[4], GLfloat[4], void **out, void *filling)
{
    auto &made = static_cast<Filling *>(filling)->made;
    made.push_back({at[0], at[1], at[2]});
    *out = made.back().data();
}

/// Its being there asks for triangles alone, and no strips.
void CALLBACK takeEdge(GLboolean, void *) {}

std::vector<PlanePoint> filled(const std::vector<std::vector<PlanePoint>> &ways, bool oriented)
{
    using Callback = void(CALLBACK *)();
    const std::unique_ptr<GLUtesselator, decltype(&gluDeleteTess)> tess(gluNewTess(),
                                                                        gluDeleteTess);
    if (!tess)
        return {};
    Filling filling;
    gluTessCallback(tess.get(), GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(takeCorner));
    gluTessCallback(tess.get(), GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(makeCorner));
    gluTessCallback(tess.get(), GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(takeEdge));
    gluTessProperty(tess.get(), GLU_TESS_WINDING_RULE,
                    oriented ? GLU_TESS_WINDING_NONZERO : GLU_TESS_WINDING_ODD);
    gluTessNormal(tess.get(), 0, 0, 1);
    gluTessBeginPolygon(tess.get(), &filling);
    for (const std::vector<PlanePoint> &way : ways) {
        gluTessBeginContour(tess.get());
        for (const PlanePoint &p : way) {
            filling.made.push_back({p[0], p[1], 0});
            gluTessVertex(tess.get(), filling.made.back().data(), filling.made.back().data());
        }
        gluTessEndContour(tess.get());
    }
    gluTessEndPolygon(tess.get());
    filling.corners.resize(filling.corners.size() / 3 * 3);
    return std::move(filling.corners);
}

double areaOf(const std::vector<PlanePoint> &triangles)
{
    double twice = 0;
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
        const PlanePoint &a = triangles[i], &b = triangles[i + 1], &c = triangles[i + 2];
        twice += std::abs((b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]));
    }
    return twice / 2;
}

} // namespace

PlaneGrid::PlaneGrid(const CutPlane &plane, const QVector3D &centre, float scale)
    : normal_(plane.normal), centre_(centre), scale_(scale), height_(-plane.beyond(centre) * scale_)
{
    // The axis that lies most in the plane leads to the right.
    int axis = 0;
    for (int k = 1; k < 3; ++k)
        if (std::abs(normal_[k]) < std::abs(normal_[axis]))
            axis = k;
    QVector3D along;
    along[axis] = 1;
    right_ = (along - normal_ * QVector3D::dotProduct(along, normal_)).normalized();
    up_ = QVector3D::crossProduct(normal_, right_);
}

PlanePoint PlaneGrid::onPlane(const QVector3D &p) const
{
    // Differences first: far from the origin little is left of them afterwards.
    double x = 0, y = 0;
    for (int k = 0; k < 3; ++k) {
        const double d = double(p[k]) - double(centre_[k]);
        x += d * double(right_[k]);
        y += d * double(up_[k]);
    }
    return {x * scale_, y * scale_};
}

PlanePoint PlaneGrid::onPlaneOf(const QVector3D &inWorld) const
{
    return {dot(inWorld, right_), dot(inWorld, up_)};
}

QVector3D PlaneGrid::inWorld(const PlanePoint &at) const
{
    return right_ * float(at[0]) + up_ * float(at[1]) + normal_ * float(height_);
}

bool CapShape::holds(const PlanePoint &at) const
{
    int winding = 0, crossings = 0;
    for (std::size_t i = 0; i + 1 < outline.size(); i += 2) {
        const PlanePoint &a = outline[i], &b = outline[i + 1];
        if ((a[1] > at[1]) == (b[1] > at[1]))
            continue;
        const double x = a[0] + (b[0] - a[0]) * (at[1] - a[1]) / (b[1] - a[1]);
        if (x <= at[0])
            continue;
        ++crossings;
        winding += b[1] > a[1] ? 1 : -1;
    }
    return oriented ? winding != 0 : crossings % 2 == 1;
}

std::vector<CapShape> capShapes(const Mesh &mesh, const Solids &solids, const CutPlane &plane,
                                const PlaneGrid &grid)
{
    std::vector<CapShape> shapes;
    for (std::size_t s = 0; s < solids.all().size(); ++s) {
        const Solids::Solid &solid = solids.all()[s];
        if (!reaches(solid, plane))
            continue;
        CapShape shape;
        shape.solid = s;
        shape.oriented = solid.oriented;
        shape.outline = outlineOf(mesh, solids, solid, plane, grid);
        if (shape.outline.empty())
            continue;
        shape.triangles = filled(waysAlong(shape.outline, solid.oriented), solid.oriented);
        shape.area = areaOf(shape.triangles);
        shapes.push_back(std::move(shape));
    }
    std::stable_sort(shapes.begin(), shapes.end(),
                     [](const CapShape &a, const CapShape &b) { return a.area > b.area; });
    return shapes;
}

} // namespace host
