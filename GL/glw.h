// SPDX-License-Identifier: MIT
#ifndef GL_GLW_H
#define GL_GLW_H

#include <type_traits>

#include <QAction>
#include <QMetaType>
#include <QPoint>
#include <QPointer>
#include <QRectF>
#include <QSize>
#include <QVariant>
#include <QVector3D>

#include "GL/camera.h"
#include "GL/export.h"
#include "GL/glwindowbase.h"
#include "GL/lighting.h"
#include "utils/numbers.h"

/// Base of everything a GL window stacks and paints: a rectangle in the window with a 3D camera, a
/// 2D viewport and lights.
///
/// Frame: the rectangle counts from the window's top-left corner, y downwards. With a live window
/// and both extents at most 1 its numbers are fractions of the window ("normal"), otherwise logical
/// pixels. A negative origin counts from the far edge: the right one for x, the bottom one for y.
/// Owned by its Qt parent; the window that shows it does not own it. Needs the headers only.
class GLWINDOW_EXPORT GLW : public QObject {
public:
    using Lights = GL::Lights;

    int _id = -1;             ///< Given by the owner: a tile's number.
    QRectF rect{0, 0, 1, 1};  ///< Current placement.
    QRectF orect{0, 0, 1, 1}; ///< Placement as last set from outside; a tile's whole cell.
    GL::Viewport viewport;
    GL::Camera camera;
    Lights lights;
    QPointer<GLWindow> gl; ///< The window that shows this object; set by the window.

    /// Sets "enabled", "visible", "flags", "pick3d", "pick2d", "draw3d" and "draw2d" to their
    /// defaults: all true, flags 0. @p name is Latin-1 and may be null.
    GLW(QObject *p, const char *name);
    ~GLW() override = default;

    int id() const { return _id; }

    /// Whether the rectangle is in window fractions. The flag is reserved.
    bool normal(bool = true) const { return gl && rect.width() <= 1.0 && rect.height() <= 1.0; }

    // Pixel geometry, in logical window pixels; with a dead window its size counts as zero.
    qreal width() const { return normal() ? rect.width() * windowWidth() : rect.width(); }
    qreal height() const { return normal() ? rect.height() * windowHeight() : rect.height(); }
    qreal x() const;
    qreal y() const;
    qreal glY() const; ///< The lower edge, counted upwards from the window's bottom.

    // What OpenGL gets of it: whole pixels, truncated within the limits of an int.
    QPoint glCorner() const; ///< The lower-left corner, y upwards.
    QSize glSize() const { return {bounded::truncate(width()), bounded::truncate(height())}; }

    // The stored rectangle (relative), or pixels.
    QPointF pos(bool relative = true) const
    {
        return relative ? rect.topLeft() : QPointF(x(), y());
    }
    QSizeF size(bool relative = true) const;
    QRectF geometry(bool relative = true) const;

    // Placement: writes rect and orect alike; repaints and notifies nobody.
    void move(qreal x_, qreal y_) { move(QPointF(x_, y_)); }
    void move(const QPointF &p);
    void resize(qreal w, qreal h) { resize(QSizeF(w, h)); }
    void resize(const QSizeF &s);
    void setGeometry(const QRectF &r) { rect = orect = r; }

    /// The 2D data point at pixel (@p x_, @p y_) of this object, y as in the mouse record.
    Vector Cursor(float x_, float y_) const;
    /// The 2D data point at the window's mouse record; (0, 0, -1) without a window.
    Vector Cursor() const;

    /// The object at pixel (@p x_, @p y_) of the window, y from the top: this, a part of it, or
    /// null. All edges belong to the object, the far ones too, which lie a pixel beyond what it
    /// draws; an empty rectangle is never hit.
    virtual GLW *hit(int x_, int y_);

    /// The actions whose bindings apply to this object; the first one wins ties.
    virtual QList<QAction *> actions() const;

    // Making and deleting actions by name. Returns null, or false, where an object has none.
    virtual QAction *NewKeyAction(const QString &binding, const char *name, QObject *obj,
                                  const char *slot) = 0;
    virtual QAction *NewMouseAction(quint32 binding, quint32 mask, const char *name, QObject *obj,
                                    const char *slot) = 0;
    virtual bool DeleteAction(const char *name) = 0;

