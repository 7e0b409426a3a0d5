// The strings at the interfaces, and the conversion between their two forms.

#include <korvanet/platform/core/utf8string.h>
#include <korvanet/platform/core/widestring.h>

#include "platform/core/convert.h"

namespace {

using korvanet::platform::core::IString;
using korvanet::platform::core::ToUtf8;
using korvanet::platform::core::ToWide;
using korvanet::platform::core::UTF8String;
using korvanet::platform::core::WideString;

struct Pair {
    const char* utf8;
    const wchar_t* wide;
};

// The ends of every length of sequence, and what lies around the surrogates.
const Pair kPairs[] = {
    {"", L""},
    {"plain", L"plain"},
    {"\x01\x7F", L"\x01\x7F"},
    {"\xC2\x80\xDF\xBF", L"\x80\x7FF"},
    {"\xE0\xA0\x80\xEF\xBF\xBF", L"\x800\xFFFF"},
    {"\xED\x9F\xBF\xEE\x80\x80", L"\xD7FF\xE000"},
    {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\x10000\x10FFFF"},
    {"gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x8E\xA8", L"gr\xFC\xDF \x20AC \x1F3A8"},
};

TEST(UTF8String, ConvertsWithoutLoss) {
    for (const Pair& pair : kPairs) {
        const UTF8String text(pair.utf8);
        EXPECT_STREQ(text.AsUTF8(), pair.utf8);
        EXPECT_STREQ(text.AsWide(), pair.wide);
        UTF8String assigned("before");
        assigned.Assign(pair.wide);
        EXPECT_STREQ(assigned.AsUTF8(), pair.utf8);
        EXPECT_STREQ(assigned.AsWide(), pair.wide);
    }
}

TEST(WideString, ConvertsWithoutLoss) {
    for (const Pair& pair : kPairs) {
        const WideString text(pair.wide);
        EXPECT_STREQ(text.AsWide(), pair.wide);
        EXPECT_STREQ(text.AsUTF8(), pair.utf8);
        const WideString copied{UTF8String(pair.utf8)};
        EXPECT_STREQ(copied.AsWide(), pair.wide);
        EXPECT_STREQ(copied.AsUTF8(), pair.utf8);
    }
}

TEST(Transcode, EveryCodePointSurvivesTheRoundTrip) {
    for (char32_t point = 1; point <= 0x10FFFF; ++point) {
        if (point == 0xD800) point = 0xE000;
        const std::wstring wide(1, static_cast<wchar_t>(point));
        ASSERT_EQ(ToWide(ToUtf8(wide)), wide) << static_cast<unsigned>(point);
    }
}

TEST(Transcode, MalformedUtf8ReadsAsReplacementCharacters) {
    const Pair broken[] = {
        {"a\x80z", L"a\xFFFDz"},                  // a continuation alone
        {"a\xC3", L"a\xFFFD"},                    // cut off
        {"a\xE2\x82z", L"a\xFFFDz"},              // one replacement for the part that is there
        {"\xF0\x9F\x8Ez", L"\xFFFDz"},            // cut off before the fourth byte
        {"\xC0\xAF", L"\xFFFD\xFFFD"},            // overlong
        {"\xE0\x80\xAF", L"\xFFFD\xFFFD\xFFFD"},  // overlong
        {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},  // a surrogate
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"},  // above U+10FFFF
        {"\xFE\xFF", L"\xFFFD\xFFFD"},
        {"\xC3\xC3\xBC", L"\xFFFD\xFC"},
    };
    for (const Pair& pair : broken)
        EXPECT_EQ(ToWide(pair.utf8), pair.wide) << pair.utf8;
}

TEST(Transcode, WideUnitsThatAreNoCodePointsReadAsReplacementCharacters) {
    EXPECT_EQ(ToUtf8(L"\xD800"), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(L"\xDFFF"), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(std::wstring(1, static_cast<wchar_t>(-1))), "\xEF\xBF\xBD");
}

TEST(UTF8String, KeepsTheBytesItIsGivenEvenMalformedOnes) {
    const UTF8String text("a\xFFz");
    EXPECT_STREQ(text.AsUTF8(), "a\xFFz");
    EXPECT_STREQ(text.AsWide(), L"a\xFFFDz");
    EXPECT_STREQ(UTF8String(static_cast<const IString&>(text)).AsUTF8(), "a\xFFz");
}

template <class String>
class AnyString : public testing::Test {};

using Strings = testing::Types<UTF8String, WideString>;
TYPED_TEST_SUITE(AnyString, Strings);

TYPED_TEST(AnyString, StartsEmpty) {
    const TypeParam text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_STREQ(text.AsWide(), L"");
}

TYPED_TEST(AnyString, NullAssignmentEmpties) {
    TypeParam text;
    text.Assign(L"something");
    EXPECT_FALSE(text.IsEmpty());
    text.Assign(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text.AsWide(), L"");
}

TYPED_TEST(AnyString, AssignmentFromItsOwnTextWorks) {
    TypeParam text;
    text.Assign(L"a somewhat longer text than fits inside");
    text.Assign(text.AsWide() + 2);
    EXPECT_STREQ(text.AsWide(), L"somewhat longer text than fits inside");
    EXPECT_STREQ(text.AsUTF8(), "somewhat longer text than fits inside");
}

TYPED_TEST(AnyString, AssignmentRenewsBothForms) {
    TypeParam text;
    text.Assign(L"one");
    EXPECT_STREQ(text.AsUTF8(), "one");
    EXPECT_STREQ(text.AsWide(), L"one");
    text.Assign(L"two");
    EXPECT_STREQ(text.AsUTF8(), "two");
    EXPECT_STREQ(text.AsWide(), L"two");
}

TYPED_TEST(AnyString, CopiesAreIndependent) {
    TypeParam text;
    text.Assign(L"one");
    TypeParam copy(text);
    EXPECT_EQ(copy, text);
    text.Assign(L"two");
    EXPECT_STREQ(copy.AsUTF8(), "one");
    copy = text;
    EXPECT_STREQ(copy.AsWide(), L"two");
    TypeParam& same = copy;
    copy = same;
    EXPECT_STREQ(copy.AsWide(), L"two");
}

TYPED_TEST(AnyString, MovingTakesTheTextAndLeavesNone) {
    TypeParam text;
    text.Assign(L"a text that is long enough to be moved as a block");
    EXPECT_STRNE(text.AsUTF8(), "");
    EXPECT_STRNE(text.AsWide(), L"");
    TypeParam taken(std::move(text));
    EXPECT_STREQ(taken.AsUTF8(), "a text that is long enough to be moved as a block");
    EXPECT_STREQ(text.AsUTF8(), "");
    EXPECT_STREQ(text.AsWide(), L"");
    text = std::move(taken);
    EXPECT_STREQ(text.AsWide(), L"a text that is long enough to be moved as a block");
    EXPECT_STREQ(taken.AsUTF8(), "");
    EXPECT_STREQ(taken.AsWide(), L"");
}

TEST(UTF8String, NullGivesTheEmptyString) {
    EXPECT_TRUE(UTF8String(static_cast<const char*>(nullptr)).IsEmpty());
    UTF8String text("x");
    text.AssignUTF8(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    text.AssignUTF8("y");
    EXPECT_STREQ(text.AsWide(), L"y");
}

TEST(WideString, NullGivesTheEmptyString) {
    EXPECT_TRUE(WideString(static_cast<const wchar_t*>(nullptr)).IsEmpty());
}

}  // namespace
