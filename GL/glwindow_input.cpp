// SPDX-License-Identifier: MIT
// The window's routing of keys, mouse and wheel to the bindings of the object under the pointer.
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "GL/glwindow.h"
#include "Qt/utils.h"

namespace {

/// The lower-left corner of @p o in window pixels, y upwards, truncated to whole pixels.
QPoint cornerOf(const GLW &o)
{
    const double W = o.gl ? o.gl->width() : 0;
    const double H = o.gl ? o.gl->height() : 0;
    double x = o.rect.x(), y = o.rect.y(), w = o.rect.width(), h = o.rect.height();
    if (o.gl && w <= 1 && h <= 1) {
        x *= W;
        w *= W;
        y *= H;
        h *= H;
    }
    return QPoint(int(x >= 0 ? x : W - w + x), int(y >= 0 ? H - h - y : -y));
}

int keyOf(const QKeyEvent *event)
{
    return event->key() | int(event->modifiers());
}

} // namespace

/// The first object that is enabled, visible and hit at pixel (@p x, @p y), y from the top.
GLW *QGLWindow::hit_widget(const Objects &objects, int x, int y) const
{
    for (const QPointer<GLWidget> &object : objects) {
        if (!object || !object->property<bool>("enabled") || !object->property<bool>("visible"))
            continue;
        if (GLW *found = object->hit(x, y))
            return found;
    }
    return nullptr;
}

GLW *QGLWindow::objectUnderPointer() const
{
    return hit_widget(snapshot(), mouse.x, height() - mouse.y);
}

void QGLWindow::HandleMouseEvent(bool press)
{
    const QPointer<QGLWindow> self(this);
    makeCurrent();
    GLW *o = objectUnderPointer();
    if (!o)
        return;
    MouseAction *a = MouseAction::find(o->actions(), mouse, press);
    const QPoint corner = cornerOf(*o);
    mouse.sub(corner.x(), corner.y());
    o->camera.Unproject(float(mouse.x), float(mouse.y));
    if (a)
        a->activate(o, mouse, press);
    if (self)
        mouse.add(corner.x(), corner.y());
}

void QGLWindow::HandleKeyboardEvent(int key, bool press, bool autoRepeat)
{
    if (GLW *o = objectUnderPointer()) {
        const QPointer<QGLWindow> self(this);
        if (KeyAction *a = KeyAction::find(o->actions(), key)) {
            const QPoint corner = cornerOf(*o);
            mouse.sub(corner.x(), corner.y());
            a->activate(o, press, autoRepeat);
            if (self)
                mouse.add(corner.x(), corner.y());
            return;
        }
    }
    // A bare modifier offers the pointer as it rests to the bindings that want that modifier.
    if (key >= Qt::Key_Shift && key <= Qt::Key_Alt) {
        mouse.last_button = mouse.button;
        HandleMouseEvent(press);
    }
}

void QGLWindow::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    mouse.update(int(event->modifiers()), timer());
    HandleKeyboardEvent(keyOf(event), true, event->isAutoRepeat());
}

void QGLWindow::keyReleaseEvent(QKeyEvent *event)
{
    event->accept();
    mouse.update(int(event->modifiers()), timer());
    HandleKeyboardEvent(keyOf(event), false, event->isAutoRepeat());
}

/// Takes over position, buttons and modifiers from a button event.
void QGLWindow::pointerUpdate(QMouseEvent *event)
{
    event->accept();
    const QPointF local = event->localPos();
    mouse.update(qRound(local.x()), height() - qRound(local.y()), timer(), int(event->buttons()),
                 int(event->modifiers()));
}

void QGLWindow::mousePressEvent(QMouseEvent *event)
{
    pointerUpdate(event);
    HandleMouseEvent(true);
}

void QGLWindow::mouseReleaseEvent(QMouseEvent *event)
{
    pointerUpdate(event);
    mouse.update_double(int(event->button()), 0);
    HandleMouseEvent(false);
}

void QGLWindow::mouseDoubleClickEvent(QMouseEvent *event)
{
    pointerUpdate(event);
    mouse.update_double(int(event->button()), 1);
    HandleMouseEvent(true);
}

void QGLWindow::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    const QPoint local(qRound(event->localPos().x()), qRound(event->localPos().y()));
    QPoint inside = local;
    if (qIsTrue(this, "clampMouseToFrame") && event->buttons() != Qt::NoButton) {
        inside = QPoint(qBound(0, local.x(), width()), qBound(0, local.y(), height()));
        const QPoint screen(qRound(event->screenPos().x()), qRound(event->screenPos().y()));
        if (inside.x() != local.x())
            QCursor::setPos(screen.x() - local.x() + inside.x(), screen.y());
        if (inside.y() != local.y())
            QCursor::setPos(screen.x(), screen.y() - local.y() + inside.y());
    }
    mouse.update(inside.x(), height() - inside.y(), timer(), mouse.button, int(event->modifiers()));
    HandleMouseEvent(true);
}

void QGLWindow::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const bool up = event->angleDelta().y() > 0;
    const int step = up ? 0x08 : 0x10;
    const int others = up ? 0xF7 : 0xEF;
    const int x = int(event->position().x());
    const int y = height() - int(event->position().y());
    const int button = (mouse.button & others) | step;
    mouse.update(x, y, timer(), button, int(event->modifiers()));
    const QPointer<QGLWindow> self(this);
    HandleMouseEvent(true);
    if (self)
        mouse.update(x, y, timer(), button & others, mouse.modifier);
}

void QGLWindow::leaveEvent(QEvent *event)
{
    event->accept();
    const QPoint local = mapFromGlobal(QCursor::pos());
    mouse.update(local.x(), height() - local.y(), timer(), mouse.button, mouse.modifier);
}
