#include "vfs/fixed_clock.h"

#include <cstdlib>

namespace {

bool stands = false;
std::time_t moment = 0;

}  // namespace

extern "C" {

std::time_t __real_time(std::time_t* result);

std::time_t __wrap_time(std::time_t* result) {
    if (!stands) return __real_time(result);
    if (result != nullptr) *result = moment;
    return moment;
}

}  // extern "C"

namespace vfs_tests {

FixedClock::FixedClock(std::time_t now, const std::string& zone)
    : had_zone_(std::getenv("TZ") != nullptr), former_zone_(had_zone_ ? std::getenv("TZ") : "") {
    stands = true;
    moment = now;
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
}

FixedClock::~FixedClock() {
    stands = false;
    had_zone_ ? ::setenv("TZ", former_zone_.c_str(), 1) : ::unsetenv("TZ");
    ::tzset();
}

void FixedClock::Set(std::time_t now) {
    moment = now;
}

}  // namespace vfs_tests
