// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_FRAME_BUDGET_H
#define HOST_VIEW_WINDOW_FRAME_BUDGET_H

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace host {

/// Frames of little moment, such as those that show how far the background has come, in a small
/// share of the processor time: others need the rest. They are not worth running the frame timer
/// for, whose every tick asks all that is shown whether it moves.
class FrameBudget : public QObject {
    Q_OBJECT
public:
    /// One part in @p share of the time goes into the frames, and a request waits @p gather
    /// milliseconds for others.
    explicit FrameBudget(QObject *parent, int share = 8, int gather = 150);

    void request(); ///< Asks for one frame in a little while; many requests are one.
    bool isPending() const { return soon_.isActive(); }
    void measure(); ///< Takes what a frame that was due costs. Expects to run in it.

signals:
    void due(); ///< The frame's time has come.

private:
    int share_, gather_;
    QTimer soon_{this};
    QElapsedTimer sinceDue_; // the last frame
    double begin_ = -1; // processor time at which the frame under way was due; -1: there is none
    double cost_ = 0;   // milliseconds of processor time, all threads together, of the last frame
};

} // namespace host

#endif
