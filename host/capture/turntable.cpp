// SPDX-License-Identifier: MIT
#include "host/capture/turntable.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "host/capture/atomic_output.h"
#include "host/capture/encoder.h"
#include "host/capture/matrices.h"
#include "host/capture/picture_file.h"
#include "host/capture/saved_state.h"

namespace host {

namespace {

/// Frames as numbered pictures in a folder.
class PictureFolder {
public:
    explicit PictureFolder(const QString &folder) : folder_(folder) {}

    QString addFrame(const QImage &frame)
    {
        const QString name = QStringLiteral("frame_%1.png").arg(++count_, 4, 10, QChar('0'));
        QFile file(folder_.filePath(name));
        const QString reason = file.open(QIODevice::WriteOnly)
                                   ? PictureFile::encode(frame, file, "png")
                                   : file.errorString();
        return reason.isEmpty()
                   ? QString()
                   : TurntableRecorder::tr("%1 cannot be written: %2").arg(name, reason);
    }
    QString finish() { return {}; }

private:
    QDir folder_;
    int count_ = 0;
};

/// The objects' views, turned away from where they were, which they get back in the end.
class Turn {
public:
    explicit Turn(const std::vector<PictureObject> &objects)
    {
        for (const PictureObject &object : objects) {
            objects_.push_back(object.glw);
            start_.emplace_back(object.glw);
        }
    }

    void to(double degrees) const
    {
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            GLW *const glw = objects_[i];
            glw->camera = start_[i].camera();
            glw->lights = start_[i].lights();
            turn(glw->camera, degrees);
            for (GL::Light &light : glw->lights)
                turnLight(light, glw->camera.target, degrees);
        }
    }

private:
    static void turnLight(GL::Light &light, const Vector &about, double degrees)
    {
        GL::Light::vector &p = light.position;
        GL::Camera lamp; // a lamp goes round as an eye at its place would
        lamp.target = about * Real(p.w);
        lamp.pos = Vector(p.x, p.y, p.z);
        turn(lamp, degrees);
        p = {lamp.pos.x, lamp.pos.y, lamp.pos.z, p.w};
    }

    std::vector<GLW *> objects_;
    std::deque<SavedRecords> start_;
};

} // namespace

TurntableRecorder::TurntableRecorder(const PictureRequest &request, const TurntableOptions &options)
    : request_(request), options_(options)
{
    const QString suffix = QFileInfo(options.path).suffix().toLower();
    kind_ = suffix == "mp4"    ? Kind::Mp4
            : suffix == "gif"  ? Kind::Gif
            : suffix.isEmpty() ? Kind::Folder
                               : Kind::Unknown;
    if (kind_ == Kind::Mp4)
        request_.size = QSize(request.size.width() & ~1, request.size.height() & ~1);
    request_.progress = nullptr;
}

int TurntableRecorder::frameCount() const
{
    return std::max(2, int(std::lround(options_.seconds * options_.fps)));
}

QString TurntableRecorder::fault() const
{
    const double limit = kind_ == Kind::Gif ? 50 : 120;
    if (kind_ == Kind::Unknown)
        return tr("%1: a recording is an .mp4, a .gif or, without a suffix, a folder of pictures.")
            .arg(options_.path);
    if (!(options_.seconds >= 0.1 && options_.seconds <= 600))
        return tr("A recording lasts 0.1 to 600 seconds.");
    if (!(options_.fps >= 1 && options_.fps <= limit))
        return tr("The rate of this recording is 1 to %1 frames per second.").arg(limit);
    if (request_.transparent && kind_ != Kind::Folder)
        return tr("A film has a background; a transparent recording is a folder of pictures.");
    const QString size = pictureSizeFault(request_.size);
    if (!size.isEmpty())
        return size;
    return kind_ == Kind::Folder ? QString() : Encoder::missing();
}

template <typename Sink>
QString TurntableRecorder::recordInto(Sink &sink, const Progress &progress, bool &whole) const
{
    const Turn turn(request_.objects);
    const int count = frameCount();
    for (int i = 0; i < count; ++i) {
        if (options_.move)
            options_.move(double(i) / count);
        else
            turn.to(360.0 * i / count);
        const Picture frame = renderPicture(request_);
        if (!frame.error.isEmpty())
            return frame.error;
        const QString error = sink.addFrame(frame.image);
        // Asked first: whoever gives up may have ended the encoder too.
        if (progress && !progress(i + 1, count))
            return {};
        if (!error.isEmpty())
            return error;
    }
    const QString error = sink.finish();
    whole = error.isEmpty();
    return error;
}

QString TurntableRecorder::record(const Progress &progress) const
{
    const QString impossible = fault();
    if (!impossible.isEmpty())
        return impossible;
    return kind_ == Kind::Folder ? recordFolder(progress) : recordFilm(progress);
}

QString TurntableRecorder::recordFolder(const Progress &progress) const
{
    AtomicFolder result(options_.path);
    if (!result.error().isEmpty())
        return result.error();
    PictureFolder folder(result.path());
    bool whole = false;
    const QString error = recordInto(folder, progress, whole);
    return whole ? result.commit() : error;
}

QString TurntableRecorder::recordFilm(const Progress &progress) const
{
    AtomicFile result(options_.path);
    if (!result.error().isEmpty())
        return result.error();
    Encoder encoder;
    const auto format = kind_ == Kind::Mp4 ? Encoder::Format::Mp4 : Encoder::Format::Gif;
    QString error = encoder.start(result.path(), format, request_.size, options_.fps);
    bool whole = false;
    if (error.isEmpty())
        error = recordInto(encoder, progress, whole);
    return whole ? result.commit() : error;
}

} // namespace host
