// SPDX-License-Identifier: MIT
#include "host/item/lamps.h"

namespace host {

namespace {

enum Lamp { Key, Fill, Sky, lampCount };

struct Colours {
    float ambient[3];
    float diffuse[3];
    float specular;
};

const Colours colours[lampCount] = {
    {{0.25f, 0.255f, 0.265f}, {0.53f, 0.52f, 0.5f}, 0.1f}, // the ambient is the sky's to all sides
    {{0, 0, 0}, {0.17f, 0.17f, 0.18f}, 0},
    {{0, 0, 0}, {0.12f, 0.125f, 0.13f}, 0},
};

GL::Light::vector towards(const QVector3D &v)
{
    const QVector3D d = v.normalized();
    return {d.x(), d.y(), d.z(), 0};
}

} // namespace

void hangLamps(GLW *glw)
{
    glw->lights.clear();
    for (int i = 0; i < lampCount; ++i) {
        const auto &[a, d, s] = colours[i];
        glw->lights.emplace_back(GLenum(GL_LIGHT0 + i), 'h');
        GL::Light &lamp = glw->lights.back();
        lamp.ambient = {a[0], a[1], a[2], 1};
        lamp.diffuse = {d[0], d[1], d[2], 1};
        lamp.specular = {s, s, s, 1};
        lamp.Init();
    }
    glw->lights[Sky].position = towards({0, 1, 0});
}

void placeLamps(GLW *glw, const CameraGeometry &camera)
{
    if (glw->lights.size() != lampCount)
        return;
    const auto at = [&](float right, float up, float near) {
        return towards(camera.right() * right + camera.up() * up - camera.forward() * near);
    };
    glw->lights[Key].position = at(-0.4f, 0.55f, 1);
    glw->lights[Fill].position = at(0.7f, -0.5f, 0.6f);
}

} // namespace host
