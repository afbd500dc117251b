// SPDX-License-Identifier: MIT
// What the program makes for a command line: a picture, a recording, an exit status.
#include <algorithm>
#include <cstdio>

#include <QCoreApplication>
#include <QTimer>

#include "host/app/software_gl.h"
#include "host/app/viewer.h"
#include "host/capture/picture_file.h"
#include "host/capture/progress_line.h"
#include "host/capture/turntable.h"
#include "host/item/playback.h"

namespace host {

/// The window in @p size pixels. Makes its context current.
PictureRequest Viewer::request(const QSize &size, bool transparent, bool overlays) const
{
    window_.widget()->makeCurrent();
    PictureRequest wanted;
    wanted.window = window_.widget()->size();
    wanted.size = size;
    wanted.transparent = transparent;
    wanted.objects = view_->pictured(transparent, overlays).objects();
    return wanted;
}

/// Ends the program with what was asked for once all is shown, or with the reason why nothing is.
void Viewer::framePainted()
{
    if (!knowsGL_ && isSoftwareRenderer(reinterpret_cast<const char *>(glGetString(GL_RENDERER))))
        keepFreedMemory();
    knowsGL_ = true;
    if (options_.isPersonal() || finishing_)
        return;
    if (!view_->isSettled() && view_->fault().isEmpty()) {
        view_->changedSoon();
        return;
    }
    // The first frame with the item still had the camera of the one before.
    constexpr int enough = 3;
    if (++settledFrames_ == enough || !view_->fault().isEmpty()) {
        finishing_ = true; // outside of the frame, which has its own framebuffer and painter
        QTimer::singleShot(0, this, &Viewer::finish);
    }
    window_.clock().requestFrame();
}

void Viewer::finish()
{
    // What a sheet lacks is said, and no reason to give up the rest.
    for (const QString &remark : view_->remarks())
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(remark));
    QString fault = view_->fault();
    if (fault.isEmpty())
        fault = options_.turntable.isEmpty() ? saveScreenshot() : record();
    if (!fault.isEmpty())
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(fault));
    QCoreApplication::exit(fault.isEmpty() ? 0 : 1);
}

QString Viewer::saveScreenshot()
{
    const Picture picture =
        renderPicture(request(options_.size, options_.transparent, options_.overlays));
    return picture.error.isEmpty() ? PictureFile::write(picture.image, options_.screenshot)
                                   : picture.error;
}

QString Viewer::outputFault(const Options &options)
{
    if (!options.screenshot.isEmpty())
        return PictureFile::fault(options.screenshot, options.transparent);
    if (options.turntable.isEmpty())
        return {};
    PictureRequest frame;
    frame.size = options.size;
    frame.transparent = options.transparent;
    return TurntableRecorder(frame, {options.turntable, options.seconds, options.recordedFps, {}})
        .fault();
}

QString Viewer::record()
{
    TurntableOptions wanted{options_.turntable, options_.seconds, options_.recordedFps, {}};
    if (options_.animation) {
        Item *shown = view_->item(view_->mainGLW());
        if (!shown)
            return tr("--animation takes one file");
        Playback *playback = shown->playback();
        if (!playback)
            return tr("%1 has no animation").arg(view_->title());
        if (!options_.secondsGiven)
            wanted.seconds = std::clamp(playback->length(), 0.1, 600.0);
        wanted.move = [shown, playback](double share) {
            playback->setTime(share * playback->length());
            shown->play(0);
        };
    } else {
        view_->fitTurn();
    }
    const TurntableRecorder recorder(
        request(options_.size, options_.transparent, options_.overlays), wanted);
    const InterruptGuard interrupt;
    ProgressLine line(stderr, tr("Recording"));
    const QString fault = recorder.record([&](int done, int total) {
        line.show(done, total);
        return !interrupt.interrupted();
    });
    line.end();
    if (fault.isEmpty() && interrupt.interrupted())
        return tr("the recording was given up; nothing of it is left");
    return fault;
}

} // namespace host
