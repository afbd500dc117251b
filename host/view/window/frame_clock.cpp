// SPDX-License-Identifier: MIT
#include "host/view/window/frame_clock.h"

#include <algorithm>
#include <chrono>

#include <QMouseEvent>
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
    run(rate_);
    touched_.start();
    restTimeout_.start();
}

/// The pointer moves, and holds nothing.
void FrameClock::look()
{
    const bool busy = touched_.isValid() && !touched_.hasExpired(restTimeout_.interval());
    if (!continuous_ && !busy)
        run(std::min(rate_, lookRate_));
    restTimeout_.start();
}

void FrameClock::run(float rate)
{
    if (!window_ || running_ == rate)
        return;
    running_ = rate;
    window_->setProperty("fps", rate);
}

void FrameClock::rest()
{
    if (continuous_)
        return;
    touched_.invalidate();
    run(0);
}

void FrameClock::requestFrame()
{
    QMetaObject::invokeMethod(window_, "Update"); // of none if it is gone
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
    case QEvent::MouseMove:
        if (static_cast<QMouseEvent *>(event)->buttons() == Qt::NoButton)
            look();
        else
            touch();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
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
