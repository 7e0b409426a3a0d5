#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include <korvanet/platform/core/istring.h>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Writes UTF-8 text to a string of the host. Short texts cost no allocation of ours.
void AssignText(core::IString& target, nuo::string_ref text);

// The UTF-8 form of a wide text that is not null.
nuo::string FromWide(const wchar_t* text);

// The UTF-8 form of a wide text for the length of a lookup; short texts stay on the stack. A null
// text is empty.
class WideKey {
public:
    explicit WideKey(const wchar_t* text);
    WideKey(const WideKey&) = delete;
    WideKey& operator=(const WideKey&) = delete;

    operator nuo::string_ref() const { return {data_, size_}; }

private:
    std::array<char, 256> inline_;
    std::unique_ptr<char[]> outer_;
    const char* data_ = "";
    std::size_t size_ = 0;
};

}  // namespace korvanet::platform::assets
