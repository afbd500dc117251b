// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_ITEM_H
#define HOST_ITEM_ITEM_H

#include <optional>

#include <QPointF>
#include <QString>
#include <Qt>

#include "GL/glw.h"
#include "host/item/display.h"

class QPainter;

namespace host {

/// What one drawing object (GLW) shows: a model, a plot. It draws and picks there and knows how it
/// is steered; who steers need not know what it is.
///
/// Frame: pixels count from the object's lower-left corner, y upwards, in logical pixels.
/// The camera, the 2D viewport and the lights of the object are the item's to set.
class Item {
public:
    /// The sides from which one looks along the axes, in the order of the keys 1 to 6.
    enum class Side { Front, Back, Left, Right, Top, Bottom };
    /// What a drag does.
    enum class Drag { Orbit, Pan, Roll };

    Item() = default;
    Item(const Item &) = delete;
    Item &operator=(const Item &) = delete;
    virtual ~Item() = default;

    virtual QString name() const = 0;         ///< Of the file, without its folder.
    virtual QString details() const = 0;      ///< Counts and sizes, in one line.
    virtual QString underPointer() const = 0; ///< What the pointer is on; may be empty.
    virtual quint64 count() const = 0;        ///< Triangles or samples: what sorting goes by.
    virtual quint64 byteSize() const = 0;     ///< Memory held, GL's included.
    virtual bool paintsTitle() const { return false; } ///< Whether the name is part of its picture.

    /// Whether its picture may name the file: not where something around it does. True at first.
    virtual void setTitled(bool) {}

    /// Whether something is under way that will show by itself, so that passes must go on.
    virtual bool isBusy() const { return false; }

    // With the GL context current.
    virtual void init(GLW *glw) = 0; ///< Makes what drawing needs; sets camera and lights.
    virtual void release() = 0;      ///< Gives back what init() made in GL. init() may follow.
    /// Takes up the view that an earlier item for the same file had. Expects init() to have run.
    virtual void restoreView(GLW *, const GL::Camera &) {}
    virtual void draw3D(GLW *, const Display &) {}
    virtual void draw2D(GLW *, const Display &) {}
    virtual void paintForeground(GLW *, QPainter *, const Display &) {}

    /// Called once a frame, after the object's camera was updated and before anything is picked or
    /// drawn. @p seconds went by since the last time. Returns whether it is to be drawn anew.
    virtual bool advance(GLW *glw, double seconds) = 0;

    /// Finds what lies under @p pointer, or forgets it where there is none. Returns whether it is
    /// to be drawn anew.
    virtual bool pick3D(GLW *, const std::optional<QPointF> &) { return false; }
    virtual bool pick2D(GLW *, const std::optional<QPointF> &) { return false; }

    // What the object asks its host about 2D data; untouched by items that have none.
    virtual void range2D(QRectF *) const {}
    /// Moves a position in viewport coordinates to the nearest data point.
    virtual void nearestDataPos(GLW *, QVector3D *) {}

    /// Whether it stands in three dimensions, so that one can look from the sides.
    virtual bool isSpatial() const { return false; }
    /// The file's units per pixel at the point looked at; 0 where that means nothing.
    virtual double unitsPerPixel(const GLW *) const { return 0; }

    // Steering.
    virtual void fit(GLW *glw) = 0;  ///< Shows all of it, from where one looks.
    virtual void fitTurn(GLW *) {}   ///< At once, so that it stays whole while the azimuth turns.
    virtual void home(GLW *glw) = 0; ///< The view that it opened with.
    virtual void lookFrom(GLW *, Side) {}
    virtual void toggleProjection(GLW *) {}
    virtual bool isOrthographic(const GLW *) const { return false; }
    virtual void beginDrag(GLW *, Drag, const QPointF &) {}
    virtual void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) = 0;
    /// Wheel steps at a pixel, positive ones forward (nearer).
    virtual void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) = 0;
    virtual void focus(GLW *, const QPointF &) {} ///< Makes what is there the centre.
    /// Selects what lies in the rectangle that is dragged, in the place of what was selected.
    /// Called within the object's pick passes, whose matrices show just that rectangle; @p area is
    /// in the object's frame.
    virtual void selectArea3D(GLW *, const QRectF &) {}
    virtual void selectArea2D(GLW *, const QRectF &) {}
    virtual void clearSelection() {}
    /// A click. Returns whether it did something.
    virtual bool click(GLW *, const QPointF &) { return false; }
};

} // namespace host

#endif
