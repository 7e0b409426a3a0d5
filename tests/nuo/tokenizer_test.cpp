#include "nuo/common/string_algo/tokenizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> Tokens(nuo::string_ref text) {
    std::vector<std::string> tokens;
    nuo::tokenizer cut(text, '.');
    nuo::string_ref token;
    while (cut.next(token))
        tokens.emplace_back(token.begin(), token.end());
    EXPECT_FALSE(cut.next(token));
    return tokens;
}

TEST(Tokenizer, KeepsEmptyTokens) {
    EXPECT_THAT(Tokens("a.b"), ElementsAre("a", "b"));
    EXPECT_THAT(Tokens(".a"), ElementsAre("", "a"));
    EXPECT_THAT(Tokens("a."), ElementsAre("a", ""));
    EXPECT_THAT(Tokens("a..b"), ElementsAre("a", "", "b"));
    EXPECT_THAT(Tokens("abc"), ElementsAre("abc"));
}

TEST(Tokenizer, LoneSeparatorsGiveOneTokenMore) {
    EXPECT_THAT(Tokens("."), ElementsAre("", ""));
    EXPECT_THAT(Tokens(".."), ElementsAre("", "", ""));
}

TEST(Tokenizer, EmptyPathYieldsNoTokens) {
    EXPECT_THAT(Tokens(""), IsEmpty());
}

TEST(Tokenizer, TellsTheRest) {
    nuo::tokenizer cut("a.b.c", '.');
    nuo::string_ref token;
    EXPECT_EQ(cut.rest(), "a.b.c");
    ASSERT_TRUE(cut.next(token));
    EXPECT_EQ(cut.rest(), ".b.c");
    ASSERT_TRUE(cut.next(token));
    ASSERT_TRUE(cut.next(token));
    EXPECT_EQ(cut.rest(), "");
    EXPECT_FALSE(cut.next(token));
    EXPECT_EQ(token, "c");
}

TEST(Tokenizer, CutsAtTheGivenSeparatorOnly) {
    nuo::tokenizer cut("a.b/c", '/');
    nuo::string_ref token;
    ASSERT_TRUE(cut.next(token));
    EXPECT_EQ(token, "a.b");
}

}  // namespace
