#include "assets/property/widekey.h"

#include <string>

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

std::string Utf8(const wchar_t* text) {
    const WideKey key(text);
    const nuo::string_ref bytes = key;
    return {bytes.begin(), bytes.end()};
}

TEST(WideKeyTest, ATextBecomesUtf8) {
    EXPECT_EQ(Utf8(L""), "");
    EXPECT_EQ(Utf8(nullptr), "");
    EXPECT_EQ(Utf8(L"gloss"), "gloss");
    EXPECT_EQ(Utf8(L"\u00E4\U0001F600"), "\xC3\xA4\xF0\x9F\x98\x80");
}

TEST(WideKeyTest, LongTextsAreWholeToo) {
    for (const std::size_t size : {255u, 256u, 257u, 5000u}) {
        EXPECT_EQ(Utf8(std::wstring(size, L'x').c_str()), std::string(size, 'x'));
    }
}

}  // namespace
}  // namespace korvanet::platform::assets
