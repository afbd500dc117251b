// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READ_LIMITS_H
#define HOST_READ_READ_LIMITS_H

#include <functional>

#include <QString>
#include <QtGlobal>

namespace host {

/// What the reading of one file may take, of a model as of a table. The times are those of a small
/// file; larger files get more.
struct ReadLimits {
    quint64 memory = 0;                     ///< Bytes of address space of the whole process.
    quint64 fileBytes = quint64(2) << 30;   ///< Larger files are refused.
    quint64 keptBytes = quint64(192) << 20; ///< A process that keeps more afterwards is replaced.
    int cpuSeconds = 20;                    ///< Of processor time.
    int wallSeconds = 60;                   ///< On the clock; for a process that waits.

    /// The limits for a file of @p bytes: two more seconds of processor time, and six on the clock,
    /// for each MiB, up to an hour of either.
    ReadLimits forSize(qint64 bytes) const;
};

/// 4 GiB of memory, but at most half of what the machine has and what this process may have.
ReadLimits defaultReadLimits();

/// The machine's physical memory in bytes.
quint64 physicalMemory();

/// Whether this build can limit its memory: a build with the address sanitizer cannot.
bool canLimitMemory();

/// Is told how far a reading is: @p fraction from 0 to 1, @p stage in words for a person.
using ReadProgress = std::function<void(double fraction, const QString &stage)>;

} // namespace host

#endif
