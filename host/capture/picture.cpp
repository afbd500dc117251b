// SPDX-License-Identifier: MIT
#include "host/capture/picture.h"

#include <algorithm>

#include <qopengl.h>

#include "host/capture/block_target.h"
#include "host/capture/drawing.h"
#include "host/capture/saved_state.h"

namespace host {

namespace {

/// What was drawn over black, with the alpha that it takes to show the same over white.
void findAlpha(QImage &overBlack, const QImage &overWhite)
{
    for (int y = 0; y < overBlack.height(); ++y) {
        auto *black = reinterpret_cast<QRgb *>(overBlack.scanLine(y));
        const auto *white = reinterpret_cast<const QRgb *>(overWhite.constScanLine(y));
        for (int x = 0; x < overBlack.width(); ++x) {
            const QRgb b = black[x], w = white[x];
            // The least difference keeps every channel within alpha, despite rounding.
            const int through =
                std::min({qRed(w) - qRed(b), qGreen(w) - qGreen(b), qBlue(w) - qBlue(b)});
            black[x] = qRgba(qRed(b), qGreen(b), qBlue(b), 255 - std::max(through, 0));
        }
    }
}

/// One picture being put together from blocks.
class Assembly {
public:
    /// Fills @p image, which has the request's size.
    Assembly(const PictureRequest &request, const Drawing &drawing, QImage &image)
        : request_(request), drawing_(drawing), image_(image)
    {
    }

    /// Returns false if the request's `progress` gave up; @p error tells what else went wrong.
    bool run(QString &error);

private:
    QString makeTarget();
    std::vector<QRect> blocks() const;
    void addBlock(const QRect &inner);
    QImage drawOver(const QRect &outer, const QColor &colour);

    const PictureRequest &request_;
    const Drawing &drawing_;
    QImage &image_;
    BlockTarget target_;
    int overlap_ = 0; // pixels that a block has more on each side than is used of it
    int side_ = 0;    // of what is used
};

QString Assembly::makeTarget()
{
    const int limit = BlockTarget::longestSide();
    overlap_ = std::min(drawing_.overlap(), limit / 4);
    side_ = limit - 2 * overlap_;
    if (request_.blockSide > 0)
        side_ = std::min(side_, request_.blockSide);
    const int needed = side_ + 2 * overlap_;
    return target_.make(QSize(needed, needed).boundedTo(image_.size()));
}

std::vector<QRect> Assembly::blocks() const
{
    std::vector<QRect> all;
    for (int y = 0; y < image_.height(); y += side_)
        for (int x = 0; x < image_.width(); x += side_)
            all.push_back(QRect(x, y, side_, side_) & image_.rect());
    return all;
}

bool Assembly::run(QString &error)
{
    error = makeTarget();
    if (!error.isEmpty())
        return false;
    const std::vector<QRect> all = blocks();
    double done = 0;
    for (const QRect &block : all) {
        addBlock(block);
        for (GLenum code = glGetError(); code != GL_NO_ERROR; code = glGetError()) {
            if (code == GL_OUT_OF_MEMORY)
                error = Picture::tr("OpenGL ran out of memory.");
        }
        if (!error.isEmpty())
            return false;
        ++done;
        if (request_.progress && !request_.progress(done / double(all.size())))
            return false;
    }
    return true;
}

void Assembly::addBlock(const QRect &inner)
{
    const QRect outer = inner.adjusted(-overlap_, -overlap_, overlap_, overlap_) & image_.rect();
    QImage block = drawOver(outer, request_.transparent ? QColor(Qt::black) : request_.background);
    if (request_.transparent)
        findAlpha(block, drawOver(outer, Qt::white));
    const QPoint from = inner.topLeft() - outer.topLeft();
    for (int y = 0; y < inner.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(block.constScanLine(from.y() + y));
        auto *line = reinterpret_cast<QRgb *>(image_.scanLine(inner.y() + y));
        std::copy_n(source + from.x(), inner.width(), line + inner.x());
    }
}

/// The region @p outer, drawn over @p colour, opaque. Every block begins with the same GL state.
QImage Assembly::drawOver(const QRect &outer, const QColor &colour)
{
    const SavedGLState state;
    target_.begin(colour);
    drawing_.draw(outer);
    return target_.read(outer.size());
}

} // namespace

QString pictureSizeFault(const QSize &size)
{
    const QString asked = QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
    if (size.isEmpty())
        return Picture::tr("A picture of %1 pixels has nothing in it.").arg(asked);
    if (size.width() > maxPictureSide || size.height() > maxPictureSide)
        return Picture::tr("A picture of %1 pixels is too large: a side has at most %2 pixels.")
            .arg(asked)
            .arg(maxPictureSide);
    if (qint64(size.width()) * size.height() > maxPicturePixels)
        return Picture::tr("A picture of %1 pixels is too large: it has at most %2 million pixels.")
            .arg(asked)
            .arg(maxPicturePixels / 1000000);
    return {};
}

Picture renderPicture(const PictureRequest &request)
{
    Picture picture;
    picture.error = pictureSizeFault(request.size);
    if (picture.error.isEmpty() &&
        (request.window.isEmpty() || (!request.crop.isNull() && request.crop.isEmpty())))
        picture.error = Picture::tr("What is to be shown has no size.");
    if (!picture.error.isEmpty())
        return picture;
    QImage image(request.size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        picture.error = Picture::tr("There is not enough memory for a picture of %1 × %2 pixels.")
                            .arg(request.size.width())
                            .arg(request.size.height());
        return picture;
    }
    const Drawing drawing(request, BlockTarget::largestViewport());
    bool whole = false;
    {
        const SavedGLState state;
        whole = Assembly(request, drawing, image).run(picture.error);
    }
    if (!whole)
        return picture;
    drawing.paintForegrounds(image);
    if (!request.transparent)
        image.convertTo(QImage::Format_RGB32);
    picture.image = std::move(image);
    return picture;
}

} // namespace host
