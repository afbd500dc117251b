// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_POINT_BUDGET_H
#define HOST_ITEM_POINT_BUDGET_H

#include <cstddef>

namespace host {

/// How many points of a cloud a frame draws: so many that the view turns smoothly while it moves,
/// and more with each frame once it rests, until all are there. A plain value.
class PointBudget {
public:
    /// Called once a frame: whether the view @p moved, and the seconds since the last call.
    void advance(bool moved, double seconds);

    std::size_t most() const { return most_; }

private:
    static constexpr std::size_t least = 100'000; ///< A shape is still made out.
    static constexpr std::size_t all = std::size_t(1) << 40;

    std::size_t moving_ = 1'000'000; // in a frame that moves
    std::size_t most_ = moving_;
    bool moved_ = false; // in the last call
};

} // namespace host

#endif
