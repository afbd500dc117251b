// SPDX-License-Identifier: MIT
#include "host/read/image_read.h"

#include <algorithm>

#include <QBuffer>
#include <QImageReader>

#include "host/read/image_stb.h"

namespace host {
namespace {

constexpr int headBytes = 1024;

struct Signature {
    int at;
    QByteArray bytes;
    const char *format; ///< As Qt names it.
};

const std::vector<Signature> &signatures()
{
    static const std::vector<Signature> all{
        {0, QByteArray("\x89PNG"), "png"},   {0, QByteArray("\xff\xd8\xff"), "jpeg"},
        {0, QByteArray("GIF8"), "gif"},      {0, QByteArray("BM"), "bmp"},
        {8, QByteArray("WEBP"), "webp"},     {0, QByteArray("II*\0", 4), "tiff"},
        {0, QByteArray("MM\0*", 4), "tiff"},
    };
    return all;
}

/// Whether there are too few bytes in @p in for a picture of @p size, where its reader would not
/// mind: BMP, TGA and PSD pack at most 128 pixels into one, and a JPEG has an end.
bool isCutShort(QIODevice &in, const QByteArray &format, const QSize &size)
{
    if (format == "jpeg") {
        in.seek(in.size() / 2); // behind a small picture that may stand in the head
        return !in.readAll().contains("\xff\xd9");
    }
    const bool packsLittle = format.isEmpty() || format == "bmp";
    return packsLittle && qint64(size.width()) * size.height() / 128 > in.size();
}

} // namespace

QSize fitting(const QSize &size, int side)
{
    if (size.width() <= side && size.height() <= side)
        return size;
    return size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
}

std::shared_ptr<Texture> textureOf(const QImage &image, int side)
{
    const QSize size = fitting(image.size(), side);
    QImage fit = size == image.size()
                     ? image
                     : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    fit = std::move(fit).convertToFormat(QImage::Format_RGBA8888);
    if (fit.isNull())
        return nullptr;
    auto texture = std::make_shared<Texture>();
    texture->width = quint32(fit.width());
    texture->height = quint32(fit.height());
    const std::size_t row = std::size_t(fit.width()) * 4;
    texture->pixels.reserve(row * std::size_t(fit.height()));
    for (int y = fit.height(); y-- > 0;)
        texture->pixels.insert(texture->pixels.end(), fit.constScanLine(y),
                               fit.constScanLine(y) + row);
    return texture;
}

ImageReader::ImageReader(QIODevice &in) : in_(in)
{
    const QByteArray head = in_.peek(headBytes);
    for (const Signature &each : signatures()) {
        if (head.mid(each.at, each.bytes.size()) == each.bytes)
            format_ = each.format;
    }
    if (format_.isEmpty()) {
        size_ = sizeByStb(head);
    } else {
        QImageReader reader(&in_, format_);
        reader.setAutoDetectImageFormat(false);
        size_ = reader.size();
    }
    if (head.isEmpty())
        reason_ = tr("it is empty");
    else if (format_.isEmpty() && size_.isEmpty())
        reason_ = tr("no picture of a known format");
    else if (size_.isEmpty())
        reason_ = tr("it is broken or cut short");
    else if (qint64(size_.width()) * size_.height() > maxPixels)
        reason_ = tr("too large: %1 × %2").arg(size_.width()).arg(size_.height());
    else if (isCutShort(in_, format_, size_))
        reason_ = tr("it is broken or cut short");
    if (!reason_.isEmpty())
        size_ = {};
}

QImage ImageReader::decode(const QSize &wanted)
{
    if (!in_.seek(0))
        return {};
    if (format_.isEmpty())
        return readByStb(in_.readAll());
    QImageReader reader(&in_, format_);
    reader.setAutoDetectImageFormat(false);
    if (wanted != size_)
        reader.setScaledSize(wanted); // JPEG takes less time and memory so
    return reader.read();
}

std::shared_ptr<Texture> ImageReader::read(int side)
{
    if (!reason_.isEmpty())
        return nullptr;
    auto texture = textureOf(decode(fitting(size_, side)), side);
    if (!texture)
        reason_ = tr("it is broken or cut short");
    return texture;
}

void ImageReader::loadPlugins()
{
    for (const char *format : {"jpeg", "gif", "webp", "tiff"}) {
        QBuffer nothing;
        nothing.open(QIODevice::ReadOnly);
        QImageReader reader(&nothing, format);
        reader.setAutoDetectImageFormat(false);
        reader.canRead(); // which makes the plugin's handler
    }
}

} // namespace host
