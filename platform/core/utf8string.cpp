#include <korvanet/platform/core/utf8string.h>

#include <utility>

#include "platform/core/convert.h"

namespace korvanet::platform::core {

UTF8String::UTF8String() = default;
UTF8String::UTF8String(const char* text) : text_(text != nullptr ? text : "") {}
UTF8String::UTF8String(const IString& other) : text_(other.AsUTF8()) {}
UTF8String::UTF8String(const UTF8String& other) : IString(), text_(other.text_) {}
UTF8String::UTF8String(UTF8String&& other) noexcept : text_(std::exchange(other.text_, {})) {
    other.wide_made_ = false;
}
UTF8String::~UTF8String() = default;

UTF8String& UTF8String::operator=(const UTF8String& other) {
    if (this == &other) return *this;
    text_ = other.text_;
    wide_made_ = false;
    return *this;
}

UTF8String& UTF8String::operator=(UTF8String&& other) noexcept {
    if (this == &other) return *this;
    text_ = std::exchange(other.text_, {});
    wide_made_ = false;
    other.wide_made_ = false;
    return *this;
}

const char* UTF8String::AsUTF8() const {
    return text_.c_str();
}

const wchar_t* UTF8String::AsWide() const {
    if (!wide_made_) {
        wide_ = ToWide(text_);
        wide_made_ = true;
    }
    return wide_.c_str();
}

// The new text is complete before the old one goes, since it may be a view of it.
void UTF8String::Assign(const wchar_t* text) {
    text_ = text != nullptr ? ToUtf8(text) : std::string();
    wide_made_ = false;
}

void UTF8String::AssignUTF8(const char* text) {
    text_ = std::string(text != nullptr ? text : "");
    wide_made_ = false;
}

}  // namespace korvanet::platform::core
