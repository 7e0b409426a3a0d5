#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "inspect/verify.h"
#include "support/samplefile.h"
#include "support/temporaryfolder.h"

namespace halvern::inspect {

inline bool operator==(const Finding& a, const Finding& b) {
    return a.rule == b.rule && a.part == b.part && a.where == b.where && a.what == b.what;
}

inline void PrintTo(const Finding& finding, std::ostream* out) {
    *out << "{\"" << finding.rule << "\", \"" << finding.part << "\", \"" << finding.where
         << "\", \"" << finding.what << "\"}";
}

// What the walk finds in a file of these bytes.
inline std::vector<Finding> FindingsIn(const std::string& bytes) {
    const halvern_tests::TemporaryFolder folder;
    halvern_tests::WriteFile(folder.Path("a.jpk"), bytes);
    return Verify(folder.Path("a.jpk"));
}

using Expected = std::vector<Finding>;

}  // namespace halvern::inspect
