#include "assets/property/numbervalues.h"

#include <limits>

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NumberValuesTest : public PropertyTest {
protected:
    static intrusive_ptr<KRVTBounds> Between(double minimum, double maximum) {
        return MakeBounds(true, minimum, true, true, maximum, true, 1.0, false);
    }
};

TEST_F(NumberValuesTest, AnIntegerStoresAtIndexZero) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    EXPECT_EQ(value.GetValue(0), 0);
    EXPECT_TRUE(value.SetValue(7, 0));
    EXPECT_EQ(value.GetValue(0), 7);
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(NumberValuesTest, AnIntegerRefusesOtherIndicesAndKeepsItsValue) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    value.SetValue(3, 0);
    EXPECT_FALSE(value.SetValue(5, 1));
    EXPECT_EQ(value.GetValue(1), 0);
    EXPECT_EQ(value.GetValue(0), 3);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Invalid dimension"));
}

TEST_F(NumberValuesTest, AnIntegerOutOfBoundsIsRefused) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    const auto bounds = Between(0, 10);
    value.SetBounds(bounds.get());
    EXPECT_TRUE(value.SetValue(10, 0));
    EXPECT_FALSE(value.SetValue(11, 0));
    EXPECT_EQ(value.GetValue(0), 10);
    EXPECT_TRUE(value.IsOutOfBounds(-1));
    EXPECT_FALSE(value.IsOutOfBounds(0));
    EXPECT_THAT(reports.lines, ElementsAre("error: Value out of range"));
}

TEST_F(NumberValuesTest, TheIndexIsTestedBeforeTheRange) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    const auto bounds = Between(0, 10);
    value.SetBounds(bounds.get());
    EXPECT_FALSE(value.SetValue(11, 1));
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension"));
}

TEST_F(NumberValuesTest, NullBoundsKeepTheOldOnes) {
    auto& value = MakeValue<IntegerValue>(ValueClass::kIntegerValue);
    const auto bounds = Between(0, 10);
    value.SetBounds(bounds.get());
    value.SetBounds(nullptr);
    EXPECT_EQ(value.GetBounds(), static_cast<IBounds*>(bounds.get()));
}

TEST_F(NumberValuesTest, BoundsAreSharedByAllPropertiesOfOneDescriptor) {
    PropertyBase& first = Make(ValueClass::kScalarValue);
    const OwnedProperty second = CopyProperty(first);
    const auto bounds = Between(0, 1);
    As<ScalarValue>(first).SetBounds(bounds.get());
    EXPECT_FALSE(As<ScalarValue>(*second).SetValue(2.0, 0));
}

TEST_F(NumberValuesTest, AnIntegerListChecksEachElement) {
    auto& value = MakeValue<IntegerList>(ValueClass::kIntegerList);
    EXPECT_EQ(value.GetDimension(), 0u);
    EXPECT_FALSE(value.SetValue(1, 0));
    EXPECT_TRUE(value.SetDimension(2));
    EXPECT_EQ(value.GetDimension(), 2u);
    EXPECT_EQ(value.GetValue(1), 0);
    const auto bounds = Between(-5, 5);
    value.SetBounds(bounds.get());
    EXPECT_TRUE(value.SetValue(-5, 1));
    EXPECT_FALSE(value.SetValue(-6, 0));
    EXPECT_EQ(value.GetValue(0), 0);
    EXPECT_EQ(value.GetValue(1), -5);
    EXPECT_EQ(value.GetValue(2), 0);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Value out of range",
                                           "error: Invalid dimension"));
}

TEST_F(NumberValuesTest, AScalarAndItsListKeepToTheirBounds) {
    auto& single = MakeValue<ScalarValue>(ValueClass::kScalarValue);
    auto& list = MakeValue<ScalarList>(ValueClass::kScalarList);
    const auto bounds = Between(0, 1);
    single.SetBounds(bounds.get());
    list.SetBounds(bounds.get());
    list.SetDimension(1);
    EXPECT_TRUE(single.SetValue(0.5, 0));
    EXPECT_TRUE(list.SetValue(0.25, 0));
    EXPECT_FALSE(single.SetValue(1.5, 0));
    EXPECT_FALSE(list.SetValue(-0.5, 0));
    EXPECT_EQ(single.GetValue(0), 0.5);
    EXPECT_EQ(list.GetValue(0), 0.25);
    EXPECT_THAT(reports.lines,
                ElementsAre("error: Value out of range", "error: Value out of range"));
}

