// SPDX-License-Identifier: MIT
#include "host/read/reader_child.h"

#include <csignal>

#include <QCoreApplication>
#include <QDataStream>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>

#include "host/read/process_reaper.h"
#include "host/read/reader_process.h"

namespace host {

ReaderChild::ReaderChild(const ReaderProgram &program, QObject *parent)
    : QObject(parent), program_(program)
{
    if (program_.path.isEmpty())
        program_.path = QCoreApplication::applicationFilePath();
    timeout_.setSingleShot(true);
    connect(&timeout_, &QTimer::timeout, this, [this] {
        spent_ = true;
        fail({tr("reading it took longer than %1 s").arg(now_.wallSeconds), false});
    });
    launch();
}

ReaderChild::~ReaderChild()
{
    stop();
}

void ReaderChild::stop()
{
    busy_ = false;
    spent_ = true;
    timeout_.stop();
    if (process_)
        reap(process_);
    process_ = nullptr;
}

void ReaderChild::launch()
{
    process_ = new QProcess(this);
    // Parsers chatter without bound, and a pipe that nobody empties would stop them.
    process_->setStandardErrorFile(QProcess::nullDevice());
    connect(process_, &QProcess::readyReadStandardOutput, this, &ReaderChild::takeOutput);
    // A start that fails tells so at once, which is too early for who starts.
    connect(process_, &QProcess::errorOccurred, this, &ReaderChild::processError,
            Qt::QueuedConnection);
    connect(process_, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &ReaderChild::processEnded);
    process_->start(program_.path, program_.arguments);
}

void ReaderChild::start(const ReadRequest &request)
{
    busy_ = true;
    ++served_;
    told_ = 0;
    now_ = program_.limits;
    receiver_ = ContentReceiver(QFileInfo(request.paths.value(0)).fileName());
    timeout_.start(now_.wallSeconds * 1000);
    ReadRequest now = request;
    now.companions = program_.companions;
    QDataStream out(process_);
    writeRequest(out, now, program_.limits);
}

void ReaderChild::takeOutput()
{
    if (!busy_) {
        process_->readAllStandardOutput(); // nobody asked
        return;
    }
    const bool begun = receiver_.begun(), known = receiver_.announced();
    receiver_.take(*process_);
    if (!begun && receiver_.begun()) {
        now_ = program_.limits.forSize(receiver_.fileSize());
        timeout_.start(now_.wallSeconds * 1000);
    }
    using State = ContentReceiver::State;
    if (receiver_.state() == State::Broken || receiver_.state() == State::Refused) {
        spent_ = spent_ || receiver_.isLast() || receiver_.state() == State::Broken;
        return fail({receiver_.reason(), false});
    }
    const QPointer<ReaderChild> self(this);
    if (!known && receiver_.announced())
        emit announced(receiver_.announcedBytes());
    if (self && busy_ && tellProgress() && receiver_.state() == State::Done)
        succeed();
}

/// Returns whether this is still there and at work afterwards.
bool ReaderChild::tellProgress()
{
    const double fraction = receiver_.fraction();
    if (fraction <= told_)
        return true;
    told_ = fraction;
    const QPointer<ReaderChild> self(this);
    emit progressed(fraction, receiver_.announced() ? tr("loading") : receiver_.stage());
    return self && busy_;
}

void ReaderChild::processError(QProcess::ProcessError error)
{
    // What happens to a running process is told when it ends.
    if (error != QProcess::FailedToStart || !process_)
        return;
    spent_ = true;
    if (busy_)
        fail({tr("the reader %1 does not start: %2").arg(program_.path, process_->errorString()),
              false});
}

void ReaderChild::processEnded(int code, QProcess::ExitStatus status)
{
    const QPointer<ReaderChild> self(this);
    spent_ = true;
    if (busy_)
        takeOutput();
    if (self && busy_)
        fail(faultOfEnd(code, status));
}

ReadFault ReaderChild::faultOfEnd(int code, QProcess::ExitStatus status) const
{
    if (status == QProcess::CrashExit && code == SIGXCPU)
        return {tr("reading it took longer than %1 s").arg(now_.cpuSeconds), false};
    if (status == QProcess::CrashExit && code == SIGKILL)
        return {tr("the system ended the reader, perhaps for want of memory"), true};
    if (status == QProcess::CrashExit)
        return {tr("the reader crashed (signal %1) on it").arg(code), true};
    if (code == outOfMemoryExit)
        return {tr("the reader ran out of its memory limit of %1")
                    .arg(QLocale::c().formattedDataSize(qint64(now_.memory), 1)),
                true};
    return {tr("the reader stopped without an answer (exit code %1)").arg(code), true};
}

void ReaderChild::succeed()
{
    spent_ = spent_ || receiver_.isLast();
    const Content content = receiver_.take();
    rest();
    emit finished(content);
}

void ReaderChild::fail(const ReadFault &fault)
{
    rest();
    emit failed(fault);
}

void ReaderChild::rest()
{
    busy_ = false;
    spent_ = spent_ || served_ >= program_.mostServed;
    timeout_.stop();
    receiver_ = ContentReceiver();
    if (spent_)
        stop();
}

} // namespace host
