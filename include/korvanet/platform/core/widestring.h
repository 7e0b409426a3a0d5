#pragma once

#include <string>

#include <korvanet/platform/core/export.h>
#include <korvanet/platform/core/istring.h>

namespace korvanet::platform::core {

/// A string that keeps its text as UTF-32. The UTF-8 form is made when it is first asked for.
class HALVERN_API WideString final : public IString {
public:
    WideString();
    /// A copy of NUL-terminated `text`; null gives the empty string.
    WideString(
        const wchar_t* text);  // NOLINT(google-explicit-constructor): arguments read as texts
    explicit WideString(const IString& other);
    WideString(const WideString& other);
    WideString(WideString&& other) noexcept;
    WideString& operator=(const WideString& other);
    WideString& operator=(WideString&& other) noexcept;
    ~WideString() override;

    const char* AsUTF8() const override;
    const wchar_t* AsWide() const override;
    void Assign(const wchar_t* text) override;

    friend bool operator==(const WideString& left, const WideString& right) {
        return left.text_ == right.text_;
    }

private:
    std::wstring text_;
    mutable std::string utf8_;
    mutable bool utf8_made_ = false;
};

}  // namespace korvanet::platform::core
