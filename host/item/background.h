// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_BACKGROUND_H
#define HOST_ITEM_BACKGROUND_H

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <optional>

#include <QThreadPool>

namespace host {

/// Something that a thread of its own makes, which may go on for a while after this is gone: what
/// it reads has to be shared with it. Belongs to one thread, like what it is a part of.
template <typename T> class Background {
public:
    /// Runs in the other thread. Returns early, with anything, once the flag is set.
    using Make = std::function<T(const std::atomic<bool> &cancelled)>;

    Background() = default;
    ~Background() { cancel(); }
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    /// Begins, in place of what was made or under way until now.
    void start(Make make)
    {
        cancel();
        work_ = std::make_shared<Work>();
        QThreadPool::globalInstance()->start([work = work_, make = std::move(make)] {
            try {
                work->made.emplace(make(work->cancelled));
            } catch (const std::bad_alloc &) { // what is not there is not missed as a crash is
            }
            work->ended = true;
        });
    }

    void clear() ///< As before start().
    {
        cancel();
        work_.reset();
    }

    bool isStarted() const { return work_ != nullptr; }
    bool isBusy() const { return work_ && !work_->ended; }
    /// Null until it is made, and if there was no memory for it.
    const T *get() const { return isEnded() && work_->made ? &*work_->made : nullptr; }
    bool lackedMemory() const { return isEnded() && !work_->made; }

private:
    struct Work {
        std::atomic<bool> cancelled{false};
        std::atomic<bool> ended{false};
        std::optional<T> made; // written before ended, read after
    };

    bool isEnded() const { return work_ && work_->ended; }
    void cancel()
    {
        if (work_)
            work_->cancelled = true;
    }

    std::shared_ptr<Work> work_;
};

} // namespace host

#endif
