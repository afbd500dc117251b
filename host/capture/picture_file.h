// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_PICTURE_FILE_H
#define HOST_CAPTURE_PICTURE_FILE_H

#include <QCoreApplication>
#include <QImage>
#include <QString>

class QFileDevice;

namespace host {

/// Pictures as files, in the format that a name's suffix tells, PNG without one.
class PictureFile {
    Q_DECLARE_TR_FUNCTIONS(PictureFile)
public:
    /// What makes it impossible to write a picture to @p path: a format that is not known, or one
    /// without alpha where the picture is @p transparent. Empty if nothing does; touches no file.
    static QString fault(const QString &path, bool transparent);

    /// Writes @p image to @p path, in the place of an older file once all is written. Returns the
    /// reason why not, with the name; empty on success.
    static QString write(const QImage &image, const QString &path);

    /// Writes @p image to an open file. Returns the reason why not, empty on success.
    static QString encode(const QImage &image, QFileDevice &file, const QByteArray &format);
};

} // namespace host

#endif
