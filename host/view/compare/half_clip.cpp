// SPDX-License-Identifier: MIT
#include "host/view/compare/half_clip.h"

#include <qopengl.h>

namespace host {

namespace {

constexpr GLenum plane = GL_CLIP_PLANE5; // a section takes the first three

} // namespace

/// What lies on the line has x = line * w once it is projected: a plane through the eye.
HalfClip::HalfClip(const GL::Camera &camera, double share, Side kept)
{
    const double line = 2 * share - 1, sign = kept == Left ? 1 : -1;
    const GLdouble *p = camera.proj_matrix; // by columns
    GLdouble equation[4];
    for (int k = 0; k < 4; ++k)
        equation[k] = sign * (line * p[4 * k + 3] - p[4 * k]);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity(); // the plane is the eye's
    glClipPlane(plane, equation);
    glPopMatrix();
    glEnable(plane);
}

HalfClip::~HalfClip()
{
    glDisable(plane);
}

} // namespace host
