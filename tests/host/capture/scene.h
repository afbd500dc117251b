// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_CAPTURE_SCENE_H
#define TESTS_HOST_CAPTURE_SCENE_H

#include "GL/glwidget.h"
#include "host/capture/picture.h"
#include "tests/support/window.h"

namespace host {

/// A window of 320 x 200 pixels with two objects: `main` fills it, `inset` stands at (200, 20) with
/// 100 x 80 pixels. Both show, from 3 in front, a slanted band of colours, a frame of wide lines
/// and fat points in the plane z = 0, and in 2D a cross of 3-pixel lines through the origin.
class Scene : public WindowTest {
protected:
    Scene() : WindowTest({320, 200})
    {
        request.window = request.size = QSize(320, 200);
        request.objects = {{main, {0, 0, 320, 200}, {}, draw3D, draw2D, {}},
                           {inset, {200, 20, 100, 80}, {}, draw3D, draw2D, {}}};
        run("set main,inset radius 3 rot 20,30,0");
        for (GLWidget *object : {main, inset}) {
            object->camera.Update(0);
            QObject::connect(object, &GLWidget::Draw3D, [](GLW *glw) { draw3D(glw, 1); });
            QObject::connect(object, &GLWidget::Draw2D, [](GLW *glw) { draw2D(glw, 1); });
        }
    }
    static void draw3D(GLW *, float scale)
    {
        glEnable(GL_DEPTH_TEST);
        glBegin(GL_TRIANGLE_STRIP);
        for (int i = 0; i <= 12; ++i) {
            glColor3f(float(i % 3) / 2, float(i % 4) / 3, 1 - float(i) / 12);
            glVertex3f(float(i) / 4 - 1.5f, i % 2 ? 0.9f : -0.7f, float(i) / 12 - 1.6f);
        }
        glEnd();
        glColor3f(1, 1, 0);
        glPointSize(13 * scale);
        glBegin(GL_POINTS);
        for (int i = 0; i < 40; ++i)
            glVertex3f(float(i % 8) / 3 - 1.2f, float(i / 8) / 2.5f - 0.8f, 0);
        glEnd();
    }
    static void draw2D(GLW *, float scale)
    {
        glDisable(GL_DEPTH_TEST);
        glColor3f(0, 1, 1);
        glLineWidth(3 * scale);
        glBegin(GL_LINES);
        for (const auto &[x, y] : {std::pair(-40, 0), {40, 0}, {0, -30}, {0, 30}})
            glVertex2i(x, y);
        glEnd();
    }

    GLWidget *main = add("main"), *inset = add("inset", QRectF(200, 20, 100, 80));
    PictureRequest request; ///< What the window shows, in the window's size.
};

} // namespace host

#endif
