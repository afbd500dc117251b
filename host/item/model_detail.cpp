// SPDX-License-Identifier: MIT
// How much of a model a frame draws.
#include <algorithm>

#include "host/item/model_item.h"

namespace host {

bool ModelItem::passed(const Pass &pass)
{
    reduces_ = pass.reduces;
    // After the first picture, and nearly all after the tree: both take memory for a while.
    if (reduces_ && shown_)
        levels_.request(base_, !tree_.isBusy());
    budget_.advance(pass.moved, pass.seconds, pass.took);
    return reduced_ && budget_.rests();
}

ModelItem::Detail ModelItem::detailOf(bool reduces) const
{
    constexpr std::size_t leastPoints = 100'000; // a shape is still made out
    const std::size_t most = reduces ? budget_.most() : DetailBudget::all;
    return {std::min(mesh_->pointCount(), std::max(most, leastPoints)),
            levels_.levelFor(*mesh_, most, leastTriangles_)};
}

/// Takes what a frame on the screen draws.
void ModelItem::noteDetail(const Display &display)
{
    if (display.whole)
        return;
    const Detail detail = detailOf(display.reduces);
    shown_ = true;
    const bool isCoarse = detail.level >= 0;
    if (isCoarse)
        levels_.choose(detail.level);
    reduced_ = isCoarse || detail.points < mesh_->pointCount();
    budget_.drew(detail.points + (isCoarse ? levels_.triangleCount() : mesh_->triangleCount()));
}

} // namespace host
