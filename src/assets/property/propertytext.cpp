#include "assets/property/propertytext.h"

#include <cwchar>

#include "platform/core/transcode.h"

namespace korvanet::platform::assets {

void AssignText(core::IString& target, nuo::string_ref text) {
    constexpr std::size_t kInline = 256;
    if (text.size() < kInline) {
        std::array<wchar_t, kInline> wide;
        *core::DecodeUtf8(text.begin(), text.end(), wide.data()) = L'\0';
        target.Assign(wide.data());
        return;
    }
    const auto wide = std::make_unique<wchar_t[]>(text.size() + 1);
    *core::DecodeUtf8(text.begin(), text.end(), wide.get()) = L'\0';
    target.Assign(wide.get());
}

nuo::string FromWide(const wchar_t* text) {
    const wchar_t* end = text + std::wcslen(text);
    return nuo::string::filled(core::Utf8Size(text, end),
                               [&](char* bytes) { core::EncodeUtf8(text, end, bytes); });
}

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
