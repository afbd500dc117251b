// SPDX-License-Identifier: MIT
#include "host/app/thumbnails.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include <QFileInfo>

#include "host/item/content_item.h"

namespace host {

namespace {

/// All that a picture depends on besides its file.
QString stateOf(const Options &o)
{
    QStringList words{QStringLiteral("%1x%2").arg(o.size.width()).arg(o.size.height()),
                      QStringLiteral("glview " GLVIEW_VERSION)};
    if (o.up)
        words << QStringLiteral("up %1").arg("xyz"[*o.up]);
    for (const SectionRequest &cut : o.section)
        words << QStringLiteral("cut %1 %2 %3 %4")
                     .arg("xyz"[cut.axis])
                     .arg(int(cut.lowerGoes))
                     .arg(int(cut.isShare))
                     .arg(cut.value, 0, 'g', 17);
    if (o.transparent)
        words << QStringLiteral("transparent");
    if (o.companions == Companions::Anywhere)
        words << QStringLiteral("companions anywhere");
    return words.join(", ");
}

} // namespace

Thumbnails::Thumbnails(const ObjectFactory &factory, const Options &options)
    : options_(options),
      folder_(options.thumbnails, stateOf(options)),
      drawing_(factory, options),
      queue_(nullptr, readerProgram(options)),
      line_(stderr, tr("Pictures"))
{
    constexpr int soon = 2; // milliseconds: the queue and its pipes come first
    draw_.setSingleShot(true);
    draw_.setInterval(soon);
    connect(&draw_, &QTimer::timeout, this, &Thumbnails::drawNext);
    if (options.jobs > 0)
        queue_.setMaxProcesses(options.jobs);
    connect(&queue_, &ReadQueue::listed, this, [this](int, const FileListPtr &list) {
        for (const QString &empty : list->empty)
            fail(empty, tr("there is nothing to show in this folder, or it cannot be read"));
        for (const QString &cut : list->cut)
            fail(cut, tr("only a part is taken; the folder holds more"));
        begin(list->files);
    });
    connect(&queue_, &ReadQueue::finished, this, [this](int job, const Content &content) {
        arrived_.push_back({reading_.at(job), content});
        reading_.erase(job);
        feed();
        draw_.start();
    });
    connect(&queue_, &ReadQueue::failed, this, &Thumbnails::readFailed);
}

int Thumbnails::run()
{
    const QString fault = folder_.make();
    if (!fault.isEmpty()) {
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(fault));
        return 1;
    }
    QTimer poll; // the signal itself wakes nobody
    connect(&poll, &QTimer::timeout, this, [this] {
        if (interrupt_.interrupted())
            loop_.quit();
    });
    constexpr int often = 100; // milliseconds
    poll.start(often);
    const auto isFolder = [](const QString &path) { return QFileInfo(path).isDir(); };
    const QStringList &files = options_.files;
    for (const QString &file : files)
        if (isFolder(file))
            folder_.forgetNote(file); // what is wrong with it now will be told
    if (std::any_of(files.begin(), files.end(), isFolder))
        list_ = queue_.list(files);
    else
        QTimer::singleShot(0, this, [this] { begin(options_.files); });
    loop_.exec();
    line_.end();
    return report();
}

void Thumbnails::begin(const QStringList &files)
{
    QStringList paths;
    for (const QString &file : files)
        paths << ThumbnailFolder::absolute(file);
    paths.removeDuplicates();
    waiting_.assign(paths.begin(), paths.end());
    total_ = paths.size() + int(failures_.size());
    feed();
    step();
}

/// Lets as many files be read as there are processes, and one more, so that none of them waits.
/// More would fill memory while one is drawn.
void Thumbnails::feed()
{
    const std::size_t most = oneByOne_ ? 1 : std::size_t(queue_.maxProcesses()) + 1;
    while (!waiting_.empty() && reading_.size() + arrived_.size() < most &&
           !interrupt_.interrupted()) {
        const QString path = waiting_.front();
        waiting_.pop_front();
        if (folder_.isFresh(path)) {
            folder_.forgetNote(path);
            ++found_;
            line_.show(done(), total_);
        } else {
            reading_[queue_.add(path)] = {path, folder_.stateOf(path)};
        }
    }
}

void Thumbnails::readFailed(int job, const QString &reason, quint64 needed)
{
    if (job == list_) {
        total_ = 1;
        failures_.push_back({options_.files.join(' '), reason}); // of no file: not for the index
    } else {
        const QString path = reading_.at(job).path;
        reading_.erase(job);
        if (needed > 0 && !oneByOne_)
            refused_ << path;
        else
            fail(path, reason);
    }
    feed();
    step();
}

void Thumbnails::drawNext()
{
    if (arrived_.empty())
        return;
    const Arrived next = std::move(arrived_.front());
    arrived_.pop_front();
    QString fault;
    try {
        fault = make(next);
    } catch (const std::bad_alloc &) {
        fault = tr("there is not enough memory");
    }
    if (fault.isEmpty())
        ++made_;
    else
        fail(next.file.path, fault);
    feed();
    step();
    if (!arrived_.empty())
        draw_.start();
}

/// Returns why there is no picture; empty if there is one.
QString Thumbnails::make(const Arrived &arrived)
{
    const auto &[file, content] = arrived;
    const std::shared_ptr<Item> item = itemOf(QFileInfo(file.path).fileName(), content);
    const Picture picture = drawing_.draw(*item);
    return picture.error.isEmpty()
               ? folder_.keep(picture.image, file.path, file.state, item->details())
               : picture.error;
}

void Thumbnails::fail(const QString &path, const QString &reason)
{
    const QString lost = folder_.note(path, reason);
    failures_.push_back({path, lost.isEmpty() ? reason : reason + "; " + lost});
}

/// Another file is done with. Ends the loop after the last.
void Thumbnails::step()
{
    if (total_ > 0)
        line_.show(done(), total_);
    if (!waiting_.empty() || !reading_.empty() || !arrived_.empty())
        return;
    if (refused_.isEmpty())
        return loop_.quit();
    oneByOne_ = true;
    waiting_.assign(refused_.begin(), refused_.end());
    refused_.clear();
    feed();
    step();
}

/// Writes the index, and says what came of it all. Returns the exit status.
int Thumbnails::report() const
{
    const QString fault = folder_.writeIndex();
    int widest = 0;
    for (const ThumbnailFailure &failure : failures_)
        widest = std::max(widest, failure.file.size());
    if (!failures_.isEmpty())
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(tr("there is no picture of:")));
    for (const ThumbnailFailure &failure : failures_)
        std::fprintf(stderr, "  %s  %s\n", qUtf8Printable(failure.file.leftJustified(widest)),
                     qUtf8Printable(failure.reason));
    if (!fault.isEmpty())
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(fault));
    if (interrupt_.interrupted())
        std::fprintf(stderr, "glview: %s\n",
                     qUtf8Printable(tr("given up; started again, it goes on from here")));
    std::fprintf(stdout, "%s\n",
                 qUtf8Printable(tr("%1 made, %2 already there, %3 failed: %4")
                                    .arg(QString::number(made_), QString::number(found_),
                                         QString::number(failures_.size()), folder_.indexPath())));
    return failures_.isEmpty() && fault.isEmpty() && !interrupt_.interrupted() ? 0 : 1;
}

} // namespace host
