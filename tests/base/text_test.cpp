#include "assets/manager/base/text.h"

#include <korvanet/platform/core/utf8string.h>
#include <korvanet/platform/core/widestring.h>

namespace {

using korvanet::platform::assets::Assign;
using korvanet::platform::assets::FromWide;
using korvanet::platform::assets::ToUtf8;
using korvanet::platform::core::IString;
using korvanet::platform::core::UTF8String;
using korvanet::platform::core::WideString;

TEST(Text, ComesFromAnyString) {
    EXPECT_EQ(ToUtf8(UTF8String("gr\xC3\xBC\xF0\x9F\x8E\xA8")), "gr\xC3\xBC\xF0\x9F\x8E\xA8");
    EXPECT_EQ(ToUtf8(WideString(L"gr\xFC\x1F3A8")), "gr\xC3\xBC\xF0\x9F\x8E\xA8");
    EXPECT_EQ(ToUtf8(UTF8String()), "");
}

TEST(Text, ComesFromWideCharacters) {
    EXPECT_EQ(FromWide(L"gr\xFC\x20AC\x1F3A8"), "gr\xC3\xBC\xE2\x82\xAC\xF0\x9F\x8E\xA8");
    EXPECT_EQ(FromWide(L""), "");
    EXPECT_EQ(FromWide(L"\xD800"), "\xEF\xBF\xBD");
}

TEST(Text, FromNullIsEmpty) {
    EXPECT_TRUE(FromWide(nullptr).empty());
}

TEST(Text, GoesToAnyString) {
    WideString wide(L"before");
    Assign(wide, "gr\xC3\xBC\xF0\x9F\x8E\xA8");
    EXPECT_STREQ(wide.AsWide(), L"gr\xFC\x1F3A8");
    UTF8String utf8("before");
    Assign(utf8, nuo::string("\xE2\x82\xAC"));
    EXPECT_STREQ(utf8.AsUTF8(), "\xE2\x82\xAC");
    Assign(utf8, "");
    EXPECT_TRUE(utf8.IsEmpty());
}

TEST(Text, OfEveryLengthAroundTheShortOnesArrivesWhole) {
    for (std::size_t length : {253u, 254u, 255u, 256u, 257u, 5000u}) {
        const std::string text(length, 'x');
        WideString wide;
        Assign(wide, nuo::string_ref(text));
        EXPECT_EQ(std::wstring(wide.AsWide()), std::wstring(length, L'x'));
    }
}

TEST(Text, MalformedBytesArriveAsReplacementCharacters) {
    WideString wide;
    Assign(wide, "a\xFFz");
    EXPECT_STREQ(wide.AsWide(), L"a\xFFFDz");
}

class CountingString final : public IString {
public:
    const char* AsUTF8() const override { return ""; }
    const wchar_t* AsWide() const override { return L""; }
    void Assign(const wchar_t*) override { ++assignments; }

    int assignments = 0;
};

TEST(Text, IsAssignedOnce) {
    CountingString string;
    Assign(string, "text");
    EXPECT_EQ(string.assignments, 1);
}

}  // namespace
