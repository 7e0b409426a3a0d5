#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/library/tableofcontents.h"
#include "inspect/findings.h"
#include "inspect/packageparts.h"

namespace halvern::inspect {

struct ContentsEntry {
    korvanet::platform::assets::TocEntry entry;
    std::uint64_t offset = 0;
    // Readers take the entry for a definition.
    bool counts = false;
    // "entry 3 (Oak), offset 120"
    std::string where;
};

// All entries of the table of contents, those too that readers pass over; see
// docs/formats/table_of_contents.md.
std::vector<ContentsEntry> CheckContents(PackageParts& parts,
                                         korvanet::platform::assets::StreamVersion version,
                                         Findings& findings);

}  // namespace halvern::inspect
