// SPDX-License-Identifier: MIT
#ifndef GL_GLWIDGET_H
#define GL_GLWIDGET_H

#include <QList>

#include "GL/action.h"
#include "GL/export.h"
#include "GL/glw.h"

class QPainter;

Q_DECLARE_METATYPE(Vector)

/// A scene object: it prepares OpenGL for its rectangle of the window and asks the host, by
/// signals, to draw and to pick there. It draws nothing itself.
///
/// Frame: as GLW. While Draw3D and Draw2D are emitted the window's mouse record is in this object's
/// frame (origin at its lower-left corner, y upwards); during all other signals of a frame it is in
/// the window's, and during all of a multi-view's. Dynamic properties "enabled", "visible",
/// "pick3d", "pick2d", "draw3d" and "draw2d" (bool) switch passes on and off; a value that is
/// missing or does not convert counts as false. Owned by its Qt parent, never by the window. A
/// host's slot may delete anything during any signal, this object included; for the window there is
/// one exception, see QGLWindow.
class GLWINDOW_EXPORT GLWidget : public GLW {
    Q_OBJECT
    Q_PROPERTY(double x READ x)
    Q_PROPERTY(double y READ y)
    Q_PROPERTY(double width READ width)
    Q_PROPERTY(double height READ height)
    Q_PROPERTY(QPointF pos READ pos WRITE move)
    Q_PROPERTY(QSizeF size READ size WRITE resize)
    Q_PROPERTY(QRectF geometry READ geometry WRITE setGeometry)

public:
    QList<QAction *> _actions; ///< Not owning; in the order in which they are looked through.

    GLWidget(QObject *p, const char *name);
    ~GLWidget() override;

    QList<QAction *> actions() const override { return _actions; }

    /// Asks the host for the data range for @p mode. A vertical range left unset becomes 10 down to
    /// -10, a right edge at 0 becomes 3680.
    QRectF Range2D(int mode) override;
    /// Asks the host for the data point nearest to the pointer; without an answer it is the point
    /// under the pointer, (0, 0, -1) without a window.
    QVector3D NearestDataPos() override;

    // The passes, called by the window with its GL context current.
    virtual void initializeGL();
    virtual void pickGL();  ///< Advances the camera, then emits Pick3D and Pick2D.
    virtual void paintGL(); ///< Sets the GL viewport, then emits Draw3D and Draw2D.
    /// Emits PaintForeground with a painter on the window, which is made only if somebody listens,
    /// and puts the GL viewport back: the next pick pass is given in that of the painting.
    virtual void paintForeground();

    // GL state of a pass: matrices for the whole object or, for picking, for the region around the
    // pointer; lights are switched on (with any lights) or off (for picking).
    virtual void InitPick3D(Mouse &mouse);
    virtual void InitPick2D(Mouse &mouse);
    virtual void Init3D();
    virtual void Init2D();

Q_SIGNALS:
    void Init(GLW *);
    void Resized(int, int);
    void Pick3D(GLW *);
    void Pick2D(GLW *);
    void Draw3D(GLW *);
    void Draw2D(GLW *);
    void PaintForeground(GLW *, QPainter *);
    void Range2D(QRectF *, int);
    void NearestDataPos(QVector3D *);
    void InitContextMenuTree(GLW *, QObject *);

public Q_SLOTS:
    /// Appends the action, or moves it to the end. Returns it.
    QAction *AddAction(QAction *action);
    /// Inserts the action ahead of @p before, or at the end if that is null or not in the list; an
    /// action that was in the list moves. Returns it; null changes nothing.
    QAction *InsertAction(QAction *before, QAction *action);
    /// Takes the action out of the list without deleting it. Returns whether it was there.
    bool RemoveAction(QObject *action);

    /// Wires the host object @p o: each drawing signal to @p o's slot of the same name, where it
    /// has one. In a visible window @p o's Init runs at once, with the window's context current;
    /// the context that was current comes back behind it. Then @p o's Connected(GLW*) is called, if
    /// there. Expects @p o not null; returns it, or null if it died.
    QObject *Connect(QObject *o);

    void Resize(int, int); ///< Reached by the window's Resized; does nothing here.

    /// Makes a key action (text as a keyboard shortcut is shown, such as Ctrl+S) in the place of
    /// all of the same name, in front of the others, and binds it to @p obj's @p slot (in `SLOT()`
    /// form). The name is read as UTF-8. It is kept even if the slot does not fit. Owned by this
    /// object.
    QAction *NewKeyAction(const QString &binding, const char *name, QObject *obj,
                          const char *slot) override;
    /// The same with a mouse action; binding word and mask as in MouseAction.
    QAction *NewMouseAction(uint binding, uint mask, const char *name, QObject *obj,
                            const char *slot) override;
    /// Deletes the first action of that name. Returns whether there was one.
    bool DeleteAction(const char *name) override;

    /// Lets the application make a menu tree, the host fill it and the window show it.
    void ContextMenu();

    /// Sends the camera towards @p v, in world coordinates.
    void SetTarget(Vector v);

private:
    void connectDrawing(QObject *o, const char *name);
    void removeNamed(const QString &name);
    template <typename Action, typename Bind>
    QAction *makeAction(const char *name, QObject *obj, const char *slot, Bind bind);
};

#endif
