// SPDX-License-Identifier: MIT
#include "host/view/overlay/overlay.h"

#include <QPainter>

#include "host/view/window/binding.h"
#include "host/view/window/window.h"

namespace host {

Overlay::Overlay(Underlay under, Window &window, const char *name, const QRectF &rect)
    : under_(std::move(under)), window_(window)
{
    scene_ = window.addScene("GLWidget", name);
    scene_->setProperty("geometry", rect);
    for (const char *pass : {"pick3d", "pick2d", "draw3d", "draw2d"})
        scene_->setProperty(pass, false);
    QMetaObject::invokeMethod(scene_, "Connect", Q_ARG(QObject *, this));
}

Overlay::~Overlay()
{
    window_.removeScene(scene_);
}

void Overlay::shareKeys()
{
    for (QAction *action : mainGLW()->actions())
        if (action->property("key").isValid())
            QMetaObject::invokeMethod(scene_, "AddAction", Q_ARG(QAction *, action));
}

void Overlay::bindClick(const QString &text)
{
    if (QAction *action =
            bindMouse(scene_, LeftButton, 0, "click", text, this, SLOT(Click(GLW *, bool))))
        action->setProperty("verb", tr("click"));
}

PictureObject Overlay::pictured()
{
    PictureObject object;
    object.glw = glw();
    object.rect = bounds();
    object.foreground = [this](GLW *at, QPainter *painter) { PaintForeground(at, painter); };
    return object;
}

void Overlay::PaintForeground(GLW *, QPainter *painter)
{
    const bool shown = isShown();
    glw()->setProperty("enabled", shown);
    if (!shown)
        return;
    painter->save();
    painter->setFont(window_.widget()->font());
    painter->setRenderHint(QPainter::Antialiasing);
    paint(painter, bounds());
    painter->restore();
}

void Overlay::Click(GLW *glw, bool pressed)
{
    const Mouse &mouse = glw->gl->mouse;
    if (!pressed || mouse.button == mouse.last_button)
        return;
    // While the action fires, the record counts from this object's lower-left corner.
    const QRectF r = bounds();
    click(r.bottomLeft() + QPointF(mouse.x + 0.5, -mouse.y + 0.5), r);
}

void Overlay::click(const QPointF &, const QRectF &) {}

} // namespace host
