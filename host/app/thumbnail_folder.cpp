// SPDX-License-Identifier: MIT
#include "host/app/thumbnail_folder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLockFile>
#include <QUrl>

#include "host/capture/atomic_output.h"
#include "host/capture/picture_file.h"

namespace host {

namespace {

// Of a picture's texts.
const QString fileKey = QStringLiteral("glview-file"); // percent-encoded: readers trim blanks
const QString stateKey = QStringLiteral("glview-state");
const QString detailsKey = QStringLiteral("glview-details");

const QString pictureSuffix = QStringLiteral(".png"), noteSuffix = QStringLiteral(".failed");

QString writeWhole(const QString &path, const QByteArray &bytes)
{
    AtomicFile file(path);
    if (file.error().isEmpty())
        file.device().write(bytes); // what goes wrong is told by commit()
    return file.commit();
}

} // namespace

QString ThumbnailFolder::absolute(const QString &file)
{
    return QDir::cleanPath(QFileInfo(file).absoluteFilePath());
}

ThumbnailFolder::ThumbnailFolder(const QString &path, const QString &options)
    : path_(absolute(path)), options_(options)
{
}

QString ThumbnailFolder::make() const
{
    return QDir().mkpath(path_) ? QString() : tr("the folder %1 cannot be made").arg(path_);
}

/// The file's own name for people, and a digest of its path, so that files of the same name in
/// different folders stay apart.
QString ThumbnailFolder::nameOf(const QString &file) const
{
    constexpr int longest = 200, digits = 10; // bytes of 255 that file systems take
    const QString path = absolute(file);
    QString name = QFileInfo(path).fileName();
    while (QFile::encodeName(name).size() > longest ||
           (!name.isEmpty() && name.at(name.size() - 1).isHighSurrogate()))
        name.chop(1);
    const QByteArray digest =
        QCryptographicHash::hash(QFile::encodeName(path), QCryptographicHash::Sha256);
    return path_ + '/' + name + '.' + QString::fromLatin1(digest.toHex().left(digits));
}

QString ThumbnailFolder::pictureOf(const QString &file) const
{
    return nameOf(file) + pictureSuffix;
}

QString ThumbnailFolder::stateOf(const QString &file) const
{
    const QFileInfo info(file);
    return QStringLiteral("%1 bytes, %2, %3")
        .arg(info.size())
        .arg(info.lastModified().toMSecsSinceEpoch())
        .arg(options_);
}

bool ThumbnailFolder::isFresh(const QString &file) const
{
    const QString picture = pictureOf(file);
    return QFileInfo::exists(picture) &&
           QImageReader(picture, "png").text(stateKey) == stateOf(file);
}

QString ThumbnailFolder::keep(QImage picture, const QString &file, const QString &state,
                              const QString &details) const
{
    picture.setText(fileKey, QString::fromLatin1(QUrl::toPercentEncoding(absolute(file), "/")));
    picture.setText(stateKey, state);
    picture.setText(detailsKey, details);
    const QString fault = PictureFile::write(picture, pictureOf(file));
    if (fault.isEmpty())
        forgetNote(file);
    return fault;
}

/// The reason in one line, then the path, in which there may be anything.
QString ThumbnailFolder::note(const QString &file, const QString &reason) const
{
    return writeWhole(nameOf(file) + noteSuffix,
                      (reason.simplified() + '\n' + absolute(file)).toUtf8());
}

void ThumbnailFolder::forgetNote(const QString &file) const
{
    QFile::remove(nameOf(file) + noteSuffix);
}

ThumbnailList ThumbnailFolder::list() const
{
    ThumbnailList found;
    constexpr auto files = QDir::Files | QDir::Hidden; // a model's name may begin with a dot
    const QDir folder(path_);
    for (const QString &name : folder.entryList({'*' + pictureSuffix}, files)) {
        const QImageReader reader(folder.filePath(name), "png");
        const QString file = reader.text(fileKey);
        if (!file.isEmpty()) // else it is somebody else's
            found.pictures << ThumbnailEntry{QUrl::fromPercentEncoding(file.toLatin1()), name,
                                             reader.size(), reader.text(detailsKey)};
    }
    for (const QString &name : folder.entryList({'*' + noteSuffix}, files)) {
        QFile note(folder.filePath(name));
        if (!note.open(QIODevice::ReadOnly)) // another program just made its picture
            continue;
        const QString reason = QString::fromUtf8(note.readLine()).trimmed();
        found.failures << ThumbnailFailure{QString::fromUtf8(note.readAll()), reason};
    }
    return found;
}

QString ThumbnailFolder::writeIndex() const
{
    // One that listed earlier must not write later. A lock that another machine left is old soon.
    constexpr int patience = 120000, stale = 60000; // milliseconds
    QLockFile lock(path_ + "/.index.lock");
    lock.setStaleLockTime(stale);
    if (!lock.tryLock(patience))
        return tr("%1 cannot be written: another program has been at it for long").arg(indexPath());
    return writeWhole(indexPath(), thumbnailIndex(list()).toUtf8());
}

} // namespace host
