// SPDX-License-Identifier: MIT
// The camera beside the arithmetic and the GL calls that it stands for.
#include <cmath>

#include <GL/glu.h>
#include <QGLWidget>

#include "GL/camera.h"
#include "bench/compare.h"

namespace {

constexpr float rad = 0.017453293f;

GL::Camera orbiting()
{
    GL::Camera camera;
    camera.radius = 5;
    camera.rot = Vector(20, 30, 0);
    camera.Update(0);
    return camera;
}

void CameraUpdate(benchmark::State &state)
{
    GL::Camera camera = orbiting();
    camera.d_rot.y = 0.01f;
    float angle = 30, radius = 5, eye[3] = {}, up[3] = {};
    Contest c;
    c.module = [&] { camera.Update(1); };
    c.bare = [&] {
        angle += 0.01f;
        const float a = 20 * rad, b = angle * rad;
        eye[0] = -std::cos(a) * std::sin(b) * radius;
        eye[1] = std::sin(a) * radius;
        eye[2] = std::cos(a) * std::cos(b) * radius;
        up[0] = std::sin(a) * std::sin(b);
        up[1] = std::cos(a);
        up[2] = -std::sin(a) * std::cos(b);
        benchmark::ClobberMemory();
    };
    c.correct = [&] {
        const auto near = [](float x, float y) { return std::fabs(x - y) < 1e-3f; };
        return near(camera.pos.x, eye[0]) && near(camera.pos.y, eye[1]) &&
               near(camera.pos.z, eye[2]) && near(camera.up.y, up[1]);
    };
    c.batch = 1000;
    compare(state, c);
}

void CameraSetup(benchmark::State &state)
{
    QGLWidget context;
    context.makeCurrent();
    GL::Camera camera = orbiting();
    GLdouble model[16], projection[16];
    GLint viewport[4];
    const Vector eye = camera.pos, up = camera.up;
    Contest c;
    c.module = [&] { camera.Setup(640, 480, 0, 0, 0, 0); };
    c.bare = [&] {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glGetIntegerv(GL_VIEWPORT, viewport);
        gluPerspective(60, 640.0 / 480.0, camera.nearZ, camera.farZ);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(eye.x, eye.y, eye.z, 0, 0, 0, up.x, up.y, up.z);
        glGetDoublev(GL_MODELVIEW_MATRIX, model);
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
    };
    c.correct = [&] {
        return std::equal(model, model + 16, camera.model_matrix) &&
               std::equal(projection, projection + 16, camera.proj_matrix);
    };
    c.batch = 100;
    compare(state, c);
}

void CameraUnproject(benchmark::State &state)
{
    QGLWidget context;
    context.makeCurrent();
    glViewport(0, 0, 640, 480);
    GL::Camera camera = orbiting();
    camera.Setup(640, 480, 0, 0, 0, 0);
    Vector ray;
    Contest c;
    c.module = [&] { camera.Unproject(100, 200); };
    c.bare = [&] {
        GLdouble p[3];
        gluUnProject(100, 200, 1, camera.model_matrix, camera.proj_matrix, camera.viewport, p,
                     p + 1, p + 2);
        const float v[3] = {float(p[0] - camera.pos.x), float(p[1] - camera.pos.y),
                            float(p[2] - camera.pos.z)};
        const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        ray = Vector(v[0] / length, v[1] / length, v[2] / length);
        benchmark::DoNotOptimize(ray);
    };
    c.correct = [&] {
        return Vector(ray - camera.unproj).length() < 1e-4f && camera.unproj.length() > 0.99f;
    };
    c.batch = 100;
    compare(state, c);
}

BENCHMARK(CameraUpdate)->UseManualTime();
BENCHMARK(CameraSetup)->UseManualTime();
BENCHMARK(CameraUnproject)->UseManualTime();

} // namespace
