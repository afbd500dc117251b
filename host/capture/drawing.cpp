// SPDX-License-Identifier: MIT
#include "host/capture/drawing.h"

#include <algorithm>
#include <cmath>

#include <GL/glu.h>
#include <QPainter>

#include "host/capture/matrices.h"

namespace host {

namespace {

constexpr double reach = 16; // window pixels: half the widest line or point at a seam

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

} // namespace

Drawing::Drawing(const PictureRequest &request, const QSize &largestViewport)
    : request_(request),
      largestViewport_(largestViewport),
      crop_(request.crop.isNull() ? QRect(QPoint(0, 0), request.window) : request.crop),
      scaleX_(double(request.size.width()) / crop_.width()),
      scaleY_(double(request.size.height()) / crop_.height()),
      scale_(float(std::sqrt(scaleX_ * scaleY_)))
{
    for (const PictureObject &object : request.objects) {
        placements_.push_back(place(object.rect));
        records_.emplace_back(object.glw);
    }
    // In pixels, whatever the real window's size is. An object may stand in the list twice. One
    // that begins outside of the window stays as it is: its negative origin would count from the
    // far edge.
    for (const PictureObject &object : request.objects)
        if (object.rect.x() >= 0 && object.rect.y() >= 0)
            object.glw->rect = object.rect;
}

/// Whole window pixels the way the window finds them: counted from the lower edge.
Drawing::Placement Drawing::place(const QRectF &rect) const
{
    const int height = int(rect.height());
    const int bottom = int(request_.window.height() - rect.height() - rect.y());
    Placement at;
    at.window =
        QRect(int(rect.x()), request_.window.height() - bottom - height, int(rect.width()), height);
    const auto x = [&](int v) { return int(std::lround((v - crop_.x()) * scaleX_)); };
    const auto y = [&](int v) { return int(std::lround((v - crop_.y()) * scaleY_)); };
    at.picture = QRect(QPoint(x(at.window.left()), y(at.window.top())),
                       QPoint(x(at.window.left() + at.window.width()) - 1,
                              y(at.window.top() + at.window.height()) - 1));
    return at;
}

bool Drawing::fitsViewport(const QRect &rect) const
{
    return rect.width() <= largestViewport_.width() && rect.height() <= largestViewport_.height();
}

int Drawing::overlap() const
{
    const QRect picture(QPoint(0, 0), request_.size);
    const auto fits = [&](const Placement &at) {
        return !at.picture.intersects(picture) || fitsViewport(at.picture);
    };
    if (std::all_of(placements_.begin(), placements_.end(), fits))
        return 0;
    return int(std::ceil(reach * std::max(scaleX_, scaleY_)));
}

void Drawing::draw(const QRect &block) const
{
    glLineWidth(scale_);
    glPointSize(scale_);
    for (std::size_t i = 0; i < request_.objects.size(); ++i)
        drawObject(request_.objects[i], placements_[i], block);
}

void Drawing::drawObject(const PictureObject &object, const Placement &at, const QRect &block) const
{
    const QRect visible = at.picture & block;
    if (visible.isEmpty() || at.window.width() < 2 || at.window.height() < 2)
        return;
    const QPoint lowerLeft(at.window.x(),
                           request_.window.height() - at.window.y() - at.window.height());
    const LocalMouse mouse(object.glw, lowerLeft);
    // Reaching beyond the block, the GL viewport keeps lines whole that end or run outside of it.
    // Where it cannot be as large, the block is a frustum of its own, which clips them.
    const QRect region = fitsViewport(at.picture) ? at.picture : visible;
    glViewport(region.x() - block.x(), block.height() - (region.y() - block.y()) - region.height(),
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

void Drawing::drawBackground(const PictureObject &object, const Placement &at,
                             const QRect &region) const
{
    constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(blockOf(identity, at.picture, region).data());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    object.background(object.glw, scale_);
}

void Drawing::draw3D(const PictureObject &object, const Placement &at, const QRect &region) const
{
    GL::Camera &camera = object.glw->camera;
    const Matrix whole = projection(camera, at.window.size());
    std::copy(whole.begin(), whole.end(), camera.proj_matrix);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(blockOf(whole, at.picture, region).data());
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

void Drawing::draw2D(const PictureObject &object, const Placement &at, const QRect &region) const
{
    const GL::Viewport &viewport = object.glw->viewport;
    const Matrix whole = projection(viewport, at.window.size());
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(blockOf(whole, at.picture, region).data());
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glScalef(viewport.scale.x, viewport.scale.y, viewport.scale.z);
    glTranslatef(-viewport.pos.x, -viewport.pos.y, -viewport.pos.z);
    object.draw2D(object.glw, scale_);
}

void Drawing::paintForegrounds(QImage &image) const
{
    for (std::size_t i = 0; i < request_.objects.size(); ++i) {
        const PictureObject &object = request_.objects[i];
        if (!object.foreground)
            continue;
        QPainter painter(&image);
        painter.scale(scaleX_, scaleY_);
        painter.translate(-crop_.topLeft());

        object.foreground(object.glw, &painter);
    }
}

} // namespace host
