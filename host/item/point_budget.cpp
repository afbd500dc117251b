// SPDX-License-Identifier: MIT
#include "host/item/point_budget.h"

#include <algorithm>

namespace host {

void PointBudget::advance(bool moved, double seconds)
{
    constexpr double slow = 1 / 15.0, fast = 1 / 40.0; // of a frame, in seconds
    // Between two frames that move lies the time that one takes, and nothing else.
    if (moved && moved_ && seconds > slow)
        moving_ = std::max(least, seconds > 2 * slow ? moving_ / 2 : moving_ / 4 * 3);
    else if (moved && moved_ && seconds < fast)
        moving_ = std::min(all, moving_ / 4 * 5);
    most_ = moved ? moving_ : std::min(all, most_ * 3);
    moved_ = moved;
}

} // namespace host
