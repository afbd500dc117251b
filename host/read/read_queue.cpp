// SPDX-License-Identifier: MIT
#include "host/read/read_queue.h"

#include <algorithm>
#include <thread>

#include <QLocale>
#include <QPointer>

namespace host {

ReadQueue::ReadQueue(QObject *parent) : ReadQueue(parent, Program()) {}

ReadQueue::ReadQueue(QObject *parent, const Program &program) : QObject(parent), program_(program)
{
    next_.setSingleShot(true);
    connect(&next_, &QTimer::timeout, this, &ReadQueue::startNext);
}

ReadQueue::~ReadQueue() = default;

int ReadQueue::defaultProcesses()
{
    const quint64 fit = physicalMemory() / 2 / std::max<quint64>(1, defaultReadLimits().memory);
    const int cores = int(std::thread::hardware_concurrency());
    return std::max(1, std::min(cores - 1, int(std::min<quint64>(fit, 1024))));
}

void ReadQueue::setMaxProcesses(int count)
{
    maxProcesses_ = std::max(1, count);
    next_.start(0);
}

quint64 ReadQueue::memoryInUse() const
{
    quint64 bytes = 0;
    for (const int id : running_)
        bytes += jobs_.at(id).reader->announcedBytes();
    const auto unheld = [](const std::weak_ptr<const Mesh> &mesh) { return mesh.expired(); };
    handedOut_.erase(std::remove_if(handedOut_.begin(), handedOut_.end(), unheld),
                     handedOut_.end());
    for (const auto &held : handedOut_) {
        if (const MeshPtr mesh = held.lock())
            bytes += mesh->byteSize();
    }
    return bytes;
}

int ReadQueue::add(const QString &path, int priority)
{
    if (ids_.contains(path))
        return 0;
    if (jobs_.empty())
        done_ = failed_ = total_ = 0;
    const int id = ++lastId_;
    Job &job = jobs_[id];
    job.path = path;
    job.priority = priority;
    ids_.insert(path, id);
    waiting_.insert({-priority, id});
    ++total_;
    next_.start(0);
    emit totals(done_, failed_, total_);
    return id;
}

void ReadQueue::setPriority(int id, int priority)
{
    const auto found = jobs_.find(id);
    if (found == jobs_.end() || waiting_.erase({-found->second.priority, id}) == 0)
        return;
    found->second.priority = priority;
    waiting_.insert({-priority, id});
}

void ReadQueue::setPriority(const QString &path, int priority)
{
    setPriority(id(path), priority);
}

void ReadQueue::cancel(int id)
{
    if (jobs_.count(id) == 0)
        return;
    forget(id);
    --total_;
    emit totals(done_, failed_, total_);
}

void ReadQueue::cancelAll()
{
    total_ -= int(jobs_.size());
    while (!jobs_.empty())
        forget(jobs_.begin()->first);
    emit totals(done_, failed_, total_);
}

void ReadQueue::forget(int id)
{
    const auto job = jobs_.find(id);
    waiting_.erase({-job->second.priority, id});
    running_.erase(id);
    ids_.remove(job->second.path);
    jobs_.erase(job);
    next_.start(0);
}

void ReadQueue::startNext()
{
    const QPointer<ReadQueue> self(this);
    while (self && int(running_.size()) < maxProcesses_ && !waiting_.empty()) {
        const int id = waiting_.begin()->second;
        waiting_.erase(waiting_.begin());
        running_.insert(id);
        start(id, jobs_.at(id));
        emit started(id);
    }
}

void ReadQueue::start(int id, Job &job)
{
    // It may be dropped from within one of its own signals.
    const auto dropLater = [](MeshReader *reader) {
        reader->disconnect();
        reader->cancel();
        reader->deleteLater();
    };
    job.reader = {new MeshReader(this, program_.path, program_.arguments, program_.limits),
                  dropLater};
    MeshReader *reader = job.reader.get();
    connect(reader, &MeshReader::progressed, this,
            [this, id](double fraction, const QString &stage) {
                emit progressed(id, fraction, stage);
            });
    connect(reader, &MeshReader::announced, this, [this, id] { checkMemory(id); });
    connect(reader, &MeshReader::finished, this,
            [this, id](const MeshPtr &mesh) { finish(id, mesh); });
    connect(reader, &MeshReader::failed, this,
            [this, id](const QString &reason) { fail(id, reason); });
    reader->start(job.path);
}

void ReadQueue::checkMemory(int id)
{
    if (memoryInUse() <= memoryLimit_)
        return;
    const auto text = [](quint64 bytes) {
        return QLocale::c().formattedDataSize(qint64(bytes), 1);
    };
    fail(id, QStringLiteral("its %1 would pass the limit of %2 for all models together")
                 .arg(text(jobs_.at(id).reader->announcedBytes()), text(memoryLimit_)));
}

void ReadQueue::finish(int id, const MeshPtr &mesh)
{
    handedOut_.push_back(mesh);
    forget(id);
    ++done_;
    const QPointer<ReadQueue> self(this);
    emit finished(id, mesh);
    if (self)
        emit totals(done_, failed_, total_);
}

void ReadQueue::fail(int id, const QString &reason)
{
    forget(id);
    ++failed_;
    const QPointer<ReadQueue> self(this);
    emit failed(id, reason);
    if (self)
        emit totals(done_, failed_, total_);
}

} // namespace host
