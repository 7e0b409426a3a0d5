#include <benchmark/benchmark.h>

#include "bench/listing.h"

int main(int argc, char** argv) {
    int result = 0;
    if (halvern_bench::IsListingChild(argc, argv, result)) return result;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
