// SPDX-License-Identifier: MIT
#include "host/capture/picture.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <memory>

#include <GL/glu.h>
#include <QCoreApplication>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>

#include "host/capture/matrices.h"
#include "host/capture/saved_state.h"

namespace host {

namespace {

constexpr int preferredSide = 2048; // of a part: 2048 x 2048 x 4 samples x 8 bytes are 134 MB
constexpr int samples = 4;
constexpr double overlap = 16; // window pixels: half the widest line

QString text(const char *source)
{
    return QCoreApplication::translate("Picture", source);
}

/// Where an object stands.
struct Placement {
    QRect window;  // window pixels, whole ones as the window uses them, y downwards
    QRect picture; // picture pixels, y downwards
};

/// The drawing of one request, part after part.
class Drawing {
public:
    explicit Drawing(const PictureRequest &request);

    /// Returns the reason why it cannot be drawn; empty once the target is there.
    QString makeTarget();
    /// Returns false if the request's `progress` gave up; @p error tells what else went wrong.
    bool draw(QImage &image, QString &error);
    void paintForegrounds(QImage &image);

private:
    Placement place(const QRectF &rect) const;
    bool fitsViewport(const QRect &rect) const
    {
        return rect.width() <= largestViewport_.width() &&
               rect.height() <= largestViewport_.height();
    }
    std::vector<QRect> parts() const;
    void drawPart(const QRect &inner, QImage &image);
    QImage drawOver(const QRect &outer, const QColor &colour);
    void drawObject(const PictureObject &object, const Placement &at, const QRect &outer);
    void drawBackground(const PictureObject &object, const Placement &at, const QRect &region);
    void draw3D(const PictureObject &object, const Placement &at, const QRect &region);
    void draw2D(const PictureObject &object, const Placement &at, const QRect &region);
    void readBack(QImage &part);

