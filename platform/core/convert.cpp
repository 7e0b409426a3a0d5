#include "platform/core/convert.h"

#include "platform/core/transcode.h"

namespace korvanet::platform::core {

std::wstring ToWide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    wchar_t* const end = DecodeUtf8(text.data(), text.data() + text.size(), wide.data());
    wide.resize(static_cast<std::size_t>(end - wide.data()));
    return wide;
}

std::string ToUtf8(std::wstring_view text) {
    std::string utf8(Utf8Size(text.data(), text.data() + text.size()), '\0');
    EncodeUtf8(text.data(), text.data() + text.size(), utf8.data());
    return utf8;
}

}  // namespace korvanet::platform::core
