// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READ_QUEUE_H
#define HOST_READ_READ_QUEUE_H

#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include "host/read/reader_child.h"

namespace host {

/// Reads models and tables, several at once, in processes that serve many files each; the most
/// urgent first. Lists folders in the same way. The one way to files for the whole program.
///
/// Lives in the application's thread, which never waits for it. Each request is answered once, by
/// one of finished(), listed() and failed(), or never if it is cancelled. No signal but totals() is
/// sent from within a call of this class. Memory: at most maxProcesses() processes of
/// ReadLimits::memory each; and the contents that arrive, with those handed out that somebody still
/// holds, stay within memoryLimit(): one beyond it fails with a reason instead of arriving, and
/// can be asked for again when there is room.
class ReadQueue : public QObject {
    Q_OBJECT
public:
    enum Priority {
        Background, ///< Nobody looks at its place.
        InView,
        Opened, ///< A person asked for just this.
    };

    explicit ReadQueue(QObject *parent = nullptr, const ReaderProgram &program = {});
    ~ReadQueue() override;

    /// As many as cores, at least one, and not more than fit into half of the memory.
    static int defaultProcesses();
    int maxProcesses() const { return maxProcesses_; }
    void setMaxProcesses(int count); ///< At least 1. Those that run beyond it run on.

    /// Half of the machine's memory unless set.
    quint64 memoryLimit() const { return memoryLimit_; }
    void setMemoryLimit(quint64 bytes) { memoryLimit_ = bytes; }
    quint64 memoryInUse() const; ///< Of contents arriving, and of those handed out and still held.

    /// Takes a file in; of equal priority the earlier added is read first. Returns its id, above
    /// zero.
    int add(const QString &path, Priority priority = Background);
    /// The files that @p paths stand for, as listFiles(); before all that is to be read.
    int list(const QStringList &paths);
    /// The files beside @p path, in its folder alone.
    int listNeighbours(const QString &path);

    void setPriority(int id, Priority priority); ///< Without effect unless it waits.
    void cancel(int id); ///< Forgets what waits or is being read; others do not matter.

    bool isIdle() const { return jobs_.empty(); }
    int done() const { return done_; } ///< Files since the queue was last idle, as the next two.
    int failures() const { return failed_; }
    int total() const { return total_; } ///< Without those cancelled.

signals:
    void started(int id);
    /// @p fraction from 0 to 1, never falling; @p stage in words.
    void progressed(int id, double fraction, const QString &stage);
    void finished(int id, const host::Content &content);
    void listed(int id, const host::FileListPtr &list);
    /// @p reason is a phrase without the file's name: see readFailure(). @p needed is 0, or the
    /// bytes for which there was no room.
    void failed(int id, const QString &reason, quint64 needed);
    void totals(int done, int failed, int total);

private:
    struct Job {
        ReadRequest request;
        int priority = 0;
        ReaderChild *child = nullptr; // null: it waits
        bool again = false;           // a process ended over it that had served others

        bool isFile() const { return request.kind == ReadRequest::Kind::File; }
    };
    using Turn = std::pair<int, int>; // -priority, id: the least is next

    int enqueue(const ReadRequest &request, int priority);
    void startNext();
    ReaderChild *childFor(const Job &job);
    ReaderChild *makeChild();
    void dropChild(ReaderChild *child);
    void checkMemory(int id);
    Job forget(int id);
    void finish(int id, const Content &content);
    void childFailed(int id, const ReadFault &fault);
    void fail(int id, const QString &reason, quint64 needed = 0);
    void tellTotals();

    ReaderProgram program_;
    int maxProcesses_ = defaultProcesses();
    quint64 memoryLimit_ = physicalMemory() / 2;
    int lastId_ = 0;
    std::map<int, Job> jobs_; // waiting and being read, by id
    std::set<Turn> waiting_;
    std::map<ReaderChild *, int> children_; // and the ids of what they are at; 0 at rest
    mutable std::vector<std::pair<std::weak_ptr<const void>, quint64>> handedOut_;
    int done_ = 0, failed_ = 0, total_ = 0;
    QTimer next_;   // fires when a request may be started
    QTimer unused_; // fires when the processes have been idle for a while
};

} // namespace host

#endif
