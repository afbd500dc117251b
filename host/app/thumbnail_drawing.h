// SPDX-License-Identifier: MIT
#ifndef HOST_APP_THUMBNAIL_DRAWING_H
#define HOST_APP_THUMBNAIL_DRAWING_H

#include <memory>

#include <QObject>

#include "GL/glwindowbase.h"
#include "host/app/options.h"
#include "host/capture/picture.h"
#include "host/item/item.h"
#include "host/view/window/window.h"

namespace host {

/// Draws items, one after the other, through a window of the module that is never on the screen.
/// Its timer's ticks draw nothing: they bring the object's camera up to date, as the module does it
/// in any window, and the picture is drawn beside it.
class ThumbnailDrawing : public QObject {
public:
    /// Expects @p factory to know the module's classes. @p options say how large and in which way.
    ThumbnailDrawing(const ObjectFactory &factory, const Options &options);
    ~ThumbnailDrawing() override;

    /// The picture of @p item alone, without words over a model. What the item made in OpenGL is
    /// released.
    Picture draw(Item &item);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void place(Item &item);

    const Options &options_;
    std::unique_ptr<GLWindow> window_;
    std::unique_ptr<QObject> scene_;
};

} // namespace host

#endif
