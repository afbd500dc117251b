// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_PICTURE_FILE_H
#define HOST_CAPTURE_PICTURE_FILE_H

#include <QImage>
#include <QString>

namespace host {

/// Writes @p image to @p path in the format that its suffix names, PNG without one. Returns the
/// reason why not, empty on success; a transparent picture is no JPEG.
QString writePicture(const QImage &image, const QString &path);

} // namespace host

#endif
