#include "valuetext.h"

#include <gtest/gtest.h>

#include "jsontext.h"
#include "reportlog.h"

namespace halvern {
namespace {

using Texts = std::vector<std::string>;

TEST(SplitList, CutsAtEachSeparator) {
    EXPECT_EQ(SplitList("a,b,,c", ','), (Texts{"a", "b", "", "c"}));
    EXPECT_EQ(SplitList("1,0,0|0,1,0", '|'), (Texts{"1,0,0", "0,1,0"}));
    EXPECT_EQ(SplitList("a", ','), Texts{"a"});
    EXPECT_EQ(SplitList("", ','), Texts());
}

TEST(SplitList, TakesBackslashesOut) {
    EXPECT_EQ(SplitList("a\\,b,c\\|d,e\\\\,f\\g,\\", ','),
              (Texts{"a,b", "c|d", "e\\", "f\\g", "\\"}));
}

TEST(Units, AreKnownByAllTheirWords) {
    EXPECT_EQ(UnitCode("mm"), 8206U);
    EXPECT_EQ(UnitCode("metres"), 8193U);
    EXPECT_EQ(UnitCode("inches"), 8214U);
    EXPECT_EQ(UnitCode("parsec"), 0U);
    EXPECT_EQ(UnitCode(""), 0U);
    EXPECT_EQ(UnitWord(8205), "cm");
    EXPECT_EQ(UnitWord(7), "7");
}

TEST(Json, HasTheShortestNumbersThatReadBack) {
    EXPECT_EQ(NumberText(0.1), "0.1");
    EXPECT_EQ(NumberText(5e-324), "5e-324");
    EXPECT_EQ(NumberText(9007199254740993.0), "9007199254740992");
    EXPECT_EQ(NumberText(0.30999385647958866), "0.30999385647958866");
}

TEST(Json, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(JsonText({{"a", "x\xFFy"}, {"b", {1, 2.5, true, nullptr}}}),
              "{\"a\": \"x\xEF\xBF\xBDy\", \"b\": [1, 2.5, true, null]}");
}

TEST(ReportLog, KeepsTheLastWordsWithoutTheirPlaceInTheSource) {
    ReportLog log;
    EXPECT_EQ(log.LastOr("nothing"), "nothing");
    log.Warning(core::WideString(L"a (first) warning"), 0, 0);
    EXPECT_EQ(log.LastOr(""), "a (first) warning");
    EXPECT_EQ(log.WhyOr("cause", ""), "cause");
    log.Error(core::WideString(L"src/a/b.cpp(104)bad data (1)"), 0, 0);
    EXPECT_EQ(log.WhyOr("", ""), "bad data (1)");
    log.Error(core::WideString(L"src/a/b.cpp(7)"), 0, 0);
    EXPECT_EQ(log.LastOr(""), "bad data (1)");
    log.Error(core::WideString(L"b.cpp(seven)"), 0, 0);
    EXPECT_EQ(log.LastOr(""), "b.cpp(seven)");
    log.Forget();
    EXPECT_EQ(log.LastOr("nothing"), "nothing");
}

}  // namespace
}  // namespace halvern
