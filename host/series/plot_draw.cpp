// SPDX-License-Identifier: MIT
// The OpenGL half of a plot.
#include "host/series/plot.h"

#include <algorithm>
#include <cmath>

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include "host/series/line_clip.h"
#include "host/series/plot_brush.h"

namespace host {
namespace {

void setColor(const QColor &color, double alpha = 1)
{
    glColor4d(color.redF(), color.greenF(), color.blueF(), alpha);
}

void setState()
{
    for (const GLenum off : {GL_LIGHTING, GL_DEPTH_TEST, GL_CULL_FACE, GL_TEXTURE_2D, GL_FOG,
                             GL_ALPHA_TEST, GL_STENCIL_TEST, GL_COLOR_LOGIC_OP, GL_LINE_SMOOTH,
                             GL_LINE_STIPPLE, GL_POLYGON_SMOOTH, GL_POLYGON_STIPPLE})
        glDisable(off);
    glEnable(GL_BLEND);
    glShadeModel(GL_SMOOTH);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL); // a host may have left wireframe on
    // Keeps the alpha of a transparent picture right: the colours there are premultiplied.
    QOpenGLContext::currentContext()->functions()->glBlendFuncSeparate(
        GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

} // namespace

void SeriesPlot::draw2D(GLW *glw) const
{
    const Picture now = picture(glw);
    if (now.size.isEmpty())
        return;
    GLint target[4];
    glGetIntegerv(GL_VIEWPORT, target);
    const PlotVertices vertices(glw->viewport, now.size);
    const Canvas canvas{glw, now, vertices, std::max(1.0, double(target[2]) / now.size.width())};
    glPushAttrib(GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_ENABLE_BIT | GL_LIGHTING_BIT |
                 GL_LINE_BIT | GL_POLYGON_BIT | GL_TRANSFORM_BIT);
    setState();
    drawBackground(canvas);
    drawGrid(canvas);
    vertices.clipTo(now.layout.area);
    drawColumns(canvas, enabled_, now.layout.small ? 1.2 : 1.6);
    drawSelection(canvas);
    glPopAttrib();
}

void SeriesPlot::drawBackground(const Canvas &canvas) const
{
    if (!filled_)
        return;
    setColor(plotColors(theme_).background);
    canvas.vertices.drawRectangle(QRectF(QPointF(0, 0), canvas.picture.size));
}

void SeriesPlot::drawGrid(const Canvas &canvas) const
{
    if (!canvas.picture.layout.axes)
        return;
    const QRectF &area = canvas.picture.layout.area;
    const auto crisp = [](double pixel) { return std::floor(pixel) + 0.5; };
    glLineWidth(float(canvas.detail));
    setColor(plotColors(theme_).grid);
    const auto addSegment = [&canvas](const QPointF &a, const QPointF &b) {
        canvas.vertices.add(a);
        canvas.vertices.add(b);
    };
    glBegin(GL_LINES);
    for (const Tick &tick : canvas.picture.xTicks) {
        const double x = crisp(toLocal(canvas.glw, {tick.value, 0}).x());
        addSegment({x, area.top()}, {x, area.bottom()});
    }
    for (const Tick &tick : canvas.picture.yTicks) {
        const double y = crisp(toLocal(canvas.glw, {0, tick.value}).y());
        addSegment({area.left(), y}, {area.right(), y});
    }
    setColor(plotColors(theme_).axis);
    const double bottom = crisp(area.bottom());
    addSegment({area.left(), bottom}, {area.right(), bottom});
    glEnd();
}

void SeriesPlot::drawColumns(const Canvas &canvas, const std::vector<bool> &shown,
                             double width) const
{
    const QRectF &range = canvas.picture.range;
    const QSizeF scale = frame_.scale(canvas.glw->viewport, canvas.picture.size);
    const int columns = int(std::ceil(canvas.picture.layout.area.width() * canvas.detail));
    for (std::size_t i = 0; i < enabled_.size(); ++i) {
        if (!enabled_[i] || !shown[i])
            continue;
        const SeriesStyle style = seriesStyle(int(i), theme_);
        const Polyline line =
            decimate(*table_, table_->columns[i], range.left(), range.right(), columns);
        PlotBrush brush(canvas.vertices, style.color, style.pen, width, 1 / canvas.detail);
        drawLine(canvas, line, brush);
        const double pixelsPerPoint =
            range.width() * scale.width() / double(line.points.size() + 1);
        if (pixelsPerPoint > 8)
            drawDots(canvas, line, brush, width * 1.5);
    }
}

void SeriesPlot::drawLine(const Canvas &canvas, const Polyline &line, PlotBrush &brush) const
{
    const QRectF near = canvas.picture.layout.area.adjusted(-8, -8, 8, 8);
    const double shortest = 0.2 / canvas.detail; // pixels; what is shorter adds nothing
    for (std::size_t strip = 0; strip < line.strips(); ++strip) {
        const std::size_t first = line.starts[strip];
        const std::size_t last = line.end(strip);
        QPointF from = toLocal(canvas.glw, line.points[first]);
        if (last - first == 1 && near.contains(from))
            brush.dot(from, 1.5); // a line of one point would not be seen
        for (std::size_t i = first + 1; i < last; ++i) {
            const QPointF to = toLocal(canvas.glw, line.points[i]);
            if (i + 1 < last && (to - from).manhattanLength() < shortest)
                continue;
            QPointF a = from;
            QPointF b = to;
            if (clipSegment(near, a, b))
                brush.segment(a, b);
            from = to;
        }
    }
}

void SeriesPlot::drawDots(const Canvas &canvas, const Polyline &line, const PlotBrush &brush,
                          double radius) const
{
    const QRectF near = canvas.picture.layout.area.adjusted(-8, -8, 8, 8);
    for (const QPointF &point : line.points) {
        const QPointF pixel = toLocal(canvas.glw, point);
        if (near.contains(pixel))
            brush.dot(pixel, radius);
    }
}

// Veils the area and draws the selected columns again, thicker, in the rectangle alone.
void SeriesPlot::drawSelection(const Canvas &canvas) const
{
    if (!selected_)
        return;
    const QRectF pixels = selectedPixels(canvas.glw);
    const QRectF shown = pixels & canvas.picture.layout.area;
    if (shown.isEmpty())
        return;
    const PlotColors colors = plotColors(theme_);
    if (filled_) {
        setColor(colors.background, 0.6);
        canvas.vertices.drawRectangle(canvas.picture.layout.area);
    }
    canvas.vertices.clipTo(shown);
    setColor(colors.text, 0.06);
    canvas.vertices.drawRectangle(shown);
    drawColumns(canvas, selectedColumns_, canvas.picture.layout.small ? 2 : 2.6);
    glLineWidth(float(canvas.detail));
    setColor(colors.text, 0.6);
    const QRectF edge = shown.adjusted(0.5, 0.5, -0.5, -0.5);
    glBegin(GL_LINE_LOOP);
    for (const QPointF &corner :
         {edge.topLeft(), edge.topRight(), edge.bottomRight(), edge.bottomLeft()})
        canvas.vertices.add(corner);
    glEnd();
}

} // namespace host
