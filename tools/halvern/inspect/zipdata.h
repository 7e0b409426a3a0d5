#pragma once

#include <set>
#include <string>

#include "inspect/findings.h"
#include "inspect/ziplisting.h"
#include "nuo/common/iarchive.h"

namespace halvern::inspect {

// Compares every local header with the directory, and reads the data of every entry once to its
// end. Returns the names of the entries whose data cannot be had; a wrong checksum alone is found
// and does not count among them.
std::set<std::string> CheckZipData(nuo::archive::iarchive& file, const ZipListing& listing,
                                   Findings& findings);

}  // namespace halvern::inspect