    /// The range of the 2D data; empty unless an object has any.
    virtual QRectF Range2D(int mode);
    /// The 2D data point nearest to the pointer; the origin unless an object has any.
    virtual QVector3D NearestDataPos();

    /// Enables or disables the first action of that name. Returns it, or null if there is none.
    QAction *enableAction(const char *name, bool enable);

    using QObject::property;
    using QObject::setProperty;

    /// The dynamic property as a T, converted if need be; T() if it is missing or does not convert,
    /// which @p ok then tells.
    template <typename T> T property(const char *name, bool *ok = nullptr) const;

    /// Stores the value as a variant of exactly type T. Returns false for a dynamic property.
    template <typename T, typename = std::enable_if_t<!std::is_array_v<T>>>
    bool setProperty(const char *name, const T &value)
    {
        return QObject::setProperty(name, QVariant::fromValue<T>(value));
    }

private:
    qreal windowWidth() const { return gl ? gl->width() : 0; }
    qreal windowHeight() const { return gl ? gl->height() : 0; }
};

Q_DECLARE_METATYPE(GLW *)

inline GLW::GLW(QObject *p, const char *name) : QObject(p)
{
    setObjectName(QString::fromLatin1(name));
    setProperty("enabled", true);
    setProperty("visible", true);
    setProperty("flags", 0);
    setProperty("pick3d", true);
    setProperty("pick2d", true);
    setProperty("draw3d", true);
    setProperty("draw2d", true);
}

inline qreal GLW::x() const
{
    const qreal xs = normal() ? rect.x() * windowWidth() : rect.x();
    return rect.x() >= 0 ? xs : xs + (windowWidth() - width());
}

inline qreal GLW::y() const
{
    const qreal ys = normal() ? rect.y() * windowHeight() : rect.y();
    return rect.y() >= 0 ? ys : ys + (windowHeight() - height());
}

inline qreal GLW::glY() const
{
    const qreal ys = normal() ? rect.y() * windowHeight() : rect.y();
    return rect.y() < 0 ? -ys : (windowHeight() - height()) - ys;
}

inline QPoint GLW::glCorner() const
{
    return {bounded::truncate(x()), bounded::truncate(glY())};
}

inline QSizeF GLW::size(bool relative) const
{
    return relative ? rect.size() : QSizeF(width(), height());
}

inline QRectF GLW::geometry(bool relative) const
{
    return relative ? rect : QRectF(x(), y(), width(), height());
}

inline void GLW::move(const QPointF &p)
{
    rect.moveTopLeft(p);
    orect.moveTopLeft(p);
}

inline void GLW::resize(const QSizeF &s)
{
    rect.setSize(s);
    orect.setSize(s);
}

inline Vector GLW::Cursor(float x_, float y_) const
{
    const QSize region = glSize();
    return viewport.Cursor(x_, y_, region.width(), region.height());
}

inline Vector GLW::Cursor() const
{
    return gl ? Cursor(float(gl->mouse.x), float(gl->mouse.y)) : Vector(0, 0, -1);
}

inline GLW *GLW::hit(int x_, int y_)
{
    return geometry(false).contains(QPointF(x_, y_)) ? this : nullptr;
}

inline QList<QAction *> GLW::actions() const
{
    return findChildren<QAction *>();
}

inline QRectF GLW::Range2D(int)
{
    return QRectF(0, 0, 0, 0);
}

inline QVector3D GLW::NearestDataPos()
{
    return QVector3D(0, 0, 0);
}

inline QAction *GLW::enableAction(const char *name, bool enable)
{
    const QString wanted = QString::fromUtf8(name);
    for (QAction *action : actions()) {
        if (action && action->objectName() == wanted) {
            const QPointer<QAction> found(action);
            action->setEnabled(enable);
            return found;
        }
    }
    return nullptr;
}

template <typename T> T GLW::property(const char *name, bool *ok) const
{
    QVariant value = QObject::property(name);
    const int type = qMetaTypeId<T>();
    const bool fits = value.userType() == type || value.convert(type);
    if (ok)
        *ok = fits;
    return fits ? *static_cast<const T *>(value.constData()) : T();
}

#endif
