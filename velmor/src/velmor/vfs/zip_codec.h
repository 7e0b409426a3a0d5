#pragma once

#include <cstdint>
#include <memory>

#include <zlib.h>

#include "nuo/common/iarchive.h"

namespace velmor::fs {

/// What a deflated entry's headers tell of it.
struct PackedData {
    std::uint64_t compressedSize = 0;
    std::uint64_t uncompressedSize = 0;
    std::uint32_t crc32 = 0;
};

/// The checksum that headers tell, of bytes that follow those which gave `soFar`; 0 begins.
std::uint32_t zipChecksum(std::uint32_t soFar, nuo::archive::const_byte_range bytes);

/// Moves the data of entries between archives. Its streams and buffers are made on first use and
/// serve every further entry.
class ZipCodec {
public:
    ZipCodec() = default;
    ~ZipCodec();
    ZipCodec(const ZipCodec&) = delete;
    ZipCodec& operator=(const ZipCodec&) = delete;

    /// How many bytes of content may come out of entries from now on; any number at first.
    void setAllowance(std::uint64_t bytes) { allowance_ = bytes; }
    std::uint64_t allowance() const { return allowance_; }
    /// Takes `bytes` from the allowance. Raises archive_runtime_error when it is used up.
    void spend(std::uint64_t bytes);

    /// Copies up to `count` bytes, fewer when the source ends, and returns how many.
    std::uint64_t copy(nuo::archive::reader& from, nuo::archive::writer& to, std::uint64_t count);

    /// Inflates `compressedSize` bytes. Memory and output grow with what really is inflated.
    /// Raises archive_runtime_error for bad or missing data, for output that no entry can hold, and
    /// where the allowance ends.
    void inflateTo(nuo::archive::reader& from, std::uint64_t compressedSize,
                   nuo::archive::writer& to);

    /// Deflates all that is left in `from`.
    PackedData deflateTo(nuo::archive::reader& from, nuo::archive::writer& to);

private:
    void makeBuffers();
    z_stream& startInflate();
    z_stream& startDeflate();
    std::uint64_t refill(z_stream& stream, nuo::archive::reader& from, std::uint64_t count);
    std::uint64_t drain(z_stream& stream, nuo::archive::writer& to);

    std::uint64_t allowance_ = ~std::uint64_t{0};
    z_stream inflate_{};
    z_stream deflate_{};
    bool inflateReady_ = false;
    bool deflateReady_ = false;
    std::unique_ptr<nuo::byte[]> input_;
    std::unique_ptr<nuo::byte[]> output_;
};

}  // namespace velmor::fs
