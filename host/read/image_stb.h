// SPDX-License-Identifier: MIT
#ifndef HOST_READ_IMAGE_STB_H
#define HOST_READ_IMAGE_STB_H

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace host {

/// TGA and PSD pictures, which Qt does not read or not all of. TGA files have no mark of their own,
/// so much that is no picture passes for one.
QSize sizeByStb(const QByteArray &head);  ///< Empty if @p head begins no such picture.
QImage readByStb(const QByteArray &file); ///< Null if it is none, or broken.

} // namespace host

#endif
