// SPDX-License-Identifier: MIT
#ifndef QT_UTILS_H
#define QT_UTILS_H

#include <QMetaMethod>
#include <QObject>
#include <QPointer>
#include <QVariant>

Q_DECLARE_METATYPE(QPointer<QObject>)

/// Whether @p o has a slot of the normalised signature @p signature, inherited ones included.
/// Signals and other invokable methods do not count.
inline bool qHasSlot(const QObject *o, const char *signature)
{
    // Not indexOfSlot(), which finds invokable methods too.
    const QMetaObject *meta = o->metaObject();
    for (int i = 0; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Slot && method.methodSignature() == signature)
            return true;
    }
    return false;
}

/// Whether @p o has any invokable method of the normalised signature @p signature, so that calling
/// it by name succeeds without a complaint from Qt.
inline bool qHasMethod(const QObject *o, const char *signature)
{
    return o->metaObject()->indexOfMethod(signature) >= 0;
}

/// Whether the property is there, converts to bool and is true.
inline bool qIsTrue(const QObject *o, const char *name)
{
    return o->property(name).toBool();
}

/// Run when a window that a factory registered with a parent is destroyed: removes from that parent
/// the property that names the window. Does nothing for null, a nameless object or one without a
/// "parent" property.
inline void qUnsetParent(QObject *o)
{
    if (!o || o->objectName().isEmpty())
        return;
    QVariant value = o->property("parent");
    if (!value.canConvert<QObject *>() || !value.convert(qMetaTypeId<QObject *>()))
        return;
    QObject *parent = qobject_cast<QObject *>(value.value<QObject *>());
    if (!parent)
        return;
    o->setProperty("parent", QVariant());
    parent->setProperty(o->objectName().toLocal8Bit().constData(), QVariant());
}

#endif
