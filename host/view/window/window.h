// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_WINDOW_H
#define HOST_VIEW_WINDOW_WINDOW_H

#include <functional>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include "GL/glwindowbase.h"
#include "host/view/window/frame_clock.h"
#include "host/view/window/side_frame.h"

class QAction;

namespace host {

/// Makes an object of a class of the module. Returns null if the module has no such class.
using ObjectFactory =
    std::function<QObject *(const char *className, QObject *parent, const char *name)>;

/// The module's window as this program uses it: made by name, titled, woken by input, taking files
/// that are dropped on it.
class Window : public QObject {
    Q_OBJECT
public:
    /// Expects @p factory to know the module's window.
    Window(ObjectFactory factory, const QSize &size, float fps);
    ~Window() override;

    /// The surface that views are drawn on; null once the window is gone.
    GLWindow *widget() const { return widget_; }
    /// What the desktop knows as the window, with the surface in it; null once it is gone.
    SideFrame *frame() const { return frame_; }
    FrameClock &clock() { return *clock_; }

    void show();
    void setTitle(const QString &title); ///< Of the file; empty for none.

    /// Where a scene object stands: the pointer finds those in front first.
    enum Place { InFront, Behind };
    /// Makes a scene object of @p className, owned by the caller, in front of all others or behind
    /// them. Returns null if the module has no such class.
    QObject *addScene(const char *className, const char *name, Place place = InFront);
    /// Takes a scene object out and deletes it.
    void removeScene(QObject *scene);

    /// Binds a key of the whole window. @p text says what it does, for the list of bindings.
    QAction *bindKey(const QString &key, const char *name, const QString &text, QObject *receiver,
                     const char *slot);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    void filesDropped(const QStringList &paths);

private:
    ObjectFactory factory_;
    QPointer<SideFrame> frame_;
    QPointer<GLWindow> widget_; // in the frame
    FrameClock *clock_ = nullptr;
};

} // namespace host

#endif
