// SPDX-License-Identifier: MIT
#ifndef UTILS_TIMER_H
#define UTILS_TIMER_H

#include <ctime>

#include <sys/time.h>

#include "utils/numbers.h"

/// Measures which share of the wall clock a repeated piece of work takes.
///
/// All times are wall-clock microseconds since the epoch. The clock is not monotonic: a step
/// backwards yields negative differences, which Update() and GetRatio() tolerate.
struct LoadTimer {
    time_t start = 0; ///< Beginning of the measuring period.
    time_t sum = 0;   ///< Work accumulated in the period.

    /// The current time.
    time_t operator()() const
    {
        timeval now;
        gettimeofday(&now, nullptr);
        return time_t(now.tv_sec) * 1000000 + now.tv_usec;
    }

    /// Begins a new period.
    void Start()
    {
        start = (*this)();
        sum = 0;
    }

    /// Adds @p busy microseconds of work; a negative value adds nothing.
    void Update(time_t busy)
    {
        if (busy > 0)
            sum = bounded::sum(sum, busy);
    }

    /// Work over elapsed time, 0 when no time has passed. Above 1 if more work was reported
    /// than time has passed.
    float GetRatio() const
    {
        const time_t now = (*this)();
        return now > start ? float(sum) / float(bounded::difference(now, start)) : 0;
    }
};

#endif
