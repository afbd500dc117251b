// SPDX-License-Identifier: MIT
#include "host/item/detail_budget.h"

#include <algorithm>

namespace host {

void DetailBudget::advance(bool moved, double seconds, double took)
{
    if (moved && moved_ && drawn_ > 0) // else others made it slow
        learn(took);
    still_ = moved ? 0 : still_ + seconds;
    if (rests()) {
        tooMany_ = all + 1;
        slow_ = 0;
    }
    moved_ = moved;
}

/// What was too slow is not tried again in the same movement: detail that comes and goes is worse
/// than little.
void DetailBudget::learn(double took)
{
    constexpr double slow = 1 / 22.0, aim = 1 / 28.0, fast = 1 / 50.0; // of a frame, in seconds
    if (took < fast)
        moving_ = std::min({all, moving_ / 4 * 5, std::max(least, tooMany_ - 1)});
    slow_ = took > slow ? slow_ + 1 : 0;
    // A single one may be slow by chance, unless it is by far.
    if (slow_ < (took > 3 * slow ? 1 : 2))
        return;
    slow_ = 0;
    tooMany_ = std::min(tooMany_, drawn_);
    moving_ = std::max(least, std::size_t(double(std::min(drawn_, moving_)) * aim / took));
}

} // namespace host
