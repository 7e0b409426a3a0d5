#pragma once

#include <string>
#include <string_view>

namespace korvanet::platform::core {

/// The other form of a text, by the rules of `transcode.h`.
std::wstring ToWide(std::string_view text);
std::string ToUtf8(std::wstring_view text);

}  // namespace korvanet::platform::core
