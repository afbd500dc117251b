// SPDX-License-Identifier: MIT
// The scene object's list of actions and its context menu.
#include <QCoreApplication>

#include "GL/glwidget.h"
#include "Qt/utils.h"

QAction *GLWidget::AddAction(QAction *action)
{
    return InsertAction(nullptr, action);
}

QAction *GLWidget::InsertAction(QAction *before, QAction *action)
{
    if (!action)
        return nullptr;
    RemoveAction(action);
    const int index = before ? _actions.indexOf(before) : -1;
    _actions.insert(index < 0 ? _actions.size() : index, action);
    connect(action, SIGNAL(destroyed(QObject *)), this, SLOT(RemoveAction(QObject *)));
    return action;
}

bool GLWidget::RemoveAction(QObject *action)
{
    // By address: when the action announces its destruction it is no longer a QAction.
    for (int i = 0; i < _actions.size(); ++i) {
        if (static_cast<QObject *>(_actions.at(i)) == action) {
            _actions.removeAt(i);
            return true;
        }
    }
    return false;
}

/// Deletes every action of that name; each leaves the list by its destruction.
void GLWidget::removeNamed(const QString &name)
{
    QList<QPointer<QAction>> copy;
    for (QAction *action : qAsConst(_actions))
        if (action && action->objectName() == name)
            copy.append(action);
    for (const QPointer<QAction> &action : qAsConst(copy))
        delete action.data();
}

/// Makes an action in the place of all of the same name and in front of the others; @p bind gives
/// it its binding. Returns null if this object died meanwhile: slots that hear of a replaced
/// action's end may delete it, or the receiver.
template <typename Action, typename Bind>
QAction *GLWidget::makeAction(const char *name, QObject *obj, const char *slot, Bind bind)
{
    const QPointer<GLWidget> self(this);
    const QPointer<QObject> receiver(obj);
    const QString wanted = QString::fromUtf8(name); // the constructor would read it as Latin-1
    removeNamed(wanted);
    if (!self)
        return nullptr;
    auto *action = new Action(this, nullptr);
    action->setObjectName(wanted);
    bind(action);
    action->connect(receiver, slot);
    return InsertAction(_actions.value(0), action);
}

QAction *GLWidget::NewKeyAction(const QString &binding, const char *name, QObject *obj,
                                const char *slot)
{
    return makeAction<KeyAction>(name, obj, slot, [&](KeyAction *action) {
        action->setKey(QKeySequence(binding, QKeySequence::NativeText));
    });
}

QAction *GLWidget::NewMouseAction(uint binding, uint mask, const char *name, QObject *obj,
                                  const char *slot)
{
    return makeAction<MouseAction>(name, obj, slot,
                                   [&](MouseAction *action) { action->setBinding(binding, mask); });
}

bool GLWidget::DeleteAction(const char *name)
{
    if (!name)
        return false;
    const QString wanted = QString::fromUtf8(name);
    for (QAction *action : qAsConst(_actions)) {
        if (action && action->objectName() == wanted) {
            RemoveAction(action);
            delete action;
            return true;
        }
    }
    return false;
}

void GLWidget::ContextMenu()
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!gl || !application || !qHasMethod(application, "NewObject(QString,QObject*,QString)"))
        return;
    const QPointer<GLWidget> self(this);
    QObject *made = nullptr;
    QMetaObject::invokeMethod(application, "NewObject", Q_RETURN_ARG(QObject *, made),
                              Q_ARG(QString, QStringLiteral("MenuTree")), Q_ARG(QObject *, this),
                              Q_ARG(QString, QStringLiteral("contextmenu")));
    const QPointer<QObject> tree(made);
    if (tree && self)
        emit InitContextMenuTree(this, tree);
    if (tree && self && gl)
        gl->ContextMenu(tree);
    delete tree.data();
}
