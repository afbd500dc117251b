// SPDX-License-Identifier: MIT
#include "host/view/overlay/overlay.h"

#include <QAction>
#include <QMouseEvent>
#include <QPainter>

#include "host/ui/metrics.h"
#include "host/view/window/binding.h"

namespace host {

Overlay::Overlay(Underlay under, Window &window, const char *name, const QSizeF &least)
    : under_(std::move(under)), window_(window), least_(least)
{
    scene_ = window.addScene("GLWidget", name);
    for (const char *pass : {"pick3d", "pick2d", "draw3d", "draw2d"})
        scene_->setProperty(pass, false);
    listen(false);
    QMetaObject::invokeMethod(scene_, "Connect", Q_ARG(QObject *, this));
    window.widget()->installEventFilter(this);
}

Overlay::~Overlay()
{
    window_.removeScene(scene_);
}

bool Overlay::hasRoom() const
{
    const QSizeF size = window_.widget()->size();
    return display().overlays && size.width() >= Metrics::px(least_.width()) &&
           size.height() >= Metrics::px(least_.height());
}

bool Overlay::isThere() const
{
    return hasRoom() && isShown();
}

QList<QAction *> Overlay::actions() const
{
    return isThere() ? glw()->actions() : QList<QAction *>();
}

void Overlay::bindClick(const QString &words, const QString &text)
{
    if (QAction *action =
            bindMouse(scene_, LeftButton, 0, "click", text, this, SLOT(Click(GLW *, bool))))
        action->setProperty("words", words);
}

/// While it does not listen, the window finds what is behind it.
void Overlay::listen(bool on)
{
    if (on) { // what it took it follows all over the window
        area_ = pressed_ ? QRectF(window_.widget()->rect()) : bounds();
        scene_->setProperty("geometry", area_);
    }
    scene_->setProperty("enabled", on);
}

/// Before the window looks for the object that an event is for.
bool Overlay::eventFilter(QObject *object, QEvent *event)
{
    if (!scene_)
        return QObject::eventFilter(object, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto *press = static_cast<QMouseEvent *>(event);
        const QPointF at = press->localPos();
        const bool was = pressed_;
        pressed_ = press->buttons() == Qt::LeftButton && press->modifiers() == Qt::NoModifier &&
                   mainGLW()->property<bool>("visible") && isThere() && bounds().contains(at) &&
                   takes(at, bounds());
        listen(pressed_);
        if (was && !pressed_) // another button ends it
            released();
        break;
    }
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        listen(pressed_);
        if (pressed_ && static_cast<QMouseEvent *>(event)->buttons() == Qt::NoButton) {
            pressed_ = false;
            released();
        }
        break;
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        listen(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
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
    if (!isThere() || !mainGLW()->property<bool>("visible"))
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
    if (!pressed)
        return;
    // While the action fires, the record counts from this object's lower-left corner.
    const QRectF r = bounds();
    const QPointF at = area_.bottomLeft() + QPointF(mouse.x + 0.5, -mouse.y + 0.5);
    mouse.button == mouse.last_button ? drag(at, r) : click(at, r);
}

} // namespace host
