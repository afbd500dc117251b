// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_TURNTABLE_H
#define HOST_CAPTURE_TURNTABLE_H

#include <functional>

#include "host/capture/picture.h"

namespace host {

/// A recording of one turn, or of something else that moves.
struct TurntableOptions {
    /// Suffix mp4 or gif: a film, encoded by ffmpeg. None, or a slash at the end: a folder of
    /// pictures, frame_0001.png and on. An older film is replaced; a folder has to be empty.
    QString path;
    double seconds = 6; ///< 0.1 to 600.
    double fps = 30;    ///< Frames per second, 1 to 120; in a GIF at most 50.
    /// Brings what is recorded to a share of the whole, 0 to below 1, before each frame; the camera
    /// stays. Null: a turn.
    std::function<void(double share)> move = nullptr;
};

/// Records one turn of the camera of every object of a picture, each about the vertical line
/// through its own target, the lights turning with it: like objects on a plate before a camera.
/// The frame after the last would be the first, so that the film runs on smoothly. Where the
/// options move something else, the cameras stand still, and the caller puts back what it moved.
///
/// Until the recording is whole an older film stands at its path, or nothing, and nothing is left
/// of one that failed or was given up. Memory: that of one picture and one more frame.
class TurntableRecorder {
    Q_DECLARE_TR_FUNCTIONS(TurntableRecorder)
public:
    /// Told how many frames are done; returning false gives up.
    using Progress = std::function<bool(int done, int total)>;

    /// @p request is a frame; its own `progress` is not used. The sides of an MP4 are even: an odd
    /// one is recorded one pixel shorter.
    TurntableRecorder(const PictureRequest &request, const TurntableOptions &options);

    /// What makes the recording impossible; empty if nothing does. Needs no GL context.
    QString fault() const;

    int frameCount() const; ///< At least 2.

    /// Records. @p progress may be null. Returns the reason if it failed, else an empty text, also
    /// where it was given up. Expects what renderPicture() expects; gives back what that does.
    QString record(const Progress &progress) const;

private:
    enum class Kind { Mp4, Gif, Folder, Unknown };
    QString recordFolder(const Progress &progress) const;
    QString recordFilm(const Progress &progress) const;
    template <typename Sink>
    QString recordInto(Sink &sink, const Progress &progress, bool &whole) const;

    PictureRequest request_;
    TurntableOptions options_;
    Kind kind_;
};

} // namespace host

#endif
