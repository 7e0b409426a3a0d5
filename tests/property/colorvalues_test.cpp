#include "assets/property/colorvalues.h"

#include <cmath>
#include <limits>

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ColorValuesTest : public PropertyTest {
protected:
    static std::vector<double> Read(const IColorValue& value, std::uint64_t index = 0) {
        double r = -1, g = -1, b = -1, a = -1;
        value.GetValue(r, g, b, a, index);
        return {r, g, b, a};
    }
};

TEST_F(ColorValuesTest, AColourOfThreeIgnoresAlpha) {
    auto& value = MakeValue<IColorValue>(ValueClass::kColor3Value);
    EXPECT_FALSE(value.HasAlpha());
    EXPECT_TRUE(value.SetValue(0.0, 0.5, 1.0, 7.0));
    EXPECT_THAT(Read(value), ElementsAre(0.0, 0.5, 1.0, 1.0));
}

TEST_F(ColorValuesTest, AColourOfThreeKeepsComponentsBetweenZeroAndOne) {
    auto& value = MakeValue<IColorValue>(ValueClass::kColor3Value);
    EXPECT_FALSE(value.SetValue(0.5, 0.5, 1.5, 0.0));
    EXPECT_FALSE(value.SetValue(-0.1, 0.5, 0.5, 0.0));
    EXPECT_FALSE(value.SetValue(0.5, 1.1, 0.5, 0.0));
    EXPECT_THAT(Read(value), ElementsAre(0.0, 0.0, 0.0, 1.0));
    EXPECT_THAT(reports.lines, ElementsAre("error: Value out of range", "error: Value out of range",
                                           "error: Value out of range"));
}

TEST_F(ColorValuesTest, AColourOfFourKeepsAlphaBetweenZeroAndOneToo) {
    auto& value = MakeValue<IColorValue>(ValueClass::kColor4Value);
    EXPECT_TRUE(value.HasAlpha());
    EXPECT_TRUE(value.SetValue(0.1, 0.2, 0.3, 0.4));
    EXPECT_FALSE(value.SetValue(0.1, 0.2, 0.3, 1.4));
    EXPECT_FALSE(value.SetValue(0.1, 0.2, 2.0, 0.4));
    EXPECT_THAT(Read(value), ElementsAre(0.1, 0.2, 0.3, 0.4));
    EXPECT_THAT(reports.lines,
                ElementsAre("error: Value out of range", "error: Value out of range"));
}

TEST_F(ColorValuesTest, WhatIsNotANumberIsNoComponent) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto& three = MakeValue<IColorValue>(ValueClass::kColor3Value);
    auto& four = MakeValue<IColorValue>(ValueClass::kColor4Value);
    for (IColorValue* value : {&three, &four}) {
        EXPECT_FALSE(value->SetValue(nan, 0.5, 0.5, 0.5));
        EXPECT_FALSE(value->SetValue(0.5, nan, 0.5, 0.5));
        EXPECT_FALSE(value->SetValue(0.5, 0.5, nan, 0.5));
    }
    EXPECT_FALSE(four.SetValue(0.5, 0.5, 0.5, nan));
    EXPECT_EQ(reports.lines, std::vector<std::string>(7, "error: Value out of range"));
    EXPECT_THAT(Read(three), ElementsAre(0.0, 0.0, 0.0, 1.0));
    EXPECT_THAT(Read(four), ElementsAre(0.0, 0.0, 0.0, 0.0));
    EXPECT_TRUE(three.SetValue(0.5, 0.5, 0.5, nan)) << "alpha is ignored";
}

