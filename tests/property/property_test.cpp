#include "assets/property/property.h"

#include "assets/localization/localizationmanagerimp.h"
#include "assets/property/choicevalues.h"
#include "assets/property/colorvalues.h"
#include "property/fixture.h"
#include "tests/support/virtualslots.h"
#include "velmor/vocabulary.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t kListSize = 2;

struct ClassRow {
    ValueClass value;
    PropertyType code;
    const char* dataType;
    // 0 for a list.
    std::uint64_t dimension;
};

// The matrix of the value classes.
const ClassRow kClasses[] = {
    {ValueClass::kUnSpecifiedValue, PropertyType::kUnspecified, ".run.int8_array", 1},
    {ValueClass::kBinaryValue, PropertyType::kBinary, ".sys.byte_buffer", 1},
    {ValueClass::kStringValue, PropertyType::kString, ".sys.string", 1},
    {ValueClass::kStringList, PropertyType::kString, ".run.string_array", 0},
    {ValueClass::kDateTimeValue, PropertyType::kDateTime, ".sys.string", 1},
    {ValueClass::kUriValue, PropertyType::kUri, ".sys.string", 1},
    {ValueClass::kUriList, PropertyType::kUri, ".run.string_array", 0},
    {ValueClass::kTextureURIValue, PropertyType::kUri, ".run.string_array", 0},
    {ValueClass::kBooleanValue, PropertyType::kBoolean, ".sys.bool", 1},
    {ValueClass::kIntegerValue, PropertyType::kInteger, ".sys.int", 1},
    {ValueClass::kIntegerList, PropertyType::kInteger, ".run.int_array", 0},
    {ValueClass::kScalarValue, PropertyType::kScalar, ".sys.double", 1},
    {ValueClass::kScalarList, PropertyType::kScalar, ".run.double_array", 0},
    {ValueClass::kGeneralUnitsValue, PropertyType::kScalar, ".sys.units_value", 1},
    {ValueClass::kVector3Value, PropertyType::kScalar, ".sys.vector3", 3},
    {ValueClass::kVector4Value, PropertyType::kScalar, ".sys.vector4", 4},
    {ValueClass::kMatrix44Value, PropertyType::kScalar, ".sys.matrix44", 16},
    {ValueClass::kColor3Value, PropertyType::kColor, ".sys.color3", 1},
    {ValueClass::kColor3List, PropertyType::kColor, ".run.color3_array", 0},
    {ValueClass::kColor4Value, PropertyType::kColor, ".sys.color4", 1},
    {ValueClass::kColor4List, PropertyType::kColor, ".run.color4_array", 0},
    {ValueClass::kTextureValue, PropertyType::kTexture, ".Halvern.halvern.AssetSymbolLink", 1},
    {ValueClass::kChoiceValue, PropertyType::kChoice, ".sys.int", 1},
    {ValueClass::kChoiceListValue, PropertyType::kChoice, ".run.int_array", 0},
    {ValueClass::kUuidValue, PropertyType::kUuid, ".sys.string", 1},
    {ValueClass::kReferenceValue, PropertyType::kReference, ".Halvern.halvern.AssetConnection", 1},
};

class PropertyBaseTest : public PropertyTest {};

// The operations of a class stand behind those of every property, with overrides among them.
template <class Value>
void ExpectOrderOfBounds() {
    using halvern_tests::Place;
    EXPECT_LT(Place(&IProperty::IsEqualTo), Place(&Value::IsOutOfBounds));
    EXPECT_LT(Place(&Value::IsOutOfBounds), Place(&Value::SetBounds));
}

TEST(PropertyBase, WhatTheClassesAddKeepsItsOrder) {
    using halvern_tests::Place;
    ExpectOrderOfBounds<IntegerValue>();
    ExpectOrderOfBounds<IntegerList>();
    ExpectOrderOfBounds<ScalarValue>();
    ExpectOrderOfBounds<ScalarList>();
    ExpectOrderOfBounds<ChoiceValue>();
    ExpectOrderOfBounds<ChoiceListValue>();
    EXPECT_LT(Place(&ChoiceValue::SetBounds), Place(&ChoiceValue::SetChoices));
    EXPECT_LT(Place(&ChoiceListValue::SetBounds), Place(&ChoiceListValue::SetChoices));
    halvern_tests::ExpectOrder(Place(&Color3List::GetColor),
                               {Place(&Color3List::GetColor), Place(&Color3List::SetColor),
                                Place(&Color3List::IsOutOfBounds)});
    halvern_tests::ExpectOrder(Place(&Color4List::GetColor),
                               {Place(&Color4List::GetColor), Place(&Color4List::SetColor),
                                Place(&Color4List::IsOutOfBounds)});
}