TEST_F(NumberValuesTest, SingleValuesRefuseADimension) {
    auto& value = MakeValue<ScalarValue>(ValueClass::kScalarValue);
    EXPECT_EQ(value.GetDimension(), 1u);
    EXPECT_FALSE(value.SetDimension(1));
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(NumberValuesTest, AListRefusesADimensionBeyondItsLimits) {
    auto& value = MakeValue<ScalarList>(ValueClass::kScalarList);
    EXPECT_FALSE(value.SetDimension((std::uint64_t{1} << 32) + 1));
    EXPECT_FALSE(value.SetDimension(std::uint64_t{1} << 30));
    EXPECT_FALSE(value.SetDimension(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(value.GetDimension(), 0u);
}

TEST_F(NumberValuesTest, ADimensionThatThereIsNoMemoryForIsRefused) {
    auto& value = MakeValue<ScalarList>(ValueClass::kScalarList);
    EXPECT_TRUE(value.SetDimension(1));
    value.SetValue(2.5, 0);
    heap.full = true;
    EXPECT_FALSE(value.SetDimension(1000));
    heap.full = false;
    EXPECT_EQ(value.GetDimension(), 1u);
    EXPECT_EQ(value.GetValue(0), 2.5);
    EXPECT_TRUE(value.SetDimension(1000));
}

TEST_F(NumberValuesTest, ABooleanIsNeverOutOfBounds) {
    auto& value = MakeValue<BooleanValue>(ValueClass::kBooleanValue);
    EXPECT_FALSE(value.GetValue(0));
    EXPECT_TRUE(value.SetValue(true, 0));
    EXPECT_TRUE(value.GetValue(0));
    EXPECT_FALSE(value.IsOutOfBounds(true));
    EXPECT_FALSE(value.SetValue(false, 1));
    EXPECT_FALSE(value.GetValue(1));
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Invalid dimension"));
}

TEST_F(NumberValuesTest, AnyByteButZeroReadsAsTrue) {
    PropertyBase& property = Make(ValueClass::kBooleanValue);
    *static_cast<std::uint8_t*>(property.DataObject().data()) = 2;
    EXPECT_TRUE(As<IBooleanValue>(property).GetValue());
}

TEST_F(NumberValuesTest, VectorsTakeAnyNumberEvenWithBounds) {
    auto& value = MakeValue<Vector3Value>(ValueClass::kVector3Value);
    const auto bounds = Between(0, 1);
    value.SetBounds(bounds.get());
    EXPECT_EQ(value.GetDimension(), 3u);
    EXPECT_TRUE(value.SetValue(-100.0, 2));
    EXPECT_EQ(value.GetValue(2), -100.0);
    EXPECT_FALSE(value.SetValue(0.0, 3));
    EXPECT_EQ(value.GetValue(3), 0.0);
    EXPECT_FALSE(value.SetDimension(3));
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Invalid dimension"));
}

TEST_F(NumberValuesTest, FourVectorsAndMatricesTakeAnyNumberEvenWithBounds) {
    for (const ValueClass each : {ValueClass::kVector4Value, ValueClass::kMatrix44Value}) {
        auto& value = MakeValue<ScalarValue>(each);
        const auto bounds = Between(0, 1);
        value.SetBounds(bounds.get());
        EXPECT_EQ(value.GetBounds(), static_cast<IBounds*>(bounds.get()));
        EXPECT_TRUE(value.IsOutOfBounds(-100.0));
        EXPECT_TRUE(value.SetValue(-100.0, 3)) << ValueClassName(each);
        EXPECT_EQ(value.GetValue(3), -100.0);
    }
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(NumberValuesTest, VectorsAndMatricesReachTheirLastElement) {
    auto& vector = MakeValue<Vector4Value>(ValueClass::kVector4Value);
    auto& matrix = MakeValue<Matrix44Value>(ValueClass::kMatrix44Value);
    EXPECT_EQ(vector.GetDimension(), 4u);
    EXPECT_EQ(matrix.GetDimension(), 16u);
    EXPECT_TRUE(vector.SetValue(4.0, 3));
    EXPECT_TRUE(matrix.SetValue(16.0, 15));
    EXPECT_EQ(vector.GetValue(3), 4.0);
    EXPECT_EQ(matrix.GetValue(15), 16.0);
    EXPECT_EQ(matrix.GetValue(14), 0.0);
    EXPECT_FALSE(vector.SetValue(0.0, 4));
    EXPECT_FALSE(matrix.SetValue(0.0, 16));
}

TEST_F(NumberValuesTest, AUnitsValueKeepsUnitAndNumberApart) {
    auto& value = MakeValue<GeneralUnitsValue>(ValueClass::kGeneralUnitsValue);
    EXPECT_EQ(value.GetUnits(), 0u);
    EXPECT_TRUE(value.SetValue(2.5, 0));
    EXPECT_TRUE(value.SetUnits(8206));
    EXPECT_EQ(value.GetUnits(), 8206u);
    EXPECT_EQ(value.GetValue(0), 2.5);
    EXPECT_FALSE(value.SetValue(1.0, 1));
    EXPECT_EQ(value.GetValue(1), 0.0);
    EXPECT_THAT(reports.lines, ElementsAre("error: Invalid dimension", "error: Invalid dimension"));
}

TEST_F(NumberValuesTest, AUnitsValueKeepsToItsBounds) {
    auto& value = MakeValue<GeneralUnitsValue>(ValueClass::kGeneralUnitsValue);
    const auto bounds = Between(0, 1);
    value.SetBounds(bounds.get());
    EXPECT_FALSE(value.SetValue(2.0, 0));
    EXPECT_EQ(value.GetValue(0), 0.0);
    EXPECT_THAT(reports.lines, ElementsAre("error: Value out of range"));
}

TEST_F(NumberValuesTest, APropertyWithAUnitTakesLengthsOnly) {
    auto& value =
        MakeValue<GeneralUnitsValue>(ValueClass::kGeneralUnitsValue, PropertyFlags::kUnits);
    for (const std::uint32_t unit :
         {8193u, 8201u, 8204u, 8205u, 8206u, 8214u, 8215u, 8221u, 8225u}) {
        EXPECT_TRUE(value.SetUnits(unit)) << unit;
        EXPECT_EQ(value.GetUnits(), unit);
    }
    EXPECT_THAT(reports.lines, IsEmpty());
    EXPECT_FALSE(value.SetUnits(8194));
    EXPECT_EQ(value.GetUnits(), 8225u);
    EXPECT_THAT(reports.lines, ElementsAre("error: Unsupported unit type"));
}

TEST_F(NumberValuesTest, APropertyWithoutTheUnitFlagTakesAnyUnit) {
    auto& value = MakeValue<GeneralUnitsValue>(ValueClass::kGeneralUnitsValue);
    EXPECT_TRUE(value.SetUnits(12345));
    EXPECT_EQ(value.GetUnits(), 12345u);
}

TEST_F(NumberValuesTest, OtherNumbersHaveNoUnit) {
    auto& value = MakeValue<ScalarValue>(ValueClass::kScalarValue);
    EXPECT_FALSE(value.SetUnits(8193));
    EXPECT_EQ(value.GetUnits(), 0u);
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(NumberValuesTest, SettingAUnitIsToldToNobody) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kGeneralUnitsValue);
    property.SetOwner(&changes);
    As<IScalarValue>(property).SetUnits(8206);
    EXPECT_THAT(changes.lines, IsEmpty());
    As<IScalarValue>(property).SetValue(1.0);
    EXPECT_THAT(changes.lines, ElementsAre("value p"));
}

TEST_F(NumberValuesTest, EveryNumberTellsItsOwner) {
    ChangeLog changes;
    const auto observe = [&](ValueClass value) -> PropertyBase& {
        PropertyBase& property = Make(value, ValueClassName(value));
        property.SetOwner(&changes);
        property.GetValue()->SetDimension(1);
        return property;
    };
    As<IBooleanValue>(observe(ValueClass::kBooleanValue)).SetValue(true);
    As<IIntegerValue>(observe(ValueClass::kIntegerValue)).SetValue(1);
    As<IIntegerValue>(observe(ValueClass::kIntegerList)).SetValue(1);
    As<IScalarValue>(observe(ValueClass::kScalarValue)).SetValue(1);
    As<IScalarValue>(observe(ValueClass::kScalarList)).SetValue(1);
    As<IScalarValue>(observe(ValueClass::kVector3Value)).SetValue(1);
    EXPECT_THAT(changes.lines,
                ElementsAre("value BooleanValue", "value IntegerValue", "value IntegerList",
                            "value ScalarValue", "value ScalarList", "value Vector3Value"));
}

}  // namespace
}  // namespace korvanet::platform::assets
