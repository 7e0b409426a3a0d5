#include <korvanet/platform/core/widestring.h>

#include <utility>

#include "platform/core/convert.h"

namespace korvanet::platform::core {

WideString::WideString() = default;
WideString::WideString(const wchar_t* text) : text_(text != nullptr ? text : L"") {}
WideString::WideString(const IString& other) : text_(other.AsWide()) {}
WideString::WideString(const WideString& other) : IString(), text_(other.text_) {}
WideString::WideString(WideString&& other) noexcept : text_(std::exchange(other.text_, {})) {
    other.utf8_made_ = false;
}
WideString::~WideString() = default;

WideString& WideString::operator=(const WideString& other) {
    if (this == &other) return *this;
    text_ = other.text_;
    utf8_made_ = false;
    return *this;
}

WideString& WideString::operator=(WideString&& other) noexcept {
    if (this == &other) return *this;
    text_ = std::exchange(other.text_, {});
    utf8_made_ = false;
    other.utf8_made_ = false;
    return *this;
}

const char* WideString::AsUTF8() const {
    if (!utf8_made_) {
        utf8_ = ToUtf8(text_);
        utf8_made_ = true;
    }
    return utf8_.c_str();
}

const wchar_t* WideString::AsWide() const {
    return text_.c_str();
}

// The new text is complete before the old one goes, since it may be a view of it.
void WideString::Assign(const wchar_t* text) {
    text_ = std::wstring(text != nullptr ? text : L"");
    utf8_made_ = false;
}

}  // namespace korvanet::platform::core
