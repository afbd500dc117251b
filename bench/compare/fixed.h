// SPDX-License-Identifier: MIT
// The scene in OpenGL's fixed functions, for peers that let their user draw.
#ifndef BENCH_COMPARE_FIXED_H
#define BENCH_COMPARE_FIXED_H

#include <GL/gl.h>
#include <GL/glu.h>

#include "scene.h"

namespace fixed {

/// Sets what stays the same in a context, and returns a display list of the torus.
inline GLuint begin()
{
    const GLfloat black[] = {0, 0, 0, 1}, white[] = {1, 1, 1, 1};
    const GLfloat glow[] = {scene::glow, scene::glow, scene::glow, 1};
    const GLfloat grey[] = {scene::diffuse, scene::diffuse, scene::diffuse, 1};
    glClearColor(0, 0, 0, 1);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, black);
    glLightfv(GL_LIGHT0, GL_AMBIENT, black);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, white);
    glLightfv(GL_LIGHT0, GL_SPECULAR, black);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, black);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, black);
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, glow);
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, grey);
    const scene::Mesh mesh = scene::torus();
    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glBegin(GL_TRIANGLES);
    for (const unsigned i : mesh.indices) {
        glNormal3fv(mesh.normals[i].data());
        glVertex3fv(mesh.positions[i].data());
    }
    glEnd();
    glEndList();
    return list;
}

/// Draws the torus with the matrices that are loaded, and the lamp at the eye.
inline void drawLit(GLuint list)
{
    const GLfloat ahead[] = {0, 0, 1, 0};
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_POSITION, ahead);
    glPopMatrix();
    glEnable(GL_LIGHT0);
    glEnable(GL_LIGHTING);
    glEnable(GL_DEPTH_TEST);
    glCallList(list);
    glDisable(GL_LIGHTING);
}

/// Draws it from @p azimuth into a square viewport.
inline void draw(GLuint list, float azimuth)
{
    const scene::Point eye = scene::eye(azimuth);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(double(scene::fieldOfView), 1, double(scene::nearest), double(scene::farthest));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(double(eye[0]), double(eye[1]), double(eye[2]), 0, 0, 0, 0, 1, 0);
    drawLit(list);
}

} // namespace fixed

#endif
