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

private:
    QPointer<GLWidget> object_;
    QPointer<GLWindow> window_;
};

/// Shifts the window's record into an object's frame for as long as it lives. What it took away is
/// what it gives back, whatever a slot does to the object or the window.
class LocalRecord {
public:
    LocalRecord(GLWindow *window, const GLW &object) : window_(window), shift_(window->mouse)
    {
        Mouse &mouse = window->mouse;
        const QPoint corner = object.glCorner();
        mouse.sub(corner.x(), corner.y());
        // Not the corner itself: at the limits of an int the record moved by less.
        shift_.x = bounded::difference(shift_.x, mouse.x);
        shift_.y = bounded::difference(shift_.y, mouse.y);
        shift_.x0 = bounded::difference(shift_.x0, mouse.x0);
        shift_.y0 = bounded::difference(shift_.y0, mouse.y0);
    }
    ~LocalRecord()
    {
        if (!window_)
            return;
        Mouse &mouse = window_->mouse;
        mouse.x = bounded::sum(mouse.x, shift_.x);
        mouse.y = bounded::sum(mouse.y, shift_.y);
        mouse.x0 = bounded::sum(mouse.x0, shift_.x0);
        mouse.y0 = bounded::sum(mouse.y0, shift_.y0);
    }
    LocalRecord(const LocalRecord &) = delete;
    LocalRecord &operator=(const LocalRecord &) = delete;

private:
    QPointer<GLWindow> window_;
    Mouse shift_; ///< Only the positions count.
};

/// The part of the window that a pick pass looks at: 4 x 4 pixels around the pointer, or the
/// dragged rectangle. Window pixels, y from the bottom; the centre of a rectangle is rounded
/// towards zero and no side is shorter than 1.
struct PickRegion {
    float x, y, width, height;

    explicit PickRegion(const Mouse &m)
    {
        const long long mx = m.x, my = m.y; // wide enough for the sum of two positions
        if (m.area) {
            x = float((mx + m.x0) / 2);
            y = float((my + m.y0) / 2);
            width = extent(mx - m.x0);
            height = extent(my - m.y0);
        } else {
            x = float(mx);
            y = float(my);
            width = height = 4;
        }
    }

private:
    static float extent(long long d) { return d ? float(std::llabs(d)) : 1.0f; }
};

/// Makes the rectangle of @p o the GL viewport.
inline void setGLViewport(const GLW &o)
{
    const QPoint corner = o.glCorner();
    const QSize size = o.glSize();
    glViewport(corner.x(), corner.y(), size.width(), size.height());
}

/// Loads the camera of @p o and, if it has lights, switches lighting on and positions them.
inline void setUp3D(GLW &o)
{
    const QSize size = o.glSize();
    o.camera.Setup(size.width(), size.height(), 0, 0, 0, 0);
    if (o.lights.empty())
        return;
    glEnable(GL_LIGHTING);
    for (GL::Light &light : o.lights)
        light.Reposition();
}

constexpr int depth2D = 100; ///< The 2D passes reach from -100 to 100.

/// Loads the 2D viewport of @p o.
inline void setUp2D(GLW &o)
{
    const QSize size = o.glSize();
    o.viewport.Setup(size.width(), size.height(), depth2D, 0, 0, 0, 0);
}

/// Loads the camera of @p o for what lies in @p r, with lighting off.
inline void setUpPick3D(GLW &o, const PickRegion &r)
{
    const QSize size = o.glSize();
    o.camera.Setup(size.width(), size.height(), r.x, r.y, r.width, r.height);
    glDisable(GL_LIGHTING);
}

/// Loads the 2D viewport of @p o for what lies in @p r, with lighting off.
inline void setUpPick2D(GLW &o, const PickRegion &r)
{
    const QSize size = o.glSize();
    o.viewport.Setup(size.width(), size.height(), depth2D, r.x, r.y, r.width, r.height);
    glDisable(GL_LIGHTING);
}

#endif
