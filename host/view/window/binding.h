// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_BINDING_H
#define HOST_VIEW_WINDOW_BINDING_H

#include <QAction>
#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QString>
#include <QVector>

namespace host {

/// Bits of the mouse binding word, beside Qt's buttons and modifiers.
enum MouseBit : quint32 {
    LeftButton = 0x1,
    RightButton = 0x2,
    MiddleButton = 0x4,
    WheelUp = 0x8,
    WheelDown = 0x10,
    DoubleClick = 0x100,
    AnyModifier = 0x3E000000, ///< As a mask: no modifier matters.
};

/// Binds a key on @p scene to @p receiver's @p slot. @p text says what it does, for the list of
/// bindings; an empty one keeps it off the list. Returns the action, owned by the scene.
QAction *bindKey(QObject *scene, const QString &key, const char *name, const QString &text,
                 QObject *receiver, const char *slot);

/// The same for the mouse: bits of @p mask are ignored unless @p binding sets them.
QAction *bindMouse(QObject *scene, quint32 binding, quint32 mask, const char *name,
                   const QString &text, QObject *receiver, const char *slot);

/// Kinds of content on which a binding does something.
enum ContentBit {
    NoContent = 0,
    OnModel = 0x1,
    OnPlot = 0x2,
    OnPoints = 0x4,
    OnAnimated = 0x8,
    OnAny = 0xf
};

/// Says that @p action does something on @p contents alone, bits of ContentBit; what nothing was
/// said of always does. On a plot it does what @p plotText says, if that is not empty.
void setContents(QAction *action, int contents, const QString &plotText = {});

/// What a person does to fire @p action, in words, such as "Ctrl+S", "Shift+left drag" or
/// "double click"; its property "words", if there is one, as what concerns the wheel must have.
/// Empty if nothing is bound.
QString bindingWords(const QAction *action);

/// One row of the list of bindings.
struct BindingRow {
    Q_DECLARE_TR_FUNCTIONS(BindingRow)
public:
    QString keys; ///< All ways to fire it, with commas between.
    QString text; ///< What it does.
};

/// A row for each different text among the enabled actions that have one and that do something on
/// @p contents, in the order in which they were bound, which is the reverse of the lists' order.
QVector<BindingRow> bindingRows(const QList<QAction *> &actions, int contents = OnAny);

} // namespace host

#endif
