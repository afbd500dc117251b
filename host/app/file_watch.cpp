// SPDX-License-Identifier: MIT
#include "host/app/file_watch.h"

#include <QFileInfo>

namespace host {

FileWatch::FileWatch()
{
    constexpr int gather = 200; // milliseconds
    gather_.setSingleShot(true);
    gather_.setInterval(gather);
    connect(&gather_, &QTimer::timeout, this, &FileWatch::look);
    const auto wake = [this] { gather_.start(); };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, wake);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, wake);
}

FileWatch::Stamp FileWatch::stampOf(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() ? Stamp(info.lastModified(), info.size()) : Stamp();
}

void FileWatch::setFiles(const QStringList &paths)
{
    const QStringList before = watcher_.files() + watcher_.directories();
    if (!before.isEmpty())
        watcher_.removePaths(before);
    seen_.clear();
    QStringList all = paths;
    for (const QString &path : paths) {
        seen_[path] = stampOf(path);
        all << QFileInfo(path).absolutePath(); // tells of files that take the place of others
    }
    all.removeDuplicates();
    if (!all.isEmpty())
        watcher_.addPaths(all);
}

void FileWatch::look()
{
    QStringList news;
    for (auto it = seen_.begin(); it != seen_.end(); ++it) {
        const Stamp now = stampOf(it.key());
        if (now == Stamp() || now == it.value())
            continue;
        it.value() = now;
        watcher_.addPath(it.key()); // it may be another file than before
        news << it.key();
    }
    for (const QString &path : news)
        emit changed(path);
}

} // namespace host
