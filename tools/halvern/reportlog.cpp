#include "reportlog.h"

#include <string_view>
#include <utility>

#include <korvanet/platform/core/widestring.h>

namespace halvern {

namespace {

// A failure that is handed on as a report begins with its place in the source, "path.cpp(12)",
// which says nothing to those who read the words.
std::string WithoutPosition(const std::string& text) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.find(')');
    if (open == std::string::npos || close == std::string::npos || close <= open + 1) return text;
    const std::string_view path = std::string_view(text).substr(0, open);
    const bool is_source = path.ends_with(".cpp") || path.ends_with(".h");
    const bool is_line = text.find_first_not_of("0123456789", open + 1) == close;
    return is_source && is_line ? text.substr(close + 1) : text;
}

}  // namespace

void ReportLog::Warning(const core::WideString& text, std::uint32_t, std::uint32_t) {
    Add(text);
}

void ReportLog::Error(const core::WideString& text, std::uint32_t, std::uint32_t) {
    Add(text);
}

void ReportLog::Add(const core::WideString& text) {
    std::string line = WithoutPosition(text.AsUTF8());
    if (!line.empty()) lines_.push_back(std::move(line));
}

std::string ReportLog::LastOr(const std::string& otherwise) const {
    return lines_.empty() ? otherwise : lines_.back();
}

std::string ReportLog::WhyOr(const std::string& why, const std::string& otherwise) const {
    return why.empty() ? LastOr(otherwise) : why;
}

}  // namespace halvern
