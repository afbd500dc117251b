// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_LATE_CLEAR_H
#define HOST_VIEW_WINDOW_LATE_CLEAR_H

#include <QPointer>

#include "GL/glwindowbase.h"

class QEvent;

namespace host {

/// Spares the window the clearing that begins each of its ticks, also of those that draw nothing:
/// for a view that fills the window, and clears the depths itself once it draws. The module clears
/// depths without the stencils that lie among them, for which software GL reads and writes each
/// sample; both together are only written.
class LateClear {
public:
    explicit LateClear(GLWindow *window) : window_(window) {}
    ~LateClear() { end(); }
    LateClear(const LateClear &) = delete;
    LateClear &operator=(const LateClear &) = delete;

    static bool isDue(const QEvent &event); ///< A window that takes it begins a tick.
    /// What the window clears now stays: its context is current, its colours and depths are masked.
    void begin();
    /// All can be cleared and drawn again: in the first pass of the tick, and before anything else
    /// is drawn, as a tick may end without any pass. Then the context is current and no mask is
    /// left.
    void end();

    /// Clears all depths and stencils of what is drawn into. Leaves GL state as it was.
    static void clearDepths();

private:
    QPointer<GLWindow> window_;
    bool on_ = false;
};

} // namespace host

#endif
