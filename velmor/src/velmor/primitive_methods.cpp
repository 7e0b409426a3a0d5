#include "velmor/primitive_methods.h"

#include <algorithm>
#include <cstring>

namespace velmor {

int compareNative(const nuo::string& left, const nuo::string& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

int compareNative(const nuo::buffer<nuo::byte>& left, const nuo::buffer<nuo::byte>& right) {
    const std::uint64_t common = std::min(left.size(), right.size());
    const int order = common != 0 ? std::memcmp(left.data(), right.data(), common) : 0;
    if (order != 0) return order < 0 ? -1 : 1;
    return left.size() < right.size() ? -1 : right.size() < left.size() ? 1 : 0;
}

}  // namespace velmor
