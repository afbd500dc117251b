// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_WINDOW_REFINEMENT_H
#define HOST_VIEW_WINDOW_REFINEMENT_H

#include <functional>
#include <memory>
#include <optional>

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QWidget>

namespace host {

/// Smooths what stays as it is. Once no frame was drawn for a moment, a few more are, each with
/// what is to be smoothed shifted by another part of a pixel, and the window shows the mean of
/// these; then nothing is drawn any more. Any other frame is plain, and after it all begins anew.
///
/// The mean is that of the whole window, so that many objects in it cost no more than one. Where
/// OpenGL lacks what it takes, or time runs out, what is shown stays as smooth as it got.
/// Functions that say so belong into a frame, with the window's context current.
class Refinement : public QObject {
    Q_OBJECT
public:
    static constexpr int frames = 8;

    /// When the frames come; all in milliseconds.
    struct Pace {
        int rest = 100;     ///< From the last other frame to the first.
        int pause = 1;      ///< From one to the next, for events in between.
        qint64 most = 2000; ///< Once they have taken as long together, no more begins.
        std::function<qint64()> now = {}; ///< A clock that never goes back; null: the wall's.
    };

    /// Smooths in @p window while @p allowed says so, which is asked before each frame. The context
    /// is current when it is deleted.
    Refinement(QWidget *window, std::function<bool()> allowed, const Pace &pace);
    ~Refinement() override;

    /// As Pace::most.
    void setMost(qint64 milliseconds) { pace_.most = milliseconds; }

    /// Something changes: what was drawn until now is no part of any mean, and a frame comes.
    void interrupt();
    /// Frames turned out to be too slow for it: what is shown is as smooth as it gets until
    /// something changes.
    bool gaveUp() const { return gaveUp_; }
    bool isAtRest() const { return !wait_.isActive() && !own_; } ///< No frame of its own will come.

    bool isRefining() const { return own_; } ///< The frame under way is one of these.
    void want() { worth_ = true; } ///< In a frame: something that it shows is worth smoothing.

    /// In a frame: for its lifetime what is drawn with the projection that is loaded is shifted, if
    /// the frame is one of these, and told to be worth smoothing.
    class Shift {
    public:
        explicit Shift(Refinement &refinement);
        ~Shift();
        Shift(const Shift &) = delete;
        Shift &operator=(const Shift &) = delete;

    private:
        bool shifted_;
        double projection_[16];
    };

    /// In a frame: all that is to be smoothed is drawn, and what is to stay sharp is not. Replaces
    /// the colours of the window by the mean, or those @p within a part of it, in pixels from its
    /// lower left corner: the rest is the same in all frames. Leaves GL state as it was. Returns
    /// whether the colours are now as smooth as they get.
    bool finish(std::optional<QRect> within = {});

private:
    class Mean;

    qint64 now() const;
    void drawOwn();
    bool add(const std::optional<QRect> &within);

    QPointer<QWidget> window_;
    std::function<bool()> allowed_;
    Pace pace_;
    QTimer wait_{this};
    std::unique_ptr<Mean> mean_; // kept while frames of its own are to come
    bool able_ = true;           // OpenGL is, as far as is known
    bool worth_ = false;         // of this frame: something in it is to be smoothed
    bool gaveUp_ = false;        // in the middle of a mean
    bool own_ = false;           // this frame is one of these
    int count_ = 0;              // of frames in the mean
    qint64 spent_ = 0;           // milliseconds, on these
};

} // namespace host

#endif
