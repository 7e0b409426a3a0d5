#pragma once

#include <ctime>
#include <string>

namespace vfs_tests {

// While it lives the clock stands, and the local time is that of a zone. The linker turns the
// library's calls of `time` to this clock (`--wrap`).
class FixedClock {
public:
    FixedClock(std::time_t now, const std::string& zone);
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;
    ~FixedClock();

    void Set(std::time_t now);

private:
    bool had_zone_;
    std::string former_zone_;
};

}  // namespace vfs_tests
