#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

/// Runs `work` once an iteration, and tells how much memory it took at its peak, beyond what was
/// taken before, as the counter "peak_kib".
///
/// Works on the process, so benchmarks run one at a time.
template <class Work>
void Measure(benchmark::State& state, Work work);

/// The resident memory of this process in KiB: what it takes now, and the most since ResetPeak.
long ResidentKib();
long PeakKib();
void ResetPeak();

template <class Work>
void Measure(benchmark::State& state, Work work) {
    ResetPeak();
    const long before = ResidentKib();
    for ([[maybe_unused]] auto iteration : state) {
        work();
    }
    state.counters["peak_kib"] = static_cast<double>(PeakKib() - before);
}

}  // namespace bench
