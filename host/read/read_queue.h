// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READ_QUEUE_H
#define HOST_READ_READ_QUEUE_H

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include "host/read/mesh_reader.h"

namespace host {

/// Reads many model files, several at once, each in a process of its own; the most urgent first.
///
/// Lives in the application's thread. Each file that add() takes is answered once, by finished() or
/// failed(), or never if it is cancelled. No signal but totals() is sent from within a call of this
/// class. Memory: at most maxProcesses() readers of ReadLimits::memory each; and the meshes that
/// arrive, with those handed out that somebody still holds, stay within memoryLimit(): a mesh
/// beyond it fails with a reason instead of arriving.
class ReadQueue : public QObject {
    Q_OBJECT
public:
    /// How each file is read: as the arguments of MeshReader's constructor.
    struct Program {
        QString path;
        QStringList arguments{QStringLiteral("--read-model")};
        ReadLimits limits = defaultReadLimits();
    };

    explicit ReadQueue(QObject *parent = nullptr);
    ReadQueue(QObject *parent, const Program &program);
    ~ReadQueue() override;

    /// One less than the cores, at least one, and not more than fit into half of the memory.
    static int defaultProcesses();
    int maxProcesses() const { return maxProcesses_; }
    void setMaxProcesses(int count); ///< At least 1. Those that run beyond it run on.

    /// Half of the machine's memory unless set.
    quint64 memoryLimit() const { return memoryLimit_; }
    void setMemoryLimit(quint64 bytes) { memoryLimit_ = bytes; }
    quint64 memoryInUse() const; ///< Of meshes arriving, and of those handed out and still held.

    /// Takes a file in; the larger @p priority is read first, of equal ones the earlier added.
    /// Returns its id, above zero, or 0 if the same path is waiting or being read.
    int add(const QString &path, int priority = 0);

    /// Changes the turn of a waiting file; without effect on all others.
    void setPriority(int id, int priority);
    void setPriority(const QString &path, int priority);

    void cancel(int id); ///< Forgets a file that waits or is being read.
    void cancelAll();

    int id(const QString &path) const { return ids_.value(path, 0); } ///< 0 unless under way.
    bool isIdle() const { return jobs_.empty(); }
    int done() const { return done_; } ///< Since the queue was last idle, as are the next two.
    int failures() const { return failed_; }
    int total() const { return total_; } ///< Without those cancelled.

signals:
    void started(int id);
    void progressed(int id, double fraction, const QString &stage); ///< As MeshReader tells it.
    void finished(int id, const host::MeshPtr &mesh);
    void failed(int id, const QString &reason); ///< A phrase without the file's name.
    void totals(int done, int failed, int total);

private:
    struct Job {
        QString path;
        int priority = 0;
        std::unique_ptr<MeshReader, std::function<void(MeshReader *)>> reader; // null: it waits
    };
    using Turn = std::pair<int, int>; // -priority, id: the least is next

    void startNext();
    void start(int id, Job &job);
    void checkMemory(int id);
    void forget(int id);
    void finish(int id, const MeshPtr &mesh);
    void fail(int id, const QString &reason);

    Program program_;
    int maxProcesses_ = defaultProcesses();
    quint64 memoryLimit_ = physicalMemory() / 2;
    int lastId_ = 0;
    std::map<int, Job> jobs_; // waiting and being read, by id
    QHash<QString, int> ids_; // of jobs_, by path
    std::set<Turn> waiting_;
    std::set<int> running_;
    mutable std::vector<std::weak_ptr<const Mesh>> handedOut_;
    int done_ = 0, failed_ = 0, total_ = 0;
    QTimer next_; // fires when a process may be started
};

} // namespace host

#endif
