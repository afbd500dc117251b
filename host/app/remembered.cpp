// SPDX-License-Identifier: MIT
#include "host/app/remembered.h"

#include <QFileInfo>
#include <QSettings>

namespace host {

namespace {

const char filesKey[] = "recent/files";
const char sizeKey[] = "window/size";

/// The same file whatever the application object is called, in tests too.
class Settings : public QSettings {
public:
    Settings() : QSettings(IniFormat, UserScope, "glwindow", "glview") {}
};

} // namespace

QStringList Remembered::recentFiles() const
{
    const Settings kept;
    QStringList files;
    for (const QString &path : kept.value(filesKey).toStringList())
        if (QFileInfo::exists(path) && files.size() < mostFiles)
            files << path;
    return files;
}

void Remembered::addFiles(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths)
        files << QFileInfo(path).absoluteFilePath();
    files += recentFiles();
    files.removeDuplicates();
    Settings kept;
    kept.setValue(filesKey, QStringList(files.mid(0, mostFiles)));
}

QSize Remembered::windowSize() const
{
    const Settings kept;
    return kept.value(sizeKey).toSize();
}

void Remembered::setWindowSize(const QSize &size)
{
    Settings kept;
    kept.setValue(sizeKey, size);
}

} // namespace host
