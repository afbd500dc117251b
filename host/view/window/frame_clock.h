// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_FRAME_CLOCK_H
#define HOST_VIEW_WINDOW_FRAME_CLOCK_H

#include <functional>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace host {

/// Runs a window's frame timer only while something goes on, so that an idle window costs nothing.
///
/// The window draws only frames that are asked for (its property "timer" is false). Input wakes its
/// timer, and so does touch(); a while after the last of them the timer stops. A pointer that only
/// wanders over the window needs fewer ticks, until something comes of it: each one asks all that
/// is shown whether it moves.
class FrameClock : public QObject {
    Q_OBJECT
public:
    /// @p rate in frames per second; it rests @p restAfter milliseconds after the last touch.
    /// Expects @p window to outlive its last event only.
    FrameClock(QWidget *window, float rate, QObject *parent, int restAfter = 500);

    /// Tells what @p seconds returns as the time from then on, in place of a steady clock's.
    void setTime(std::function<double()> seconds) { time_ = std::move(seconds); }
    /// The time in seconds; only differences say anything.
    double seconds() const { return time_(); }

    static constexpr float lookRate = 12; ///< At most so many ticks a second for a pointer alone.
    /// As many of them instead; nothing: the usual number again.
    void setLookRate(float rate = lookRate) { lookRate_ = rate; }

    void touch();        ///< Keeps the timer running for a while.
    void requestFrame(); ///< Lets the next tick draw.

    bool isContinuous() const { return continuous_; }
    /// Draws every frame, needed or not, and shows their rate in the window.
    void setContinuous(bool on);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void look();
    void run(float rate);
    void rest();

    QPointer<QWidget> window_;
    std::function<double()> time_;
    float rate_;
    float lookRate_ = lookRate;
    float running_ = 0;     // the window's rate; 0 while it rests
    QElapsedTimer touched_; // since then at the full rate; invalid while it rests
    bool continuous_ = false;
    QTimer restTimeout_;
};

} // namespace host

#endif
