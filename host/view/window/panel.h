// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_PANEL_H
#define HOST_VIEW_WINDOW_PANEL_H

#include <QRectF>
#include <QString>
#include <QVector>

#include "host/item/display.h"
#include "host/view/window/binding.h"

class QPainter;

namespace host {

/// Text on panels over the picture. Rectangles are in the painter's frame, y downwards. Text that
/// does not fit its area is shortened; nothing is painted where no letter would fit.

/// A heading with a line of details below, in the corner of @p area that @p corner names. Either
/// may be empty. Returns the panel's rectangle, empty if there is none.
QRectF paintNote(QPainter *painter, const QRectF &area, Qt::Alignment corner,
                 const QString &heading, const QString &details, const Theme &theme);

/// A message in the middle of @p area, wrapped. @p fraction from 0 to 1 adds a bar, a negative one
/// none.
void paintMessage(QPainter *painter, const QRectF &area, const QString &heading,
                  const QString &details, double fraction, const Theme &theme);

/// The list of bindings in the middle of @p area, in as many columns as its height asks for.
void paintBindings(QPainter *painter, const QRectF &area, const QVector<BindingRow> &rows,
                   const Theme &theme);

} // namespace host

#endif
