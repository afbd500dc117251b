// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PLAYBACK_H
#define HOST_ITEM_PLAYBACK_H

#include <memory>
#include <vector>

#include "host/read/rig.h"

namespace host {

/// An animation at work: which clip of a rig, what time it is in it, and whether that goes on.
/// Until it is first played the model stands as its file has it. A clip that ends begins anew.
class Playback {
public:
    /// Expects @p rig to have a clip.
    explicit Playback(std::shared_ptr<const Rig> rig) : rig_(std::move(rig)) {}

    const std::vector<Rig::Clip> &clips() const { return rig_->clips; }
    int clip() const { return clip_; }
    void setClip(int clip); ///< From its beginning; -1 is how the file has it, at rest.

    double length() const; ///< Of the clip, in seconds; of the first while none is chosen.
    double time() const { return time_; }
    void setTime(double seconds); ///< Kept within the clip.

    bool isPlaying() const { return playing_; }
    void setPlaying(bool on); ///< Begins with the first clip if there was none.

    /// Lets time go on, if it does.
    void advance(double seconds);
    /// Whether clip or time are others than when this was last asked.
    bool takeChange();

private:
    std::shared_ptr<const Rig> rig_;
    int clip_ = -1;
    double time_ = 0;
    bool playing_ = false, changed_ = false;
};

} // namespace host

#endif
