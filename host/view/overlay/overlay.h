// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_OVERLAY_OVERLAY_H
#define HOST_VIEW_OVERLAY_OVERLAY_H

#include <functional>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>

#include "GL/glw.h"
#include "host/capture/picture.h"
#include "host/item/display.h"
#include "host/item/item.h"
#include "host/view/window/window.h"

class QAction;
class QPainter;

namespace host {

/// What an overlay stands over, as it is at the moment.
struct Underlay {
    GLW *glw = nullptr;                       ///< The main object; it outlives the overlay.
    std::function<const Item *()> item;       ///< What it shows; null if it shows nothing yet.
    std::function<const Display &()> display; ///< How.
};

/// A small scene object over the main one, with its own rectangle and its own bindings.
///
/// It stands in front of the window's list, so that the pointer finds it first while it has a use
/// for the event, and paints in PaintForeground, which comes after every object has painted. It
/// has no passes of its own.
/// The module finds the slots with capital letters by their names.
class Overlay : public QObject {
    Q_OBJECT
public:
    ~Overlay() override;

    /// What it shows, as an object of a picture of the window.
    PictureObject pictured();
    /// Whether it says something of what is shown, and so belongs into a picture.
    virtual bool belongsInPicture() const { return true; }

    /// Whether it is there now: it has something to show, and the window is large enough. As a
    /// window gets small, overlays leave one by one, so that what they lie over stays in sight.
    bool isThere() const;
    bool hasRoom() const; ///< Whether the window is large enough, and overlays are wanted.
    /// Its rectangle in the window's pixels, y downwards.
    QRectF bounds() const { return place(window_.widget()->size()); }
    /// What it does, for the list of bindings, while it is there.
    QList<QAction *> actions() const;

    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void PaintForeground(GLW *glw, QPainter *painter);
    void Click(GLW *glw, bool pressed);

protected:
    /// It leaves a window that is smaller than @p least, in usual pixels.
    Overlay(Underlay under, Window &window, const char *name, const QSizeF &least);

    GLW *mainGLW() const { return under_.glw; }
    const Item *mainItem() const { return under_.item(); }
    const Display &display() const { return under_.display(); }
    Window &window() const { return window_; }
    GLW *glw() const { return static_cast<GLW *>(scene_.data()); }

    /// Where it stands in a window of @p size pixels, y downwards.
    virtual QRectF place(const QSizeF &size) const = 0;
    /// Whether there is anything to show now.
    virtual bool isShown() const = 0;
    /// Paints inside @p bounds: the object's rectangle in the window's pixels, y downwards.
    virtual void paint(QPainter *painter, const QRectF &bounds) = 0;
    /// Whether it has a use for a click at a place in the window's pixels, y downwards. Whatever
    /// else a person does there is for the main object.
    virtual bool takes(const QPointF &, const QRectF &) const { return false; }
    virtual void click(const QPointF &, const QRectF &) {} ///< A click that it takes.
    virtual void drag(const QPointF &, const QRectF &) {}  ///< The pointer moves on, still down.
    virtual void released() {}                             ///< What it took has ended.

    /// Lets clicks come. @p words and @p text say where and what it does, for the list of bindings.
    void bindClick(const QString &words, const QString &text);

private:
    void listen(bool on);

    Underlay under_;
    Window &window_;
    QSizeF least_;
    QRectF area_;          // where it listens, in the window's pixels, y downwards
    bool pressed_ = false; // the button that is down went down here
    QPointer<QObject> scene_;
};

} // namespace host

#endif