TEST_F(PropertyBaseTest, EveryClassHasItsCodeDataTypeAndDimension) {
    EXPECT_EQ(std::size(kClasses), kEndOfValueClasses - kFirstValueClass);
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(ValueClassName(row.value));
        PropertyBase& property = Make(row.value);
        IValue& value = *property.GetValue();
        EXPECT_EQ(property.GetType(), row.code);
        EXPECT_EQ(value.GetType(), row.code);
        EXPECT_EQ(Str(property.Descriptor().dataType.fullName()), row.dataType);
        EXPECT_EQ(value.GetDimension(), row.dimension);
        EXPECT_EQ(value.SetDimension(kListSize), row.dimension == 0);
        EXPECT_EQ(value.GetDimension(), row.dimension == 0 ? kListSize : row.dimension);
        EXPECT_EQ(value.GetUnits(), 0u);
        const bool has_units = row.value == ValueClass::kGeneralUnitsValue;
        EXPECT_EQ(value.SetUnits(8193), has_units);
    }
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(PropertyBaseTest, EveryClassStartsMarkedUnobservedAndUnconnected) {
    for (const ClassRow& row : kClasses) {
        PropertyBase& property = Make(row.value, "name", 0x60);
        EXPECT_TRUE(property.IsMarked());
        EXPECT_EQ(property.Owner(), nullptr);
        EXPECT_EQ(property.GetConnectedAssetCount(), 0u);
        EXPECT_EQ(property.GetFlags(), 0x60u);
        EXPECT_EQ(&static_cast<const PropertyBase&>(property), &property);
        EXPECT_EQ(static_cast<const IProperty&>(property).GetValue(), property.GetValue());
    }
}

TEST_F(PropertyBaseTest, APropertyTellsItsName) {
    core::UTF8String name;
    Make(ValueClass::kScalarValue, "gloss").GetName(name);
    EXPECT_STREQ(name.AsUTF8(), "gloss");
}

TEST_F(PropertyBaseTest, TheMarkIsStored) {
    PropertyBase& property = Make(ValueClass::kScalarValue);
    EXPECT_TRUE(property.SetMarked(false));
    EXPECT_FALSE(property.IsMarked());
    EXPECT_TRUE(property.SetMarked(true));
    EXPECT_TRUE(property.IsMarked());
}

TEST_F(PropertyBaseTest, EqualPropertiesOfEveryClassAreEqual) {
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(ValueClassName(row.value));
        PropertyBase& a = Make(row.value);
        PropertyBase& b = Make(row.value);
        // Choices without a list to choose from equal nothing.
        EXPECT_EQ(a.IsEqual(&b), row.code != PropertyType::kChoice);
        EXPECT_EQ(a.IsEqualTo(b), row.code != PropertyType::kChoice);
        EXPECT_FALSE(a.IsEqual(nullptr));
        EXPECT_FALSE(a.GetValue()->IsEqual(nullptr));
    }
}

TEST_F(PropertyBaseTest, ADifferentMarkMakesPropertiesDifferent) {
    PropertyBase& a = Make(ValueClass::kScalarValue);
    PropertyBase& b = Make(ValueClass::kScalarValue);
    b.SetMarked(false);
    EXPECT_FALSE(a.IsEqual(&b));
    EXPECT_TRUE(a.GetValue()->IsEqual(b.GetValue()));
}

TEST_F(PropertyBaseTest, ValuesOfDifferentClassesAreDifferent) {
    EXPECT_FALSE(Make(ValueClass::kStringValue).IsEqual(&Make(ValueClass::kUuidValue)));
    EXPECT_FALSE(Make(ValueClass::kScalarValue).IsEqual(&Make(ValueClass::kVector3Value)));
    EXPECT_FALSE(Make(ValueClass::kReferenceValue).IsEqual(&Make(ValueClass::kTextureValue)));
}

