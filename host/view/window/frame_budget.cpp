// SPDX-License-Identifier: MIT
#include "host/view/window/frame_budget.h"

#include <algorithm>

#include <QElapsedTimer>

namespace host {

FrameBudget::FrameBudget(QObject *parent) : QObject(parent)
{
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, &FrameBudget::due);
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
    // Until events come again, the frame is on the screen: what that takes is its cost.
    QElapsedTimer rest;
    rest.start();
    QMetaObject::invokeMethod(
        this, [this, rest] { cost_ = rest.elapsed(); }, Qt::QueuedConnection);
}

} // namespace host