    const PictureRequest &request_;
    double scaleX_, scaleY_;
    float scale_;
    int overlap_ = 0; // picture pixels
    int side_ = 0;    // of a part without its overlap
    QSize largestViewport_;
    QSize targetSize_;
    std::vector<Placement> placements_;
    std::deque<SavedRecords> records_; // a deque, since they never move
    std::unique_ptr<QOpenGLFramebufferObject> target_, resolved_;
};

/// The mouse record of an object's window in the object's pixels, while it draws.
class LocalMouse {
public:
    LocalMouse(const GLW *glw, const QPoint &origin) : window_(glw->gl)
    {
        if (!window_)
            return;
        mouse_ = window_->mouse;
        window_->mouse.sub(origin.x(), origin.y());
    }
    ~LocalMouse()
    {
        if (window_)
            window_->mouse = mouse_;
    }
    LocalMouse(const LocalMouse &) = delete;
    LocalMouse &operator=(const LocalMouse &) = delete;

private:
    QPointer<GLWindow> window_;
    Mouse mouse_;
};

Drawing::Drawing(const PictureRequest &request)
    : request_(request),
      scaleX_(double(request.size.width()) / request.window.width()),
      scaleY_(double(request.size.height()) / request.window.height()),
      scale_(float(std::sqrt(scaleX_ * scaleY_)))
{
    for (const PictureObject &object : request.objects) {
        placements_.push_back(place(object.rect));
        records_.emplace_back(object.glw);
        // In pixels, whatever the real window's size is.
        object.glw->setGeometry(object.rect);
    }
}

/// Whole window pixels the way the window finds them: counted from the lower edge.
Placement Drawing::place(const QRectF &rect) const
{
    const int height = int(rect.height());
    const int bottom = int(request_.window.height() - rect.height() - rect.y());
    Placement at;
    at.window =
        QRect(int(rect.x()), request_.window.height() - bottom - height, int(rect.width()), height);
    const auto x = [&](int v) { return int(std::lround(v * scaleX_)); };
    const auto y = [&](int v) { return int(std::lround(v * scaleY_)); };
    at.picture = QRect(QPoint(x(at.window.left()), y(at.window.top())),
                       QPoint(x(at.window.left() + at.window.width()) - 1,
                              y(at.window.top() + at.window.height()) - 1));
    return at;
}

QString Drawing::makeTarget()
{
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return text("This OpenGL cannot draw off the screen (no framebuffer objects).");
    GLint viewport[2] = {0, 0}, buffer = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
    largestViewport_ = QSize(viewport[0], viewport[1]);
    const int limit = std::min({preferredSide, viewport[0], viewport[1], buffer});
    for (const Placement &at : placements_)
        if (!fitsViewport(at.picture))
            overlap_ = std::min(int(std::ceil(overlap * std::max(scaleX_, scaleY_))), limit / 4);
    side_ = limit - 2 * overlap_;
    if (request_.partSide > 0)
        side_ = std::min(side_, request_.partSide);
    const bool onePart = request_.size.width() <= side_ && request_.size.height() <= side_;
    targetSize_ = onePart ? request_.size : QSize(side_ + 2 * overlap_, side_ + 2 * overlap_);

    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    if (QOpenGLFramebufferObject::hasOpenGLFramebufferBlit())
        format.setSamples(samples);
    target_ = std::make_unique<QOpenGLFramebufferObject>(targetSize_, format);
    if (target_->isValid() && target_->format().samples() > 0)
        resolved_ = std::make_unique<QOpenGLFramebufferObject>(targetSize_);
    if (!target_->isValid() || (resolved_ && !resolved_->isValid()))
        return text("OpenGL has no memory for a part of the picture of %1 × %2 pixels.")
            .arg(targetSize_.width())
            .arg(targetSize_.height());
    return {};
}

std::vector<QRect> Drawing::parts() const
{
    const QRect whole(QPoint(0, 0), request_.size);
    std::vector<QRect> all;
    for (int y = 0; y < whole.height(); y += side_)
        for (int x = 0; x < whole.width(); x += side_)
            all.push_back(QRect(x, y, side_, side_) & whole);
    return all;
}

bool Drawing::draw(QImage &image, QString &error)
{
    const std::vector<QRect> all = parts();
    double done = 0;
    for (const QRect &part : all) {
        drawPart(part, image);
        for (GLenum code = glGetError(); code != GL_NO_ERROR; code = glGetError()) {
            if (code == GL_OUT_OF_MEMORY)
                error = text("OpenGL ran out of memory.");
        }
        if (!error.isEmpty())
            return false;
        ++done;
        if (request_.progress && !request_.progress(done / double(all.size())))
            return false;
    }
    return true;
}

/// Draws the part @p inner with its overlap and copies it into @p image.
void Drawing::drawPart(const QRect &inner, QImage &image)
{
    const QRect outer = inner.adjusted(-overlap_, -overlap_, overlap_, overlap_) & image.rect();
    QImage part;
    if (request_.transparent) {
        part = drawOver(outer, Qt::black);
        const QImage white = drawOver(outer, Qt::white);
        for (int y = 0; y < part.height(); ++y) {
            auto *over = reinterpret_cast<QRgb *>(part.scanLine(y));
            const auto *under = reinterpret_cast<const QRgb *>(white.constScanLine(y));
            for (int x = 0; x < part.width(); ++x) {
                // The least difference keeps every channel within alpha, despite rounding.
                const int through =
                    std::min({qRed(under[x]) - qRed(over[x]), qGreen(under[x]) - qGreen(over[x]),
                              qBlue(under[x]) - qBlue(over[x])});
                over[x] = qRgba(qRed(over[x]), qGreen(over[x]), qBlue(over[x]),
                                255 - std::max(through, 0));
            }
        }
    } else {
        part = drawOver(outer, request_.background);
    }
    const QPoint from = inner.topLeft() - outer.topLeft();
    for (int y = 0; y < inner.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(part.constScanLine(from.y() + y));
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(inner.y() + y));
        std::copy_n(source + from.x(), inner.width(), line + inner.x());
    }
}

/// The region @p outer, drawn over @p colour, opaque.
QImage Drawing::drawOver(const QRect &outer, const QColor &colour)
{
    const SavedGLState state;
    target_->bind();
    glEnable(GL_MULTISAMPLE); // off where the window has no samples
    glDisable(GL_SCISSOR_TEST);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearColor(float(colour.redF()), float(colour.greenF()), float(colour.blueF()), 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glLineWidth(scale_);
    glPointSize(scale_);
    for (std::size_t i = 0; i < request_.objects.size(); ++i)
        drawObject(request_.objects[i], placements_[i], outer);
    QImage part(outer.size(), QImage::Format_ARGB32_Premultiplied);
    readBack(part);
    return part;
}

void Drawing::drawObject(const PictureObject &object, const Placement &at, const QRect &outer)
{
    const QRect visible = at.picture & outer;
    if (visible.isEmpty() || at.window.width() < 2 || at.window.height() < 2)
        return;
    const QPoint lowerLeft(at.window.x(),
                           request_.window.height() - at.window.y() - at.window.height());
    const LocalMouse mouse(object.glw, lowerLeft);
    // Reaching beyond the part, the GL viewport keeps lines whole that end or run outside of it.
    // Where it cannot be as large, the part is a frustum of its own, which clips them.
    const QRect region = fitsViewport(at.picture) ? at.picture : visible;
    glViewport(region.x() - outer.x(), outer.height() - (region.y() - outer.y()) - region.height(),
               region.width(), region.height());
    GLint *const cameraViewport = object.glw->camera.viewport;
    const GLint rect[4] = {lowerLeft.x(), lowerLeft.y(), at.window.width(), at.window.height()};
    std::copy_n(rect, 4, cameraViewport);
    std::copy_n(rect, 4, object.glw->viewport.viewport);
    if (object.background && !request_.transparent)
        drawBackground(object, at, region);
    if (object.draw3D)
        draw3D(object, at, region);
    if (object.draw2D)
        draw2D(object, at, region);
}

void Drawing::drawBackground(const PictureObject &object, const Placement &at, const QRect &region)
{
    constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(partOf(identity, at.picture, region).data());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    object.background(object.glw, scale_);
}

void Drawing::draw3D(const PictureObject &object, const Placement &at, const QRect &region)
{
    GL::Camera &camera = object.glw->camera;
    const Matrix whole = projection(camera, at.window.size());
    std::copy(whole.begin(), whole.end(), camera.proj_matrix);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(partOf(whole, at.picture, region).data());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    if (camera.mode == 0)
        glLoadMatrixf(camera.m);
    else
        gluLookAt(camera.pos.x, camera.pos.y, camera.pos.z, camera.target.x, camera.target.y,
                  camera.target.z, camera.up.x, camera.up.y, camera.up.z);
    glGetDoublev(GL_MODELVIEW_MATRIX, camera.model_matrix);
    if (!object.glw->lights.empty())
        glEnable(GL_LIGHTING);
    for (GL::Light &light : object.glw->lights)
        light.Reposition();
    object.draw3D(object.glw, scale_);
}

void Drawing::draw2D(const PictureObject &object, const Placement &at, const QRect &region)
{
    const GL::Viewport &viewport = object.glw->viewport;
    const Matrix whole = projection(viewport, at.window.size());
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(partOf(whole, at.picture, region).data());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScalef(viewport.scale.x, viewport.scale.y, viewport.scale.z);
    glTranslatef(-viewport.pos.x, -viewport.pos.y, -viewport.pos.z);
    object.draw2D(object.glw, scale_);
}

void Drawing::readBack(QImage &part)
{
    const QRect region(QPoint(0, 0), part.size());
    if (resolved_) {
        QOpenGLFramebufferObject::blitFramebuffer(resolved_.get(), region, target_.get(), region);
        resolved_->bind();
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glReadPixels(0, 0, part.width(), part.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 part.bits());
    part = part.mirrored(false, true);
    // What was drawn with alpha below 1 is as opaque here as it is on the screen.
    for (int y = 0; y < part.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(part.scanLine(y));
        std::for_each(line, line + part.width(), [](QRgb &pixel) { pixel |= 0xff000000u; });
    }
}

void Drawing::paintForegrounds(QImage &image)
{
    for (std::size_t i = 0; i < request_.objects.size(); ++i) {
        const PictureObject &object = request_.objects[i];
        if (!object.foreground)
            continue;
        QPainter painter(&image);
        painter.scale(scaleX_, scaleY_);
        object.foreground(object.glw, &painter);
    }
}

} // namespace

QString pictureSizeFault(const QSize &size)
{
    const QString asked = QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
    if (size.isEmpty())
        return text("A picture of %1 pixels has nothing in it.").arg(asked);
    if (size.width() > maxPictureSide || size.height() > maxPictureSide)
        return text("A picture of %1 pixels is too large: a side has at most %2 pixels.")
            .arg(asked)
            .arg(maxPictureSide);
    if (qint64(size.width()) * size.height() > maxPicturePixels)
        return text("A picture of %1 pixels is too large: it has at most %2 million pixels.")
            .arg(asked)
            .arg(maxPicturePixels / 1000000);
    return {};
}

Picture renderPicture(const PictureRequest &request)
{
    Picture picture;
    picture.error = pictureSizeFault(request.size);
    if (picture.error.isEmpty() && request.window.isEmpty())
        picture.error = text("The window has no size.");
    if (!picture.error.isEmpty())
        return picture;
    QImage image(request.size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        picture.error = text("There is not enough memory for a picture of %1 × %2 pixels.")
                            .arg(request.size.width())
                            .arg(request.size.height());
        return picture;
    }
    Drawing drawing(request);
    bool whole = false;
    {
        const SavedGLState state;
        picture.error = drawing.makeTarget();
        if (picture.error.isEmpty())
            whole = drawing.draw(image, picture.error);
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
