// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_MEASURE_PAINT_H
#define HOST_VIEW_MEASURE_PAINT_H

#include <QRectF>

#include "host/measure/measurement.h"
#include "host/view/measure_sight.h"

class QPainter;

namespace host {

/// Paints measurements over the picture of a GLW: their lines and marks, and a label for each
/// within @p bounds. What is out of sight has no label. The painter is in the window's pixels, y
/// downwards.
class MeasurePaint {
public:
    MeasurePaint(QPainter *painter, const ModelItem &item, const GLW *glw, const Theme &theme);

    void measurements(const std::vector<Measurement> &all, const QRectF &bounds);
    /// What was clicked so far; places in the file's frame.
    void pending(const std::vector<Vec> &places);
    /// What the next click takes: a square at a vertex, a triangle on an edge, a ring on a face.
    void snap(const Snap &snap);

private:
    QPointF toWindow(const QPointF &pixel) const;
    std::optional<QLineF> lineOf(const Vec &a, const Vec &b) const;
    void stroke(const std::vector<QLineF> &wanted);
    void dot(const Vec &place);
    std::optional<QPointF> anchorOf(const Measurement &m, const QRectF &bounds) const;
    void label(const Measurement &m, const QPointF &anchor, const QRectF &r);
    QSizeF sizeOf(const Measurement &m) const;

    QPainter *painter_;
    const ModelItem &item_;
    const GLW *glw_;
    Theme theme_;
    MeasureSight sight_;
    QFont plain_, strong_;
};

} // namespace host

#endif
