// SPDX-License-Identifier: MIT
#ifndef GL_GLWINDOW_H
#define GL_GLWINDOW_H

#include <QAction>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QVector>

#include "GL/export.h"
#include "GL/glwidget.h"
#include "GL/glwindowbase.h"
#include "utils/timer.h"

class QMenu;

/// The OpenGL window: a frame timer and a list of scene objects that it picks, paints and feeds
/// with input.
///
/// A frame clears, lets every object pick, then paint, writes the frame rate, lets every object
/// paint its foreground, and swaps. Ticks repaint while the dynamic property "timer" is true; while
/// it is false they pick only, until Update() asks for one frame. Input goes to the first object in
/// the list that is enabled, visible and under the pointer.
/// Frame and units: see GLWindow. The objects in the list are not owned. Other dynamic properties:
/// "verbose" (int), "drawfps" and "clampMouseToFrame" (bool) are read; "fpsString" and "cpuString"
/// (QString) and "swRendering" (bool) are written.
/// A host's slot may delete objects and actions at any time, and the window itself except in a
/// repaint or a resize (Resized) that Qt asked for and while GL is initialised; deleteLater() works
/// there too.
class GLWINDOW_EXPORT QGLWindow : public GLWindow {
    Q_OBJECT
    Q_PROPERTY(float fps READ fps WRITE fps)

public:
    float _fps = 60;
    int timerID = 0;          ///< The running frame timer, 0 when none.
    bool timer_event = false; ///< True only while a timer tick paints.
    size_t last_draw = 0;     ///< Microseconds: just before the previous frame's swap.
    QString last_fps;         ///< The text in the top-right corner.
    LoadTimer timer;
    QMenu *menu = nullptr;       ///< The context menu while it is open.
    QList<GLWidget *> glwidgets; ///< In painting order. An object that died keeps its entry.

    /// Starts the frame timer, 30 frames per second. @p name may be null.
    QGLWindow(QWidget *parent, const char *name);
    ~QGLWindow() override;

    /// Frames per second last set to a positive value.
    float fps() const { return _fps; }
    /// Restarts the frame timer with 1000 / @p rate whole milliseconds; stops it for 0 or less.
    void fps(float rate);

    virtual void HandleKeyboardEvent(int key, bool press, bool autoRepeat);
    virtual void HandleMouseEvent(bool press);

Q_SIGNALS:
    /// The GL surface's new size, as Qt's GL widget reports it.
    void Resized(int, int);

public Q_SLOTS:
    /// Makes a shortcut of the window (text as shortcuts are shown, such as Ctrl+S) in the place of
    /// all of the same name and connects it to @p obj's @p slot (in `SLOT()` form), which takes
    /// nothing or a bool. It is kept even if the slot does not fit. Owned by the window; dies with
    /// @p obj.
    QAction *NewAction(const QString &binding, const char *name, QObject *obj,
                       const char *slot) override;
    /// Deletes the first action of that name. Returns whether there was one.
    bool DeleteAction(const char *name) override;

    /// Puts the scene object in front of the list: it is hit first and painted first.
    QObject *AddGLWidget(QObject *o);
    /// Puts the scene object at @p pos, at the end for a negative one; one that was in the list
    /// moves. It hears Resized from now on, once however often it is inserted. Expects it in no
    /// other window, which would go on painting it. Returns it, or null if @p o is none.
    QObject *InsertGLWidget(int pos, QObject *o);
    /// Takes the scene object out without deleting it; it belongs to no window then, not even to
    /// another that holds it. Its connections stay: it still hears Resized. Returns whether it was
    /// in the list.
    bool RemoveGLWidget(QObject *o);

    void Update(); ///< Lets the next tick paint even while "timer" is false.

    /// Runs a context menu at the cursor, if that is in the window and no menu is open: @p o's slot
    /// `int Build(QMenu*)` fills it. Afterwards mouse.y counts from the top until the next event.
    void ContextMenu(QObject *o) override;

protected:
    void timerEvent(QTimerEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;
    void paintEvent(QPaintEvent *event) override;
    void glDraw() override;

private:
    using Objects = QVector<QPointer<GLWidget>>;
    Objects snapshot() const;
    bool forEachObject(void (GLWidget::*pass)());
    void drawFrameRate();
    void refreshTexts(time_t now);

    GLW *hit_widget(const Objects &objects, int x, int y) const;
    GLW *objectUnderPointer() const;
    void pointerUpdate(QMouseEvent *event);

    QHash<GLWidget *, QPointer<GLWidget>> guards; ///< Tells which entries of the list have died.
    const QGLContext *initialized = nullptr;      ///< The context that initializeGL() has seen.
};

/// Connects @p a to @p obj's @p slot (in `SLOT()` form) that takes nothing or a bool; see
/// connectFirst().
inline bool action_connect(QAction *a, QObject *obj, const char *slot)
{
    return connectFirst(a, {SIGNAL(triggered()), SIGNAL(triggered(bool))}, obj, slot);
}

/// The module's entry. Hands every class's factory to @p lib's slot
/// `Register(const char* kind, const char* name, void* factory)`, if it has one: always with the
/// kind "qobject", and QGLWindow under the name "GLWindow". Always returns 1.
extern "C" GLWINDOW_EXPORT int init(QObject *lib);

#endif
