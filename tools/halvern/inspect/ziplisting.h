#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "inspect/findings.h"
#include "nuo/common/iarchive.h"

// The central directory of a ZIP with the offsets that the reader of libraries has no use for; see
// docs/formats/zip_subset.md.

namespace halvern::inspect {

// The name by which the package knows an entry: without empty parts.
std::string PlainName(const std::string& name);

struct ZipEntry {
    std::string name;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t crc = 0;
    std::uint32_t packed_size = 0;
    std::uint32_t size = 0;
    std::uint64_t header_offset = 0;
    // By the central directory, which is what readers of libraries go by.
    std::uint64_t data_offset = 0;
    std::uint64_t central_offset = 0;
    bool is_folder = false;
};

struct ZipListing {
    std::vector<ZipEntry> entries;
    std::uint64_t directory_offset = 0;
};

// Lists what the directory tells as far as it can be read, and finds what is wrong with it. An
// empty file is an empty ZIP.
ZipListing ListZip(nuo::archive::iarchive& file, Findings& findings);

}  // namespace halvern::inspect
