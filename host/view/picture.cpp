// SPDX-License-Identifier: MIT
#include "host/view/picture.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageWriter>
#include <QWidget>
#include <qopengl.h>

namespace host {

QImage readFrame(const QWidget *window)
{
    const QSize size = window->size() * window->devicePixelRatioF();
    QImage image(size, QImage::Format_RGBX8888);
    GLint alignment = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, size.width(), size.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    return image.mirrored().convertToFormat(QImage::Format_RGB32);
}

QString writePicture(const QImage &image, const QString &path)
{
    QImageWriter writer(path);
    if (QFileInfo(path).suffix().isEmpty())
        writer.setFormat("png");
    if (writer.write(image))
        return {};
    return QCoreApplication::translate("picture", "cannot write %1: %2")
        .arg(path, writer.errorString());
}

} // namespace host
