// SPDX-License-Identifier: MIT
#include "host/read/read_queue.h"

#include <algorithm>
#include <thread>

#include <QLocale>
#include <QPointer>

namespace host {

ReadQueue::ReadQueue(QObject *parent, const ReaderProgram &program)
    : QObject(parent), program_(program)
{
    qRegisterMetaType<Content>();
    qRegisterMetaType<FileListPtr>("host::FileListPtr");
    next_.setSingleShot(true);
    connect(&next_, &QTimer::timeout, this, &ReadQueue::startNext);
    constexpr int keep = 10000; // milliseconds that idle processes are kept for the next file
    unused_.setSingleShot(true);
    unused_.setInterval(keep);
    connect(&unused_, &QTimer::timeout, this, [this] {
        while (isIdle() && !children_.empty())
            dropChild(children_.begin()->first);
    });
}

ReadQueue::~ReadQueue() = default; // the children go with their parent

int ReadQueue::defaultProcesses()
{
    const quint64 fit = physicalMemory() / 2 / std::max<quint64>(1, defaultReadLimits().memory);
    const int cores = int(std::thread::hardware_concurrency());
    return std::max(1, std::min(cores, int(std::min<quint64>(fit, 1024))));
}

void ReadQueue::setMaxProcesses(int count)
{
    maxProcesses_ = std::max(1, count);
    next_.start(0);
}

quint64 ReadQueue::memoryInUse() const
{
    quint64 bytes = 0;
    for (const auto &each : children_)
        bytes += each.first->announcedBytes();
    const auto unheld = [](const auto &content) { return content.first.expired(); };
    handedOut_.erase(std::remove_if(handedOut_.begin(), handedOut_.end(), unheld),
                     handedOut_.end());
    for (const auto &held : handedOut_)
        bytes += held.second;
    return bytes;
}

int ReadQueue::add(const QString &path, Priority priority)
{
    if (jobs_.empty())
        done_ = failed_ = total_ = 0;
    ++total_;
    const int id = enqueue({ReadRequest::Kind::File, {path}}, priority);
    tellTotals();
    return id;
}

int ReadQueue::list(const QStringList &paths)
{
    return enqueue({ReadRequest::Kind::List, paths}, Opened + 1);
}

int ReadQueue::listNeighbours(const QString &path)
{
    // Nobody waits for it as for the file itself.
    return enqueue({ReadRequest::Kind::Neighbours, {path}}, InView);
}

int ReadQueue::enqueue(const ReadRequest &request, int priority)
{
    const int id = ++lastId_;
    Job &job = jobs_[id];
    job.request = request;
    job.priority = priority;
    waiting_.insert({-priority, id});
    next_.start(0);
    return id;
}

void ReadQueue::setPriority(int id, Priority priority)
{
    const auto found = jobs_.find(id);
    if (found == jobs_.end() || waiting_.erase({-found->second.priority, id}) == 0)
        return;
    found->second.priority = priority;
    waiting_.insert({-priority, id});
}

void ReadQueue::cancel(int id)
{
    if (jobs_.count(id) == 0)
        return;
    const Job job = forget(id);
    if (job.child)
        dropChild(job.child); // what it is at cannot be stopped otherwise
    if (!job.isFile())
        return;
    --total_;
    tellTotals();
}

ReadQueue::Job ReadQueue::forget(int id)
{
    const auto found = jobs_.find(id);
    const Job job = found->second;
    waiting_.erase({-job.priority, id});
    if (const auto at = children_.find(job.child); at != children_.end())
        at->second = 0;
    jobs_.erase(found);
    next_.start(0);
    if (jobs_.empty())
        unused_.start();
    return job;
}

void ReadQueue::startNext()
{
    const QPointer<ReadQueue> self(this);
    while (self && !waiting_.empty()) {
        const int id = waiting_.begin()->second;
        Job &job = jobs_.at(id);
        ReaderChild *child = childFor(job);
        if (!child)
            return;
        waiting_.erase(waiting_.begin());
        job.child = child;
        children_[child] = id;
        child->start(job.request);
        emit started(id);
    }
}

/// A process that is free for @p job; null if all are busy.
ReaderChild *ReadQueue::childFor(const Job &job)
{
    // Those that are of no more use make room for others.
    std::vector<ReaderChild *> useless;
    for (const auto &[child, at] : children_)
        if (at == 0 && (child->isSpent() || (job.again && child->served() > 0)))
            useless.push_back(child);
    for (ReaderChild *child : useless)
        dropChild(child);
    for (const auto &[child, at] : children_)
        if (at == 0)
            return child;
    return int(children_.size()) < maxProcesses_ ? makeChild() : nullptr;
}

ReaderChild *ReadQueue::makeChild()
{
    auto *child = new ReaderChild(program_, this);
    children_.emplace(child, 0);
    connect(child, &ReaderChild::progressed, this,
            [this, child](double fraction, const QString &stage) {
                emit progressed(children_.at(child), fraction, stage);
            });
    connect(child, &ReaderChild::announced, this,
            [this, child] { checkMemory(children_.at(child)); });
    connect(child, &ReaderChild::finished, this,
            [this, child](const Content &content) { finish(children_.at(child), content); });
    connect(child, &ReaderChild::failed, this,
            [this, child](const ReadFault &fault) { childFailed(children_.at(child), fault); });
    return child;
}

/// It may be in one of its own signals.
void ReadQueue::dropChild(ReaderChild *child)
{
    children_.erase(child);
    child->stop(); // no signal comes after that
    child->deleteLater();
}

void ReadQueue::checkMemory(int id)
{
    if (memoryInUse() <= memoryLimit_)
        return;
    ReaderChild *child = jobs_.at(id).child;
    const quint64 bytes = child->announcedBytes();
    dropChild(child);
    const auto text = [](quint64 size) { return QLocale::c().formattedDataSize(qint64(size), 1); };
    fail(id,
         tr("its %1 would pass the limit of %2 for all files together")
             .arg(text(bytes), text(memoryLimit_)),
         bytes);
}

void ReadQueue::finish(int id, const Content &content)
{
    const Job job = forget(id);
    const QPointer<ReadQueue> self(this);
    if (content.list) {
        emit listed(id, content.list);
        return;
    }
    if (content.mesh)
        handedOut_.emplace_back(content.mesh, content.byteSize());
    else
        handedOut_.emplace_back(content.table, content.byteSize());
    ++done_;
    emit finished(id, content);
    if (self)
        tellTotals();
}

void ReadQueue::childFailed(int id, const ReadFault &fault)
{
    Job &job = jobs_.at(id);
    // What an earlier file left in the process may be what ended it.
    if (fault.ofProcess && job.child->served() > 1 && !job.again) {
        children_[job.child] = 0;
        job.child = nullptr;
        job.again = true;
        waiting_.insert({-job.priority, id});
        next_.start(0);
        return;
    }
    fail(id, fault.reason);
}

void ReadQueue::fail(int id, const QString &reason, quint64 needed)
{
    const Job job = forget(id);
    failed_ += job.isFile();
    const QPointer<ReadQueue> self(this);
    emit failed(id, reason, needed);
    if (self)
        tellTotals();
}

void ReadQueue::tellTotals()
{
    emit totals(done_, failed_, total_);
}

} // namespace host
