#pragma once

#include <korvanet/platform/core/istring.h>

#include "nuo/common/string.h"

// Texts of the host to texts of the system and back. Inside the system text is UTF-8.

namespace korvanet::platform::assets {

/// The text of a host's string.
nuo::string ToUtf8(const core::IString& text);

/// The text of NUL-terminated wide characters; null gives the empty string.
nuo::string FromWide(const wchar_t* text);

/// Writes `text` to a host's string, by one assignment. Bytes that are not UTF-8 arrive as U+FFFD.
void Assign(core::IString& target, nuo::string_ref text);

}  // namespace korvanet::platform::assets
