// SPDX-License-Identifier: MIT
#include "host/measure/circle_fit.h"

#include <cmath>

#include <Eigen/Dense>

namespace host {

namespace {

/// A circle in the plane: x and y of its centre, and its radius.
using Flat = Eigen::Vector3d;

/// The circle x² + y² = 2 a x + 2 b y + c whose coefficients are off by the least squares: linear,
/// exact for points on a circle, and too small for scattered ones on a short arc (I. Kåsa, "A
/// circle fitting procedure and its error analysis", IEEE Trans. Instrum. Meas. 25, 1976).
Flat algebraic(const Eigen::MatrixX2d &at)
{
    Eigen::MatrixX3d rows(at.rows(), 3);
    rows << 2 * at, Eigen::VectorXd::Ones(at.rows());
    const Eigen::Vector3d s = rows.colPivHouseholderQr().solve(at.rowwise().squaredNorm());
    return {s[0], s[1], std::sqrt(std::max(0.0, s[2] + s[0] * s[0] + s[1] * s[1]))};
}

/// Lets the sum of (|p - centre| - radius)² become least by steps of Gauss and Newton (W. Gander,
/// G. H. Golub, R. Strebel, "Least-squares fitting of circles and ellipses", BIT 34, 1994).
Flat refined(const Eigen::MatrixX2d &at, Flat circle)
{
    for (int step = 0; step < 20; ++step) {
        const Eigen::MatrixX2d off = at.rowwise() - circle.head<2>().transpose();
        const Eigen::VectorXd length = off.rowwise().norm();
        if (!(length.minCoeff() > 0))
            break;
        Eigen::MatrixX3d slope(at.rows(), 3);
        slope << -(off.array().colwise() / length.array()).matrix(),
            -Eigen::VectorXd::Ones(at.rows());
        const Eigen::VectorXd rest = length.array() - circle[2];
        const Flat change = slope.colPivHouseholderQr().solve(-rest);
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
    Eigen::Matrix3Xd at(3, Eigen::Index(points.size()));
    for (std::size_t i = 0; i < points.size(); ++i)
        at.col(Eigen::Index(i)) = points[i];
    const Vec middle = at.rowwise().mean();
    at.colwise() -= middle;
    const double size = std::sqrt(at.squaredNorm() / double(points.size()));
    if (!(size > 0) || !std::isfinite(size))
        return {};
    at /= size; // so that nothing below depends on the unit

    // The plane's normal is the direction in which the points spread least.
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> spread(at * at.transpose());
    if (!(spread.eigenvalues()[1] > 1e-10 * spread.eigenvalues()[2]))
        return {};
    const Eigen::Matrix<double, 3, 2> plane = spread.eigenvectors().rightCols<2>();
    const Eigen::MatrixX2d flat = at.transpose() * plane;
    const Flat found = refined(flat, algebraic(flat));
    if (!found.allFinite())
        return {};
    Circle circle;
    circle.centre = middle + plane * found.head<2>() * size;
    circle.normal = spread.eigenvectors().col(0);
    circle.radius = found[2] * size;
    return circle;
}

} // namespace host
