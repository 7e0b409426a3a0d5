#include "assets/property/widekey.h"

#include <cwchar>

#include "platform/core/transcode.h"

namespace korvanet::platform::assets {

WideKey::WideKey(const wchar_t* text) {
    if (text == nullptr) {
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

}  // namespace korvanet::platform::assets
