#include <korvanet/platform/assets/ivalue.h>

#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "assets/property/numbervalues.h"
#include "assets/property/urivalues.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaCallsTest : public SchemaTest {
protected:
    KRVTSchemaDefinition& schema = NewSchema("S");
    core::UTF8String text;

    intrusive_ptr<KRVTChoiceList> Choices() {
        intrusive_ptr<KRVTChoiceList> list(new KRVTChoiceList(&world.context));
        list->AddChoice(new KRVTChoice("A", 10, "a"));
        list->AddChoice(new KRVTChoice("B", 20, "b"));
        return list;
    }
};

TEST_F(SchemaCallsTest, EachCallMakesAPropertyOfItsKind) {
    EXPECT_NE(schema.AddStringProperty(L"string", kPublic, L"", L"x"), nullptr);
    EXPECT_NE(schema.AddDateTimeProperty(L"date", kPublic, L"", L"x"), nullptr);
    EXPECT_NE(schema.AddBinaryProperty(L"binary", kPublic), nullptr);
    EXPECT_NE(schema.AddUuidProperty(L"uuid", kPublic, L"", L"x"), nullptr);
    EXPECT_NE(schema.AddUriProperty(L"uri", kPublic, L"", L"x"), nullptr);
    EXPECT_NE(schema.AddBooleanProperty(L"boolean", kPublic, L"", true), nullptr);
    EXPECT_NE(schema.AddIntegerProperty(L"integer", kPublic, L"", -3, nullptr), nullptr);
    EXPECT_NE(schema.AddFloatProperty(L"float", kPublic, L"", 0.1, L"", nullptr), nullptr);
    EXPECT_NE(schema.AddChoiceProperty(L"choice", kPublic, L"", L"b", Choices().get()), nullptr);
    EXPECT_NE(schema.AddColorProperty(L"color", kPublic, L"", 1, 2, 3, 0.5), nullptr);
    EXPECT_NE(schema.AddVector3Property(L"vector", kPublic, L"", 1, 2, 3), nullptr);
    EXPECT_NE(schema.AddReferenceProperty(L"reference", kAllowConnectedAsset, L"", false), nullptr);
    EXPECT_NE(schema.AddReferenceProperty(L"texture", kAllowConnectedAsset, L"", true), nullptr);

    const std::pair<const char*, PropertyType> kinds[] = {
        {"string", PropertyType::kString},   {"date", PropertyType::kDateTime},
        {"binary", PropertyType::kBinary},   {"uuid", PropertyType::kUuid},
        {"uri", PropertyType::kUri},         {"boolean", PropertyType::kBoolean},
        {"integer", PropertyType::kInteger}, {"float", PropertyType::kScalar},
        {"choice", PropertyType::kChoice},   {"color", PropertyType::kColor},
        {"vector", PropertyType::kScalar},   {"reference", PropertyType::kReference},
        {"texture", PropertyType::kTexture}};
    for (const auto& [name, kind] : kinds)
        EXPECT_EQ(Find(schema, name).GetType(), kind) << name;
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaCallsTest, ValuesAreTheDefaults) {
    schema.AddBooleanProperty(L"boolean", kPublic, L"", true);
    schema.AddIntegerProperty(L"integer", kPublic, L"", -3, nullptr);
    schema.AddChoiceProperty(L"choice", kPublic, L"", L"b", Choices().get());
    schema.AddColorProperty(L"color", kPublic, L"", 1, 2, 3, 0.5);
    schema.AddVector3Property(L"vector", kPublic, L"", 1, 2, 3);
    EXPECT_TRUE(As<IBooleanValue>(Find(schema, "boolean")).GetValue());
    EXPECT_EQ(IntegerOf(Find(schema, "integer")), -3);
    EXPECT_EQ(IntegerOf(Find(schema, "choice")), 20);
    EXPECT_EQ(ColorOf(Find(schema, "color")), (std::vector<double>{1, 2, 3, 0.5}));
    EXPECT_EQ(NumberOf(Find(schema, "vector"), 2), 3);
}

TEST_F(SchemaCallsTest, AValueIsTakenWhole) {
    schema.AddStringProperty(L"p", kPublic, L"", L"a,b\\c");
    EXPECT_EQ(TextOf(Find(schema, "p")), "a,b\\c");
}

TEST_F(SchemaCallsTest, AListGetsTheOneValue) {
    schema.AddStringProperty(L"texts", kAllowMultipleValues, L"", L"a,b");
    schema.AddIntegerProperty(L"integers", kAllowMultipleValues, L"", 7, nullptr);
    schema.AddFloatProperty(L"floats", kAllowMultipleValues, L"", 0.5, nullptr, nullptr);
    schema.AddColorProperty(L"colors", kAllowMultipleValues, L"", 9, 8, 7, 1);
    schema.AddChoiceProperty(L"choices", kAllowMultipleValues, L"", L"a", Choices().get());
    EXPECT_EQ(TextsOf(Find(schema, "texts")), Lines{"a,b"});
    EXPECT_EQ(IntegerOf(Find(schema, "integers")), 7);
    EXPECT_EQ(NumberOf(Find(schema, "floats")), 0.5);
    EXPECT_EQ(ColorOf(Find(schema, "colors")), (std::vector<double>{9, 8, 7, 1}));
    EXPECT_EQ(IntegerOf(Find(schema, "choices")), 10);
}

