// SPDX-License-Identifier: MIT
#ifndef HOST_READ_MODEL_FILES_H
#define HOST_READ_MODEL_FILES_H

#include <QString>
#include <QStringList>

namespace host {

/// The suffixes of the formats that assimp reads, lower case, without a dot, sorted: for file
/// dialogs.
QStringList modelSuffixes();

/// What to gather from a folder, and where to stop.
struct CollectLimits {
    int depth = 16;        ///< Of folders below the first.
    int files = 20000;     ///< Files in the answer.
    int entries = 1000000; ///< Names looked at, of whatever kind.
};

/// What collectModelFiles() gives.
struct CollectedFiles {
    QStringList files;    ///< Absolute paths.
    bool complete = true; ///< False if a limit stopped the search.
};

/// The models, and the tables (.csv), in @p folder and the folders below it, sorted by path as a
/// person sorts: case aside, and 2 before 10. Judges by suffix; where a suffix is in wider use for
/// other things (.xml, .raw, .prj ...), by the first bytes too. Leaves out hidden files, and
/// formats that hold only motions or cameras. Follows links, but enters no folder twice. Blocks
/// while it reads the folders. Returns nothing if @p folder cannot be read.
CollectedFiles collectModelFiles(const QString &folder, const CollectLimits &limits = {});

} // namespace host

#endif
