// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MESH_READER_H
#define HOST_READ_MESH_READER_H

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include "host/read/mesh_stream.h"
#include "host/read/reader_process.h"

namespace host {

/// Reads one model file in a process of its own, so that a file which crashes its parser, keeps it
/// busy for ever or makes it ask for all memory ends that process and nothing else.
///
/// Lives in a thread with an event loop, the GUI thread too: one turn of the loop takes at most
/// what the pipe holds (512 KiB), a few milliseconds' work. After start() exactly one of finished()
/// and failed() comes, never from within start(); after cancel(), or when the reader is deleted,
/// none. A slot of either may delete the reader or start it anew.
class MeshReader : public QObject {
    Q_OBJECT
public:
    /// @p program, called with @p arguments and then the file, answers as runReaderProcess() does.
    /// An empty @p program is this application itself.
    explicit MeshReader(QObject *parent = nullptr, const QString &program = {},
                        const QStringList &arguments = {QStringLiteral("--read-model")},
                        const ReadLimits &limits = defaultReadLimits());
    ~MeshReader() override;

    bool isReading() const { return reading_; }
    QString path() const { return path_; } ///< As last given to start().

    /// Mesh::byteSize() of the mesh that is arriving; 0 while it is not known and when none is.
    quint64 announcedBytes() const { return reading_ ? decoder_.announcedBytes() : 0; }

    /// Begins to read @p path; what was being read is cancelled.
    void start(const QString &path);

    /// Ends the reading at once; does nothing if there is none.
    void cancel();

signals:
    /// @p fraction from 0 to 1, never falling; @p stage in words.
    void progressed(double fraction, const QString &stage);
    void announced(quint64 bytes); ///< Mesh::byteSize() of the mesh that is about to arrive.
    void finished(const host::MeshPtr &mesh);
    void failed(const QString &reason); ///< A phrase without the file's name: see readFailure().

private:
    ReadLimits limitsNow() const; // for the file being read
    void launch();
    void takeOutput();
    void tellProgress();
    void processEnded(int code, QProcess::ExitStatus status);
    void processError(QProcess::ProcessError error);
    QString reasonOfEnd(int code, QProcess::ExitStatus status) const;
    void succeed();
    void fail(const QString &reason);
    void dropProcess();

    QString program_;
    QStringList arguments_;
    ReadLimits limits_;
    QString path_;
    bool reading_ = false;
    double told_ = 0; // the last fraction passed on
    MeshDecoder decoder_;
    QProcess *process_ = nullptr; // null unless it runs
    QTimer begin_;                // keeps signals out of start()
    QTimer patience_;
};

} // namespace host

#endif
