#pragma once

#include <cstdint>
#include <functional>

#include "assets/library/versiontable.h"
#include "assets/property/halvernasset.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

// The list of a library's definitions; see docs/formats/table_of_contents.md.
//
//   file  := entry*                                     to the end of the stream
//   entry := identifier:string asset_type:string definition_block:uint32 instance_block:uint32
//            base_schema:string                         the last from version 3.1 on

namespace korvanet::platform::assets {

struct TocEntry {
    nuo::string identifier;
    nuo::string asset_type;
    std::uint32_t definition_block = HalvernAsset::kNoBlock;
    std::uint32_t instance_block = HalvernAsset::kNoBlock;
    nuo::string base_schema;
};

// Reads to the end and gives each entry as it comes, also of a name that has come before. Entries
// that name no block are left out. Raises read_failed for a file that ends inside an entry and for
// a string longer than what is left.
void ReadTableOfContents(nuo::archive::iarchive& file, StreamVersion version,
                         const std::function<void(const TocEntry&)>& take);

void WriteTocEntry(nuo::archive::writer& out, const TocEntry& entry);

}  // namespace korvanet::platform::assets
