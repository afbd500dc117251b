// SPDX-License-Identifier: MIT
#include "host/app/opening.h"

#include <QDir>
#include <QFileInfo>

namespace host {

Opening openingOf(const QStringList &paths)
{
    Opening opening;
    opening.files = paths;
    opening.single = paths.isEmpty() || (paths.size() == 1 && !QFileInfo(paths.first()).isDir());
    if (!paths.isEmpty())
        opening.name = QDir(folderOf(paths.first())).dirName();
    return opening;
}

QString folderOf(const QString &path)
{
    const QFileInfo info(path);
    return info.isDir() ? info.absoluteFilePath() : info.absolutePath();
}

} // namespace host
