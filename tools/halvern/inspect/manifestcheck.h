#pragma once

#include "inspect/findings.h"
#include "inspect/packageparts.h"

namespace halvern::inspect {

// Holds the fixed parts of the package against its files: each folder has both manifests, the links
// are the children, the content types cover all extensions, and the marker says what the package
// is. See docs/formats/manifests_and_options.md.
void CheckManifests(PackageParts& parts, Findings& findings);

}  // namespace halvern::inspect
