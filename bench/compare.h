// SPDX-License-Identifier: MIT
#ifndef BENCH_COMPARE_H
#define BENCH_COMPARE_H

#include <functional>

#include <benchmark/benchmark.h>

/// Two ways to do the same work.
struct Contest {
    std::function<void()> module;
    std::function<void()> bare;    ///< The same without the module: what there is to gain.
    std::function<bool()> correct; ///< Whether both just did the work, with the same result.
    int batch = 1;   ///< Runs between two looks at the clock, for work too short to be timed.
    int items = 1;   ///< What one run handles, for the cost per item.
    bool gl = false; ///< Waits for OpenGL before the clock is read.
};

/// Measures both ways alternately, in one run, and reports medians: counters `module_ns` and
/// `bare_ns` per run and `item_ns` (module) per item, nanoseconds of the wall clock; `ratio` of
/// module to bare over pairs of neighbouring runs, and `cpu_ratio`, the same in this thread's time
/// on the processor. Skips with an error if the results are not correct.
void compare(benchmark::State &state, const Contest &contest);

#endif
