// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SERIES_ITEM_H
#define HOST_ITEM_SERIES_ITEM_H

#include <memory>

#include <QCoreApplication>

#include "host/item/item.h"
#include "host/item/plot_steering.h"
#include "host/series/plot.h"

namespace host {

/// A table as curves over its first column, steered through the 2D viewport of its object.
class SeriesItem : public Item {
    Q_DECLARE_TR_FUNCTIONS(SeriesItem)
public:
    /// Expects a table.
    explicit SeriesItem(std::shared_ptr<const Table> table);

    QString name() const override { return table_->name; }
    QString details() const override;
    QString underPointer() const override { return {}; } // the crosshair tells
    quint64 count() const override { return table_->rows(); }
    quint64 byteSize() const override;
    bool paintsTitle() const override { return true; }
    void setTitled(bool titled) override;
    void setInsets(const QMarginsF &insets) override;

    Steering &steering() override { return steering_; }
    ItemState state(GLW *glw) override
    {
        return {glw->camera, steering_.wholeIn(), {}, plot_.state(glw), {}, {}};
    }
    void restore(GLW *glw, const ItemState &state) override
    {
        if (state.plot)
            steering_.setState(glw, *state.plot, !state.wholeIn.isEmpty());
    }
    void init(GLW *glw) override { steering_.fit(glw); }
    void release() override {}
    void draw2D(GLW *glw, const Display &display) override;
    void paintForeground(GLW *glw, QPainter *painter, const Display &display) override;
    QByteArray look(GLW *glw) const override;
    bool pick2D(GLW *glw, const std::optional<QPointF> &pointer) override;

    void selectArea2D(GLW *glw, const QRectF &area) override;
    void clearSelection() override { plot_.clearSelection(); }
    bool click(GLW *glw, const QPointF &at) override;

    const SeriesPlot &plot() const { return plot_; }

private:
    std::shared_ptr<const Table> table_;
    SeriesPlot plot_;
    PlotSteering steering_{plot_};
    std::optional<Sample> crosshair_;
};

} // namespace host

#endif
