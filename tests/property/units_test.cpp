#include "assets/property/units.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/units/unitsservice.h"
#include "tests/support/paths.h"

namespace korvanet::platform::assets {
namespace {

struct UnitCase {
    std::uint32_t code;
    std::initializer_list<const char*> words;
};

const UnitCase kCases[] = {
    {8206, {"mm", "millimeter", "millimetre", "millimeters", "millimetres"}},
    {8205, {"cm", "centimeter", "centimetre", "centimeters", "centimetres"}},
    {8204, {"dm", "decimeter", "decimetre", "decimeters", "decimetres"}},
    {8193, {"m", "meter", "metre", "meters", "metres"}},
    {8201, {"km", "kilometer", "kilometre", "kilometers", "kilometres"}},
    {8214, {"in", "inch", "inches"}},
    {8215, {"ft", "foot", "feet"}},
    {8221, {"yd", "yard", "yards"}},
    {8225, {"mi", "mile", "miles"}},
};

class UnitsTest : public testing::Test {
protected:
    ~UnitsTest() override { service.SetPath(nullptr); }

    static std::string Word(std::uint32_t unit) { return WordFromUnit(unit).c_str(); }

    core::UnitsService& service = core::UnitsService::Instance();
};

TEST_F(UnitsTest, EveryWordHasItsCode) {
    for (const char* path : {"/nowhere", static_cast<const char*>(nullptr)}) {
        service.SetPath(path);
        for (const UnitCase& each : kCases) {
            for (const char* word : each.words) {
                EXPECT_EQ(UnitFromWord(word), each.code) << word;
            }
        }
    }
}

TEST_F(UnitsTest, ACodeIsWrittenByItsShortWordWithoutTheServiceToo) {
    for (const char* path : {"/nowhere", static_cast<const char*>(nullptr)}) {
        service.SetPath(path);
        for (const UnitCase& each : kCases) {
            EXPECT_EQ(Word(each.code), *each.words.begin());
        }
        EXPECT_EQ(Word(0), "NotSpecified");
        EXPECT_EQ(Word(8194), "NotSpecified");
    }
}

TEST_F(UnitsTest, WordsOutsideTheTableGoToTheService) {
    service.SetPath("/nowhere");
    EXPECT_EQ(UnitFromWord("furlong"), 0u);
    service.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units.so").c_str());
    EXPECT_EQ(UnitFromWord("furlong"), 8999u);
    EXPECT_EQ(UnitFromWord("fathom"), 0u);
    EXPECT_EQ(UnitFromWord("metres"), 8193u);
    EXPECT_EQ(Word(8999), "furlong");
    EXPECT_EQ(Word(8193), "NotSpecified");
}

TEST_F(UnitsTest, ANameOfMoreThan255CharactersIsNone) {
    service.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units.so").c_str());
    EXPECT_EQ(Word(9255), std::string(255, 'x'));
    EXPECT_EQ(Word(9256), "NotSpecified");
}

TEST_F(UnitsTest, TheWordsOfLengthsAreThoseOfTheTableAlone) {
    service.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units.so").c_str());
    for (const UnitCase& each : kCases) {
        for (const char* word : each.words) {
            EXPECT_TRUE(IsLengthWord(word)) << word;
        }
    }
    EXPECT_EQ(UnitFromWord("pace"), 8193u);
    EXPECT_FALSE(IsLengthWord("pace"));
    EXPECT_FALSE(IsLengthWord(""));
}

TEST_F(UnitsTest, WordsAreComparedAsTheyStand) {
    EXPECT_EQ(UnitFromWord(""), 0u);
    EXPECT_EQ(UnitFromWord("MM"), 0u);
}

TEST_F(UnitsTest, LengthsAreTheNineOfTheTable) {
    for (const UnitCase& each : kCases) {
        EXPECT_TRUE(IsLengthUnit(each.code));
    }
    EXPECT_FALSE(IsLengthUnit(0));
    EXPECT_FALSE(IsLengthUnit(8194));
}

}  // namespace
}  // namespace korvanet::platform::assets
