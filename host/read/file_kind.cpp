// SPDX-License-Identifier: MIT
#include "host/read/file_kind.h"

#include <QFileInfo>
#include <QLocale>

namespace host {

bool isTable(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("csv") || suffix == QLatin1String("tsv") ||
           suffix == QLatin1String("txt");
}

QString fileObjection(const QString &path, const ReadLimits &limits)
{
    const QFileInfo info(path);
    if (!info.exists())
        return info.isSymLink() ? QStringLiteral("the link points to nothing")
                                : QStringLiteral("there is no such file");
    if (info.isDir())
        return QStringLiteral("it is a folder");
    if (!info.isFile())
        return QStringLiteral("it is not a regular file");
    if (!info.isReadable())
        return QStringLiteral("there is no permission to read it");
    if (info.size() == 0)
        return QStringLiteral("the file is empty");
    if (quint64(info.size()) > limits.fileBytes)
        return QStringLiteral("it is larger than %1, the most that is read")
            .arg(QLocale::c().formattedDataSize(qint64(limits.fileBytes), 1));
    return {};
}

QString readFailure(const QString &path, const QString &reason)
{
    return QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(), reason);
}

} // namespace host
