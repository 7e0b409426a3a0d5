#include "bench/table_reporter.h"

#include <cstdio>
#include <string>

namespace halvern_bench {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

std::string Formatted(const char* form, double value) {
    char text[64];
    std::snprintf(text, sizeof text, form, value);
    return text;
}

std::string Duration(double seconds) {
    if (seconds < 1e-6) return Formatted("%.1f ns", seconds * 1e9);
    if (seconds < 1e-3) return Formatted("%.2f us", seconds * 1e6);
    return Formatted("%.2f ms", seconds * 1e3);
}

// The counters with a column of their own are taken out of the map.
bool Take(benchmark::UserCounters& counters, const char* name, double& value) {
    const auto found = counters.find(name);
    if (found == counters.end()) return false;
    value = found->second;
    counters.erase(found);
    return true;
}

void PrintRow(const std::string& name, const std::string& ours, const std::string& other,
              const std::string& ratio, const std::string& bound, const std::string& notes) {
    std::string row = name;
    const auto column = [&row](std::size_t end, const std::string& text) {
        const std::size_t used = row.size() + text.size();
        row.append(used < end ? end - used : 1, ' ').append(text);
    };
    column(46, ours);
    column(58, other);
    column(66, ratio);
    column(74, bound);
    if (!notes.empty()) row.append("  ").append(notes);
    std::printf("%s\n", row.c_str());
    std::fflush(stdout);
}

// Without what the program itself sets for each benchmark.
std::string ShortName(const Run& run) {
    std::string name = run.run_name.function_name;
    if (!run.run_name.args.empty()) name.append(" ").append(run.run_name.args);
    return name;
}

void PrintRun(const Run& run) {
    if (run.error_occurred)
        return PrintRow(ShortName(run), "failed", "", "", "", run.error_message);
    benchmark::UserCounters counters = run.counters;
    double ours = run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    double value = 0;
    std::string other;
    std::string ratio;
    std::string bound;
    if (Take(counters, "ours_us", value)) ours = value * 1e-6;
    if (Take(counters, "other_us", value)) other = Duration(value * 1e-6);
    if (Take(counters, "ratio", value)) ratio = Formatted("%.2f", value);
    if (Take(counters, "bound", value)) bound = Formatted("%.1f", value);
    std::string notes;
    for (const auto& [name, counter] : counters)
        notes.append(notes.empty() ? "" : ", ").append(name).append(Formatted(" %.6g", counter));
    PrintRow(ShortName(run), Duration(ours), other, ratio, bound, notes);
}

}  // namespace

bool TableReporter::ReportContext(const Context& context) {
    std::printf("%d processors of %.0f MHz; times are of the processor, medians\n\n",
                context.cpu_info.num_cpus, context.cpu_info.cycles_per_second / 1e6);
    PrintRow("", "ours", "beside it", "ratio", "bound", "");
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs)
        PrintRun(run);
}

}  // namespace halvern_bench
