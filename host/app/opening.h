// SPDX-License-Identifier: MIT
#ifndef HOST_APP_OPENING_H
#define HOST_APP_OPENING_H

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include "host/read/model_files.h"

namespace host {

/// What the paths of a command line, a dialog or a drop come to.
struct Opening {
    Q_DECLARE_TR_FUNCTIONS(Opening)
public:
    QStringList files;   ///< The files themselves, and those in the folders.
    bool single = false; ///< One file, or none: it fills the window. Else they make a sheet.
    QString name;        ///< Of the sheet: the folder's.
    QString notice;      ///< What was left out, and why; empty if nothing was.
};

/// Looks into the folders among @p paths, each up to @p limits.
Opening openingOf(const QStringList &paths, const CollectLimits &limits = {});

/// The folder that @p path is, or that the file is in; absolute.
QString folderOf(const QString &path);

} // namespace host

#endif
