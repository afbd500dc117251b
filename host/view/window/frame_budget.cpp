// SPDX-License-Identifier: MIT
#include "host/view/window/frame_budget.h"

#include <algorithm>

#include <ctime>

namespace host {
namespace {

/// Of this process, in milliseconds.
qint64 processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

} // namespace

FrameBudget::FrameBudget(QObject *parent) : QObject(parent)
{
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, [this] {
        begin_ = processorTime();
        emit due();
    });
}

void FrameBudget::request()
{
    constexpr int gather = 150; // milliseconds
    constexpr int share = 8;    // of the time, one part for drawing
    if (!soon_.isActive())
        soon_.start(std::max(gather, int(cost_) * share));
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
