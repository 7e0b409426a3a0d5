#pragma once

#include <string_view>

#include "nuo/common/buffer_archive.h"

namespace halvern_tests {

inline nuo::buffer<nuo::byte> Bytes(std::string_view text) {
    const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
    return nuo::buffer<nuo::byte>(first, first + text.size());
}

inline std::string Text(const nuo::buffer<nuo::byte>& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

// A read archive over a text of its own.
class MemorySource {
public:
    explicit MemorySource(std::string_view text) : bytes_(Bytes(text)), archive_(bytes_) {}

    nuo::archive::buffer_in& archive() { return archive_; }

private:
    nuo::buffer<nuo::byte> bytes_;
    nuo::archive::buffer_in archive_;
};

}  // namespace halvern_tests
