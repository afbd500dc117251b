// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_STEERING_H
#define HOST_ITEM_STEERING_H

#include <QPointF>
#include <QSizeF>
#include <Qt>

#include "GL/glw.h"

namespace host {

/// How what a drawing object (GLW) shows is steered; who steers need not know what it is. What an
/// item cannot do, such as a plot to be looked at from a side, has no effect.
///
/// Pixels count from the object's lower-left corner, y upwards, in logical pixels. The camera and
/// the 2D viewport of the object are the steering's to set. Belongs to an item.
class Steering {
public:
    /// The sides from which one looks along the axes, in the order of the keys 1 to 6.
    enum class Side { Front, Back, Left, Right, Top, Bottom };
    /// What a drag does.
    enum class Drag { Orbit, Pan, Roll };

    Steering() = default;
    Steering(const Steering &) = delete;
    Steering &operator=(const Steering &) = delete;
    virtual ~Steering() = default;

    /// Called once a frame, after the object's camera was updated and before anything is picked or
    /// drawn. @p seconds went by since the last time. Returns whether it is to be drawn anew.
    virtual bool advance(GLW *glw, double seconds) = 0;

    virtual void fit(GLW *glw) = 0;  ///< Shows all of it, or of what is selected, from there.
    virtual void fitTurn(GLW *) {}   ///< At once, so that it stays whole while the azimuth turns.
    virtual void home(GLW *glw) = 0; ///< The pose that it opened with.
    /// The object's size for which all of it is shown, and will be in any other; empty if it is
    /// not.
    virtual QSizeF wholeIn() const { return {}; }
    /// Takes up the pose of a camera that another item was looked at with.
    /// @p wholeIn is that of the other one.
    virtual void restore(GLW *, const GL::Camera &, const QSizeF & = {}) {}
    /// Shows all of it at once, from where a camera looks and in its projection.
    virtual void lookAlong(GLW *, const GL::Camera &) {}
    virtual void lookFrom(GLW *, Side) {}
    virtual void toggleProjection(GLW *) {}
    virtual bool isOrthographic(const GLW *) const { return false; }

    virtual void beginDrag(GLW *, Drag, const QPointF &) {}
    virtual void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) = 0;
    /// Wheel steps at a pixel, positive ones forward (nearer).
    virtual void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) = 0;
    virtual void focus(GLW *, const QPointF &) {} ///< Makes what is there the centre.
};

} // namespace host

#endif
