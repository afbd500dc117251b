// SPDX-License-Identifier: MIT
#include "host/view/window/window.h"

#include <QAction>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include "host/ui/metrics.h"

namespace host {

namespace {

QStringList localFiles(const QMimeData *data)
{
    QStringList paths;
    for (const QUrl &url : data->urls())
        if (url.isLocalFile())
            paths << url.toLocalFile();
    return paths;
}

} // namespace

Window::Window(ObjectFactory factory, const QSize &size, float fps) : factory_(std::move(factory))
{
    frame_ = new SideFrame;
    widget_ = static_cast<GLWindow *>(factory_("GLWindow", frame_, "glview"));
    frame_->setViews(widget_);
    frame_->resize(size);
    widget_->resize(size); // at once, for who asks before the window is shown
    widget_->setAcceptDrops(true);
    widget_->setFont(Metrics::font());
    widget_->installEventFilter(this);
    clock_ = new FrameClock(widget_, fps, this);
    setTitle({});
}

Window::~Window()
{
    delete frame_.data();
}

void Window::show()
{
    // The native window of the views is older than their size: it would be seen as small as it
    // began.
    if (QWindow *native = widget_->windowHandle())
        native->resize(widget_->size());
    frame_->show();
    widget_->setFocus();
}

void Window::setTitle(const QString &title)
{
    frame_->setWindowTitle(title);
}

QObject *Window::addScene(const char *className, const char *name, Place place)
{
    QObject *scene = factory_(className, nullptr, name);
    if (scene)
        QMetaObject::invokeMethod(widget_, "InsertGLWidget", Q_ARG(int, place == InFront ? 0 : -1),
                                  Q_ARG(QObject *, scene));
    return scene;
}

void Window::removeScene(QObject *scene)
{
    if (widget_ && scene)
        QMetaObject::invokeMethod(widget_, "RemoveGLWidget", Q_ARG(QObject *, scene));
    delete scene;
}

QAction *Window::bindKey(const QString &key, const char *name, const QString &text,
                         QObject *receiver, const char *slot)
{
    QAction *action = widget_->NewAction(key, name, receiver, slot);
    action->setText(text);
    return action;
}

bool Window::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
        auto *drag = static_cast<QDragMoveEvent *>(event);
        if (!localFiles(drag->mimeData()).isEmpty())
            drag->acceptProposedAction();
        return true;
    }
    if (event->type() == QEvent::Drop) {
        auto *drop = static_cast<QDropEvent *>(event);
        drop->acceptProposedAction();
        emit filesDropped(localFiles(drop->mimeData()));
        return true;
    }
    return QObject::eventFilter(object, event);
}

} // namespace host
