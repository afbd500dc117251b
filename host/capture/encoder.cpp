// SPDX-License-Identifier: MIT
#include "host/capture/encoder.h"

#include <QImage>
#include <QStandardPaths>

namespace host {

namespace {

constexpr int logBytes = 4096;
constexpr int logLines = 6;
constexpr int startMilliseconds = 30000;
constexpr int pollMilliseconds = 1000;

QStringList formatArguments(Encoder::Format format)
{
    if (format == Encoder::Format::Gif) {
        // One palette for all would need every frame in memory before the first is written.
        return {"-filter_complex",
                "split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1",
                "-loop",
                "0",
                "-f",
                "gif"};
    }
    return {"-vf",
            "scale=out_color_matrix=bt709:out_range=tv,format=yuv420p",
            "-c:v",
            "libx264",
            "-preset",
            "medium",
            "-crf",
            "18",
            "-colorspace",
            "bt709",
            "-color_primaries",
            "bt709",
            "-color_trc",
            "bt709",
            "-color_range",
            "tv",
            "-movflags",
            "+faststart",
            "-f",
            "mp4"};
}

} // namespace

Encoder::~Encoder()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.kill();
    process_.waitForFinished();
}

QString Encoder::missing()
{
    if (!QStandardPaths::findExecutable("ffmpeg").isEmpty())
        return {};
    return tr("Films are encoded by ffmpeg, which was not found. Install it (package ffmpeg), or "
              "record into a folder of pictures: a name without a suffix.");
}

QString Encoder::start(const QString &path, Format format, const QSize &size, double fps)
{
    const QString absent = missing();
    if (!absent.isEmpty())
        return absent;
    size_ = size;
    // Without xerror, a disk that is full at the end counts as success.
    QStringList arguments{"-hide_banner", "-loglevel", "error", "-xerror", "-f", "rawvideo"};
    arguments << "-pixel_format"
              << "bgra";
    arguments << "-video_size" << QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    arguments << "-framerate" << QString::number(fps, 'g', 10);
    arguments << "-i"
              << "pipe:0"
              << "-an" << formatArguments(format);
    arguments << "-y"
              << "file:" + path;
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.start("ffmpeg", arguments);
    return process_.waitForStarted(startMilliseconds) ? QString() : failure();
}

QString Encoder::addFrame(const QImage &frame)
{
    const QImage raw = frame.convertToFormat(QImage::Format_RGB32);
    if (raw.size() != size_)
        return tr("A frame has another size than the film.");
    for (int y = 0; y < raw.height(); ++y)
        process_.write(reinterpret_cast<const char *>(raw.constScanLine(y)), raw.width() * 4);
    while (process_.bytesToWrite() > 0) {
        process_.waitForBytesWritten(pollMilliseconds);
        collectLog();
        if (process_.state() == QProcess::NotRunning)
            return failure();
    }
    return process_.state() == QProcess::NotRunning ? failure() : QString();
}

QString Encoder::finish()
{
    process_.closeWriteChannel();
    while (process_.state() != QProcess::NotRunning) {
        process_.waitForFinished(pollMilliseconds);
        collectLog();
    }
    if (process_.exitStatus() != QProcess::NormalExit || process_.exitCode() != 0)
        return failure();
    return {};
}

void Encoder::collectLog()
{
    log_ = (log_ + process_.readAllStandardError()).right(logBytes);
}

/// What is known of an encoder that failed.
QString Encoder::failure()
{
    if (process_.state() != QProcess::NotRunning)
        process_.waitForFinished(pollMilliseconds);
    collectLog();
    QStringList lines = QString::fromLocal8Bit(log_).split('\n', Qt::SkipEmptyParts);
    while (lines.size() > logLines)
        lines.removeFirst();
    if (lines.isEmpty())
        lines << process_.errorString();
    return tr("ffmpeg failed:") + "\n  " + lines.join("\n  ");
}

} // namespace host
