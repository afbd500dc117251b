// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_DETAIL_BUDGET_H
#define HOST_ITEM_DETAIL_BUDGET_H

#include <cstddef>

namespace host {

/// How many triangles and points a frame may draw: while the view moves so many that it does so
/// smoothly, as far as the frames before tell, and all of them once it rests. A plain value.
class DetailBudget {
public:
    static constexpr std::size_t least = 10'000; ///< Below it a shape is hardly made out.
    /// Of a surface in a picture of so many @p pixels: with fewer it looks coarse at a glance.
    static std::size_t leastTriangles(double pixels);
    static constexpr std::size_t all = std::size_t(1) << 40;

    /// Called once in each pass: whether the view @p moved, the seconds since the last pass, and
    /// those that the last frame @p took until it was on the screen. Where the view moves in two
    /// passes, one after the other, that frame is the first one's.
    void advance(bool moved, double seconds, double took);
    /// Tells how many of them a frame drew.
    void drew(std::size_t count) { drawn_ = count; }

    /// Whether nothing moved for so long that a frame that takes its time is in nobody's way.
    bool rests() const { return still_ >= restAfter; }
    std::size_t most() const { return rests() ? all : moving_; }

private:
    static constexpr double restAfter = 0.2; // seconds

    void learn(double took);

    std::size_t moving_ = 300'000;  // in a frame that moves
    std::size_t drawn_ = 0;         // in the last one
    std::size_t tooMany_ = all + 1; // were slow since the view began to move
    int slow_ = 0;                  // frames, one after the other
    double still_ = 0;              // seconds since it moved
    bool moved_ = false;            // in the last pass
};

} // namespace host

#endif
