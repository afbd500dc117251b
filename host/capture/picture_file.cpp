// SPDX-License-Identifier: MIT
#include "host/capture/picture_file.h"

#include <QFileInfo>
#include <QImageWriter>

#include "host/capture/picture.h"

namespace host {

QString writePicture(const QImage &image, const QString &path)
{
    QImageWriter writer(path);
    if (QFileInfo(path).suffix().isEmpty())
        writer.setFormat("png");
    const QByteArray format = writer.format();
    if (image.hasAlphaChannel() && (format == "jpg" || format == "jpeg"))
        return Picture::tr("%1: a JPEG cannot be transparent").arg(path);
    if (writer.write(image))
        return {};
    return Picture::tr("cannot write %1: %2").arg(path, writer.errorString());
}

} // namespace host
