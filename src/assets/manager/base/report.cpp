#include "assets/manager/base/report.h"

#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/widestring.h>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"

namespace korvanet::platform::assets {

namespace {

IReportSink* sink = nullptr;

using SinkOperation = void (IReportSink::*)(const core::WideString&, std::uint32_t, std::uint32_t);

// A report is advice: whatever goes wrong with it, the operation's result is what counts.
void Send(SinkOperation operation, nuo::string_ref text) noexcept {
    if (sink == nullptr) return;
    Guarded([&] {
        core::WideString wide;
        Assign(wide, text);
        (sink->*operation)(wide, 0, 0);
    });
}

}  // namespace

IReportSink* SetReportSink(IReportSink* next) {
    IReportSink* const former = sink;
    sink = next;
    return former;
}

bool HasReportSink() noexcept {
    return sink != nullptr;
}

void HalvernReportBase::Deliver() noexcept {}

void HalvernWarn::Deliver() noexcept {
    Send(&IReportSink::Warning, text());
}

void HalvernError::Deliver() noexcept {
    Send(&IReportSink::Error, text());
}

}  // namespace korvanet::platform::assets
