#include <benchmark/benchmark.h>

#include "bench/listing.h"
#include "bench/table_reporter.h"

int main(int argc, char** argv) {
    int result = 0;
    if (halvern_bench::IsListingChild(argc, argv, result)) return result;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    halvern_bench::TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
