// SPDX-License-Identifier: MIT
#include "host/capture/picture_file.h"

#include <QBuffer>
#include <QFileDevice>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include "host/capture/atomic_output.h"

namespace host {

namespace {

QByteArray formatOf(const QString &path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toUtf8();
    return suffix.isEmpty() ? "png" : suffix;
}

/// Whether what is written in @p format is read as transparent again.
bool keepsAlpha(const QByteArray &format)
{
    QImage clear(1, 1, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    QImageWriter(&file, format).write(clear);
    file.seek(0);
    const QImage again = QImageReader(&file, format).read();
    return !again.isNull() && qAlpha(again.pixel(0, 0)) == 0;
}

} // namespace

QString PictureFile::fault(const QString &path, bool transparent)
{
    const QByteArray format = formatOf(path);
    const QByteArrayList known = QImageWriter::supportedImageFormats();
    if (!known.contains(format))
        return tr("%1: a picture has one of these suffixes: %2")
            .arg(path, QString::fromUtf8(known.join(", ")));
    if (transparent && !keepsAlpha(format))
        return tr("%1: a picture of this format cannot be transparent; a .png can").arg(path);
    return {};
}

QString PictureFile::write(const QImage &image, const QString &path)
{
    const QString impossible = fault(path, image.hasAlphaChannel());
    if (!impossible.isEmpty())
        return impossible;
    AtomicFile file(path);
    if (!file.error().isEmpty())
        return file.error();
    const QString reason = encode(image, file.device(), formatOf(path));
    if (!reason.isEmpty())
        return tr("%1 cannot be written: %2").arg(path, reason);
    return file.commit();
}

QString PictureFile::encode(const QImage &image, QFileDevice &file, const QByteArray &format)
{
    QImageWriter writer(&file, format);
    const bool encoded = writer.write(image);
    // What the device says is the cause; the writer knows of no more than a failure.
    if (!file.flush() || file.error() != QFileDevice::NoError)
        return file.errorString();
    if (encoded)
        return {};
    return tr("%1 × %2 pixels are more than the format %3 can hold")
        .arg(image.width())
        .arg(image.height())
        .arg(QString::fromUtf8(format));
}

} // namespace host
