// SPDX-License-Identifier: MIT
#include "bench/compare.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

#include <qopengl.h>

namespace {

/// Nanoseconds of one run: by the wall clock, and of this thread on the processor.
struct Sample {
    double wall, cpu;
};

Sample now()
{
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    const auto wall = std::chrono::steady_clock::now().time_since_epoch();
    return {std::chrono::duration<double, std::nano>(wall).count(),
            double(t.tv_sec) * 1e9 + double(t.tv_nsec)};
}

Sample timed(const std::function<void()> &run, const Contest &contest)
{
    if (contest.gl)
        glFinish();
    const Sample start = now();
    for (int i = 0; i < contest.batch; ++i)
        run();
    if (contest.gl)
        glFinish();
    const Sample end = now();
    return {(end.wall - start.wall) / contest.batch, (end.cpu - start.cpu) / contest.batch};
}

double median(std::vector<double> &v)
{
    std::nth_element(v.begin(), v.begin() + long(v.size() / 2), v.end());
    return v[v.size() / 2];
}

} // namespace

void compare(benchmark::State &state, const Contest &contest)
{
    contest.module();
    contest.bare();
    if (!contest.correct()) {
        state.SkipWithError("wrong result");
        return;
    }
    std::vector<double> module, bare, ratio, cpuRatio;
    bool moduleFirst = false;
    for (auto _ : state) {
        moduleFirst = !moduleFirst; // so that neither always finds the caches the other left
        Sample m{}, b{};
        if (moduleFirst)
            m = timed(contest.module, contest);
        b = timed(contest.bare, contest);
        if (!moduleFirst)
            m = timed(contest.module, contest);
        module.push_back(m.wall);
        bare.push_back(b.wall);
        ratio.push_back(m.wall / b.wall);
        cpuRatio.push_back(m.cpu / b.cpu);
        state.SetIterationTime((m.wall + b.wall) * contest.batch * 1e-9);
    }
    if (module.empty())
        return;
    state.counters["module_ns"] = median(module);
    state.counters["bare_ns"] = median(bare);
    state.counters["ratio"] = median(ratio);
    state.counters["cpu_ratio"] = median(cpuRatio);
    state.counters["item_ns"] = median(module) / contest.items;
}
