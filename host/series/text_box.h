// SPDX-License-Identifier: MIT
#ifndef HOST_SERIES_TEXT_BOX_H
#define HOST_SERIES_TEXT_BOX_H

#include <optional>
#include <vector>

#include <QFont>
#include <QPen>
#include <QRectF>
#include <QString>

#include "host/series/palette.h"

class QPainter;

namespace host {

/// A line of text with the style of the column it speaks of.
struct BoxLine {
    QString text;
    std::optional<SeriesStyle> style;
    bool bold = false;
};

/// The pen that paints a column's line beside its name; lines are @p scale times as wide.
QPen penOf(const SeriesStyle &style, double scale);

QColor faded(QColor color, double alpha); ///< @p color with @p alpha, 0 to 1.

/// The size of a box of @p lines. Everything in it is @p scale times as large as usual; @p font is
/// already.
QSizeF boxSize(const std::vector<BoxLine> &lines, const QFont &font, double scale);

/// A place for a box beside @p point, on the side where there is room in @p area.
QRectF placeBox(const QPointF &point, const QSizeF &size, const QRectF &area, double scale);

/// Paints the frame and the ground of a box.
void paintPanel(QPainter &painter, const QRectF &box, const PlotColors &colors);

/// Paints a box of text.
void paintBox(QPainter &painter, const QRectF &box, const std::vector<BoxLine> &lines,
              const QFont &font, const PlotColors &colors, double scale);

} // namespace host

#endif