TEST_F(ColorValuesTest, AListTakesWhatIsNotANumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const ValueClass each : {ValueClass::kColor3List, ValueClass::kColor4List}) {
        auto& list = MakeValue<IColorValue>(each);
        list.SetDimension(1);
        EXPECT_TRUE(list.SetValue(nan, 0.5, 0.5, 0.5));
        EXPECT_TRUE(std::isnan(Read(list).front()));
    }
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(ColorValuesTest, SingleColoursHaveIndexZeroAlone) {
    auto& three = MakeValue<IColorValue>(ValueClass::kColor3Value);
    auto& four = MakeValue<IColorValue>(ValueClass::kColor4Value);
    EXPECT_FALSE(three.SetValue(2, 2, 2, 2, 1));
    EXPECT_FALSE(four.SetValue(2, 2, 2, 2, 1));
    EXPECT_THAT(Read(three, 1), ElementsAre(-1, -1, -1, -1));
    EXPECT_THAT(Read(four, 1), ElementsAre(-1, -1, -1, -1));
    EXPECT_EQ(reports.lines, std::vector<std::string>(4, "error: Invalid dimension"));
}

TEST_F(ColorValuesTest, AListTakesAnyNumbers) {
    auto& three = MakeValue<IColorValue>(ValueClass::kColor3List);
    auto& four = MakeValue<IColorValue>(ValueClass::kColor4List);
    three.SetDimension(1);
    four.SetDimension(1);
    EXPECT_TRUE(three.SetValue(0.5, 0.5, 1.5, 0.0));
    EXPECT_TRUE(four.SetValue(255, -1, 3, 9));
    EXPECT_THAT(Read(three), ElementsAre(0.5, 0.5, 1.5, 1.0));
    EXPECT_THAT(Read(four), ElementsAre(255, -1, 3, 9));
    EXPECT_FALSE(three.HasAlpha());
    EXPECT_TRUE(four.HasAlpha());
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(ColorValuesTest, AListZeroFillsForAWrongIndex) {
    auto& three = MakeValue<Color3List>(ValueClass::kColor3List);
    auto& four = MakeValue<Color4List>(ValueClass::kColor4List);
    velmor::Color3 color3{1, 1, 1};
    velmor::Color4 color4{1, 1, 1, 1};
    EXPECT_FALSE(three.GetColor(color3, 0));
    EXPECT_FALSE(four.GetColor(color4, 0));
    EXPECT_EQ(color3.r + color3.g + color3.b, 0.0);
    EXPECT_EQ(color4.r + color4.g + color4.b + color4.a, 0.0);
    EXPECT_THAT(Read(three), ElementsAre(0, 0, 0, 0));
    EXPECT_FALSE(three.SetColor(color3, 0));
    EXPECT_EQ(reports.lines, std::vector<std::string>(4, "error: Invalid dimension"));
}

TEST_F(ColorValuesTest, AListGivesItsColoursByElement) {
    auto& list = MakeValue<Color4List>(ValueClass::kColor4List);
    list.SetDimension(2);
    EXPECT_TRUE(list.SetColor({0.1, 0.2, 0.3, 0.4}, 1));
    velmor::Color4 color{};
    EXPECT_TRUE(list.GetColor(color, 1));
    EXPECT_EQ(color.a, 0.4);
    EXPECT_FALSE(list.IsOutOfBounds({9, 9, 9, 9}));
    EXPECT_FALSE(MakeValue<Color3List>(ValueClass::kColor3List).IsOutOfBounds({9, 9, 9}));
}

TEST_F(ColorValuesTest, ColoursTellTheirOwner) {
    ChangeLog changes;
    for (const ValueClass value : {ValueClass::kColor3Value, ValueClass::kColor4Value,
                                   ValueClass::kColor3List, ValueClass::kColor4List}) {
        PropertyBase& property = Make(value, ValueClassName(value));
        property.SetOwner(&changes);
        property.GetValue()->SetDimension(1);
        EXPECT_TRUE(As<IColorValue>(property).SetValue(1, 1, 1, 1));
    }
    EXPECT_THAT(changes.lines, ElementsAre("value Color3Value", "value Color4Value",
                                           "value Color3List", "value Color4List"));
}

}  // namespace
}  // namespace korvanet::platform::assets
