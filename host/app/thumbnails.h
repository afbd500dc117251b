// SPDX-License-Identifier: MIT
#ifndef HOST_APP_THUMBNAILS_H
#define HOST_APP_THUMBNAILS_H

#include <deque>
#include <map>

#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include "host/app/options.h"
#include "host/app/thumbnail_drawing.h"
#include "host/app/thumbnail_folder.h"
#include "host/capture/progress_line.h"
#include "host/read/read_queue.h"

namespace host {

/// Makes a folder of pictures of many files. Files are read by processes, some ahead of the one
/// that is drawn; one that fails costs its picture and a line in the table of what failed.
class Thumbnails : public QObject {
    Q_OBJECT
public:
    /// Expects @p factory to know the module's classes; @p options outlive the object.
    Thumbnails(const ObjectFactory &factory, const Options &options);

    /// Makes what is missing or stale, with its progress on standard error, and the index. Returns
    /// the exit status: 0 if there is a picture of every file.
    int run();

private:
    struct File {
        QString path;
        QString state; // before it was read
    };
    struct Arrived {
        File file;
        Content content;
    };
    void begin(const QStringList &files);
    void feed();
    void readFailed(int job, const QString &reason, quint64 needed);
    void drawNext();
    QString make(const Arrived &arrived);
    void fail(const QString &path, const QString &reason);
    void step();
    int done() const { return made_ + found_ + int(failures_.size()); }
    int report() const;

    const Options &options_;
    ThumbnailFolder folder_;
    ThumbnailDrawing drawing_;
    ReadQueue queue_;
    QEventLoop loop_;
    QTimer draw_; // fires once the processes have been told what to read next
    ProgressLine line_;
    InterruptGuard interrupt_;
    int list_ = 0; // the job that looks through the folders
    int total_ = 0, made_ = 0, found_ = 0;
    bool oneByOne_ = false; // what there was no room for beside others
    std::deque<QString> waiting_;
    QStringList refused_; // for want of room
    std::map<int, File> reading_;
    std::deque<Arrived> arrived_;
    QVector<ThumbnailFailure> failures_;
};

} // namespace host

#endif
