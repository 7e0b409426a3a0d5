#pragma once

#include <cstdint>
#include <cstring>

#include "nuo/common/buffer.h"

// The numbers of the ZIP form that reader and writer share; docs/formats/zip_subset.md tells it.
// All of them are on disk: do not change them.

namespace velmor::fs::zip_format {

inline constexpr std::uint32_t local_signature = 0x04034b50;
inline constexpr std::uint32_t central_signature = 0x02014b50;
inline constexpr std::uint32_t end_signature = 0x06054b50;

// Bytes before the name: the sums of the fields.
inline constexpr std::uint32_t local_size = 4 + 5 * 2 + 3 * 4 + 2 * 2;
inline constexpr std::uint32_t central_size = 4 + 6 * 2 + 3 * 4 + 5 * 2 + 2 * 4;
inline constexpr std::uint32_t end_size = 4 + 4 * 2 + 2 * 4 + 2;
static_assert(local_size == 30 && central_size == 46 && end_size == 22);

/// Where CRC, compressed and uncompressed size stand in a local header.
inline constexpr std::uint32_t local_sizes_at = 4 + 5 * 2;

/// How far from its end an archive is searched for the end record.
inline constexpr std::uint64_t end_search = 0x10000;

inline constexpr std::uint16_t version = 20;
inline constexpr std::uint16_t method_stored = 0;
inline constexpr std::uint16_t method_deflate = 8;

// Bits of the general purpose flag.
inline constexpr std::uint16_t flag_descriptor = 0x0008;  // sizes follow the data; never written
inline constexpr std::uint16_t flag_fast = 0x0006;        // deflated at the fastest level
inline constexpr std::uint16_t flag_utf8 = 0x0800;

/// The bit of the external attributes that makes an entry a directory.
inline constexpr std::uint32_t attribute_directory = 0x10;

/// The most that 32-bit sizes can tell of one entry.
inline constexpr std::uint64_t max_entry_size = 0xFFFFFFFF;
inline constexpr std::uint64_t max_name_size = 0xFFFF;
inline constexpr std::uint64_t max_entries = 0xFFFF;

// Numbers are little-endian wherever they lie.
inline std::uint16_t get16(const nuo::byte* at) noexcept {
    return static_cast<std::uint16_t>(static_cast<unsigned>(at[0]) | static_cast<unsigned>(at[1])
                                                                         << 8);
}
inline std::uint32_t get32(const nuo::byte* at) noexcept {
    return get16(at) | static_cast<std::uint32_t>(get16(at + 2)) << 16;
}

/// Appends numbers to a buffer.
class Appender {
public:
    explicit Appender(nuo::buffer<nuo::byte>& target) noexcept : target_(&target) {}

    Appender& u16(std::uint16_t value) {
        const nuo::byte bytes[] = {static_cast<nuo::byte>(value & 0xFF),
                                   static_cast<nuo::byte>(value >> 8)};
        target_->append(bytes, bytes + sizeof bytes);
        return *this;
    }
    Appender& u32(std::uint32_t value) {
        return u16(static_cast<std::uint16_t>(value & 0xFFFF))
            .u16(static_cast<std::uint16_t>(value >> 16));
    }

private:
    nuo::buffer<nuo::byte>* target_;
};

}  // namespace velmor::fs::zip_format
