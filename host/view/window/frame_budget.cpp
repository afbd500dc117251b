// SPDX-License-Identifier: MIT
#include "host/view/window/frame_budget.h"

#include <algorithm>

#include <ctime>

namespace host {
namespace {

/// Of this process, in milliseconds.
double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace

FrameBudget::FrameBudget(QObject *parent, int share, int gather)
    : QObject(parent), share_(share), gather_(gather)
{
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, [this] {
        begin_ = processorTime();
        sinceDue_.start();
        emit due();
    });
}

void FrameBudget::request()
{
    const double spent = sinceDue_.isValid() ? double(sinceDue_.elapsed()) : 0;
    if (!soon_.isActive())
        soon_.start(std::max(gather_, int(cost_ * share_ - spent)));
}

void FrameBudget::measure()
{
    if (begin_ < 0)
        return;
    // When events come again, the frame is on the screen.
    QMetaObject::invokeMethod(
        this, [this, begin = begin_] { cost_ = processorTime() - begin; }, Qt::QueuedConnection);
    begin_ = -1;
}

} // namespace host
