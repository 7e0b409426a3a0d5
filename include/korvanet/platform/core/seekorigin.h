#pragma once

#include <cstdint>

namespace korvanet::platform::core {

/// What the offset of a `Seek` counts from.
enum class SeekOrigin : std::int32_t {
    kBegin = 0,
    kCurrent = 1,
    kEnd = 2,
};

}  // namespace korvanet::platform::core
