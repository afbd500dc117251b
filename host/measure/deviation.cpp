// SPDX-License-Identifier: MIT
#include "host/measure/deviation.h"

#include <algorithm>
#include <cmath>

#include <Eigen/Geometry>

namespace host {

namespace {

std::vector<float> weightsOf(const Mesh &mesh)
{
    std::vector<float> weights(mesh.vertexCount());
    const auto count = quint32(mesh.triangleCount());
    if (count == 0)
        std::fill(weights.begin() + std::ptrdiff_t(mesh.firstPoint()), weights.end(), 1.0f);
    for (quint32 t = 0; t < count; ++t)
        for (std::size_t k = 0; k < 3; ++k)
            weights[mesh.indices[std::size_t(t) * 3 + k]] += float(normalOf(mesh, t).norm() / 6);
    return weights;
}

} // namespace

void Deviation::sumUp(const Mesh &mesh)
{
    weights = weightsOf(mesh);
    double all = 0, sum = 0, squares = 0;
    bool first = true;
    for (std::size_t i = 0; i < distances.size(); ++i) {
        const double d = double(distances[i]), weight = double(weights[i]);
        if (distances[i] == unknown)
            continue;
        least = first ? d : std::min(least, d);
        greatest = first ? d : std::max(greatest, d);
        first = false;
        all += weight;
        sum += weight * std::abs(d);
        squares += weight * d * d;
    }
    largest = std::max(std::abs(least), std::abs(greatest));
    mean = all > 0 ? sum / all : 0;
    rms = all > 0 ? std::sqrt(squares / all) : 0;
}

double Deviation::shareWithin(double tolerance) const
{
    double all = 0, within = 0;
    for (std::size_t i = 0; i < distances.size(); ++i) {
        if (distances[i] == unknown)
            continue;
        all += double(weights[i]);
        within += std::abs(double(distances[i])) <= tolerance ? double(weights[i]) : 0;
    }
    return all > 0 ? within / all : 0;
}

double valueAt(const std::vector<float> &values, const Mesh &mesh, quint32 triangle,
               const Vec &point)
{
    const Vec origin = cornerOf(mesh, triangle, 0);
    const Vec u = cornerOf(mesh, triangle, 1) - origin, v = cornerOf(mesh, triangle, 2) - origin;
    const Vec across = u.cross(v), to = point - origin;
    const double area = across.squaredNorm();
    const double alongU = area > 0 ? to.cross(v).dot(across) / area : 0;
    const double alongV = area > 0 ? u.cross(to).dot(across) / area : 0;
    const auto value = [&](std::size_t k) {
        return double(values[mesh.indices[std::size_t(triangle) * 3 + k]]);
    };
    return (1 - alongU - alongV) * value(0) + alongU * value(1) + alongV * value(2);
}

} // namespace host
