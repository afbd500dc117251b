// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READER_CHILD_H
#define HOST_READ_READER_CHILD_H

#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include "host/read/content_receive.h"
#include "host/read/read_limits.h"

namespace host {

/// How a reading process is started, and what it may take. Called so, the program does as
/// runReaderProcess(). An empty path is this application itself.
struct ReaderProgram {
    QString path;
    QStringList arguments{QStringLiteral("--reader")};
    ReadLimits limits = defaultReadLimits();
    Companions companions = Companions::InFolder; ///< What a model may name.
    int mostServed = 200;                         ///< Files, after which a process is replaced.
};

/// Why a file was not read.
struct ReadFault {
    QString reason; ///< A phrase without the file's name.
    bool ofProcess =
        false; ///< The process came to an end over it, which may be another file's doing.
};

/// One reading process, which serves many requests, one after the other: a file that crashes its
/// parser, keeps it busy for ever or makes it ask for all memory ends this process and nothing
/// else.
///
/// Lives in a thread with an event loop, the GUI thread too: one turn of the loop takes at most
/// what the pipe holds (512 KiB), a few milliseconds' work; nothing is waited for. After start()
/// exactly one of finished() and failed() comes, never from within start(); after stop() none.
/// A slot of either may delete it.
class ReaderChild : public QObject {
    Q_OBJECT
public:
    explicit ReaderChild(const ReaderProgram &program, QObject *parent = nullptr);
    ~ReaderChild() override;

    /// Expects mayServe().
    void start(const ReadRequest &request);

    /// Ends the process and what it is at, without a signal.
    void stop();

    bool mayServe() const { return !busy_ && !spent_; }
    bool isSpent() const { return spent_; } ///< It takes no more requests, and is to be replaced.
    int served() const { return served_; }  ///< Requests, the present one included.

    /// Content::byteSize() of what is arriving; 0 while it is not known and when nothing is.
    quint64 announcedBytes() const { return busy_ ? receiver_.announcedBytes() : 0; }

signals:
    /// @p fraction from 0 to 1, never falling; @p stage in words.
    void progressed(double fraction, const QString &stage);
    void announced(quint64 bytes); ///< Content::byteSize() of what is about to arrive.
    void finished(const host::Content &content);
    void failed(const host::ReadFault &fault);

private:
    void launch();
    void takeOutput();
    bool tellProgress();
    void processEnded(int code, QProcess::ExitStatus status);
    void processError(QProcess::ProcessError error);
    ReadFault faultOfEnd(int code, QProcess::ExitStatus status) const;
    void succeed();
    void fail(const ReadFault &fault);
    void rest();

    ReaderProgram program_;
    ReadLimits now_; // for the file that is read
    bool busy_ = false, spent_ = false;
    int served_ = 0;
    double told_ = 0; // the last fraction passed on
    ContentReceiver receiver_;
    QProcess *process_ = nullptr;
    QTimer timeout_;
};

} // namespace host

#endif
