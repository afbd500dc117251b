// SPDX-License-Identifier: MIT
#include "host/read/mesh_reader.h"

#include <csignal>

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

#include "host/read/import.h"

namespace host {
namespace {

/// The share of the whole that is done when the mesh begins to arrive.
constexpr double imported = 0.8;

/// Owns the processes that were told to die, so that nobody waits for them while the program runs;
/// when it ends, what is left of them is taken in.
class Undertaker : public QObject {
public:
    static Undertaker *instance()
    {
        static QPointer<Undertaker> one;
        if (!one)
            one = new Undertaker(QCoreApplication::instance());
        return one;
    }

    ~Undertaker() override
    {
        const auto dying = findChildren<QProcess *>();
        for (QProcess *process : dying) {
            process->disconnect();
            process->waitForFinished(1000);
        }
    }

private:
    using QObject::QObject;
};

} // namespace

MeshReader::MeshReader(QObject *parent, const QString &program, const QStringList &arguments,
                       const ReadLimits &limits)
    : QObject(parent),
      program_(program.isEmpty() ? QCoreApplication::applicationFilePath() : program),
      arguments_(arguments),
      limits_(limits)
{
    qRegisterMetaType<MeshPtr>();
    begin_.setSingleShot(true);
    connect(&begin_, &QTimer::timeout, this, &MeshReader::launch);
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, [this] {
        fail(QStringLiteral("reading it took longer than %1 s").arg(limitsNow().wallSeconds));
    });
}

MeshReader::~MeshReader()
{
    dropProcess();
}

void MeshReader::start(const QString &path)
{
    cancel();
    path_ = path;
    reading_ = true;
    told_ = 0;
    decoder_ = MeshDecoder();
    begin_.start(0);
}

void MeshReader::cancel()
{
    reading_ = false;
    begin_.stop();
    patience_.stop();
    dropProcess();
    decoder_ = MeshDecoder();
}

void MeshReader::launch()
{
    const QString objection = fileObjection(path_);
    if (!objection.isEmpty())
        return fail(objection);
    process_ = new QProcess(this);
    // Parsers chatter without bound, and a pipe that nobody empties would stop them.
    process_->setStandardErrorFile(QProcess::nullDevice());
    process_->setStandardInputFile(QProcess::nullDevice());
    connect(process_, &QProcess::readyReadStandardOutput, this, &MeshReader::takeOutput);
    connect(process_, &QProcess::errorOccurred, this, &MeshReader::processError);
    connect(process_, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &MeshReader::processEnded);
    patience_.start(limitsNow().wallSeconds * 1000);
    process_->start(program_, arguments_ + QStringList(path_), QIODevice::ReadOnly);
}

ReadLimits MeshReader::limitsNow() const
{
    return limits_.forSize(QFileInfo(path_).size());
}

void MeshReader::takeOutput()
{
    const bool known = decoder_.announced();
    decoder_.feed(process_->readAllStandardOutput());
    if (decoder_.state() == MeshDecoder::State::Failed)
        return fail(decoder_.reason());
    const QPointer<MeshReader> self(this);
    const QProcess *process = process_;
    if (!known && decoder_.announced())
        emit announced(decoder_.announcedBytes());
    if (self && process_ == process)
        tellProgress();
    if (self && process_ == process && decoder_.state() == MeshDecoder::State::Done)
        succeed();
}

void MeshReader::tellProgress()
{
    const double fraction = decoder_.announced() ? imported + (1 - imported) * decoder_.arrived()
                                                 : imported * decoder_.fraction();
    if (fraction <= told_)
        return;
    told_ = fraction;
    emit progressed(fraction, decoder_.announced() ? QStringLiteral("loading") : decoder_.stage());
}

void MeshReader::processError(QProcess::ProcessError error)
{
    // What happens to a running process is told when it ends.
    if (error == QProcess::FailedToStart)
        fail(QStringLiteral("the reader %1 does not start: %2")
                 .arg(program_, process_->errorString()));
}

void MeshReader::processEnded(int code, QProcess::ExitStatus status)
{
    const QPointer<MeshReader> self(this);
    const QProcess *process = process_;
    takeOutput();
    if (self && process_ == process)
        fail(reasonOfEnd(code, status));
}

QString MeshReader::reasonOfEnd(int code, QProcess::ExitStatus status) const
{
    if (status == QProcess::CrashExit && code == SIGXCPU)
        return QStringLiteral("reading it took longer than %1 s").arg(limitsNow().cpuSeconds);
    if (status == QProcess::CrashExit && code == SIGKILL)
        return QStringLiteral("the system ended the reader, perhaps for want of memory");
    if (status == QProcess::CrashExit)
        return QStringLiteral("the reader crashed (signal %1) on it").arg(code);
    if (code == outOfMemoryExit)
        return QStringLiteral("the reader ran out of its memory limit of %1")
            .arg(QLocale::c().formattedDataSize(qint64(limits_.memory), 1));
    return QStringLiteral("the reader stopped without an answer (exit code %1)").arg(code);
}

void MeshReader::succeed()
{
    const MeshPtr mesh = decoder_.take();
    cancel();
    emit finished(mesh);
}

void MeshReader::fail(const QString &reason)
{
    cancel();
    emit failed(reason);
}

void MeshReader::dropProcess()
{
    if (!process_)
        return;
    QProcess *process = process_;
    process_ = nullptr;
    process->disconnect(this);
    // This may be a slot of the process itself, so it must outlive this object.
    process->setParent(Undertaker::instance());
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), process,
            &QObject::deleteLater);
    process->kill();
}

} // namespace host
