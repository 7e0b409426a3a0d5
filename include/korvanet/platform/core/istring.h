#pragma once

namespace korvanet::platform::core {

/// A text at the interfaces of the library: an argument that goes in, or a place that a result is
/// written to. `UTF8String` and `WideString` are the ready-made ones; a host may derive its own.
///
/// Wide text is UTF-32, one `wchar_t` per code point. Both forms describe the same text, and going
/// from one to the other and back loses nothing of well-formed text. What is not well formed (bytes
/// that are not UTF-8, surrogates, values above U+10FFFF) reads as U+FFFD in the other form.
/// A text ends at its first NUL.
///
/// An operation that writes a result assigns once, and only when it succeeds: on failure the string
/// keeps what it held, unless the operation says otherwise.
class IString {
public:
    virtual ~IString() = default;

    /// The text as NUL-terminated UTF-8, never null. Valid until the string is assigned or
    /// destroyed.
    virtual const char* AsUTF8() const = 0;

    /// The text as NUL-terminated UTF-32, never null. Valid until the string is assigned or
    /// destroyed.
    virtual const wchar_t* AsWide() const = 0;

    /// Replaces the text by a copy of `text`; null empties the string. `text` may point into this
    /// string.
    virtual void Assign(const wchar_t* text) = 0;

    bool IsEmpty() const { return *AsUTF8() == '\0'; }
};

}  // namespace korvanet::platform::core
