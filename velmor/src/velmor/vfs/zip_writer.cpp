#include "velmor/vfs/zip_writer.h"

#include <algorithm>
#include <boost/numeric/conversion/cast.hpp>
#include <ctime>
#include <tuple>

#include "nuo/common/archive/primitives.h"
#include "velmor/vfs/zip_entries.h"
#include "velmor/vfs/zip_errors.h"
#include "velmor/vfs/zip_format.h"

// What is written here; docs/formats/zip_subset.md tells it in full. Numbers are little-endian.
//
//   zip       = entry* directory end
//   entry     = local name data{compressed}
//   local     = 0x04034b50:u32 20:u16 flags:u16 method:u16 time:u16 date:u16
//               crc:u32 compressed:u32 uncompressed:u32 name-length:u16 0:u16
//   directory = (central name)*                     in the order of the entries
//   central   = 0x02014b50:u32 20:u16 20:u16 flags:u16 method:u16 time:u16 date:u16
//               crc:u32 compressed:u32 uncompressed:u32 name-length:u16
//               0:u16 0:u16 0:u16 0:u16 attributes:u32 local-offset:u32
//   end       = 0x06054b50:u32 0:u16 0:u16 count:u16 count:u16
//               directory-size:u32 directory-offset:u32 0:u16

namespace velmor::fs {

namespace {

using boost::numeric_cast;
using namespace zip_format;

std::pair<std::uint16_t, std::uint16_t> dosTimeAndDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    // The form starts with 1980.
    const int year = std::max(local.tm_year + 1900 - 1980, 0);
    const int time = local.tm_hour * 2048 + local.tm_min * 32 + local.tm_sec / 2;
    const int date = year * 512 + (local.tm_mon + 1) * 32 + local.tm_mday;
    return {static_cast<std::uint16_t>(time), static_cast<std::uint16_t>(date)};
}

// The fields that local and central headers share.
void appendCommon(Appender to, const file_header& header) {
    to.u16(header.flags).u16(header.method).u16(header.time).u16(header.date);
    to.u32(header.crc32).u32(header.compressedSize).u32(header.uncompressedSize);
    to.u16(numeric_cast<std::uint16_t>(header.name.size()));
}

void appendName(nuo::buffer<nuo::byte>& to, const file_header& header) {
    const auto* name = reinterpret_cast<const nuo::byte*>(header.name.data());
    to.append(name, name + header.name.size());
}

void appendCentral(nuo::buffer<nuo::byte>& to, const file_header& header) {
    Appender numbers(to);
    numbers.u32(central_signature).u16(version).u16(version);
    appendCommon(numbers, header);
    numbers.u16(0).u16(0).u16(0).u16(0);
    numbers.u32(header.state == state_directory ? attribute_directory : 0);
    numbers.u32(header.headerOffset);
    appendName(to, header);
}

}  // namespace

ZipWriter::ZipWriter(nuo::archive::iarchive& target, ZipCodec& codec)
    : out_(*target.query_writer()), position_(*target.query_random()), codec_(codec) {
    std::tie(time_, date_) = dosTimeAndDate();
}

void ZipWriter::flush() {
    nuo::archive::write_all(out_, {bytes_.data(), bytes_.size()});
    bytes_.clear();
}

void ZipWriter::writeHead(const file_header& header) {
    Appender numbers(bytes_);
    numbers.u32(local_signature).u16(version);
    appendCommon(numbers, header);
    numbers.u16(0);
    appendName(bytes_, header);
    flush();
}

void ZipWriter::rewriteSizes(const file_header& fresh) {
    const std::uint64_t behind = position_.offset();
    position_.seek(fresh.headerOffset + local_sizes_at);
    Appender(bytes_).u32(fresh.crc32).u32(fresh.compressedSize).u32(fresh.uncompressedSize);
    flush();
    position_.seek(behind);
}

void ZipWriter::writeTouched(file_header& fresh) {
    fresh.method = method_deflate;
    writeHead(fresh);
    const auto cached = openCachedFile(fresh, codec_);
    const PackedData packed = codec_.deflateTo(*cached->query_reader(), out_);
    fresh.crc32 = packed.crc32;
    fresh.compressedSize = numeric_cast<std::uint32_t>(packed.compressedSize);
    fresh.uncompressedSize = numeric_cast<std::uint32_t>(packed.uncompressedSize);
    rewriteSizes(fresh);
}

void ZipWriter::writeUntouched(file_header& fresh) {
    if (!fresh.hasSourceData()) {
        fresh.method = method_stored;
        fresh.crc32 = fresh.compressedSize = fresh.uncompressedSize = 0;
        return writeHead(fresh);
    }
    writeHead(fresh);
    fresh.source->query_random()->seek(fresh.dataOffset);
    if (codec_.copy(*fresh.source->query_reader(), out_, fresh.compressedSize) !=
        fresh.compressedSize)
        NUO_RAISE(archive_io_fatal_error);
}

void ZipWriter::writeEntry(const file_header_ptr& header) {
    file_header fresh = *header;
    if (fresh.time == file_header::time_not_set) {
        fresh.time = time_;
        fresh.date = date_;
    }
    // The sizes stand in the header, whatever the entry had before.
    fresh.flags = static_cast<std::uint16_t>(fresh.flags & ~flag_descriptor);
    fresh.headerOffset = numeric_cast<std::uint32_t>(position_.offset());
    const auto data =
        numeric_cast<std::uint32_t>(position_.offset() + local_size + fresh.name.size());
    // The highest number says that there are no data, and readers refuse it.
    if (data == file_header::no_offset) throw boost::numeric::positive_overflow();
    if (fresh.fetched && fresh.dirty)
        writeTouched(fresh);
    else
        writeUntouched(fresh);
    fresh.dataOffset = data;
    written_.push_back({header, std::move(fresh)});
}

void ZipWriter::writeDirectory() {
    const auto start = numeric_cast<std::uint32_t>(position_.offset());
    for (const Written& entry : written_)
        appendCentral(bytes_, entry.fresh);
    const auto size = numeric_cast<std::uint32_t>(bytes_.size());
    // Cut to 16 bits, as the form has no room for more.
    const auto count = static_cast<std::uint16_t>(written_.size() & max_entries);
    Appender(bytes_).u32(end_signature).u16(0).u16(0).u16(count).u16(count);
    Appender(bytes_).u32(size).u32(start).u16(0);
    flush();
}

void ZipWriter::adopt(nuo::archive::iarchive& source) {
    for (Written& entry : written_) {
        entry.fresh.source = &source;
        entry.fresh.dirty = false;
        *entry.header = entry.fresh;
    }
}

}  // namespace velmor::fs
