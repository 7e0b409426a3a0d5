#pragma once

#include <cstdint>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/widestring.h>

namespace korvanet::platform::assets {

/// Hears why an operation of the library failed. Operations answer with their results alone, and
/// those are the same with and without a sink; the sink adds the words, for logs and for people.
///
/// Reports arrive on the thread of the call that failed, before it returns. The text lives for the
/// length of the call; the two further arguments are always zero. A sink must not throw and must
/// not call the library.
class IReportSink {
public:
    /// Not sent by the library; these keep their places in the order of the operations.
    virtual void Trace(const core::WideString& text, std::uint32_t code, std::uint32_t context) = 0;
    virtual void Information(const core::WideString& text, std::uint32_t code,
                             std::uint32_t context) = 0;

    /// The operation went on, or refused something of little weight.
    virtual void Warning(const core::WideString& text, std::uint32_t code,
                         std::uint32_t context) = 0;

    /// The operation failed.
    virtual void Error(const core::WideString& text, std::uint32_t code, std::uint32_t context) = 0;

    virtual ~IReportSink() = default;
};

/// Sends the reports of the whole process to `sink` from now on, and returns the former sink. Null,
/// which is also the state at start, drops them unformatted. The sink stays the caller's; it must
/// live until it is replaced.
HALVERN_API IReportSink* SetReportSink(IReportSink* sink);

}  // namespace korvanet::platform::assets
