// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_BINDINGS_LIST_H
#define HOST_VIEW_WINDOW_BINDINGS_LIST_H

#include <QFont>
#include <QRectF>
#include <QString>
#include <QVector>

#include "host/item/display.h"
#include "host/view/window/binding.h"

class QPainter;

namespace host {

/// Where the rows of the list of bindings lie: in as many columns as there is room for, in letters
/// of their full size. What does not fit is reached by another first row. Rectangles are in the
/// painter's pixels, y downwards.
struct BindingsLayout {
    struct Place {
        QRectF keys;
        QRectF text;
    };

    /// In the middle of @p bounds, from row @p first on, which counts as the greatest that is
    /// useful at most. A column that is too wide is wrapped; with no room for letters nothing is
    /// placed.
    BindingsLayout(const QRectF &bounds, const QFont &font, const QVector<BindingRow> &rows,
                   int first);

    QRectF panel;
    QRectF heading;
    int first = 0;         ///< The first row that is placed.
    int last = 0;          ///< The greatest useful first row: from there on all rows are placed.
    QVector<Place> places; ///< Of the rows from the first on.
};

/// Paints the list below @p heading. Returns the layout's greatest useful first row.
int paintBindings(QPainter *painter, const QRectF &bounds, const QString &heading,
                  const QVector<BindingRow> &rows, int first, const Theme &theme);

} // namespace host

#endif
