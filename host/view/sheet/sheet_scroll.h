// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_SHEET_SCROLL_H
#define HOST_VIEW_SHEET_SHEET_SCROLL_H

#include <optional>

namespace host {

/// How far a sheet is scrolled, in pixels, and where it glides to. A step is no jump: eyes follow
/// the tiles to where they go.
class SheetScroll {
public:
    double offset() const { return offset_; } ///< In whole pixels.
    bool isMoving() const { return target_ != place_; }

    void setLargest(double largest); ///< Offsets end there, and at 0.
    double largest() const { return largest_; }

    void jumpTo(double offset);  ///< Is there at once.
    void glideTo(double offset); ///< Goes there in the next frames.
    void glideBy(double pixels); ///< From where it is going.

    /// Moves on to the time @p seconds. Returns whether the offset is another one.
    bool advance(double seconds);

private:
    void moveTo(double place);

    double largest_ = 0;
    double place_ = 0;
    double target_ = 0;
    double offset_ = 0;
    std::optional<double> moved_; // when it last did
};

} // namespace host

#endif
