// SPDX-License-Identifier: MIT
#include "host/series/plot_brush.h"

#include <algorithm>
#include <cmath>

#include "host/series/plot_transform.h"

namespace host {
namespace {

constexpr double pi = 3.14159265358979;

} // namespace

void PlotVertices::add(const QPointF &pixel) const
{
    const QPointF point = PlotTransform::pixelToViewport(viewport_, size_, pixel);
    glVertex2d(point.x(), point.y());
}

void PlotVertices::drawRectangle(const QRectF &pixels) const
{
    glBegin(GL_TRIANGLE_FAN);
    add(pixels.topLeft());
    add(pixels.topRight());
    add(pixels.bottomRight());
    add(pixels.bottomLeft());
    glEnd();
}

void PlotVertices::clipTo(const QRectF &pixels) const
{
    const QPointF a = PlotTransform::pixelToViewport(viewport_, size_, pixels.topLeft());
    const QPointF b = PlotTransform::pixelToViewport(viewport_, size_, pixels.bottomRight());
    const double planes[4][4] = {{1, 0, 0, -std::min(a.x(), b.x())},
                                 {-1, 0, 0, std::max(a.x(), b.x())},
                                 {0, 1, 0, -std::min(a.y(), b.y())},
                                 {0, -1, 0, std::max(a.y(), b.y())}};
    for (GLenum i = 0; i < 4; ++i) {
        glClipPlane(GL_CLIP_PLANE0 + i, planes[i]);
        glEnable(GL_CLIP_PLANE0 + i);
    }
}

PlotBrush::PlotBrush(const PlotVertices &vertices, const SeriesStyle &style, double width,
                     double soft, double scale)
    : vertices_(vertices),
      color_(style.color),
      on_((style.pen == Qt::DashLine  ? 9
           : style.pen == Qt::DotLine ? 2
                                      : 0) *
          scale),
      off_((style.pen == Qt::DashLine ? 5 : 3) * scale),
      core_(std::max(0.0, (width - soft) / 2)),
      edge_((width + soft) / 2)
{
}

void PlotBrush::segment(const QPointF &a, const QPointF &b)
{
    const QPointF way = b - a;
    const double length = std::hypot(way.x(), way.y());
    if (length == 0)
        return;
    const QPointF normal(-way.y() / length, way.x() / length);
    const bool joined = a == end_;
    if (!joined)
        run_ = 0;
    if (on_ > 0)
        drawDashed(a, b, normal);
    else
        drawPiece(a, b, normal);
    if (joined && on_ == 0 && QPointF::dotProduct(normal, normal_) < 0.999)
        drawJoin(a, normal_, normal);
    end_ = b;
    normal_ = normal;
}

void PlotBrush::drawDashed(const QPointF &a, const QPointF &b, const QPointF &normal)
{
    const double length = std::hypot((b - a).x(), (b - a).y());
    const double period = on_ + off_;
    for (double start = -std::fmod(run_, period); start < length; start += period) {
        const double from = std::max(0.0, start) / length;
        const double to = std::min(length, start + on_) / length;
        if (from < to)
            drawPiece(a + from * (b - a), a + to * (b - a), normal);
    }
    run_ += length;
}

void PlotBrush::setAlpha(double alpha) const
{
    glColor4d(color_.redF(), color_.greenF(), color_.blueF(), alpha);
}

void PlotBrush::drawPiece(const QPointF &a, const QPointF &b, const QPointF &normal) const
{
    glBegin(GL_QUAD_STRIP);
    for (const double offset : {-edge_, -core_, core_, edge_}) {
        setAlpha(std::abs(offset) < edge_ ? 1 : 0);
        vertices_.add(a + offset * normal);
        vertices_.add(b + offset * normal);
    }
    glEnd();
}

// Fills the wedge between the ends of two segments with the normals `from` and `to`.
void PlotBrush::drawJoin(const QPointF &at, const QPointF &from, const QPointF &to) const
{
    for (const double side : {-1.0, 1.0}) {
        glBegin(GL_TRIANGLE_STRIP);
        setAlpha(1);
        vertices_.add(at);
        vertices_.add(at + side * core_ * from);
        vertices_.add(at + side * core_ * to);
        setAlpha(0);
        vertices_.add(at + side * edge_ * from);
        vertices_.add(at + side * edge_ * to);
        glEnd();
    }
}

void PlotBrush::dot(const QPointF &centre, double radius) const
{
    const int corners = 12;
    const double soft = edge_ - core_;
    glBegin(GL_QUAD_STRIP);
    for (const double distance : {std::max(0.0, radius - soft / 2), 0.0}) {
        const double outer = distance > 0 ? radius + soft / 2 : std::max(0.0, radius - soft / 2);
        for (int i = 0; i <= corners; ++i) {
            const QPointF way(std::cos(2 * pi * i / corners), std::sin(2 * pi * i / corners));
            setAlpha(distance > 0 ? 0 : 1);
            vertices_.add(centre + outer * way);
            setAlpha(1);
            vertices_.add(centre + distance * way);
        }
    }
    glEnd();
}

} // namespace host
