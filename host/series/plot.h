// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_H
#define HOST_SERIES_PLOT_H

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include <QPointF>
#include <QRectF>
#include <QVector3D>

#include "GL/glw.h"
#include "host/series/decimate.h"
#include "host/series/palette.h"
#include "host/series/plot_frame.h"
#include "host/series/plot_layout.h"
#include "host/series/table.h"
#include "host/series/ticks.h"

class QPainter;

namespace host {

class PlotBrush;
class PlotVertices;

/// One value of one column.
struct Sample {
    int column;
    std::size_t row;
    double x;
    double y;
};

/// What an area selection holds.
struct Selection {
    std::vector<std::size_t> counts; ///< Samples per column; 0 for hidden ones.
    std::size_t total = 0;
};

/// The plot of a table in a scene object or a tile: lines in its Draw2D, texts in its
/// PaintForeground, and the moves of a hand in between.
///
/// The view itself is the object's `viewport`, so a plot goes with one object at a time; several
/// plots may share a table. Every GLW is used during the call only.
/// Frames: data, viewport and pixels as PlotFrame says: "local pixels" count from the top-left
/// corner of the object's rectangle, y downwards; a mouse record that was shifted into the object
/// has the height minus that y.
class SeriesPlot {
public:
    explicit SeriesPlot(std::shared_ptr<const Table> table); ///< Expects a table.

    const Table &table() const { return *table_; }

    void setTheme(PlotTheme theme) { theme_ = theme; }
    PlotTheme theme() const { return theme_; }
    /// Whether draw2D() fills the rectangle with the theme's background; without, what was drawn
    /// before shows through, as a transparent picture needs.
    void setBackground(bool filled) { filled_ = filled; }

    /// Whether the table's name stands over the plot.
    void setTitled(bool titled) { titled_ = titled; }

    bool enabled(int column) const; ///< False for a column that does not exist.
    void toggle(int column); ///< Shows or hides it. Nothing for a column that does not exist.

    /// The data of the enabled columns: top() is the highest value and the height is not positive.
    /// Without a value, y goes from 0 to 1.
    QRectF range2D() const;

    // The view. See PlotFrame for limits and degenerate cases.
    void fit(GLW *glw, const QRectF &range); ///< Fills the area inside the axes with @p range.
    void fitAll(GLW *glw);                   ///< Fits range2D() with a little air above and below.
    QRectF visibleRange(const GLW *glw) const; ///< The data range of the area, as range2D().
    void panBy(GLW *glw, const QPointF &pixels);
    void zoomAbout(GLW *glw, const QPointF &local, double factorX, double factorY);
    QPointF toLocal(const GLW *glw, const QPointF &data) const;
    QPointF toData(const GLW *glw, const QPointF &local) const;

    /// The sample of the enabled columns nearest to a point in local pixels, if one is closer than
    /// @p within pixels.
    std::optional<Sample> nearest(const GLW *glw, const QPointF &local,
                                  double within = std::numeric_limits<double>::infinity()) const;
    /// The position in viewport coordinates of the sample nearest to @p position, as the
    /// NearestDataPos signal asks for it; @p position itself when there is no sample.
    QVector3D nearestPosition(const GLW *glw, const QVector3D &position) const;
    /// Marks a sample and writes its values; nothing removes the mark. It is shown while the sample
    /// is in the area and its column is enabled.
    void setCrosshair(const std::optional<Sample> &sample) { crosshair_ = sample; }

    /// The column whose legend entry holds the local pixel, or -1.
    int legendHit(const GLW *glw, const QPointF &local) const;

    /// Selects the samples of the enabled columns inside a rectangle of local pixels, edges
    /// included, in the place of any other selection. They stay highlighted while the view moves.
    const Selection &select(const GLW *glw, const QRectF &local);
    void clearSelection();
    const Selection &selection() const { return selection_; }
    /// The selected samples, column by column; at most @p most of them.
    std::vector<Sample> selectedSamples(std::size_t most) const;

    /// Draws background, grid and lines. Expects a current context without a shader program, the
    /// GL viewport of the object and the matrices of its `viewport`; any other state will do and is
    /// left as found. On a GL viewport larger than the object, lines are as fine as its pixels.
    void draw2D(GLW *glw) const;

    /// Writes title, legend, tick labels, selection and crosshair. Expects a painter on the window;
    /// leaves its state as found.
    void paintForeground(GLW *glw, QPainter *painter) const;

private:
    /// What both passes need to know of one object at one moment.
    struct Picture {
        QSize size;
        PlotLayout layout;
        QRectF range; // low x to high x, low y to high y: normalized
        std::vector<Tick> xTicks;
        std::vector<Tick> yTicks;
    };
    Picture picture(const GLW *glw) const;

    // Drawing; pixels are local.
    struct Canvas {
        const GLW *glw;
        const Picture &picture;
        const PlotVertices &vertices;
        double detail; // device pixels per pixel
    };
    void drawBackground(const Canvas &canvas) const;
    void drawGrid(const Canvas &canvas) const;
    void drawColumns(const Canvas &canvas, const std::vector<bool> &shown, double width) const;
    void drawLine(const Canvas &canvas, const Polyline &line, PlotBrush &brush) const;
    void drawDots(const Canvas &canvas, const Polyline &line, const PlotBrush &brush,
                  double radius) const;
    void drawSelection(const Canvas &canvas) const;

    void paintTitle(QPainter &painter, const Picture &picture) const;
    void paintLegend(QPainter &painter, const Picture &picture) const;
    void paintXAxis(QPainter &painter, const Picture &picture, const GLW *glw) const;
    void paintYAxis(QPainter &painter, const Picture &picture, const GLW *glw) const;
    void paintSelection(QPainter &painter, const Picture &picture) const;
    void paintCrosshair(QPainter &painter, const Picture &picture, const GLW *glw) const;

    QRectF selectedPixels(const GLW *glw) const;
    template <class Visit> void visitSelected(Visit visit) const;

    std::shared_ptr<const Table> table_;
    std::vector<bool> enabled_;
    PlotFrame frame_;
    PlotTheme theme_ = PlotTheme::Light;
    bool filled_ = true;
    bool titled_ = true;
    std::optional<Sample> crosshair_;
    std::optional<QRectF> selected_; // data, normalized
    std::vector<bool> selectedColumns_;
    Selection selection_;
};

} // namespace host

#endif
