#include "inspect/findings.h"

#include <algorithm>
#include <utility>

namespace halvern::inspect {

std::string Describe(const Finding& finding) {
    std::string line = finding.what;
    // Reports are sentences.
    if (line.ends_with('.') && !(finding.part.empty() && finding.where.empty())) line.pop_back();
    if (!finding.part.empty()) line += ", in " + finding.part;
    if (!finding.where.empty()) line += ", " + finding.where;
    return line;
}

void Findings::Add(Finding finding) {
    closed_ = closed_ || finding.closes;
    if (list_.size() < kMost || finding.closes)
        list_.push_back(std::move(finding));
    else if (!std::exchange(cut_, true))
        list_.push_back({"limit", "", "", "there is more, which is not listed", false});
}

void Findings::AddClosing(Finding finding) {
    finding.closes = true;
    Add(std::move(finding));
}

bool Findings::Has(const std::string& part) const {
    return std::any_of(list_.begin(), list_.end(),
                       [&](const Finding& finding) { return finding.part == part; });
}

std::string AtOffset(std::uint64_t offset) {
    return "offset " + std::to_string(offset);
}

}  // namespace halvern::inspect
