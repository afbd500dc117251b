// SPDX-License-Identifier: MIT
#include "host/app/opening.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace host {

Opening openingOf(const QStringList &paths, const CollectLimits &limits)
{
    Opening opening;
    QStringList notices;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            opening.files << path;
            continue;
        }
        const CollectedFiles found = collectModelFiles(path, limits);
        opening.files << found.files;
        if (found.files.isEmpty())
            notices << Opening::tr("%1: there is no model in this folder, or it cannot be read")
                           .arg(path);
        else if (!found.complete)
            notices << Opening::tr("%1: only %2 files are shown; the folder holds more")
                           .arg(path, QLocale().toString(found.files.size()));
    }
    opening.single = paths.isEmpty() || (opening.files.size() == 1 && opening.files == paths);
    if (!paths.isEmpty())
        opening.name = QDir(folderOf(paths.first())).dirName();
    opening.notice = notices.join('\n');
    return opening;
}

QString folderOf(const QString &path)
{
    const QFileInfo info(path);
    return info.isDir() ? info.absoluteFilePath() : info.absolutePath();
}

} // namespace host
