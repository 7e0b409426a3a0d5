#pragma once

#include <cstdint>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// A random identifier (RFC 4122, version 4). Its text has 36 characters in upper case, without
/// braces: "6F9619FF-8B86-4011-B42D-00C04FC964FF".
class HALVERN_API JPKUUID {
public:
    /// Characters of the text, without the terminating NUL.
    static constexpr int kTextLength = 36;

    /// A fresh identifier. Raises `std::system_error` when the system has no source of randomness.
    JPKUUID();

    /// True when `text` has the form above; digits may be of either case.
    static bool IsValid(const IString& text);

    void ToString(IString& text) const;

    /// Writes the text and a NUL; the form for callers that want no string.
    void ToChars(char (&text)[kTextLength + 1]) const;

    friend bool operator==(const JPKUUID& left, const JPKUUID& right) {
        return left.high_ == right.high_ && left.low_ == right.low_;
    }

private:
    std::uint64_t high_;
    std::uint64_t low_;
};

}  // namespace korvanet::platform::core
