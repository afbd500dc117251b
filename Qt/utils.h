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

/// Removes from the object in @p o's property "parent" the property @p name, as long as it holds
/// @p o, and then @p o's property "parent". Does nothing for an object without such a parent.
inline void qUnsetParentProperty(QObject *o, const QByteArray &name)
{
    QVariant value = o->property("parent");
    if (!value.canConvert<QObject *>() || !value.convert(qMetaTypeId<QObject *>()))
        return;
    QObject *parent = qobject_cast<QObject *>(value.value<QObject *>());
    if (!parent)
        return;
    o->setProperty("parent", QVariant());
    const QVariant held = parent->property(name);
    // By address alone: an object that the variant holds may be gone.
    if (QMetaType::typeFlags(held.userType()) & QMetaType::PointerToQObject &&
        *static_cast<QObject *const *>(held.constData()) == o)
        parent->setProperty(name, QVariant());
}

/// The same with @p o's object name, in the local encoding, as the property's name. Does nothing
/// for null or a nameless object.
inline void qUnsetParent(QObject *o)
{
    if (o && !o->objectName().isEmpty())
        qUnsetParentProperty(o, o->objectName().toLocal8Bit());
}

#endif
