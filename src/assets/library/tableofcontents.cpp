#include "assets/library/tableofcontents.h"

#include "nuo/common/archive/string.h"

namespace korvanet::platform::assets {

using nuo::archive::operator>>;
using nuo::archive::operator<<;

void ReadTableOfContents(nuo::archive::iarchive& file, StreamVersion version,
                         const std::function<void(const TocEntry&)>& take) {
    nuo::archive::reader& in = *file.query_reader();
    while (in.readable()) {
        TocEntry entry;
        in >> entry.identifier >> entry.asset_type >> entry.definition_block >>
            entry.instance_block;
        if (version.minor >= 1) in >> entry.base_schema;
        if (entry.definition_block == HalvernAsset::kNoBlock ||
            entry.instance_block == HalvernAsset::kNoBlock)
            continue;
        take(entry);
    }
}

void WriteTocEntry(nuo::archive::writer& out, const TocEntry& entry) {
    out << entry.identifier << entry.asset_type << entry.definition_block << entry.instance_block
        << entry.base_schema;
}

}  // namespace korvanet::platform::assets
