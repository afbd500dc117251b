// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_PICTURE_H
#define HOST_VIEW_PICTURE_H

#include <QImage>
#include <QString>

class QWidget;

namespace host {

/// The frame that was just painted, before it is swapped, without transparency. Expects the GL
/// context of @p window to be current.
QImage readFrame(const QWidget *window);

/// Writes @p image to @p path in the format that its suffix names, PNG without one. Returns the
/// reason why not, empty on success.
QString writePicture(const QImage &image, const QString &path);

} // namespace host

#endif
