// SPDX-License-Identifier: MIT
// The OpenGL half of a plot.
#include "host/series/plot_picture.h"

#include <algorithm>
#include <cmath>

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include "host/series/decimate.h"
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

/// What the drawing functions share. Pixels are local.
struct Canvas {
    const PlotPicture &picture;
    const PlotVertices &vertices;
    double detail; // device pixels per pixel

    PlotColors colors() const { return plotColors(picture.theme); }
    double scale() const { return picture.layout.scale; }
    /// The area, and around it what a line that ends outside may still colour.
    QRectF nearArea() const
    {
        const double most = 8 * scale();
        return picture.layout.area.adjusted(-most, -most, most, most);
    }
};

void drawBackground(const Canvas &canvas)
{
    if (!canvas.picture.filled)
        return;
    setColor(canvas.colors().background);
    canvas.vertices.drawRectangle(QRectF(QPointF(0, 0), canvas.picture.size));
}

void drawGrid(const Canvas &canvas)
{
    if (!canvas.picture.layout.axes)
        return;
    const QRectF &area = canvas.picture.layout.area;
    const auto crisp = [](double pixel) { return std::floor(pixel) + 0.5; };
    glLineWidth(float(canvas.detail * canvas.scale()));
    setColor(canvas.colors().grid);
    const auto addSegment = [&canvas](const QPointF &a, const QPointF &b) {
        canvas.vertices.add(a);
        canvas.vertices.add(b);
    };
    glBegin(GL_LINES);
    for (const Tick &tick : canvas.picture.xTicks) {
        const double x = crisp(canvas.picture.toLocal({tick.value, 0}).x());
        addSegment({x, area.top()}, {x, area.bottom()});
    }
    for (const Tick &tick : canvas.picture.yTicks) {
        const double y = crisp(canvas.picture.toLocal({0, tick.value}).y());
        addSegment({area.left(), y}, {area.right(), y});
    }
    setColor(canvas.colors().axis);
    const double bottom = crisp(area.bottom());
    addSegment({area.left(), bottom}, {area.right(), bottom});
    glEnd();
}

void drawLine(const Canvas &canvas, const Polyline &line, PlotBrush &brush)
{
    const QRectF near = canvas.nearArea();
    const double shortest = 0.2 / canvas.detail; // pixels; what is shorter adds nothing
    for (std::size_t strip = 0; strip < line.strips(); ++strip) {
        const std::size_t first = line.starts[strip];
        const std::size_t last = line.end(strip);
        QPointF from = canvas.picture.toLocal(line.points[first]);
        if (last - first == 1 && near.contains(from))
            brush.dot(from, 1.5 * canvas.scale()); // a line of one point would not be seen
        for (std::size_t i = first + 1; i < last; ++i) {
            const QPointF to = canvas.picture.toLocal(line.points[i]);
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

void drawDots(const Canvas &canvas, const Polyline &line, const PlotBrush &brush, double radius)
{
    const QRectF near = canvas.nearArea();
    for (const QPointF &point : line.points) {
        const QPointF pixel = canvas.picture.toLocal(point);
        if (near.contains(pixel))
            brush.dot(pixel, radius);
    }
}

void drawColumns(const Canvas &canvas, double width)
{
    const PlotPicture &picture = canvas.picture;
    const QRectF &range = picture.range;
    const QSizeF scale = picture.transform.scale(picture.viewport, picture.size);
    const int columns = int(std::ceil(picture.layout.area.width() * canvas.detail));
    for (std::size_t i = 0; i < picture.enabled.size(); ++i) {
        if (!picture.enabled[i])
            continue;
        const Polyline line =
            decimate(picture.table, picture.table.columns[i], range.left(), range.right(), columns);
        PlotBrush brush(canvas.vertices, seriesStyle(int(i), picture.theme), width,
                        1 / canvas.detail, canvas.scale());
        drawLine(canvas, line, brush);
        const double pixelsPerPoint =
            range.width() * scale.width() / double(line.points.size() + 1);
        if (pixelsPerPoint > 8 * canvas.scale())
            drawDots(canvas, line, brush, width * 1.5);
    }
}

// Veils the area and draws the columns again, thicker, in the rectangle alone.
void drawSelection(const Canvas &canvas)
{
    if (!canvas.picture.selection.range)
        return;
    const QRectF shown = canvas.picture.selectedPixels() & canvas.picture.layout.area;
    if (shown.isEmpty())
        return;
    const PlotColors colors = canvas.colors();
    if (canvas.picture.filled) {
        setColor(colors.background, 0.6);
        canvas.vertices.drawRectangle(canvas.picture.layout.area);
    }
    canvas.vertices.clipTo(shown);
    setColor(colors.text, 0.06);
    canvas.vertices.drawRectangle(shown);
    drawColumns(canvas, (canvas.picture.layout.small ? 2 : 2.6) * canvas.scale());
    glLineWidth(float(canvas.detail * canvas.scale()));
    setColor(colors.text, 0.6);
    const QRectF edge = shown.adjusted(0.5, 0.5, -0.5, -0.5);
    glBegin(GL_LINE_LOOP);
    for (const QPointF &corner :
         {edge.topLeft(), edge.topRight(), edge.bottomRight(), edge.bottomLeft()})
        canvas.vertices.add(corner);
    glEnd();
}

} // namespace

void drawPlot(const PlotPicture &picture)
{
    GLint target[4];
    glGetIntegerv(GL_VIEWPORT, target);
    const PlotVertices vertices(picture.viewport, picture.size);
    const Canvas canvas{picture, vertices, std::max(1.0, double(target[2]) / picture.size.width())};
    glPushAttrib(GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT | GL_ENABLE_BIT | GL_LIGHTING_BIT |
                 GL_LINE_BIT | GL_POLYGON_BIT | GL_TRANSFORM_BIT);
    setState();
    drawBackground(canvas);
    drawGrid(canvas);
    vertices.clipTo(picture.layout.area);
    drawColumns(canvas, (picture.layout.small ? 1.2 : 1.6) * canvas.scale());
    drawSelection(canvas);
    glPopAttrib();
}

} // namespace host
