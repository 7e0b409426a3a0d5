#include "vfs/zip_bytes.h"

#include <zlib.h>

#include <stdexcept>

namespace vfs_tests {

std::string U16(std::uint32_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string U32(std::uint32_t value) {
    return U16(value & 0xFFFF) + U16(value >> 16);
}

namespace {

std::string Common(const ZipEntry& entry) {
    return U16(entry.flags) + U16(entry.method) + U16(entry.time) + U16(entry.date) +
           U32(entry.crc) + U32(static_cast<std::uint32_t>(entry.data.size())) +
           U32(entry.uncompressedSize) + U16(static_cast<std::uint32_t>(entry.name.size())) +
           U16(static_cast<std::uint32_t>(entry.extra.size()));
}

}  // namespace

std::string LocalHeader(const ZipEntry& entry) {
    return "PK\x03\x04" + U16(20) + Common(entry) + entry.name + entry.extra;
}

std::string CentralHeader(const ZipEntry& entry, std::uint32_t offset) {
    return "PK\x01\x02" + U16(20) + U16(20) + Common(entry) +
           U16(static_cast<std::uint32_t>(entry.comment.size())) + U16(0) + U16(0) +
           U32(entry.attributes) + U32(offset) + entry.name + entry.extra + entry.comment;
}

std::string EndRecord(std::uint32_t count, std::uint32_t size, std::uint32_t offset,
                      std::string_view comment) {
    return "PK\x05\x06" + U16(0) + U16(0) + U16(count) + U16(count) + U32(size) + U32(offset) +
           U16(static_cast<std::uint32_t>(comment.size())) + std::string(comment);
}

std::string Zip(const std::vector<ZipEntry>& entries, std::string_view comment) {
    std::string zip;
    std::string directory;
    for (const ZipEntry& entry : entries) {
        directory += CentralHeader(entry, static_cast<std::uint32_t>(zip.size()));
        zip += LocalHeader(entry) + entry.data;
    }
    const auto start = static_cast<std::uint32_t>(zip.size());
    return zip + directory +
           EndRecord(static_cast<std::uint32_t>(entries.size()),
                     static_cast<std::uint32_t>(directory.size()), start, comment);
}

std::string RawDeflate(std::string_view data, int level) {
    z_stream stream{};
    if (::deflateInit2(&stream, level, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("deflate cannot start");
    std::string out(::deflateBound(&stream, data.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int code = ::deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    ::deflateEnd(&stream);
    if (code != Z_STREAM_END) throw std::runtime_error("deflate did not end");
    return out;
}

ZipEntry Stored(std::string name, std::string data) {
    ZipEntry entry;
    entry.name = std::move(name);
    entry.uncompressedSize = static_cast<std::uint32_t>(data.size());
    entry.crc = static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
    entry.data = std::move(data);
    return entry;
}

ZipEntry Deflated(std::string name, std::string_view data) {
    ZipEntry entry = Stored(std::move(name), std::string(data));
    entry.method = 8;
    entry.data = RawDeflate(data);
    return entry;
}

ZipEntry Folder(std::string name) {
    ZipEntry entry = Stored(std::move(name), "");
    entry.attributes = 0x10;
    return entry;
}

nuo::buffer<nuo::byte> Buffer(std::string_view bytes) {
    const auto* first = reinterpret_cast<const nuo::byte*>(bytes.data());
    return {first, first + bytes.size()};
}

std::string Bytes(nuo::archive::mem_read_write_archive& archive) {
    const auto& buffer = archive.get_buffer();
    return {reinterpret_cast<const char*>(buffer.data()), buffer.size()};
}

}  // namespace vfs_tests
