#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

// The UTF-8 form of a wide text for the length of a lookup; short texts stay on the stack. A null
// text is empty.
class WideKey {
public:
    explicit WideKey(const wchar_t* text);
    WideKey(const WideKey&) = delete;
    WideKey& operator=(const WideKey&) = delete;

    operator nuo::string_ref() const { return {data_, size_}; }

private:
    bool TakeAscii(const wchar_t* text);

    std::array<char, 256> inline_;
    std::unique_ptr<char[]> outer_;
    const char* data_ = "";
    std::size_t size_ = 0;
};

}  // namespace korvanet::platform::assets
