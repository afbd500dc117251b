// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_AREA_SELECTION_H
#define HOST_VIEW_AREA_SELECTION_H

#include <QColor>
#include <QRectF>

#include "GL/glw.h"

class QPainter;

namespace host {

class Window;

/// The rectangle that a person drags, in window pixels, y upwards. The record must be the window's:
/// not shifted into an object.
QRectF draggedArea(const Mouse &mouse);

/// The area that a person drags over a view: a rectangle that the window's mouse record holds. Once
/// the drag ends, the passes of the next frame take what it holds; then it is over.
class AreaSelection {
public:
    explicit AreaSelection(Window &window) : window_(window) {}

    /// @p through: it takes what is covered as well.
    void dragEnded(bool through)
    {
        taking_ = true;
        through_ = through;
    }
    /// Whether the passes that run now, or come next, take what the area holds.
    bool isTaking() const { return taking_; }
    bool goesThrough() const { return through_; }
    /// The area in pixels of @p glw, y upwards, while a pass runs.
    QRectF areaIn(const GLW *glw) const;

    /// Shows the area while it is dragged. The painter is the window's, y downwards.
    void paint(QPainter *painter, QColor colour) const;

    /// Ends the taking. Returns the area in window pixels, y upwards.
    QRectF finish();

private:
    Window &window_;
    bool taking_ = false;
    bool through_ = false;
};

} // namespace host

#endif
