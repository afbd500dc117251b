// SPDX-License-Identifier: MIT
// The window's own shortcuts and its context menu.
#include <QCursor>
#include <QMenu>

#include "GL/glwindow.h"
#include "Qt/utils.h"

QAction *QGLWindow::NewAction(const QString &binding, const char *name, QObject *obj,
                              const char *slot)
{
    const QString wanted = QString::fromUtf8(name);
    const QList<QAction *> before = actions();
    QAction *const first = before.value(0);
    QList<QPointer<QAction>> replaced;
    for (QAction *action : before)
        if (action->objectName() == wanted)
            replaced.append(action);
    // Slots that hear of a replaced action's end may delete the window or the receiver.
    const QPointer<QGLWindow> self(this);
    const QPointer<QObject> receiver(obj);
    for (const QPointer<QAction> &action : qAsConst(replaced))
        delete action.data();
    if (!self)
        return nullptr;

    const QPointer<QAction> action(new QAction(this));
    action->setObjectName(wanted);
    action->setShortcut(QKeySequence(binding, QKeySequence::NativeText));
    action->setShortcutContext(Qt::WidgetShortcut);
    action_connect(action, receiver, slot);
    insertAction(actions().contains(first) ? first : nullptr, action);
    return action;
}

bool QGLWindow::DeleteAction(const char *name)
{
    if (!name)
        return false;
    const QString wanted = QString::fromUtf8(name);
    const QList<QAction *> all = actions();
    for (QAction *action : all) {
        if (action->objectName() == wanted) {
            const QPointer<QAction> found(action);
            removeAction(action);
            delete found.data();
            return true;
        }
    }
    return false;
}

void QGLWindow::ContextMenu(QObject *o)
{
    if (!o || menu)
        return;
    const QPoint local = mapFromGlobal(QCursor::pos());
    if (local.x() < 0 || local.y() < 0 || local.x() > width() || local.y() > height())
        return;
    const QPointer<QGLWindow> self(this);
    const QPointer<QMenu> opened(menu = new QMenu(this));
    if (qHasMethod(o, "Build(QMenu*)")) {
        int result = 0;
        QMetaObject::invokeMethod(o, "Build", Q_RETURN_ARG(int, result),
                                  Q_ARG(QMenu *, opened.data()));
    }
    if (opened)
        opened->exec(QCursor::pos());
    delete opened.data();
    if (!self)
        return;
    menu = nullptr;
    const QPoint after = mapFromGlobal(QCursor::pos());
    // The y from the top is what hosts see here; the next pointer event brings it upright.
    mouse.update(after.x(), after.y(), timer(), mouse.button, mouse.modifier);
}
