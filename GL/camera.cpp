// SPDX-License-Identifier: MIT
#include "GL/camera.h"

#include <cmath>
#include <ostream>

#include <GL/glu.h>

namespace GL {

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double degreesPerRadian = 57.29577951308232;

/// Shortens @p v to @p limit; a vector of exactly that length is left as it is.
void clampLength(Vector &v, float limit)
{
    if (v.length() > limit)
        v.normalize(limit);
}

} // namespace

/// Unit vector from eye to target, from the angles; sine and cosine in single precision.
Vector Camera::direction() const
{
    const float a = float((90 - rot.x) * radiansPerDegree);
    const float b = float(rot.y * radiansPerDegree);
    return Vector(std::sin(a) * std::sin(b), -std::cos(a), -std::sin(a) * std::cos(b));
}

void Camera::Update(int adjust)
{
    if (adjust) {
        pos += d_pos * dt;
        setTarget += d_target * dt;
        rot += d_rot;
        radius += d_radius * dt;
    }
    if (radius < minRadius)
        radius = minRadius;
    if (fov < 1)
        fov = 1;
    else if (fov > 90)
        fov = 90;
    if (radius > maxRadius)
        radius = maxRadius;

    const float t = (radius - minRadius) / (maxRadius - minRadius);
    nearZ = float(0.0001 + 0.0499 * t);
    farZ = float(40 + 9960.0 * t);

    switch (mode) {
    case 0:
        return;
    case 1:
        UpdateTarget();
        break;
    case 2:
        UpdateCamera();
        break;
    case 3:
        UpdateAngles();
        break;
    default:
        break;
    }
    UpdateUp();
}

void Camera::SetTarget()
{
    if (target == setTarget)
        return;
    Vector step = setTarget - target;
    clampLength(step, d_target_max * dt);
    target += step;

    Vector horizontal(target.x, 0, target.z);
    clampLength(horizontal, bounds.x);
    Vector vertical(0, target.y, 0);
    clampLength(vertical, bounds.y);
    target = Vector(horizontal.x, vertical.y, horizontal.z);
}

void Camera::UpdateTarget()
{
    setTarget = pos + direction() * radius;
    SetTarget();
}

void Camera::UpdateCamera()
{
    if (rot.x < -90)
        rot.x = -90;
    else if (rot.x > 90)
        rot.x = 90;
    const Vector before = pos;
    SetTarget();
    pos = target - direction() * radius;
    if (ortho)
        vnear += pos - before;
}

void Camera::UpdateAngles()
{
    SetTarget();
    const Vector v = pos - target;
    radius = v.length();
    if (radius == 0)
        return;
    rot.x = float(90 - std::acos(v.y / radius) * degreesPerRadian);
    rot.y = float(std::atan2(-v.x, v.z) * degreesPerRadian);
    rot.z = 0;
}

void Camera::UpdateUp()
{
    up = Vector(0, 1, 0);
    up.rotate_x(-rot.x).rotate_y(-rot.y).rotate_z(-rot.z);
}

void Camera::LookAt()
{
    gluLookAt(pos.x, pos.y, pos.z, target.x, target.y, target.z, up.x, up.y, up.z);
}

void Camera::Setup(int w, int h, float px, float py, float pw, float ph)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (pw != 0 && ph != 0)
        gluPickMatrix(px, py, pw, ph, viewport);
    const double aspect = double(w) / h;
    if (ortho) {
        // The full angle, not half of it: switching projections keeps a margin around the target.
        const float half = float(radius / std::tan(fov * radiansPerDegree));
        glOrtho(-half * aspect, half * aspect, -half, half, -farZ, farZ);
    } else {
        gluPerspective(fov, aspect, nearZ, farZ);
    }

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    if (mode == 0)
        glLoadMatrixf(m);
    else
        LookAt();
    glGetDoublev(GL_MODELVIEW_MATRIX, model_matrix);
    glGetDoublev(GL_PROJECTION_MATRIX, proj_matrix);
}

void Camera::SetupRotation()
{
    glRotatef(rot.x, 1, 0, 0);
    glRotatef(rot.y, 0, 1, 0);
    glRotatef(rot.z, 0, 0, 1);
}

int Camera::Unproject(float x, float y)
{
    const Vector before = unproj;
    unproj.zero();
    last_unproj.zero();
    if (viewport[2] == 0 || viewport[3] == 0)
        return 0;

    const auto at = [&](double depth, GLdouble p[3]) {
        return gluUnProject(x, y, depth, model_matrix, proj_matrix, viewport, &p[0], &p[1],
                            &p[2]) == GL_TRUE;
    };
    GLdouble far[3];
    Vector ray;
    if (ortho) {
        GLdouble near[3];
        if (!at(0, near) || !at(1, far))
            return 0;
        last_vnear = vnear;
        vnear = Vector(Real(near[0]), Real(near[1]), Real(near[2]));
        ray = Vector(Real(far[0] - near[0]), Real(far[1] - near[1]), Real(far[2] - near[2]));
    } else {
        if (!at(1, far)) {
            rot.y = float(rot.y + 0.0001);
            Update(1);
            return 0;
        }
        ray = Vector(Real(far[0] - pos.x), Real(far[1] - pos.y), Real(far[2] - pos.z));
    }
    unproj = ray.normalize(1);
    last_unproj = before;
    return 1;
}

int Camera::SetRadius(float rad)
{
    if (!(minRadius <= rad && rad <= maxRadius))
        return 0;
    radius = rad;
    return 1;
}

std::ostream &Camera::Print(std::ostream &out)
{
    out.precision(4);
    out << "   m:" << mode << "   r:" << radius;
    out << "   p[ " << pos.x << " " << pos.y << " " << pos.z << "]";
    out << "   rot[ " << rot.x << " " << rot.y << " " << rot.z << "]";
    out << "  fov:" << fov;
    return out.flush();
}

void Viewport::Setup(int w, int h, int z, float px, float py, float pw, float ph)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (pw != 0 && ph != 0)
        gluPickMatrix(px, py, pw, ph, viewport);
    glOrtho(Left(w, 0), Right(w, 0), Bottom(h, 0), Top(h, 0), -double(z), z);

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScalef(scale.x, scale.y, scale.z);
    glTranslatef(-pos.x, -pos.y, -pos.z);
}

void Viewport::Update()
{
    for (int i = 0; i < 3; ++i)
        if (minScale[i] > scale[i])
            scale[i] = minScale[i];
    for (int i = 0; i < 3; ++i)
        if (scale[i] > maxScale[i])
            scale[i] = maxScale[i];
}

float Viewport::Left(int w, float inset) const
{
    return ((align & AlignHCenter) ? float(0 - w * 0.5) : 0.0f) + inset;
}

float Viewport::Right(int w, float inset) const
{
    return ((align & AlignHCenter) ? float(w * 0.5) : float(w - 1.0)) - inset;
}

float Viewport::Top(int h, float inset) const
{
    if (align & AlignVCenter)
        return float(h * 0.5) - inset;
    return (align & AlignBottom) ? float(h - 1.0) - inset : inset;
}

float Viewport::Bottom(int h, float inset) const
{
    if (align & AlignVCenter)
        return float(0 - h * 0.5) + inset;
    return (align & AlignBottom) ? inset : float(h - 1.0) - inset;
}

float Viewport::Width(int w) const
{
    return Right(w, 0) - Left(w, 0);
}

float Viewport::Height(int h) const
{
    return std::fabs(Top(h, 0) - Bottom(h, 0));
}

} // namespace GL
