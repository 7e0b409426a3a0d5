#include "assets/property/widekey.h"

#include <cstdint>
#include <cwchar>

#include "platform/core/transcode.h"

namespace korvanet::platform::assets {

WideKey::WideKey(const wchar_t* text) {
    if (text == nullptr) {
        return;
    }
    if (TakeAscii(text)) {
        return;
    }
    const wchar_t* end = text + std::wcslen(text);
    size_ = core::Utf8Size(text, end);
    char* bytes = inline_.data();
    if (size_ > inline_.size()) {
        outer_ = std::make_unique<char[]>(size_);
        bytes = outer_.get();
    }
    core::EncodeUtf8(text, end, bytes);
    data_ = bytes;
}

// Most names are short and plain.
bool WideKey::TakeAscii(const wchar_t* text) {
    constexpr std::uint32_t kAsciiEnd = 0x80;
    for (std::size_t i = 0; i < inline_.size(); ++i) {
        const auto unit = static_cast<std::uint32_t>(text[i]);
        if (unit == 0) {
            data_ = inline_.data();
            size_ = i;
            return true;
        }
        if (unit >= kAsciiEnd) {
            return false;
        }
        inline_[i] = static_cast<char>(unit);
    }
    return false;
}

}  // namespace korvanet::platform::assets
