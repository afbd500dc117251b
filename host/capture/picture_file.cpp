// SPDX-License-Identifier: MIT
#include "host/capture/picture_file.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageWriter>

namespace host {

QString writePicture(const QImage &image, const QString &path)
{
    QImageWriter writer(path);
    if (QFileInfo(path).suffix().isEmpty())
        writer.setFormat("png");
    const QByteArray format = writer.format();
    if (image.hasAlphaChannel() && (format == "jpg" || format == "jpeg"))
        return QCoreApplication::translate("picture", "%1: a JPEG cannot be transparent").arg(path);
    if (writer.write(image))
        return {};
    return QCoreApplication::translate("picture", "cannot write %1: %2")
        .arg(path, writer.errorString());
}

} // namespace host
