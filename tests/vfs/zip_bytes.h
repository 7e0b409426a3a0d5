#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "nuo/common/buffer_archive.h"

// ZIPs written by hand, field by field, apart from the code under test.

namespace vfs_tests {

std::string U16(std::uint32_t value);
std::string U32(std::uint32_t value);

// One entry, with what its two headers say. The sizes and the offset follow from the data unless
// they are set.
struct ZipEntry {
    std::string name;
    std::string data;  // as it lies in the ZIP
    std::uint32_t method = 0;
    std::uint32_t flags = 0;
    std::uint32_t time = 0x6000;
    std::uint32_t date = 0x5A21;
    std::uint32_t crc = 0;
    std::uint32_t uncompressedSize = 0;
    std::uint32_t attributes = 0;
    std::string extra = {};    // in both headers
    std::string comment = {};  // in the central one
};

std::string LocalHeader(const ZipEntry& entry);
std::string CentralHeader(const ZipEntry& entry, std::uint32_t offset);
std::string EndRecord(std::uint32_t count, std::uint32_t size, std::uint32_t offset,
                      std::string_view comment = {});
std::string Zip(const std::vector<ZipEntry>& entries, std::string_view comment = {});

// An entry that is stored as it stands, and one that is deflated (by zlib, level 9).
ZipEntry Stored(std::string name, std::string data);
ZipEntry Deflated(std::string name, std::string_view data);
ZipEntry Folder(std::string name);

std::string RawDeflate(std::string_view data, int level = 9);

// A memory archive that starts with these bytes.
nuo::buffer<nuo::byte> Buffer(std::string_view bytes);
std::string Bytes(nuo::archive::mem_read_write_archive& archive);

}  // namespace vfs_tests
