#include "reportlog.h"

#include <korvanet/platform/core/widestring.h>

namespace halvern {

void ReportLog::Warning(const core::WideString& text, std::uint32_t, std::uint32_t) {
    lines_.emplace_back(text.AsUTF8());
}

void ReportLog::Error(const core::WideString& text, std::uint32_t, std::uint32_t) {
    lines_.emplace_back(text.AsUTF8());
}

std::string ReportLog::LastOr(const std::string& otherwise) const {
    return lines_.empty() ? otherwise : lines_.back();
}

std::string ReportLog::WhyOr(const std::string& why, const std::string& otherwise) const {
    return why.empty() ? LastOr(otherwise) : why;
}

}  // namespace halvern
