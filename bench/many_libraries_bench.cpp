#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/compare.h"
#include "bench/libraries.h"

// One library used while 49 others are open, against the same library alone.

namespace halvern_bench {
namespace {

constexpr int kLibraries = 50;
constexpr int kDefinitions = 500;

std::string OneOfMany(int number) {
    return MakeLibrary("many-" + std::to_string(number), kDefinitions);
}

// The seconds of each operation on library 0, from `uses` of it.
struct Seconds {
    double find = 0;
    double instantiate = 0;
    double unload = 0;
};

Seconds UseOne() {
    Seconds seconds;
    OpenLibrary library(OneOfMany(0));
    std::vector<UTF8String> names;
    for (int i = 0; i < kDefinitions; ++i)
        names.emplace_back(DefinitionName(i * 37 % kDefinitions).c_str());
    std::vector<DefinitionPtr> definitions(names.size());
    std::vector<InstancePtr> instances(names.size());
    const UTF8String identifier("many-0");
    seconds.find = Time([&] {
        for (std::size_t i = 0; i < names.size(); ++i)
            definitions[i] = FindDefinition(*Manager().FindLibrary(identifier), names[i]);
    });
    seconds.instantiate = Time([&] {
        for (std::size_t i = 0; i < names.size(); ++i)
            instances[i].reset(definitions[i]->CreateInstance());
    });
    instances.clear();
    definitions.clear();
    seconds.unload = Time([&] { library.Unload(); });
    seconds.find /= kDefinitions;
    seconds.instantiate /= kDefinitions;
    return seconds;
}

void Compare(benchmark::State& state, double Seconds::*operation) {
    for (int i = 0; i < kLibraries; ++i)
        OneOfMany(i);
    const auto among_others = [&] {
        std::vector<OpenLibrary> others;
        for (int i = 1; i < kLibraries; ++i)
            others.emplace_back(OneOfMany(i));
        UseOne();
        return UseOne().*operation;
    };
    const auto alone = [&] {
        UseOne();
        return UseOne().*operation;
    };
    CompareInTurn(state, 1.5, among_others, alone);
}

void FindAmong50(benchmark::State& state) {
    Compare(state, &Seconds::find);
}
void InstantiateAmong50(benchmark::State& state) {
    Compare(state, &Seconds::instantiate);
}
void UnloadAmong50(benchmark::State& state) {
    Compare(state, &Seconds::unload);
}
BENCHMARK(FindAmong50)->UseManualTime()->Iterations(7)->Unit(benchmark::kMicrosecond);
BENCHMARK(InstantiateAmong50)->UseManualTime()->Iterations(7)->Unit(benchmark::kMicrosecond);
BENCHMARK(UnloadAmong50)->UseManualTime()->Iterations(7)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace halvern_bench
