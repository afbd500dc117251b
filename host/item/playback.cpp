// SPDX-License-Identifier: MIT
#include "host/item/playback.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {

void Playback::setClip(int clip)
{
    clip_ = clip;
    time_ = 0;
    playing_ = playing_ && clip >= 0;
    changed_ = true;
}

double Playback::length() const
{
    return clips()[std::size_t(std::max(clip_, 0))].seconds;
}

void Playback::setTime(double seconds)
{
    if (clip_ < 0)
        setClip(0);
    time_ = std::clamp(seconds, 0.0, length());
    changed_ = true;
}

void Playback::setPlaying(bool on)
{
    if (on && clip_ < 0)
        setClip(0);
    playing_ = on;
}

void Playback::advance(double seconds)
{
    if (playing_ && seconds > 0)
        setTime(std::fmod(time_ + seconds, length()));
}

bool Playback::takeChange()
{
    return std::exchange(changed_, false);
}

} // namespace host
