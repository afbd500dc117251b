// SPDX-License-Identifier: MIT
#include "host/item/pick_square.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

/// How far a place lies beyond a plane.
double beyond(const PickSquare::Place &at, const PlaneGrid &plane)
{
    const QVector3D &n = plane.normal();
    return double(n.x()) * at[0] + double(n.y()) * at[1] + double(n.z()) * at[2] - plane.height();
}

/// What of a convex polygon is not beyond a plane.
std::vector<PickSquare::Place> below(const std::vector<PickSquare::Place> &polygon,
                                     const PlaneGrid &plane)
{
    std::vector<PickSquare::Place> left;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const PickSquare::Place &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        const double beyondA = beyond(a, plane), beyondB = beyond(b, plane);
        if (beyondA <= 0)
            left.push_back(a);
        if ((beyondA <= 0) == (beyondB <= 0))
            continue;
        const double share = beyondA / (beyondA - beyondB);
        left.push_back(a);
        for (std::size_t k = 0; k < 3; ++k)
            left.back()[k] += (b[k] - a[k]) * share;
    }
    return left;
}

} // namespace

PickSquare::PickSquare(const GL::Camera &camera)
{
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row) {
            double sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += camera.proj_matrix[i * 4 + row] * camera.model_matrix[column * 4 + i];
            matrix_[column * 4 + row] = sum;
        }
}

PickSquare::Seen PickSquare::seen(const Place &at) const
{
    const GLdouble *m = matrix_;
    const auto row = [&](int r) {
        return m[r] * at[0] + m[4 + r] * at[1] + m[8 + r] * at[2] + m[12 + r];
    };
    const double w = row(3);
    return w > 0 ? Seen{row(0) / w, row(1) / w, true} : Seen();
}

/// No edge of either parts them.
bool PickSquare::isMet(const Seen &a, const Seen &b, const Seen &c)
{
    if (!(a.inFront && b.inFront && c.inFront) || std::min({a.x, b.x, c.x}) > 1 ||
        std::max({a.x, b.x, c.x}) < -1 || std::min({a.y, b.y, c.y}) > 1 ||
        std::max({a.y, b.y, c.y}) < -1)
        return false;
    const Seen *corners[] = {&a, &b, &c};
    for (int i = 0; i < 3; ++i) {
        const Seen &p = *corners[i], &q = *corners[(i + 1) % 3], &r = *corners[(i + 2) % 3];
        const double nx = q.y - p.y, ny = p.x - q.x;
        const double inside = nx * (r.x - p.x) + ny * (r.y - p.y);
        // How far the square reaches along the edge's normal.
        const double middle = -(nx * p.x + ny * p.y), reach = std::abs(nx) + std::abs(ny);
        if (inside >= 0 ? middle + reach < 0 : middle - reach > 0)
            return false;
    }
    return true;
}

bool PickSquare::isMet(std::vector<Place> polygon, const std::vector<PlaneGrid> &planes,
                       std::size_t without) const
{
    for (std::size_t i = 0; i < planes.size(); ++i)
        if (i != without)
            polygon = below(polygon, planes[i]);
    std::vector<Seen> corners;
    for (const Place &at : polygon)
        corners.push_back(seen(at));
    // A fan; its sides are among its triangles, so that lines and points have some as well.
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (isMet(corners[0], corners[i], corners[(i + 1) % corners.size()]))
            return true;
    return false;
}

} // namespace host
