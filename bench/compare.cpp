// SPDX-License-Identifier: MIT
#include "bench/compare.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include <qopengl.h>

namespace {

/// Nanoseconds of one run.
double timed(const std::function<void()> &run, const Contest &contest)
{
    using Clock = std::chrono::steady_clock;
    if (contest.gl)
        glFinish();
    const auto start = Clock::now();
    for (int i = 0; i < contest.batch; ++i)
        run();
    if (contest.gl)
        glFinish();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / contest.batch;
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
    std::vector<double> module, bare;
    bool moduleFirst = false;
    for (auto _ : state) {
        moduleFirst = !moduleFirst; // so that neither always finds the caches the other left
        if (moduleFirst)
            module.push_back(timed(contest.module, contest));
        bare.push_back(timed(contest.bare, contest));
        if (!moduleFirst)
            module.push_back(timed(contest.module, contest));
        state.SetIterationTime((module.back() + bare.back()) * contest.batch * 1e-9);
    }
    if (module.empty())
        return;
    const double m = median(module);
    const double b = median(bare);
    state.counters["module_ns"] = m;
    state.counters["bare_ns"] = b;
    state.counters["ratio"] = m / b;
    state.counters["item_ns"] = m / contest.items;
}
