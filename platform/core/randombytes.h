#pragma once

#include <cstddef>

namespace korvanet::platform::core {

/// Fills `size` bytes with random ones from the system's source. They are fetched many at a time,
/// so that sixteen of them cost nanoseconds; a forked child never sees those of its parent. Raises
/// std::system_error when the system has no source.
void FillRandom(void* target, std::size_t size);

}  // namespace korvanet::platform::core
