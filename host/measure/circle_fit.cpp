// SPDX-License-Identifier: MIT
#include "host/measure/circle_fit.h"

#include <algorithm>
#include <cmath>

#include <Eigen/Cholesky>
#include <Eigen/Eigenvalues>

namespace host {

namespace {

using Flat = std::vector<Eigen::Vector2d>; // points of the plane

/// Equations of three unknowns, more than three of them, solved by the least squares.
class Equations {
public:
    void add(const Vec &factors, double sum)
    {
        left_ += factors * factors.transpose();
        right_ += factors * sum;
    }
    Vec solution() const { return left_.ldlt().solve(right_); }

private:
    Eigen::Matrix3d left_ = Eigen::Matrix3d::Zero();
    Vec right_ = Vec::Zero();
};

// A circle in the plane is x and y of its centre, and its radius.

/// The circle x² + y² = 2 a x + 2 b y + c whose coefficients are off by the least squares: linear,
/// exact for points on a circle, and too small for scattered ones on a short arc (I. Kåsa, "A
/// circle fitting procedure and its error analysis", IEEE Trans. Instrum. Meas. 25, 1976).
Vec algebraic(const Flat &at)
{
    Equations equations;
    for (const Eigen::Vector2d &p : at)
        equations.add({2 * p.x(), 2 * p.y(), 1}, p.squaredNorm());
    const Vec s = equations.solution();
    return {s[0], s[1], std::sqrt(std::max(0.0, s[2] + s[0] * s[0] + s[1] * s[1]))};
}

/// Lets the sum of (|p - centre| - radius)² become least by steps of Gauss and Newton (W. Gander,
/// G. H. Golub, R. Strebel, "Least-squares fitting of circles and ellipses", BIT 34, 1994). Not
/// finite if a point is the centre.
Vec refined(const Flat &at, Vec circle)
{
    for (int step = 0; step < 20; ++step) {
        Equations equations;
        for (const Eigen::Vector2d &p : at) {
            const Eigen::Vector2d off = p - circle.head<2>();
            const double length = off.norm();
            equations.add({off.x() / length, off.y() / length, 1}, length - circle[2]);
        }
        const Vec change = equations.solution();
        circle += change;
        if (change.norm() < 1e-15 * circle[2])
            break;
    }
    return circle;
}

} // namespace

double Circle::distance(const Vec &point) const
{
    const Vec from = point - centre;
    const double height = from.dot(normal);
    return std::hypot((from - normal * height).norm() - radius, height);
}

std::optional<Circle> fitCircle(const std::vector<Vec> &points)
{
    if (points.size() < 3)
        return {};
    Vec middle = Vec::Zero();
    for (const Vec &p : points)
        middle += p / double(points.size());
    Eigen::Matrix3d sum = Eigen::Matrix3d::Zero();
    for (const Vec &p : points)
        sum += (p - middle) * (p - middle).transpose();
    const double size = std::sqrt(sum.trace() / double(points.size()));
    if (!(size > 0) || !std::isfinite(size))
        return {};

    // The plane's normal is the direction in which the points spread least.
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> spread(sum / (size * size));
    if (!(spread.eigenvalues()[1] > 1e-10 * spread.eigenvalues()[2]))
        return {};
    const Eigen::Matrix<double, 3, 2> plane = spread.eigenvectors().rightCols<2>();
    Flat flat; // of size 1, so that nothing below depends on the unit
    flat.reserve(points.size());
    for (const Vec &p : points)
        flat.push_back(plane.transpose() * ((p - middle) / size));
    const Vec found = refined(flat, algebraic(flat));
    if (!found.allFinite())
        return {};
    Circle circle;
    circle.centre = middle + plane * found.head<2>() * size;
    circle.normal = spread.eigenvectors().col(0);
    circle.radius = found[2] * size;
    return circle;
}

} // namespace host
