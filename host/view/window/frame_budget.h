// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_FRAME_BUDGET_H
#define HOST_VIEW_WINDOW_FRAME_BUDGET_H

#include <QObject>
#include <QTimer>

class QWidget;

namespace host {

/// Frames that show how far the background has come, in a small share of the processor time: the
/// readers need the rest. Progress is not worth running the frame timer for, whose every tick
/// clears the window.
class FrameBudget : public QObject {
    Q_OBJECT
public:
    explicit FrameBudget(QObject *parent);

    void request(); ///< Asks for one frame in a little while; many requests are one.
    bool isPending() const { return soon_.isActive(); }
    void measure(); ///< Takes what a frame that was due costs. Expects to run in it.

signals:
    void due(); ///< The frame's time has come.

private:
    QTimer soon_;
    qint64 begin_ = -1; // processor time at which the frame under way was due; -1: there is none
    qint64 cost_ = 0;   // milliseconds of processor time, all threads together, of the last frame
};

} // namespace host

#endif
