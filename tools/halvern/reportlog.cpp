#include "reportlog.h"

#include <utility>

#include <korvanet/platform/core/widestring.h>

#include "inspect/findings.h"

namespace halvern {

void ReportLog::Warning(const core::WideString& text, std::uint32_t, std::uint32_t) {
    Add(text);
}

void ReportLog::Error(const core::WideString& text, std::uint32_t, std::uint32_t) {
    Add(text);
}

void ReportLog::Add(const core::WideString& text) {
    std::string line = inspect::WithoutPosition(text.AsUTF8());
    if (!line.empty()) lines_.push_back(std::move(line));
}

std::string ReportLog::LastOr(const std::string& otherwise) const {
    return lines_.empty() ? otherwise : lines_.back();
}

std::string ReportLog::WhyOr(const std::string& why, const std::string& otherwise) const {
    return why.empty() ? LastOr(otherwise) : why;
}

}  // namespace halvern
