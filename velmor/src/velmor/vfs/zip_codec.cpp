#include "velmor/vfs/zip_codec.h"

#include <algorithm>

#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/zip_errors.h"
#include "velmor/vfs/zip_format.h"

namespace velmor::fs {

namespace {

constexpr std::uint64_t chunk = 0x10000;
constexpr int raw_window = -15;  // no zlib head around the data
constexpr int deflate_level = 1;
constexpr int deflate_memory = 9;

}  // namespace

std::uint32_t zipChecksum(std::uint32_t soFar, nuo::archive::const_byte_range bytes) {
    return static_cast<std::uint32_t>(::crc32(soFar, bytes.first, static_cast<uInt>(bytes.size())));
}

ZipCodec::~ZipCodec() {
    if (inflateReady_) ::inflateEnd(&inflate_);
    if (deflateReady_) ::deflateEnd(&deflate_);
}

void ZipCodec::makeBuffers() {
    if (input_ == nullptr) input_.reset(new nuo::byte[chunk]);
    if (output_ == nullptr) output_.reset(new nuo::byte[chunk]);
}

z_stream& ZipCodec::startInflate() {
    makeBuffers();
    const int code =
        inflateReady_ ? ::inflateReset(&inflate_) : ::inflateInit2(&inflate_, raw_window);
    if (code != Z_OK) NUO_RAISE(archive_runtime_error, "inflate cannot start");
    inflateReady_ = true;
    inflate_.avail_in = 0;
    return inflate_;
}

z_stream& ZipCodec::startDeflate() {
    makeBuffers();
    const int code = deflateReady_ ? ::deflateReset(&deflate_)
                                   : ::deflateInit2(&deflate_, deflate_level, Z_DEFLATED,
                                                    raw_window, deflate_memory, Z_DEFAULT_STRATEGY);
    if (code != Z_OK) NUO_RAISE(archive_runtime_error, "deflate cannot start");
    deflateReady_ = true;
    return deflate_;
}

// Gives the stream new input, up to `count` bytes, and returns how many came.
std::uint64_t ZipCodec::refill(z_stream& stream, nuo::archive::reader& from, std::uint64_t count) {
    const nuo::byte* last = nuo::archive::read_some(from, {input_.get(), std::min(count, chunk)});
    stream.next_in = input_.get();
    stream.avail_in = static_cast<uInt>(last - input_.get());
    return stream.avail_in;
}

// Writes what stands in the output buffer and returns how much that was.
std::uint64_t ZipCodec::drain(z_stream& stream, nuo::archive::writer& to) {
    const std::uint64_t made = chunk - stream.avail_out;
    nuo::archive::write_all(to, {output_.get(), made});
    return made;
}

void ZipCodec::spend(std::uint64_t bytes) {
    if (bytes > allowance_) NUO_RAISE(archive_runtime_error, "too much data");
    allowance_ -= bytes;
}

std::uint64_t ZipCodec::copy(nuo::archive::reader& from, nuo::archive::writer& to,
                             std::uint64_t count) {
    makeBuffers();
    std::uint64_t copied = 0;
    while (copied < count) {
        const std::uint64_t wanted = std::min(chunk, count - copied);
        const nuo::byte* last = nuo::archive::read_some(from, {input_.get(), wanted});
        nuo::archive::write_all(to, {input_.get(), last});
        const auto got = static_cast<std::uint64_t>(last - input_.get());
        copied += got;
        if (got < wanted) break;
    }
    return copied;
}

void ZipCodec::inflateTo(nuo::archive::reader& from, std::uint64_t compressedSize,
                         nuo::archive::writer& to) {
    z_stream& stream = startInflate();
    std::uint64_t left = compressedSize;
    std::uint64_t total = 0;
    for (int code = Z_OK; code != Z_STREAM_END;) {
        if (stream.avail_in == 0 && left != 0) {
            const std::uint64_t got = refill(stream, from, left);
            left = got != 0 ? left - got : 0;
        }
        stream.next_out = output_.get();
        stream.avail_out = static_cast<uInt>(chunk);
        code = ::inflate(&stream, Z_NO_FLUSH);
        const bool starved = code == Z_BUF_ERROR && stream.avail_in == 0;
        if (code != Z_OK && code != Z_STREAM_END && !starved)
            NUO_RAISE(archive_runtime_error, "inflate bad data");
        spend(chunk - stream.avail_out);
        const std::uint64_t made = drain(stream, to);
        total += made;
        if (total > zip_format::max_entry_size)
            NUO_RAISE(archive_runtime_error, "inflate bad data");
        if (code != Z_STREAM_END && made == 0 && stream.avail_in == 0 && left == 0)
            NUO_RAISE(archive_runtime_error, "bad data, need more");
    }
}

PackedData ZipCodec::deflateTo(nuo::archive::reader& from, nuo::archive::writer& to) {
    z_stream& stream = startDeflate();
    PackedData packed;
    uLong crc = ::crc32(0, nullptr, 0);
    for (bool last = false; !last;) {
        const std::uint64_t got = refill(stream, from, chunk);
        last = got < chunk;
        crc = ::crc32(crc, input_.get(), static_cast<uInt>(got));
        packed.uncompressedSize += got;
        do {
            stream.next_out = output_.get();
            stream.avail_out = static_cast<uInt>(chunk);
            if (::deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_ERROR)
                NUO_RAISE(archive_runtime_error, "deflate failed");
            packed.compressedSize += drain(stream, to);
        } while (stream.avail_out == 0);
    }
    packed.crc32 = static_cast<std::uint32_t>(crc);
    return packed;
}

}  // namespace velmor::fs
