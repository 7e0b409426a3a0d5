#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <korvanet/platform/assets/reportsink.h>

namespace halvern {

namespace assets = korvanet::platform::assets;
namespace core = korvanet::platform::core;

// Keeps the words of the reports, for those who have to say why a call failed.
class ReportLog final : public assets::IReportSink {
public:
    ReportLog() : former_(assets::SetReportSink(this)) {}
    ReportLog(const ReportLog&) = delete;
    ReportLog& operator=(const ReportLog&) = delete;
    ~ReportLog() override { assets::SetReportSink(former_); }

    void Trace(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Information(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Warning(const core::WideString& text, std::uint32_t, std::uint32_t) override;
    void Error(const core::WideString& text, std::uint32_t, std::uint32_t) override;

    void Forget() { lines_.clear(); }
    // The last report since `Forget`, or `otherwise`.
    std::string LastOr(const std::string& otherwise) const;
    // `why` where it says something, or else `LastOr`: what a file tells of itself is nearer to the
    // cause than what the reports tell of a call.
    std::string WhyOr(const std::string& why, const std::string& otherwise) const;

private:
    void Add(const core::WideString& text);

    assets::IReportSink* former_;
    std::vector<std::string> lines_;
};

}  // namespace halvern
