// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_HALF_CLIP_H
#define HOST_VIEW_COMPARE_HALF_CLIP_H

#include "GL/camera.h"

namespace host {

/// For its lifetime GL draws nothing on one side of a vertical line through what a camera sees: by
/// its last clip plane, so that it holds for a picture, which is drawn in blocks, as for a window.
/// Expects a current context, and the camera's matrices to be those of the whole object.
class HalfClip {
public:
    enum Side { Left, Right };
    /// Keeps the @p kept side of the line @p share, 0 to 1, of the way from the left edge.
    HalfClip(const GL::Camera &camera, double share, Side kept);
    ~HalfClip();
    HalfClip(const HalfClip &) = delete;
    HalfClip &operator=(const HalfClip &) = delete;
};

} // namespace host

#endif
