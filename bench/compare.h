#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace halvern_bench {

// Seconds that this thread has run. Waiting for other programs does not count, which keeps ratios
// steady on a busy machine; the library runs on the thread of its caller alone.
double ThreadSeconds();

class Samples {
public:
    void Add(double value) { values_.push_back(value); }
    // 0 without samples.
    double Median() const;

private:
    std::vector<double> values_;
};

// The seconds that `work` takes.
template <class Work>
double Time(Work&& work) {
    const double start = ThreadSeconds();
    work();
    return ThreadSeconds() - start;
}

// Measures two ways of doing one thing in turn, so that what disturbs the one disturbs the other.
// Each callable does its work once and returns the seconds of the part that counts. The benchmark's
// time is that of `ours`; its counters are the medians in microseconds, the ratio of these, and the
// bound that we hold it to (0 for none).
template <class Ours, class Other>
void CompareInTurn(benchmark::State& state, double bound, Ours&& ours, Other&& other) {
    Samples our_times;
    Samples other_times;
    for (auto _ : state) {
        const double seconds = ours();
        state.SetIterationTime(seconds);
        our_times.Add(seconds);
        other_times.Add(other());
    }
    state.counters["ours_us"] = our_times.Median() * 1e6;
    state.counters["other_us"] = other_times.Median() * 1e6;
    state.counters["ratio"] = our_times.Median() / other_times.Median();
    if (bound != 0) state.counters["bound"] = bound;
}

}  // namespace halvern_bench
