#pragma once

#include <string>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// A string that keeps its text as UTF-8. The bytes it is given stay as they are, well formed or
/// not; the wide form is made when it is first asked for.
class HALVERN_API UTF8String final : public IString {
public:
    UTF8String();
    /// A copy of NUL-terminated `text`; null gives the empty string.
    UTF8String(const char* text);  // NOLINT(google-explicit-constructor): arguments read as texts
    explicit UTF8String(const IString& other);
    UTF8String(const UTF8String& other);
    UTF8String(UTF8String&& other) noexcept;
    UTF8String& operator=(const UTF8String& other);
    UTF8String& operator=(UTF8String&& other) noexcept;
    ~UTF8String() override;

    const char* AsUTF8() const override;
    const wchar_t* AsWide() const override;
    void Assign(const wchar_t* text) override;

    /// Replaces the text by a copy of NUL-terminated UTF-8; null empties the string.
    void AssignUTF8(const char* text);

    friend bool operator==(const UTF8String& left, const UTF8String& right) {
        return left.text_ == right.text_;
    }

private:
    std::string text_;
    mutable std::wstring wide_;
    mutable bool wide_made_ = false;
};

}  // namespace korvanet::platform::core
