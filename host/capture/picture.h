// SPDX-License-Identifier: MIT
#ifndef HOST_CAPTURE_PICTURE_H
#define HOST_CAPTURE_PICTURE_H

#include <functional>
#include <vector>

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QRect>
#include <QRectF>
#include <QSize>

#include "GL/glw.h"

class QPainter;

namespace host {

/// One drawing object in a picture: where it stands and who draws it. Callbacks may be null; they
/// are called in the order in which they stand here, but `foreground` after every object has drawn.
///
/// `scale`, the number of picture pixels per window pixel, is what widths of lines, sizes of
/// points and textures that are meant in window pixels are multiplied by. The matrices, the lights'
/// positions and the GL viewport are set; a callback leaves viewport and scissor alone, and draws
/// the same however often it is called: a picture is made of blocks. The camera's and the
/// viewport's records hold the matrices and the rectangle of the whole object in window pixels,
/// `rect` its place, and the window's mouse record is in the object's pixels, as in a frame of the
/// window.
struct PictureObject {
    using Draw = std::function<void(GLW *, float scale)>;

    GLW *glw = nullptr; ///< Not owned.
    QRectF rect;        ///< Window pixels, origin top-left, y downwards; x and y not negative.
    /// Left out where the picture is transparent. With the matrices loaded, the object reaches from
    /// -1 to 1 in x and y.
    Draw background;
    Draw draw3D;
    Draw draw2D;
    /// Paints in window pixels, origin top-left, over the whole picture; the painter's
    /// transformation makes it fit, so that text and lines stay sharp.
    std::function<void(GLW *, QPainter *)> foreground;
};

/// What to draw, and how large.
struct PictureRequest {
    QSize window; ///< Extent, in window pixels, that the objects' rectangles are placed in.
    QRect crop;   ///< What of the window is shown, in the frame of the rectangles; null: all.
    QSize size;   ///< Of the picture, in pixels. Another aspect stretches what is drawn in 2D.
    QColor background = Qt::black;
    bool transparent = false; ///< Nothing behind the objects instead of `background`.
    std::vector<PictureObject> objects;
    int blockSide = 0; ///< Upper limit for the sides of a block, in pixels; 0: what suits.
    /// Told what share is done, 0 to 1; returning false gives up. May be null.
    std::function<bool(double)> progress;
};

/// A picture, or the reason why there is none.
struct Picture {
    Q_DECLARE_TR_FUNCTIONS(Picture)
public:
    QImage image;  ///< RGB32, or ARGB32_Premultiplied where transparent. Null on error.
    QString error; ///< For a person. Empty on success and where `progress` gave up.
};

/// The most pixels a picture may have: an image of 1 GiB. Its blocks take another 150 MB at most.
constexpr qint64 maxPicturePixels = qint64(16384) * 16384;
/// The longest side of a picture.
constexpr int maxPictureSide = 32767;

/// What is wrong with a picture of @p size; empty if nothing is.
QString pictureSizeFault(const QSize &size);

/// Draws @p request into a framebuffer object, multisampled where OpenGL can, block after block,
/// and paints the foregrounds over it. No seam is seen; objects larger than the largest GL viewport
/// need lines and points up to 32 window pixels wide for that. With `transparent` every block is
/// drawn twice, over black and over white: what differs is what shows through, however the content
/// blends.
///
/// Expects the context of the objects' window to be current. Gives back its state, the objects'
/// records and the window's mouse record. Callbacks may not delete objects.
Picture renderPicture(const PictureRequest &request);

} // namespace host

#endif
