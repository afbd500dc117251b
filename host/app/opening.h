// SPDX-License-Identifier: MIT
#ifndef HOST_APP_OPENING_H
#define HOST_APP_OPENING_H

#include <QString>
#include <QStringList>

namespace host {

/// What the paths of a command line, a dialog or a drop come to.
struct Opening {
    QStringList files;   ///< Files and folders, as given.
    bool single = false; ///< One file, or none: it fills the window. Else they make a sheet.
    QString name;        ///< Of the sheet: the folder's.
};

/// Looks into no folder.
Opening openingOf(const QStringList &paths);

/// The folder that @p path is, or that the file is in; absolute.
QString folderOf(const QString &path);

} // namespace host

#endif
