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

std::size_t DetailBudget::leastTriangles(double pixels)
{
    constexpr double pixelsEach = 12, most = 45'000;
    return std::size_t(std::clamp(pixels / pixelsEach, double(least), most));
}

/// What was too slow is not tried again in the same movement: detail that comes and goes is worse
/// than little. More is tried as soon as it would be fast enough, if a frame took nothing but what
/// it draws.
void DetailBudget::learn(double took)
{
    constexpr double slow = 1 / 22.0, more = 1 / 25.0, fewer = 1 / 28.0; // of a frame, in seconds
    const auto within = [this, took](double seconds) {
        return std::size_t(std::min(double(drawn_) * seconds / std::max(took, 1e-6), double(all)));
    };
    if (took < more)
        moving_ = std::max(moving_, std::min({within(more), moving_ / 4 * 5, tooMany_ - 1}));
    slow_ = took > slow ? slow_ + 1 : 0;
    // A single one may be slow by chance, unless it is by far.
    if (slow_ < (took > 3 * slow ? 1 : 2))
        return;
    slow_ = 0;
    tooMany_ = std::min(tooMany_, std::max(drawn_, least + 1));
    moving_ = std::max(least, std::min(moving_, within(fewer)));
}

} // namespace host