TEST_F(PropertyBaseTest, DataDecidesEquality) {
    PropertyBase& a = Make(ValueClass::kScalarValue);
    PropertyBase& b = Make(ValueClass::kScalarValue);
    As<IScalarValue>(a).SetValue(1);
    EXPECT_FALSE(a.IsEqual(&b));
    As<IScalarValue>(b).SetValue(1);
    EXPECT_TRUE(a.IsEqual(&b));
}

TEST_F(PropertyBaseTest, ListsVectorsColoursAndBytesCompareByTheirElements) {
    const auto expect_different = [](PropertyBase& a, PropertyBase& b) {
        SCOPED_TRACE(Str(a.Descriptor().type.name()));
        EXPECT_FALSE(a.IsEqual(&b));
        EXPECT_FALSE(b.IsEqual(&a));
    };
    PropertyBase& list = Make(ValueClass::kStringList);
    list.GetValue()->SetDimension(1);
    expect_different(list, Make(ValueClass::kStringList));
    PropertyBase& vector = Make(ValueClass::kVector4Value);
    As<IScalarValue>(vector).SetValue(1, 3);
    expect_different(vector, Make(ValueClass::kVector4Value));
    PropertyBase& matrix = Make(ValueClass::kMatrix44Value);
    As<IScalarValue>(matrix).SetValue(1, 15);
    expect_different(matrix, Make(ValueClass::kMatrix44Value));
    PropertyBase& color = Make(ValueClass::kColor4Value);
    As<IColorValue>(color).SetValue(0, 0, 0, 1);
    expect_different(color, Make(ValueClass::kColor4Value));
    PropertyBase& bytes = Make(ValueClass::kBinaryValue);
    As<IBinaryValue>(bytes).SetData("a", 1);
    expect_different(bytes, Make(ValueClass::kBinaryValue));
    PropertyBase& units = Make(ValueClass::kGeneralUnitsValue);
    units.GetValue()->SetUnits(8193);
    expect_different(units, Make(ValueClass::kGeneralUnitsValue));
}

TEST_F(PropertyBaseTest, APublicChangeIsToldOnceItIsMade) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kScalarValue);
    property.SetOwner(&changes);
    As<IScalarValue>(property).SetValue(1);
    As<IScalarValue>(property).SetValue(1, 5);
    EXPECT_THAT(changes.lines, ElementsAre("value p"));
    property.SetOwner(nullptr);
    As<IScalarValue>(property).SetValue(2);
    EXPECT_THAT(changes.lines, ElementsAre("value p"));
}

TEST_F(PropertyBaseTest, ANonPublicChangeReachesNoObserver) {
    ChangeLog changes;
    PropertyBase& property = Make(ValueClass::kScalarValue, "p", 0);
    property.SetOwner(&changes);
    EXPECT_TRUE(As<IScalarValue>(property).SetValue(1));
    EXPECT_THAT(changes.lines, IsEmpty());
}

TEST_F(PropertyBaseTest, TheLabelIsTheMessageOfTheNameOrTheOwnLabel) {
    ILocalizationManagerImp messages;
    messages.FindOrCreate("FRA", "any").Set("gloss:uilabel", "brillance");
    context.localization = &messages;
    const OwnedProperty property =
        MakeProperty(context, ValueClass::kScalarValue, "gloss", "Gloss", 0);
    core::UTF8String label("before");
    EXPECT_FALSE(property->GetLocalizedLabel(label, nullptr));
    EXPECT_STREQ(label.AsUTF8(), "before");
    EXPECT_TRUE(property->GetLocalizedLabel(label, L"fra"));
    EXPECT_STREQ(label.AsUTF8(), "brillance");
    EXPECT_TRUE(property->GetLocalizedLabel(label, L"DEU"));
    EXPECT_STREQ(label.AsUTF8(), "Gloss");
    EXPECT_TRUE(property->GetLocalizedLabel(label, L""));
    EXPECT_STREQ(label.AsUTF8(), "Gloss");
}

}  // namespace
}  // namespace korvanet::platform::assets
