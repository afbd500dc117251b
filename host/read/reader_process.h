// SPDX-License-Identifier: MIT
#ifndef HOST_READ_READER_PROCESS_H
#define HOST_READ_READER_PROCESS_H

#include <QString>
#include <QtGlobal>

namespace host {

/// What one reading process may take. The times are those of a small file; larger files get more.
struct ReadLimits {
    quint64 memory = 0;   ///< Bytes of address space.
    int cpuSeconds = 20;  ///< Of processor time.
    int wallSeconds = 60; ///< On the clock; for a reader that waits. Kept by the parent.

    /// The limits for a file of @p bytes: two more seconds of processor time, and six on the clock,
    /// for each MiB, up to an hour of either.
    ReadLimits forSize(qint64 bytes) const;
};

/// 4 GiB of memory, but at most half of what the machine has.
ReadLimits defaultReadLimits();

/// The machine's physical memory in bytes.
quint64 physicalMemory();

/// Whether this build can limit its memory: a build with the address sanitizer cannot.
bool canLimitMemory();

/// How a reading process tells that its memory limit was reached, at a moment when it can say no
/// more.
constexpr int outOfMemoryExit = 77;

/// Reads the model @p file and writes the stream of mesh_stream.h to standard output: what
/// `glview --read-model FILE` does. Limits its own memory and processor time, writes no core, and
/// is killed when its parent dies; what libraries print goes to standard error. Expects a
/// QCoreApplication (for the names of files) and no second thread. Returns the exit code: 0 after a
/// mesh, 1 after a failure that is told in the stream.
int runReaderProcess(const QString &file, const ReadLimits &limits = defaultReadLimits());

} // namespace host

#endif
