// SPDX-License-Identifier: MIT
#include "host/app/settings.h"

#include <algorithm>

#include <QFileInfo>
#include <QSettings>

namespace host {

namespace {

const char filesKey[] = "recent/files";
const char sizeKey[] = "window/size";
const char darkKey[] = "view/dark";
const char orthographicKey[] = "view/orthographic";
const char reducingKey[] = "view/lessMoving";
const char partsOpenKey[] = "parts/open";
const char partsWidthKey[] = "parts/width";
const char tileSizeKey[] = "sheet/tile";
const char folderKey[] = "recent/folder";

/// The same file whatever the application object is called, in tests too.
class Store : public QSettings {
public:
    Store() : QSettings(IniFormat, UserScope, "glwindow", "glview") {}
};

} // namespace

QStringList Settings::recentFiles() const
{
    const Store kept;
    QStringList files;
    for (const QString &path : kept.value(filesKey).toStringList())
        if (QFileInfo::exists(path) && files.size() < mostFiles)
            files << path;
    return files;
}

void Settings::addFiles(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths)
        files << QFileInfo(path).absoluteFilePath();
    files += recentFiles();
    files.removeDuplicates();
    Store kept;
    kept.setValue(filesKey, QStringList(files.mid(0, mostFiles)));
}

QSize Settings::windowSize() const
{
    const Store kept;
    return kept.value(sizeKey).toSize();
}

void Settings::setWindowSize(const QSize &size)
{
    Store kept;
    kept.setValue(sizeKey, size);
}

bool Settings::isDark() const
{
    return Store().value(darkKey).toBool();
}

void Settings::setDark(bool dark)
{
    Store().setValue(darkKey, dark);
}

bool Settings::isOrthographic() const
{
    return Store().value(orthographicKey).toBool();
}

void Settings::setOrthographic(bool orthographic)
{
    Store().setValue(orthographicKey, orthographic);
}

bool Settings::isReducing() const
{
    return Store().value(reducingKey, true).toBool();
}

void Settings::setReducing(bool reducing)
{
    Store().setValue(reducingKey, reducing);
}

bool Settings::arePartsOpen() const
{
    return Store().value(partsOpenKey).toBool();
}

void Settings::setPartsOpen(bool open)
{
    Store().setValue(partsOpenKey, open);
}

int Settings::partsWidth() const
{
    return std::clamp(Store().value(partsWidthKey).toInt(), 0, 10000);
}

void Settings::setPartsWidth(int width)
{
    Store().setValue(partsWidthKey, width);
}

double Settings::tileSize() const
{
    return Store().value(tileSizeKey).toDouble();
}

void Settings::setTileSize(double usual)
{
    Store().setValue(tileSizeKey, usual);
}

QString Settings::folder() const
{
    const QString path = Store().value(folderKey).toString();
    return QFileInfo(path).isDir() ? path : QString();
}

void Settings::setFolder(const QString &path)
{
    Store().setValue(folderKey, path);
}

} // namespace host
