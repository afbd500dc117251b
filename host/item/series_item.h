// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_SERIES_ITEM_H
#define HOST_ITEM_SERIES_ITEM_H

#include <memory>

#include "host/item/item.h"
#include "host/series/plot.h"

namespace host {

/// A table as curves over its first column, steered through the 2D viewport of its object.
class SeriesItem : public Item {
public:
    /// Expects a table.
    explicit SeriesItem(std::shared_ptr<const Table> table);

    QString name() const override { return table_->name; }
    QString details() const override;
    QString underPointer() const override { return {}; } // the crosshair tells
    quint64 count() const override { return table_->rows(); }
    quint64 byteSize() const override;
    bool paintsTitle() const override { return true; }
    void setTitled(bool titled) override { plot_.setTitled(titled); }

    void init(GLW *glw) override;
    void release() override {}
    void restoreView(GLW *, const GL::Camera &) override {}
    bool advance(GLW *glw, double seconds) override;
    void draw2D(GLW *glw, const Display &display) override;
    void paintForeground(GLW *glw, QPainter *painter, const Display &display) override;
    bool pick2D(GLW *glw, const std::optional<QPointF> &pointer) override;

    void range2D(QRectF *range) const override { *range = plot_.range2D(); }
    void nearestDataPos(GLW *glw, QVector3D *position) override;

    void fit(GLW *glw) override;
    void home(GLW *glw) override { fit(glw); }
    void drag(GLW *glw, Drag kind, const QPointF &from, const QPointF &to) override;
    void zoom(GLW *glw, const QPointF &at, float steps, Qt::KeyboardModifiers) override;
    void selectArea2D(GLW *glw, const QRectF &area) override;
    void clearSelection() override { plot_.clearSelection(); }
    bool click(GLW *glw, const QPointF &at) override;

    const SeriesPlot &plot() const { return plot_; }

private:
    std::shared_ptr<const Table> table_;
    SeriesPlot plot_;
    QSizeF fittedSize_;
    bool showsWhole_ = true;
    bool asked_ = false;             // the object asked for the nearest sample
    std::optional<QPointF> pointer_; // local pixels, y downwards
    std::optional<Sample> crosshair_;
};

} // namespace host

#endif
