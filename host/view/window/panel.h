// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_PANEL_H
#define HOST_VIEW_WINDOW_PANEL_H

#include <QFont>
#include <QRectF>
#include <QString>

#include "host/item/display.h"

class QPainter;

namespace host {

/// Text on panels over the picture. Rectangles are in the painter's pixels, y downwards. Text that
/// does not fit its bounds is shortened; nothing is painted where no letter would fit.

/// A heading with a line of details below, in the corner of @p bounds that @p corner names. Either
/// may be empty. Returns the panel's rectangle, empty if there is none.
QRectF paintNote(QPainter *painter, const QRectF &bounds, Qt::Alignment corner,
                 const QString &heading, const QString &details, const Theme &theme);

/// A message in the middle of @p bounds, wrapped. @p fraction from 0 to 1 adds a bar, a negative
/// one none.
void paintMessage(QPainter *painter, const QRectF &bounds, const QString &heading,
                  const QString &details, double fraction, const Theme &theme);

/// The height that a note of @p lines lines takes from the edge of its bounds on.
double noteHeight(const QFont &font, int lines);

QFont bold(QFont font); ///< That font for headings.

/// The panel alone.
void paintPanel(QPainter *painter, const QRectF &r, const Theme &theme);

} // namespace host

#endif
