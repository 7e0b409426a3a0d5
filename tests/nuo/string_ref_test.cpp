#include "nuo/common/string_ref.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using nuo::string_ref;

TEST(StringRef, IsMadeFromLiteralsAtCompileTime) {
    constexpr string_ref text = "abc";
    static_assert(text.size() == 3 && text[1] == 'b' && text == string_ref("abcd", 3));
    static_assert(string_ref().empty() && string_ref(static_cast<const char*>(nullptr)).empty());
    EXPECT_EQ(text, "abc");
}

TEST(StringRef, HoldsNulBytes) {
    const string_ref text("a\0b", 3);
    EXPECT_EQ(text.size(), 3u);
    EXPECT_FALSE(text == string_ref("a"));
}

TEST(StringRef, FindsAndCuts) {
    const string_ref text = "a/bc/d";
    EXPECT_EQ(text.find('/'), 1u);
    EXPECT_EQ(text.find('/', 2), 4u);
    EXPECT_EQ(text.find('x'), string_ref::npos);
    EXPECT_EQ(text.find('/', 99), string_ref::npos);
    EXPECT_EQ(text.rfind('/'), 4u);
    EXPECT_EQ(text.rfind('x'), string_ref::npos);
    EXPECT_EQ(text.find("c/"), 3u);
    EXPECT_EQ(text.find("c/", 4), string_ref::npos);
    EXPECT_EQ(text.find(""), 0u);
    EXPECT_EQ(text.find("a/bc/d/e"), string_ref::npos);
    EXPECT_EQ(text.substr(2, 2), "bc");
    EXPECT_EQ(text.substr(5), "d");
    EXPECT_EQ(text.substr(6), "");
    EXPECT_EQ(text.substr(99), "");
    EXPECT_EQ(text.front(), 'a');
    EXPECT_EQ(text.back(), 'd');
    EXPECT_TRUE(text.starts_with("a/"));
    EXPECT_FALSE(text.starts_with("a/bc/d/"));
    EXPECT_TRUE(text.ends_with("/d"));
    EXPECT_FALSE(text.ends_with("xa/bc/d"));
}

TEST(StringRef, SortsBySignedBytes) {
    EXPECT_LT(string_ref("\xC3\xA9"), string_ref("A"));
    EXPECT_LT(string_ref("a"), string_ref("ab"));
    EXPECT_FALSE(string_ref("ab") < string_ref("ab"));
    EXPECT_LT(string_ref(""), string_ref("\x80"));
}

TEST(StringRef, ComparesAsAByteLoopDoesAtEveryLength) {
    const auto by_bytes = [](const std::string& a, const std::string& b) {
        return std::lexicographical_compare(
            a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
                return static_cast<signed char>(x) < static_cast<signed char>(y);
            });
    };
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string base(length, 'm');
        for (std::size_t at = 0; at <= length; ++at) {
            for (const char c : {'\x80', '\xFF', '\x01', 'z'}) {
                std::string other = base;
                if (at < length)
                    other[at] = c;
                else
                    other += c;
                const string_ref a(base.data(), base.size()), b(other.data(), other.size());
                ASSERT_EQ(a < b, by_bytes(base, other)) << length << " " << at;
                ASSERT_EQ(b < a, by_bytes(other, base)) << length << " " << at;
            }
        }
    }
}

}  // namespace
