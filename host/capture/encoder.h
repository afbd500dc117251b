// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_ENCODER_H
#define HOST_CAPTURE_ENCODER_H

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QSize>
#include <QString>

class QImage;

namespace host {

/// A film being encoded by an ffmpeg process that takes raw frames on its standard input.
///
/// No more than one frame waits to be written: addFrame() waits for the encoder. Of what ffmpeg
/// says, the end is kept for messages. Runs in the thread that made it; needs no event loop.
class Encoder {
    Q_DECLARE_TR_FUNCTIONS(Encoder)
public:
    enum class Format {
        Mp4, ///< H.264 in 4:2:0; the sides of a frame have to be even.
        Gif, ///< With a palette of its own for every frame.
    };

    Encoder() = default;
    Encoder(const Encoder &) = delete;
    Encoder &operator=(const Encoder &) = delete;
    ~Encoder(); ///< Ends an encoder that was not finished; its file is not whole.

    /// Why nothing can be encoded here; empty if ffmpeg is installed.
    static QString missing();

    /// Starts writing @p path, an absolute one, which is replaced; its suffix says nothing. Returns
    /// the reason if that fails, else an empty text. Expects 0 < @p fps.
    QString start(const QString &path, Format format, const QSize &size, double fps);

    /// Hands over a frame of the size given to start(). Returns the reason why the encoder took no
    /// more, else an empty text.
    QString addFrame(const QImage &frame);

    /// Ends the film. Returns the reason why it is not whole, else an empty text.
    QString finish();

private:
    void collectLog();
    QString failure();

    QProcess process_;
    QSize size_;
    QByteArray log_; // the end of the process's standard error
};

} // namespace host

#endif
