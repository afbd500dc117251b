// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_WINDOW_H
#define HOST_VIEW_WINDOW_WINDOW_H

#include <functional>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include "GL/glwindowbase.h"
#include "host/view/window/frame_clock.h"

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

    GLWindow *widget() const { return widget_; } ///< Null once the window is gone.
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
    QPointer<GLWindow> widget_;
    FrameClock *clock_ = nullptr;
};

} // namespace host

#endif
