// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_OVERLAY_H
#define HOST_VIEW_OVERLAY_OVERLAY_H

#include <functional>

#include <QObject>
#include <QPointer>
#include <QRectF>

#include "GL/glw.h"
#include "host/capture/picture.h"
#include "host/item/display.h"
#include "host/item/item.h"

class QPainter;

namespace host {

class Window;

/// What an overlay stands over, as it is at the moment.
struct Underlay {
    GLW *glw = nullptr;                       ///< The main object; it outlives the overlay.
    std::function<const Item *()> item;       ///< What it shows; null if it shows nothing yet.
    std::function<const Display &()> display; ///< How.
};

/// A small scene object over the main one, with its own rectangle and its own bindings.
///
/// It stands in front of the window's list, so that the pointer finds it first, and paints in
/// PaintForeground, which comes after every object has painted. It has no passes of its own.
/// The module finds the slots with capital letters by their names.
class Overlay : public QObject {
    Q_OBJECT
public:
    ~Overlay() override;

    /// What it shows, as an object of a picture of the window.
    PictureObject pictured();
    /// Whether it says something of what is shown, and so belongs into a picture.
    virtual bool belongsInPicture() const { return true; }

    /// Lets the keys that are bound on the main object be heard here too.
    void shareKeys();

public slots:
    void PaintForeground(GLW *glw, QPainter *painter);
    void Click(GLW *glw, bool pressed);

protected:
    /// @p rect is as scene objects take it: fractions of the window, or pixels; a negative origin
    /// counts from the far edge.
    Overlay(Underlay under, Window &window, const char *name, const QRectF &rect);

    GLW *mainGLW() const { return under_.glw; }
    const Item *mainItem() const { return under_.item(); }
    const Display &display() const { return under_.display(); }
    Window &window() const { return window_; }
    GLW *glw() const { return static_cast<GLW *>(scene_.data()); }

    /// Whether there is anything to show now. What shows nothing is not hit either.
    virtual bool isShown() const = 0;
    /// Paints inside @p bounds: the object's rectangle in the window's pixels, y downwards.
    virtual void paint(QPainter *painter, const QRectF &bounds) = 0;
    /// A click at a place in the window's pixels, y downwards.
    virtual void click(const QPointF &at, const QRectF &bounds);

    /// Says what a click does, for the list of bindings, and lets it come.
    void bindClick(const QString &text);

private:
    QRectF bounds() const { return glw()->geometry(false); }

    Underlay under_;
    Window &window_;
    QPointer<QObject> scene_;
};

} // namespace host

#endif
