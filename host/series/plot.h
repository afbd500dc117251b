// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_PLOT_H
#define HOST_SERIES_PLOT_H

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include <QCoreApplication>
#include <QPointF>
#include <QRectF>

#include "GL/glw.h"
#include "host/series/palette.h"
#include "host/series/plot_layout.h"
#include "host/series/plot_transform.h"
#include "host/series/selection.h"
#include "host/series/table.h"

class QPainter;

namespace host {

struct PlotPicture;

/// What a person has chosen of a plot, as a value that may outlive it.
struct PlotState {
    QRectF range;              ///< The data shown, as SeriesPlot::range2D().
    std::vector<bool> enabled; ///< One per column.
};

/// The plot of a table in a scene object or a tile: lines in its Draw2D, texts in its
/// PaintForeground, and the moves of a hand in between.
///
/// The view itself is the object's `viewport`, so a plot goes with one object at a time; several
/// plots may share a table. Every GLW is used during the call only.
/// Coordinate frames: data, viewport and pixels as PlotTransform says: "local pixels" count from
/// the top-left corner of the object's rectangle, y downwards; a mouse record that was shifted into
/// the object has the height minus that y.
class SeriesPlot {
    Q_DECLARE_TR_FUNCTIONS(SeriesPlot)
public:
    explicit SeriesPlot(std::shared_ptr<const Table> table); ///< Expects a table.

    const Table &table() const { return *table_; }

    void setTheme(PlotTheme theme) { theme_ = theme; }
    PlotTheme theme() const { return theme_; }
    /// Whether draw2D() fills the rectangle with the theme's background; without, what was drawn
    /// before shows through, as a transparent picture needs.
    void setBackground(bool filled) { filled_ = filled; }
    /// Title, insets and scale. What is shown stays where it is until the next fit().
    void setOptions(const PlotOptions &options) { options_ = options; }
    const PlotOptions &options() const { return options_; }

    bool enabled(int column) const; ///< False for a column that does not exist.
    /// Shows or hides it, and counts the selection anew. Nothing for a column that does not exist.
    void toggle(int column);

    /// The data of the enabled columns: top() is the highest value and the height is not positive.
    /// Without a value, y goes from 0 to 1.
    QRectF range2D() const;

    // The view. See PlotTransform for limits and degenerate cases.
    void fit(GLW *glw, const QRectF &range);   ///< Fills the area inside the axes with @p range.
    QRectF visibleRange(const GLW *glw) const; ///< The data range of the area, as range2D().
    void panBy(GLW *glw, const QPointF &pixels);
    void zoomAbout(GLW *glw, const QPointF &local, double factorX, double factorY);
    QPointF toLocal(const GLW *glw, const QPointF &data) const;
    QPointF toData(const GLW *glw, const QPointF &local) const;

    PlotState state(const GLW *glw) const;
    /// Shows what @p state says, in a rectangle of any size; columns that it does not know of are
    /// shown. A range without a width fits the data.
    void restore(GLW *glw, const PlotState &state);

    /// The sample of the enabled columns nearest to a point in local pixels, if one is closer than
    /// @p within pixels.
    std::optional<Sample> nearest(const GLW *glw, const QPointF &local,
                                  double within = std::numeric_limits<double>::infinity()) const;
    /// Marks a sample and writes its values; nothing removes the mark. It is shown while the sample
    /// is in the area and its column is enabled.
    void setCrosshair(const std::optional<Sample> &sample) { crosshair_ = sample; }

    /// Takes a click: an entry of the legend or of the list toggles its column, the legend's last
    /// word ("+25 more") opens and closes the list of all columns, and a click beside the list
    /// closes it. Returns whether it had a use for the click.
    bool click(const GLW *glw, const QPointF &local);
    /// Scrolls the list, up for positive steps. Returns false when none is open under @p local.
    bool scrollList(const GLW *glw, const QPointF &local, double steps);
    bool isListOpen() const { return listRow_.has_value(); }
    void closeList() { listRow_.reset(); }

    /// Selects the samples of the enabled columns inside a rectangle of local pixels, edges
    /// included, in the place of any other selection. They stay highlighted while the view moves;
    /// those of columns that are hidden later no longer count.
    const Selection &select(const GLW *glw, const QRectF &local);
    void clearSelection() { selection_ = {}; }
    const Selection &selection() const { return selection_; }

    /// Draws background, grid and lines. Expects a current context without a shader program, the
    /// GL viewport of the object and the matrices of its `viewport`; any other state will do and is
    /// left as found. On a GL viewport larger than the object, lines are as fine as its pixels.
    void draw2D(GLW *glw) const;

    /// Writes title, legend, tick labels, selection, crosshair and list. Expects a painter on the
    /// window; leaves its state as found.
    void paintForeground(GLW *glw, QPainter *painter) const;

private:
    PlotLayout layout(const GLW *glw) const;
    PlotPicture picture(const GLW *glw) const;
    void countSelection(const QRectF &range);

    std::shared_ptr<const Table> table_;
    std::vector<bool> enabled_;
    PlotTransform transform_;
    PlotTheme theme_ = PlotTheme::Light;
    bool filled_ = true;
    PlotOptions options_;
    std::optional<Sample> crosshair_;
    std::optional<double> listRow_; // the first row of the list that is seen; nothing while closed
    Selection selection_;
};

} // namespace host

#endif
