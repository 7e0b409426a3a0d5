#include "assets/schema/valuelist.h"

#include "schema/support.h"

namespace korvanet::platform::assets {

namespace {

Lines Split(const char* text) {
    Lines pieces;
    for (const nuo::string& piece : SplitValues(text))
        pieces.push_back(Str(piece));
    return pieces;
}

std::string Escape(const char* text) {
    nuo::string_builder out;
    AppendEscapedValue(out, text);
    return out.c_str();
}

}  // namespace

TEST(ValueListTest, SplitsAtCommaAndBar) {
    EXPECT_EQ(Split("a,b|c"), (Lines{"a", "b", "c"}));
}

TEST(ValueListTest, KeepsASeparatorBehindABackslash) {
    EXPECT_EQ(Split("a\\,b|c"), (Lines{"a,b", "c"}));
    EXPECT_EQ(Split("a\\|b"), (Lines{"a|b"}));
}

TEST(ValueListTest, DropsTheBackslashBeforeAnyCharacter) {
    EXPECT_EQ(Split("\\a\\\\b"), (Lines{"a\\b"}));
}

TEST(ValueListTest, ABackslashAtTheEndIsDropped) {
    EXPECT_EQ(Split("a\\"), (Lines{"a"}));
}

TEST(ValueListTest, KeepsEmptyPieces) {
    EXPECT_EQ(Split(""), (Lines{""}));
    EXPECT_EQ(Split("a,"), (Lines{"a", ""}));
    EXPECT_EQ(Split(",|"), (Lines{"", "", ""}));
}

TEST(ValueListTest, ReadsEachPieceAsANumberAndAFailingOneAsZero) {
    EXPECT_EQ(SplitNumbers("1.5| -2e3,x,,+.5"), (std::vector<double>{1.5, -2000.0, 0.0, 0.0, 0.5}));
    EXPECT_EQ(SplitNumbers("1e999"), (std::vector<double>{0.0}));
    EXPECT_EQ(SplitNumbers("7 apples"), (std::vector<double>{7.0}));
}

TEST(ValueListTest, EscapesWhatSplittingWouldTakeApart) {
    EXPECT_EQ(Escape("a\\b,c|d"), "a\\\\b\\,c\\|d");
    EXPECT_EQ(Split(Escape("a\\b,c|d").c_str()), (Lines{"a\\b,c|d"}));
}

}  // namespace korvanet::platform::assets
