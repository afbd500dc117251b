// SPDX-License-Identifier: MIT
#include "host/capture/matrices.h"

#include <cmath>

namespace host {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double viewportDepth = 100;

Matrix box(double left, double right, double bottom, double top, double near, double far)
{
    Matrix m{};
    m[0] = 2 / (right - left);
    m[5] = 2 / (top - bottom);
    m[10] = -2 / (far - near);
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    m[14] = -(far + near) / (far - near);
    m[15] = 1;
    return m;
}

Matrix perspective(double fov, double aspect, double near, double far)
{
    const double cotangent = 1 / std::tan(fov * radiansPerDegree / 2);
    Matrix m{};
    m[0] = cotangent / aspect;
    m[5] = cotangent;
    m[10] = -(far + near) / (far - near);
    m[11] = -1;
    m[14] = -2 * near * far / (far - near);
    return m;
}

/// @p v turned about the vertical axis.
Vector turned(const Vector &v, double sine, double cosine)
{
    return Vector(Real(cosine * v.x - sine * v.z), v.y, Real(sine * v.x + cosine * v.z));
}

} // namespace

Matrix projection(const GL::Camera &camera, const QSize &size)
{
    const double aspect = double(size.width()) / size.height();
    if (!camera.ortho)
        return perspective(camera.fov, aspect, camera.nearZ, camera.farZ);
    // The orthographic view spreads the whole angle over half the height.
    const double half = camera.radius / std::tan(camera.fov * radiansPerDegree);
    return box(-half * aspect, half * aspect, -half, half, -camera.farZ, camera.farZ);
}

Matrix projection(const GL::Viewport &viewport, const QSize &size)
{
    const int align = viewport.align;
    const double w = size.width(), h = size.height();
    const bool centred = align & GL::Viewport::AlignHCenter;
    const double left = centred ? -w / 2 : 0;
    const double right = centred ? w / 2 : w - 1;
    double bottom = h - 1, top = 0;
    if (align & GL::Viewport::AlignVCenter) {
        bottom = -h / 2;
        top = h / 2;
    } else if (align & GL::Viewport::AlignBottom) {
        bottom = 0;
        top = h - 1;
    }
    return box(left, right, bottom, top, -viewportDepth, viewportDepth);
}

Matrix blockOf(const Matrix &projection, const QRect &whole, const QRect &block)
{
    const double sx = double(whole.width()) / block.width();
    const double sy = double(whole.height()) / block.height();
    const double left = 2.0 * (block.x() - whole.x()) / whole.width() - 1;
    const double top = 1 - 2.0 * (block.y() - whole.y()) / whole.height();
    const double tx = -1 - sx * left;
    const double ty = 1 - sy * top;
    Matrix m = projection;
    for (size_t column = 0; column < 16; column += 4) {
        const double w = projection[column + 3];
        m[column] = sx * projection[column] + tx * w;
        m[column + 1] = sy * projection[column + 1] + ty * w;
    }
    return m;
}

void turn(GL::Camera &camera, double degrees)
{
    const double sine = std::sin(degrees * radiansPerDegree);
    const double cosine = std::cos(degrees * radiansPerDegree);
    camera.pos = camera.target + turned(camera.pos - camera.target, sine, cosine);
    camera.up = turned(camera.up, sine, cosine);
    camera.rot.y = float(camera.rot.y + degrees);

    // The fixed matrix is turned with the world the other way: view * inverse turn.
    const Vector shift = camera.target - turned(camera.target, -sine, cosine);
    GLfloat *m = camera.m;
    for (int row = 0; row < 3; ++row) {
        const double x = m[row], z = m[8 + row];
        m[12 + row] += GLfloat(x * shift.x + m[4 + row] * shift.y + z * shift.z);
        m[row] = GLfloat(cosine * x - sine * z);
        m[8 + row] = GLfloat(sine * x + cosine * z);
    }
}

} // namespace host
