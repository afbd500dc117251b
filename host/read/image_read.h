// SPDX-License-Identifier: MIT
#ifndef HOST_READ_IMAGE_READ_H
#define HOST_READ_IMAGE_READ_H

#include <memory>

#include <QCoreApplication>
#include <QImage>
#include <QSize>

#include "host/read/mesh.h"

class QIODevice;

namespace host {

/// Reads pictures for textures: PNG, JPEG, BMP, GIF, TGA, PSD; TIFF and WebP where Qt has plugins
/// for them. What a picture is its first bytes say, never its name. Formats that name other files
/// or hold programs are not among them.
class ImageReader {
    Q_DECLARE_TR_FUNCTIONS(ImageReader)
public:
    /// More than an 8,192 x 8,192 picture, which takes half a GiB while it is read.
    static constexpr qint64 maxPixels = qint64(1) << 27;

    /// Expects @p in to be open, and random access; it outlives this.
    explicit ImageReader(QIODevice &in);

    /// As the file says it; empty if there is nothing to read: see reason().
    QSize size() const { return size_; }
    /// A phrase for a person; empty if all is well so far.
    QString reason() const { return reason_; }

    /// The picture, made smaller where a side is longer than @p side. Null if it is broken.
    std::shared_ptr<Texture> read(int side);

    /// Loads what Qt reads pictures with, so that no code has to be loaded later.
    static void loadPlugins();

private:
    QImage decode(const QSize &wanted);

    QIODevice &in_;
    QByteArray format_; // of Qt; empty: stb
    QSize size_;
    QString reason_;
};

/// @p size, or what of its shape fits into a square of @p side; no side is 0.
QSize fitting(const QSize &size, int side);

/// @p image as a texture, made smaller where a side is longer than @p side. Null for a null image,
/// and where there is no memory.
std::shared_ptr<Texture> textureOf(const QImage &image, int side);

} // namespace host

#endif
