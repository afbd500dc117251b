// SPDX-License-Identifier: MIT
// The window's routing of keys, mouse and wheel to the bindings of the object under the pointer.
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "GL/glwindow.h"
#include "GL/pass.h"
#include "Qt/utils.h"

namespace {

int keyOf(const QKeyEvent *event)
{
    return event->key() | int(event->modifiers());
}

/// @p p in whole pixels.
QPoint rounded(const QPointF &p)
{
    return QPoint(bounded::round(p.x()), bounded::round(p.y()));
}

/// Whether a wheel step is one up. Alt makes platforms deliver a vertical step sideways.
bool isStepUp(const QWheelEvent &event)
{
    const QPoint delta = event.angleDelta();
    const bool sideways = delta.y() == 0 && (event.modifiers() & Qt::AltModifier);
    return (sideways ? delta.x() : delta.y()) > 0;
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
    return hit_widget(snapshot(), mouse.x, bounded::difference(height(), mouse.y));
}

void QGLWindow::HandleMouseEvent(bool press)
{
    makeCurrent();
    GLW *o = objectUnderPointer();
    if (!o)
        return;
    MouseAction *a = MouseAction::find(o->actions(), mouse, press);
    const LocalRecord local(this, *o);
    o->camera.Unproject(float(mouse.x), float(mouse.y));
    if (a)
        a->activate(o, mouse, press);
}

void QGLWindow::HandleKeyboardEvent(int key, bool press, bool autoRepeat)
{
    makeCurrent();
    if (GLW *o = objectUnderPointer()) {
        if (KeyAction *a = KeyAction::find(o->actions(), key)) {
            const LocalRecord local(this, *o);
            a->activate(o, press, autoRepeat);
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
    const QPoint local = rounded(event->localPos());
    mouse.update(local.x(), bounded::difference(height(), local.y()), timer(),
                 int(event->buttons()), int(event->modifiers()));
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
    const QPoint local = rounded(event->localPos());
    QPoint inside = local;
    if (qIsTrue(this, "clampMouseToFrame") && event->buttons() != Qt::NoButton) {
        inside = QPoint(qBound(0, local.x(), width()), qBound(0, local.y(), height()));
        const QPoint screen = rounded(event->screenPos());
        const auto moved = [](int from, int out, int in) {
            return bounded::sum(bounded::difference(from, out), in);
        };
        if (inside.x() != local.x())
            QCursor::setPos(moved(screen.x(), local.x(), inside.x()), screen.y());
        if (inside.y() != local.y())
            QCursor::setPos(screen.x(), moved(screen.y(), local.y(), inside.y()));
    }
    mouse.update(inside.x(), bounded::difference(height(), inside.y()), timer(), mouse.button,
                 int(event->modifiers()));
    HandleMouseEvent(true);
}

void QGLWindow::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const bool up = isStepUp(*event);
    const int step = up ? 0x08 : 0x10;
    const int others = up ? 0xF7 : 0xEF;
    const int x = bounded::truncate(event->position().x());
    const int y = bounded::difference(height(), bounded::truncate(event->position().y()));
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
