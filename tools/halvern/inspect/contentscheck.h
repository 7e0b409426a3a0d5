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
    std::uint64_t number = 0;  // from 1

    // "entry 3 (Oak), offset 120"
    std::string Where() const;
};

// The entries of the table of contents; see docs/formats/table_of_contents.md. Those that readers
// pass over are among them, but for the many that a hostile file may have: one without blocks then
// stands for the rest.
std::vector<ContentsEntry> CheckContents(PackageParts& parts,
                                         korvanet::platform::assets::StreamVersion version,
                                         Findings& findings);

}  // namespace halvern::inspect
