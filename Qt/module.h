// SPDX-License-Identifier: MIT
#ifndef QT_MODULE_H
#define QT_MODULE_H

#include <QWidget>

#include "Qt/utils.h"

/// A factory as a host receives it: makes an object with a parent and an object name.
using QObjectFactory = QObject *(*)(QObject *parent, const char *name);

/// Makes a T that belongs to @p parent. A non-null @p name, read as Latin-1, becomes its object
/// name.
template <typename T> QObject *qCreateObject(QObject *parent, const char *name)
{
    T *object = new T(parent, nullptr);
    if (name)
        object->setObjectName(QString::fromLatin1(name));
    return object;
}

/// Lets the property "parent" of a window be read back as a plain object pointer.
inline void qRegisterObjectPointer()
{
    using Pointer = QPointer<QObject>;
    static const int type = [] {
        const int id = qRegisterMetaType<Pointer>("QPointer<QObject>");
        // Qt brings the converter along with the type where it knows guarded pointers.
        if (!QMetaType::hasRegisteredConverterFunction<Pointer, QObject *>())
            QMetaType::registerConverter<Pointer, QObject *>(
                [](const Pointer &p) { return p.data(); });
        return id;
    }();
    Q_UNUSED(type)
}

/// Makes a widget T. With a widget as @p parent it is an ordinary child of that widget. With
/// another kind of parent it is a top-level widget that the caller owns; if it has a name, the
/// parent's dynamic property of that name then holds it, its own property "parent" holds the
/// parent, and its destruction clears both.
template <typename T> QObject *qCreateWidget(QObject *parent, const char *name)
{
    QWidget *owner = parent && parent->isWidgetType() ? static_cast<QWidget *>(parent) : nullptr;
    T *widget = new T(owner, nullptr);
    if (!name)
        return widget;
    widget->setObjectName(QString::fromLatin1(name));
    if (!parent || !*name || widget->parent())
        return widget;
    qRegisterObjectPointer();
    parent->setProperty(name, QVariant::fromValue<QObject *>(widget));
    // Under the very bytes, whatever the encoding and the window's later names.
    QObject::connect(widget, &QObject::destroyed,
                     [key = QByteArray(name)](QObject *o) { qUnsetParentProperty(o, key); });
    widget->setProperty("parent", QVariant::fromValue(QPointer<QObject>(parent)));
    return widget;
}

#endif
