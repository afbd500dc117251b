// SPDX-License-Identifier: MIT
#include "host/view/sheet/sheet_scroll.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double settling = 0.06;       // seconds in which two thirds of the way are gone
constexpr double firstFrame = 1 / 60.0; // seconds: nobody knows how long it was at rest
constexpr double near = 3; // pixels from the target, which take as many frames as all before

} // namespace

void SheetScroll::moveTo(double place)
{
    place_ = place;
    offset_ = std::round(place_);
}

void SheetScroll::setLargest(double largest)
{
    largest_ = std::max(0.0, largest);
    target_ = std::min(target_, largest_);
    moveTo(std::min(place_, largest_));
}

void SheetScroll::jumpTo(double offset)
{
    glideTo(offset);
    moveTo(target_);
}

void SheetScroll::glideTo(double offset)
{
    if (!isMoving())
        moved_.reset();
    target_ = std::clamp(offset, 0.0, largest_);
}

void SheetScroll::glideBy(double pixels)
{
    glideTo(target_ + pixels);
}

bool SheetScroll::advance(double seconds)
{
    if (!isMoving())
        return false;
    const double before = offset_;
    const double passed = moved_ ? std::max(0.0, seconds - *moved_) : firstFrame;
    moved_ = seconds;
    const double left = (target_ - place_) * std::exp(-passed / settling);
    moveTo(std::abs(left) < near ? target_ : target_ - left);
    return offset_ != before;
}

} // namespace host
