#pragma once

#include <cstdint>

#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

// Copies everything from the start of `source` to the current position of `target`, and returns the
// number of bytes. REQUIRES: the one reads at random, the other writes.
std::uint64_t CopyAll(nuo::archive::iarchive& source, nuo::archive::iarchive& target);

}  // namespace korvanet::platform::assets
