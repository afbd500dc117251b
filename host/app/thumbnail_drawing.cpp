// SPDX-License-Identifier: MIT
#include "host/app/thumbnail_drawing.h"

#include <QCoreApplication>
#include <QPainter>
#include <QThread>
#include <QTimerEvent>

#include "host/ui/metrics.h"
#include "host/view/picture_contents.h"

namespace host {

ThumbnailDrawing::ThumbnailDrawing(const ObjectFactory &factory, const Options &options)
    : options_(options),
      window_(static_cast<GLWindow *>(factory("GLWindow", nullptr, "thumbnails"))),
      scene_(factory("GLWidget", nullptr, "scene"))
{
    window_->setAttribute(Qt::WA_DontShowOnScreen);
    window_->setProperty("timer", false); // draws what is asked for, which is nothing
    window_->setProperty("fps", 0.0f);
    window_->installEventFilter(this);
    window_->resize(windowSize(options));
    QMetaObject::invokeMethod(window_.get(), "AddGLWidget", Q_ARG(QObject *, scene_.get()));
    window_->show();
}

ThumbnailDrawing::~ThumbnailDrawing()
{
    QMetaObject::invokeMethod(window_.get(), "RemoveGLWidget", Q_ARG(QObject *, scene_.get()));
}

/// What Qt would have painted is not seen, and swapped into nowhere.
bool ThumbnailDrawing::eventFilter(QObject *object, QEvent *event)
{
    return event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest ||
           QObject::eventFilter(object, event);
}

/// As a view would show it at first.
void ThumbnailDrawing::place(Item &item)
{
    auto *glw = static_cast<GLW *>(scene_.get());
    if (options_.up)
        item.standOn(glw, *options_.up);
    item.cutBy(options_.section);
    item.setTitled(false); // the index names it
    item.init(glw);
    QTimerEvent tick(0); // without a request for a frame: cameras are advanced, no more
    QCoreApplication::sendEvent(window_.get(), &tick);
}

Picture ThumbnailDrawing::draw(Item &item)
{
    auto *glw = static_cast<GLW *>(scene_.get());
    window_->makeCurrent();
    place(item);
    while (!item.isWhole()) // the faces of a cut are found by a thread, which tells nobody
        QThread::msleep(1);
    window_->makeCurrent();
    Display display;
    display.overlays = false;
    PictureContents contents(display, options_.transparent);
    contents.addItem(glw, &item);
    display.hover = false;
    contents.addText(glw, window_->rect(), [&item, display](GLW *at, QPainter *painter) {
        painter->setFont(Metrics::font());
        item.paintForeground(at, painter, display);
    });
    PictureRequest request;
    request.window = window_->size();
    request.size = options_.size;
    request.transparent = options_.transparent;
    request.objects = contents.objects();
    Picture picture = renderPicture(request);
    item.release();
    return picture;
}

} // namespace host
