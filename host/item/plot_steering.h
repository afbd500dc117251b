// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_PLOT_STEERING_H
#define HOST_ITEM_PLOT_STEERING_H

#include <QSizeF>

#include "host/item/steering.h"
#include "host/series/plot.h"

namespace host {

/// Steers a plot through the 2D viewport of its object: every drag moves it.
class PlotSteering : public Steering {
public:
    /// @p plot outlives the steering.
    explicit PlotSteering(SeriesPlot &plot) : plot_(plot) {}

    /// From pixels as the steering takes them to those that a plot counts, from the top-left.
    static QPointF fromTop(const GLW *glw, const QPointF &at);

    bool advance(GLW *glw, double seconds) override;
    void fit(GLW *glw) override;
    void home(GLW *glw) override { fit(glw); }
    /// The axes moved within the object: what showed the whole is to do so again.
    void layoutChanged() { fittedSize_ = {}; }
    QSizeF wholeIn() const override { return showsWhole_ ? fittedSize_ : QSizeF(); }
    /// Shows what @p state says; all of the columns that it shows if @p whole.
    void setState(GLW *glw, const PlotState &state, bool whole);
    void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) override;
    void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) override;

private:
    SeriesPlot &plot_;
    QSizeF fittedSize_;
    bool showsWhole_ = true;
};

} // namespace host

#endif
