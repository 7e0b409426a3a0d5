#pragma once

#include <cstddef>

// UTF-8 to UTF-32 (`wchar_t`) and back, without loss for well-formed text. What is not well formed
// becomes U+FFFD: one for each maximal part of a broken sequence, as Unicode recommends, so that
// the text behind it is read as it was meant.

namespace korvanet::platform::core {

static_assert(sizeof(wchar_t) == 4, "wide text is UTF-32");

/// Writes the code points of [first, last) to `out` and returns the position behind them. There are
/// never more code points than bytes.
wchar_t* DecodeUtf8(const char* first, const char* last, wchar_t* out);

/// The bytes that `EncodeUtf8` writes for [first, last), at most four for each.
std::size_t Utf8Size(const wchar_t* first, const wchar_t* last);

/// Writes the UTF-8 form of [first, last) to `out` and returns the position behind it.
char* EncodeUtf8(const wchar_t* first, const wchar_t* last, char* out);

}  // namespace korvanet::platform::core
