// SPDX-License-Identifier: MIT
#ifndef HOST_APP_FILE_WATCH_H
#define HOST_APP_FILE_WATCH_H

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QTimer>

namespace host {

/// Tells when files change on disk, also those that programs replace by a new file of the name.
/// One that is gone is waited for.
class FileWatch : public QObject {
    Q_OBJECT
public:
    FileWatch();

    /// Watches @p paths, absolute ones, and no others.
    void setFiles(const QStringList &paths);

signals:
    void changed(const QString &path); ///< A little while after; once for several writes.

private:
    using Stamp = QPair<QDateTime, qint64>; // time and size
    static Stamp stampOf(const QString &path);
    void look();

    QFileSystemWatcher watcher_;
    QHash<QString, Stamp> seen_;
    QTimer gather_;
};

} // namespace host

#endif
