// SPDX-License-Identifier: MIT
#ifndef HOST_READ_FILE_KIND_H
#define HOST_READ_FILE_KIND_H

#include <QString>

#include "host/read/read_limits.h"

namespace host {

/// Whether the file is read as a table, by its suffix: .csv, .tsv, .txt. All others are read as
/// models.
bool isTable(const QString &path);

/// Why @p path cannot be read whatever its kind: missing, a folder, a pipe or a device, not
/// readable, empty, or larger than @p limits allow. Returns an empty text if there is nothing
/// against it. Opens nothing.
QString fileObjection(const QString &path, const ReadLimits &limits = {});

/// The message for a person, "NAME: REASON", with the name but not the folder.
QString readFailure(const QString &path, const QString &reason);

} // namespace host

#endif
