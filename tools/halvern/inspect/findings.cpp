#include "inspect/findings.h"

#include <algorithm>
#include <string_view>
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

std::string WithoutPosition(const std::string& text) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.find(')');
    if (open == std::string::npos || close == std::string::npos || close <= open + 1) return text;
    const std::string_view path = std::string_view(text).substr(0, open);
    const bool is_source = path.ends_with(".cpp") || path.ends_with(".h");
    const bool is_line = text.find_first_not_of("0123456789", open + 1) == close;
    return is_source && is_line ? text.substr(close + 1) : text;
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