TEST_F(SchemaCallsTest, AVectorIsOneVectorAlsoWhereItMayHaveMultipleValues) {
    ASSERT_NE(schema.AddVector3Property(L"p", kPublic | kAllowMultipleValues, L"", 1, 2, 3),
              nullptr);
    EXPECT_TRUE(Is<Vector3Value>(Find(schema, "p")));
    EXPECT_EQ(Find(schema, "p").GetFlags(), kPublic | kAllowMultipleValues);
    EXPECT_EQ(Find(schema, "p").GetValue()->GetDimension(), 3u);
    EXPECT_EQ(NumberOf(Find(schema, "p"), 0), 1);
    EXPECT_EQ(NumberOf(Find(schema, "p"), 2), 3);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaCallsTest, ATextureUriIsMadeByItsFlags) {
    auto* value = schema.AddUriProperty(L"p", kTextureURI | kAllowMultipleValues, L"", L"1/Mats/a");
    EXPECT_NE(dynamic_cast<ITextureURIValue*>(value), nullptr);
}

TEST_F(SchemaCallsTest, FlagsStandAsGiven) {
    schema.AddStringProperty(L"assettype", kPublic | kReadOnly, L"", L"t");
    schema.AddUriProperty(L"p", kPublic | kImplementation, L"", L"i");
    EXPECT_EQ(Find(schema, "assettype").GetFlags(), kPublic | kReadOnly);
    EXPECT_EQ(Find(schema, "p").GetFlags(), kPublic | kImplementation);
}

TEST_F(SchemaCallsTest, AKnownUnitAddsItsFlag) {
    schema.AddFloatProperty(L"p", kPublic, L"", 1, L"inch", nullptr);
    EXPECT_EQ(Find(schema, "p").GetFlags(), kPublic | kUnits);
    EXPECT_EQ(Find(schema, "p").GetValue()->GetUnits(), 8214u);
}

TEST_F(SchemaCallsTest, AFlagWordWithBit12IsCode1) {
    EXPECT_EQ(schema.AddStringProperty(L"p", 0x1000, L"", L"x"), nullptr);
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 1"});
}

TEST_F(SchemaCallsTest, AnEmptyNullOrTakenIdIsNull) {
    EXPECT_EQ(schema.AddStringProperty(L"", kPublic, L"", L""), nullptr);
    EXPECT_EQ(schema.AddStringProperty(nullptr, kPublic, nullptr, nullptr), nullptr);
    EXPECT_NE(schema.AddStringProperty(L"p", kPublic, nullptr, nullptr), nullptr);
    EXPECT_EQ(schema.AddBinaryProperty(L"p", kPublic), nullptr);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaCallsTest, BoundsAreTestedAndKept) {
    const intrusive_ptr<KRVTBounds> bounds(
        new KRVTBounds(true, 0.0, true, true, 1.0, true, 1.0, false));
    EXPECT_EQ(schema.AddFloatProperty(L"out", kPublic, L"", 2, nullptr, bounds.get()), nullptr);
    EXPECT_NE(schema.AddFloatProperty(L"in", kPublic, L"", 1, nullptr, bounds.get()), nullptr);
    EXPECT_EQ(Find(schema, "in").Descriptor().bounds.get(), bounds.get());
}

TEST_F(SchemaCallsTest, WhatIsRefusedStaysTheCallers) {
    auto* bounds = new KRVTBounds(true, 5.0, true, false, 0.0, true, 1.0, false);
    EXPECT_EQ(schema.AddIntegerProperty(L"p", kPublic, L"", 0, bounds), nullptr);
    EXPECT_EQ(bounds->ReferenceCount(), 0u);
    EXPECT_EQ(bounds->GetMinimum(), 5.0);
    delete bounds;
}

TEST_F(SchemaCallsTest, AChoiceNeedsAListAndOneOfItsEntries) {
    EXPECT_EQ(schema.AddChoiceProperty(L"p", kPublic, L"", L"a", nullptr), nullptr);
    EXPECT_EQ(schema.AddChoiceProperty(L"p", kPublic, L"", L"c", Choices().get()), nullptr);
    const intrusive_ptr<KRVTChoiceList> empty(new KRVTChoiceList(&world.context));
    EXPECT_EQ(schema.AddChoiceProperty(L"p", kPublic, L"", L"", empty.get()), nullptr);
    EXPECT_EQ(NamesOf(schema), Lines{});
}

TEST_F(SchemaCallsTest, AColorOutOfRangeIsNull) {
    EXPECT_EQ(schema.AddColorProperty(L"p", kPublic, L"", 0, 0, 256, 1), nullptr);
    EXPECT_EQ(schema.AddColorProperty(L"p", kPublic, L"", 0, 0, 0, 2), nullptr);
}

TEST_F(SchemaCallsTest, TheManagerHearsOfPropertiesOfItsOwnSchemas) {
    KRVTSchemaDefinition* global = LoadGlobal(CommonXml());
    ASSERT_NE(global, nullptr);
    EXPECT_FALSE(global->IsRegistered());
    EXPECT_EQ(world.added, Lines{});
    global->AddStringProperty(L"late", kPublic, L"", L"");
    EXPECT_TRUE(global->IsRegistered());
    EXPECT_EQ(world.added, Lines{"CommonSchema late"});
    global->AddStringProperty(L"late", kPublic, L"", L"");
    EXPECT_EQ(world.added.size(), 1u);
    NewSchema("CommonSchema").AddStringProperty(L"other", kPublic, L"", L"");
    EXPECT_EQ(world.added.size(), 1u);
}

}  // namespace korvanet::platform::assets
