// SPDX-License-Identifier: MIT
#include "host/view/window/frame_clock.h"

#include <chrono>

#include <QEvent>
#include <QVariant>

namespace host {
namespace {

double steadyTime()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

FrameClock::FrameClock(QWidget *window, float rate, QObject *parent, int restAfter)
    : QObject(parent), window_(window), time_(steadyTime), rate_(rate)
{
    restTimeout_.setSingleShot(true);
    restTimeout_.setInterval(restAfter);
    connect(&restTimeout_, &QTimer::timeout, this, &FrameClock::rest);
    window->setProperty("timer", false);
    window->installEventFilter(this);
    touch();
}

void FrameClock::touch()
{
    if (!window_)
        return;
    if (!running_) {
        running_ = true;
        window_->setProperty("fps", rate_);
    }
    restTimeout_.start();
}

void FrameClock::rest()
{
    if (!window_ || continuous_)
        return;
    running_ = false;
    window_->setProperty("fps", 0.0f);
}

void FrameClock::requestFrame()
{
    if (!window_)
        return;
    QMetaObject::invokeMethod(window_, "Update");
    touch();
}

void FrameClock::setContinuous(bool on)
{
    continuous_ = on;
    if (window_)
        window_->setProperty("timer", on);
    requestFrame();
}

bool FrameClock::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::Show:
        touch();
        break;
    case QEvent::Resize:
        requestFrame();
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

} // namespace host
