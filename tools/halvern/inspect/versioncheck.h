#pragma once

#include "assets/library/versiontable.h"
#include "inspect/findings.h"
#include "inspect/packageparts.h"

namespace halvern::inspect {

// The versions that the library's streams are read by, with what is wrong with the text that tells
// them; see docs/formats/version_table.md. A library without the part has the present versions.
korvanet::platform::assets::VersionTable CheckVersionTable(PackageParts& parts, Findings& findings);

}  // namespace halvern::inspect
