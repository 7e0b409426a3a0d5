#include "assets/manager/base/text.h"

#include <cwchar>
#include <memory>

#include "platform/core/transcode.h"

namespace korvanet::platform::assets {

namespace {

// Most texts are names; these are widened without a trip to the heap.
constexpr std::uint64_t kShortText = 255;

}  // namespace

nuo::string ToUtf8(const core::IString& text) {
    return nuo::string(text.AsUTF8());
}

nuo::string FromWide(const wchar_t* text) {
    if (text == nullptr) return {};
    const wchar_t* const end = text + std::wcslen(text);
    return nuo::string::filled(core::Utf8Size(text, end),
                               [&](char* bytes) { core::EncodeUtf8(text, end, bytes); });
}

void Assign(core::IString& target, nuo::string_ref text) {
    wchar_t buffer[kShortText + 1];
    std::unique_ptr<wchar_t[]> block;
    wchar_t* wide = buffer;
    if (text.size() > kShortText) {
        block = std::make_unique_for_overwrite<wchar_t[]>(text.size() + 1);
        wide = block.get();
    }
    *core::DecodeUtf8(text.begin(), text.end(), wide) = L'\0';
    target.Assign(wide);
}

}  // namespace korvanet::platform::assets
