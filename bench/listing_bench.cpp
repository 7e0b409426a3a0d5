#include <benchmark/benchmark.h>

#include <optional>
#include <stdexcept>

#include "bench/compare.h"
#include "bench/libraries.h"
#include "bench/listing.h"
#include "bench/plain_library.h"
#include "tests/support/paths.h"

// Opening a library and listing all its definitions.

namespace halvern_bench {
namespace {

// Opening and listing; unloading is not counted.
double OpenAndList(const std::string& path, Listed& listed) {
    std::optional<OpenLibrary> library;
    return Time([&] {
        library.emplace(path);
        listed = ListAll(**library);
    });
}

double ListPlainly(const PlainLibrary& library, Listed& listed) {
    std::vector<PlainLibrary::Table> tables;
    const double seconds = Time([&] { tables = library.List(); });
    listed = Count(tables);
    return seconds;
}

void OpenAndListLarge(benchmark::State& state) {
    const std::string path = halvern_tests::DataFile("large.jpk");
    const PlainLibrary plain(path);
    Listed ours;
    Listed floor;
    CompareInTurn(
        state, 4, [&] { return OpenAndList(path, ours); },
        [&] { return ListPlainly(plain, floor); });
    if (!(ours == floor)) state.SkipWithError("the two listings differ");
    state.counters["definitions"] = static_cast<double>(ours.definitions);
}
BENCHMARK(OpenAndListLarge)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

// The larger library against one of half its size.
void OpenAndListDoubled(benchmark::State& state) {
    const auto many = static_cast<int>(state.range(0));
    const std::string whole = MakeLibrary("sized-" + std::to_string(many), many);
    const std::string half = MakeLibrary("sized-" + std::to_string(many / 2), many / 2);
    Listed listed;
    CompareInTurn(
        state, 2.5, [&] { return OpenAndList(whole, listed); },
        [&] { return OpenAndList(half, listed); });
}
BENCHMARK(OpenAndListDoubled)
    ->ArgName("definitions")
    ->Arg(2500)
    ->Arg(5000)
    ->Arg(10000)
    ->Arg(20000)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

// What a child process that opens and lists takes at its highest, above what it takes for an empty
// library, against what it may take: as a ratio of at most 1.
void PeakMemory(benchmark::State& state) {
    const std::string large = halvern_tests::DataFile("large.jpk");
    const std::string empty = MakeLibrary("empty", 0);
    const double inflated = static_cast<double>(PlainLibrary(large).InflatedSize()) / 1024;
    constexpr double kDefinitions = 5000;
    double above = 0;
    for (auto _ : state)
        above =
            static_cast<double>(PeakOfListing(large)) - static_cast<double>(PeakOfListing(empty));
    const double allowed = 4 * inflated + 6 * kDefinitions;
    state.counters["ratio"] = above / allowed;
    state.counters["bound"] = 1;
    state.counters["KiB"] = above;
    state.counters["allowed"] = allowed;
}
BENCHMARK(PeakMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace halvern_bench
