#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace halvern_bench {

// One line for each benchmark: what ours takes, what the other way takes that was measured in turn
// with it, their ratio, the bound that the ratio is held to, and the other counters.
class TableReporter final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
};

}  // namespace halvern_bench
