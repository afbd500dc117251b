// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MODEL_FILES_H
#define HOST_READ_MODEL_FILES_H

#include "host/read/content.h"

namespace host {

/// The suffixes of the formats that assimp reads and of pointSuffixes(), lower case, without a dot,
/// sorted: for file dialogs.
QStringList modelSuffixes();

/// What to gather from a folder, and where to stop.
struct CollectLimits {
    int depth = 16;        ///< Of folders below the first.
    int files = 20000;     ///< Files in the answer.
    int entries = 1000000; ///< Names looked at, of whatever kind.
};

/// The files that @p paths stand for: a file for itself, a folder for the models and tables in it
/// and in the folders below it, sorted by path as a person sorts: case aside, and 2 before 10.
/// Judges by suffix; where a suffix is in wider use for other things (.xml, .txt, .raw, .asc ...),
/// by the first bytes too. Leaves out hidden files, and formats that hold only motions or cameras.
/// Follows links, but enters no folder twice. Blocks while it reads the folders: see
/// ReadQueue::list().
FileList listFiles(const QStringList &paths, const CollectLimits &limits = {});

} // namespace host

#endif
