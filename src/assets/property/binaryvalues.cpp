#include "assets/property/binaryvalues.h"

#include <cstring>

#include "assets/manager/base/guarded.h"
#include "nuo/common/buffer.h"

namespace korvanet::platform::assets {

namespace {

using Bytes = nuo::buffer<nuo::byte>;

// The length in a file has 32 bits, and half of them leave room for growing the buffer.
constexpr std::uint64_t kMaxBytes = std::uint64_t{1} << 31;

}  // namespace

std::uint64_t BinaryValue::GetSize() const {
    return Data<Bytes>().size();
}

const void* BinaryValue::GetData() const {
    return Data<Bytes>().data();
}

bool BinaryValue::SetData(const void* data, std::uint64_t size, std::uint64_t index) {
    if (!CheckIndex(index, 1)) {
        return false;
    }
    if (size > kMaxBytes || (data == nullptr && size != 0)) {
        return false;
    }
    Bytes& bytes = Data<Bytes>();
    if (!Guarded([&] { bytes.resize(size); })) {
        return false;
    }
    if (size != 0) {
        // The bytes may be a part of the old ones, in which case the buffer has not grown.
        std::memmove(bytes.data(), data, size);
    }
    return true;
}

}  // namespace korvanet::platform::assets
