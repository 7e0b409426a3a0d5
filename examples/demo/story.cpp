#include "story.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace demo {
namespace {

using Clock = std::chrono::steady_clock;

// The line at `index`, or words for its absence.
std::string LineAt(const Lines& lines, std::size_t index) {
    return index < lines.size() ? lines[index] : "(nothing more)";
}

}  // namespace

void Require(bool done, const std::string& otherwise) {
    if (!done) throw Failure(otherwise);
}

void Story::Step(const std::string& title, const Body& body, const Lines& expected) {
    std::printf("\n%2d  %s\n", ++steps_, title.c_str());
    const auto start = Clock::now();
    const Lines shown = body();
    const std::chrono::duration<double, std::milli> time = Clock::now() - start;
    for (std::size_t i = 0; i < std::max(shown.size(), expected.size()); ++i) {
        if (i < shown.size()) std::printf("      %s\n", shown[i].c_str());
        const std::string seen = LineAt(shown, i);
        const std::string due = LineAt(expected, i);
        Require(seen == due, "this was expected: " + due);
    }
    std::printf("    as expected, in %.1f ms\n", time.count());
    std::fflush(stdout);
}

}  // namespace demo
