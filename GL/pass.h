// SPDX-License-Identifier: MIT
#ifndef GL_PASS_H
#define GL_PASS_H

#include <cstdlib>

#include "GL/glwidget.h"

/// Tells, between two signals of a pass, whether the pass may go on: a host's slot may have deleted
/// the object or its window, or taken the object out of the window.
class PassGuard {
public:
    explicit PassGuard(GLWidget *object) : object_(object), window_(object->gl) {}
    bool alive() const { return object_ && window_ && object_->gl == window_; }
    GLWindow *window() const { return window_; } ///< Null once the window is gone.

private:
    QPointer<GLWidget> object_;
    QPointer<GLWindow> window_;
};

/// The part of the window that a pick pass looks at: 4 x 4 pixels around the pointer, or the
/// dragged rectangle. Window pixels, y from the bottom; the centre of a rectangle is rounded
/// towards zero and no side is shorter than 1.
struct PickRegion {
    float x, y, width, height;

    explicit PickRegion(const Mouse &m)
    {
        if (m.area) {
            x = float((m.x + m.x0) / 2);
            y = float((m.y + m.y0) / 2);
            width = extent(m.x - m.x0);
            height = extent(m.y - m.y0);
        } else {
            x = float(m.x);
            y = float(m.y);
            width = height = 4;
        }
    }

private:
    static float extent(int d) { return d ? float(std::abs(d)) : 1.0f; }
};

/// Makes the rectangle of @p w, truncated to whole pixels, the GL viewport.
inline void setGLViewport(const GLW &w)
{
    glViewport(int(w.x()), int(w.glY()), int(w.width()), int(w.height()));
}

#endif
