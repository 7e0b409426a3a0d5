#include "bench/compare.h"

#include <time.h>

#include <algorithm>

namespace halvern_bench {

double ThreadSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double Samples::Median() const {
    if (values_.empty()) return 0;
    std::vector<double> sorted = values_;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    return *middle;
}

}  // namespace halvern_bench
