// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_SHEET_TILE_PAINTER_H
#define HOST_VIEW_SHEET_TILE_PAINTER_H

#include <QHash>
#include <QRectF>
#include <QStaticText>

#include "host/item/display.h"
#include "host/view/sheet/sheet_entry.h"

class QPainter;

namespace host {

/// Paints what stands around and over the tiles of a sheet: names, progress, reasons, borders.
///
/// Pixels are the window's, y downwards. Texts are laid out once for a width and kept:
/// a sheet has hundreds, and most stay as they are from frame to frame.
class TilePainter {
public:
    static int header(); ///< Pixels for the name above the drawing.

    struct Marks {
        bool selected = false, hovered = false, linked = false;
    };

    /// Where a tile stands. There is a name only where the drawing leaves room for it.
    struct Place {
        QRectF cell; ///< All of it.
        QRectF drawing;
    };
    void paint(QPainter *painter, int id, const SheetEntry &entry, const Place &place,
               const Marks &marks, const Theme &theme);
    /// The name of a tile that is cut in its header, whole, over the tiles beside it but inside of
    /// @p bounds. Nothing if it is not cut.
    static void paintWholeName(QPainter *painter, const QString &name, const QRectF &cell,
                               bool linked, const QRectF &bounds, const Theme &theme);
    void forget(int id); ///< Drops the texts of a tile that is gone.

private:
    struct Laid {
        QString text;
        double width = -1;
        QStaticText laid;
    };

    void paintHeader(QPainter *painter, int id, const SheetEntry &entry, const QRectF &cell,
                     bool linked, const Theme &theme);
    void paintState(QPainter *painter, int id, const SheetEntry &entry, const QRectF &bounds,
                    const Theme &theme);

    QHash<int, Laid> names_;
    QHash<int, Laid> reasons_;
};

} // namespace host

#endif
