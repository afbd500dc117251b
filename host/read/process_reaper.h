// SPDX-License-Identifier: MIT
#ifndef HOST_READ_PROCESS_REAPER_H
#define HOST_READ_PROCESS_REAPER_H

class QProcess;

namespace host {

/// Kills @p process, which nobody needs any more, and deletes it when it has ended; nobody waits
/// while the program runs. When the program ends, it waits for all of them together at most a
/// quarter of a second, and leaves to the system what has not ended by then.
void reap(QProcess *process);

} // namespace host

#endif
