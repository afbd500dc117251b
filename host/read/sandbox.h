// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SANDBOX_H
#define HOST_READ_SANDBOX_H

#include <QString>

namespace host {

/// Takes from this process, for good and before it looks at a file that nobody vouches for, what
/// the reading of files has no use for: opening files for writing and any other change to the file
/// system, sockets, new programs and processes, signals to others and looks into them. All of this
/// fails from here on with EPERM, so that a library which tries it goes on without. Reading,
/// mapping, threads and writing to what is open stay. At most 64 files can be open at a time.
///
/// Returns nothing, or, where the kernel has no such filter or refuses it, a phrase that says what
/// stayed open; the limits hold there too, and new processes are refused by their number.
QString enterSandbox();

/// Whether somebody still reads what is written to @p stream, a file descriptor; true for what is
/// no pipe. Asked after the wish for a signal at the parent's death, it tells a parent that died
/// before: its end of the pipe went with it.
bool hasListener(int stream);

} // namespace host

#endif
