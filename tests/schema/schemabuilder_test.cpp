#include "assets/schema/schemabuilder.h"

#include <korvanet/platform/assets/ivalue.h>

#include "assets/property/binaryvalues.h"
#include "assets/property/choicevalues.h"
#include "assets/property/colorvalues.h"
#include "assets/property/numbervalues.h"
#include "assets/property/referencevalues.h"
#include "assets/property/stringvalues.h"
#include "assets/property/urivalues.h"
#include "assets/schema/schemapropertyrecord.h"
#include "platform/units/unitsservice.h"
#include "schema/support.h"
#include "support/paths.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaBuilderTest : public SchemaTest {
protected:
    // The property "p" that one element makes; the test fails when it makes none.
    PropertyBase& Make(const std::string& element) { return Find(ReadElements(element), "p"); }
    bool MakesNothing(const std::string& element) { return NamesOf(ReadElements(element)).empty(); }
};

TEST_F(SchemaBuilderTest, AStringIsOneText) {
    PropertyBase& p = Make("<String id='p' val='a,b'/>");
    EXPECT_TRUE(Is<StringValue>(p));
    EXPECT_EQ(TextOf(p), "a");
    EXPECT_EQ(p.GetFlags(), kPublic);
}

TEST_F(SchemaBuilderTest, AStringKeepsACommaBehindABackslash) {
    EXPECT_EQ(TextOf(Make("<String id='p' val='a\\, b'/>")), "a, b");
}

TEST_F(SchemaBuilderTest, AStringWithoutValueIsEmpty) {
    EXPECT_EQ(TextOf(Make("<String id='p'/>")), "");
}

TEST_F(SchemaBuilderTest, AStringOfMultipleValuesIsAList) {
    PropertyBase& p = Make("<String id='p' val='a,b|' allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<StringList>(p));
    EXPECT_EQ(TextsOf(p), (Lines{"a", "b", ""}));
    EXPECT_EQ(TextsOf(Make("<String id='p' allowmultiplevalues='true'/>")), Lines{});
}

TEST_F(SchemaBuilderTest, AStringNamedAssettypeIsReadOnlyAlone) {
    KRVTSchemaDefinition& schema = ReadElements("<String id='assettype' val='t' local='true'/>");
    EXPECT_EQ(Find(schema, "assettype").GetFlags(), kReadOnly);
}

TEST_F(SchemaBuilderTest, TypeMakesTheAssetType) {
    KRVTSchemaDefinition& schema = ReadElements("<type val='texture' local='true'/>");
    EXPECT_EQ(TextOf(Find(schema, "assettype")), "texture");
    EXPECT_EQ(Find(schema, "assettype").GetFlags(), kReadOnly);
    EXPECT_TRUE(Is<StringValue>(Find(schema, "assettype")));
}

TEST_F(SchemaBuilderTest, LocalTypeAndLocalNameAreNamedByTheirElements) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<localtype id='other' val='T' readonly='true'/><localname val='N' public='false'/>");
    EXPECT_EQ(NamesOf(schema), (Lines{"localname", "localtype"}));
    EXPECT_EQ(TextOf(Find(schema, "localtype")), "T");
    EXPECT_EQ(Find(schema, "localtype").GetFlags(), kPublic | kReadOnly);
    EXPECT_EQ(Find(schema, "localname").GetFlags(), 0u);
}

TEST_F(SchemaBuilderTest, TypesAndLocalNamesNeedAValue) {
    EXPECT_TRUE(MakesNothing("<type/>"));
    EXPECT_TRUE(MakesNothing("<localtype/>"));
    EXPECT_TRUE(MakesNothing("<localname/>"));
    EXPECT_EQ(reports.Take(), Lines(3, "error: Must specify the val tag"));
}

TEST_F(SchemaBuilderTest, ADateTimeIsOneTextAndNeverAList) {
    PropertyBase& p = Make("<DateTime id='p' val='2026-03-14T12:00:00'/>");
    EXPECT_TRUE(Is<DateTimeValue>(p));
    EXPECT_EQ(TextOf(p), "2026-03-14T12:00:00");
    EXPECT_TRUE(MakesNothing("<DateTime id='p' allowmultiplevalues='true'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 4"});
}

TEST_F(SchemaBuilderTest, ABinaryIsEmpty) {
    PropertyBase& p = Make("<Binary id='p' val='abc'/>");
    EXPECT_TRUE(Is<BinaryValue>(p));
    EXPECT_EQ(As<IBinaryValue>(p).GetSize(), 0u);
}

TEST_F(SchemaBuilderTest, AUuidIsOneText) {
    PropertyBase& p = Make("<Uuid id='p' val='0D6F'/>");
    EXPECT_TRUE(Is<UuidValue>(p));
    EXPECT_EQ(TextOf(p), "0D6F");
}

TEST_F(SchemaBuilderTest, AUrlIsOneUriOrAList) {
    PropertyBase& one = Make("<URL id='p' val='1/a.png,2/b.png'/>");
    EXPECT_TRUE(Is<UriValue>(one));
    EXPECT_EQ(TextOf(one), "1/a.png");
    PropertyBase& list = Make("<URL id='p' val='1/a.png,2/b.png' allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<UriList>(list));
    EXPECT_EQ(TextsOf(list), (Lines{"1/a.png", "2/b.png"}));
}

TEST_F(SchemaBuilderTest, ATextureUriIsAlwaysASetOfResolutions) {
    PropertyBase& p = Make("<TextureURI id='p' val='1/Mats/a.png,2/Mats/a.png'/>");
    EXPECT_TRUE(Is<TextureURIValue>(p));
    EXPECT_EQ(TextsOf(p), (Lines{"1/Mats/a.png", "2/Mats/a.png"}));
    EXPECT_EQ(p.GetFlags(), kPublic | kTextureURI | kAllowMultipleValues);
}

TEST_F(SchemaBuilderTest, UiAndImplementationTakeTheirValueWhole) {
    PropertyBase& ui = Make("<ui id='p' val='UI/a,b|c\\d.xml'/>");
    EXPECT_TRUE(Is<UriValue>(ui));
    EXPECT_EQ(TextOf(ui), "UI/a,b|c\\d.xml");
    EXPECT_EQ(ui.GetFlags(), 0x82u);
    PropertyBase& implementation = Make("<implementation id='p' val='a,b'/>");
    EXPECT_EQ(TextOf(implementation), "a,b");
    EXPECT_EQ(implementation.GetFlags(), 0x102u);
}

TEST_F(SchemaBuilderTest, UiIgnoresItsFlagAttributesOnceTheyPassed) {
    EXPECT_EQ(Make("<ui id='p' val='' local='true' metadata='true'/>").GetFlags(), 0x82u);
}

TEST_F(SchemaBuilderTest, ABooleanIsTrueForTheExactWordAlone) {
    EXPECT_TRUE(As<IBooleanValue>(Make("<Boolean id='p' val='true'/>")).GetValue());
    EXPECT_FALSE(As<IBooleanValue>(Make("<Boolean id='p' val='True'/>")).GetValue());
    EXPECT_FALSE(As<IBooleanValue>(Make("<Boolean id='p' val='1'/>")).GetValue());
    EXPECT_FALSE(As<IBooleanValue>(Make("<Boolean id='p'/>")).GetValue());
}

TEST_F(SchemaBuilderTest, ABooleanListIsRefusedWithCode4) {
    EXPECT_TRUE(MakesNothing("<Boolean id='p' allowmultiplevalues='true'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 4"});
}

TEST_F(SchemaBuilderTest, AnIntegerReadsTheFirstPiece) {
    PropertyBase& p = Make("<Integer id='p' val=' -7,8'/>");
    EXPECT_TRUE(Is<IntegerValue>(p));
    EXPECT_EQ(IntegerOf(p), -7);
    EXPECT_EQ(IntegerOf(Make("<Integer id='p' val='many'/>")), 0);
    EXPECT_EQ(IntegerOf(Make("<Integer id='p' val='99999999999'/>")), 0);
}

TEST_F(SchemaBuilderTest, AnIntegerListReadsEachPiece) {
    PropertyBase& p = Make("<Integer id='p' val='1,x,-3' allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<IntegerList>(p));
    ASSERT_EQ(p.GetValue()->GetDimension(), 3u);
    EXPECT_EQ(IntegerOf(p, 0), 1);
    EXPECT_EQ(IntegerOf(p, 1), 0);
    EXPECT_EQ(IntegerOf(p, 2), -3);
}

TEST_F(SchemaBuilderTest, ADefaultOutOfBoundsMakesNothingAndSaysNothing) {
    EXPECT_TRUE(MakesNothing("<Integer id='p' val='0'><Bounds minimum='1'/></Integer>"));
    EXPECT_TRUE(MakesNothing("<Float id='p' val='1.5'><Bounds maximum='1'/></Float>"));
    EXPECT_TRUE(MakesNothing(
        "<Float id='p' val='1'><Bounds maximum='1' maximumisinclusive='no'/></Float>"));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, BoundsStandOnTheDescriptor) {
    PropertyBase& p = Make("<Float id='p' val='1'><Bounds minimum='0.5' maximum='2'/></Float>");
    EXPECT_TRUE(Is<ScalarValue>(p));
    ASSERT_NE(As<IScalarValue>(p).GetBounds(), nullptr);
    EXPECT_EQ(As<IScalarValue>(p).GetBounds()->GetMinimum(), 0.5);
}

TEST_F(SchemaBuilderTest, AFloatWithAUnitCarriesItsCode) {
    PropertyBase& p = Make("<Float id='p' val='3.25' unit='metres'/>");
    EXPECT_TRUE(Is<GeneralUnitsValue>(p));
    EXPECT_EQ(p.GetValue()->GetUnits(), 8193u);
    EXPECT_EQ(NumberOf(p), 3.25);
    EXPECT_EQ(p.GetFlags(), kPublic | kUnits);
}

TEST_F(SchemaBuilderTest, AnUnknownUnitWordHasTheCode0AndAddsNoFlag) {
    PropertyBase& p = Make("<Float id='p' val='1' unit='furlong'/>");
    EXPECT_TRUE(Is<GeneralUnitsValue>(p));
    EXPECT_EQ(p.GetValue()->GetUnits(), 0u);
    EXPECT_EQ(p.GetFlags(), kPublic);
}

TEST_F(SchemaBuilderTest, AWordThatTheServiceAloneKnowsAddsNoFlag) {
    core::UnitsService& service = core::UnitsService::Instance();
    service.SetPath((halvern_tests::BuildFolder() + "/tests/libtest_units.so").c_str());
    PropertyBase& p = Make("<Float id='p' val='1' unit='pace'/>");
    service.SetPath(nullptr);
    EXPECT_EQ(p.GetValue()->GetUnits(), 8193u);
    EXPECT_EQ(p.GetFlags(), kPublic);
}

TEST_F(SchemaBuilderTest, ADistanceAlwaysHasTheUnitFlag) {
    PropertyBase& p = Make("<Distance id='p' val='2'/>");
    EXPECT_TRUE(Is<ScalarValue>(p));
    EXPECT_FALSE(Is<GeneralUnitsValue>(p));
    EXPECT_EQ(p.GetFlags(), kPublic | kUnits);
}

TEST_F(SchemaBuilderTest, ADistanceOfMultipleValuesPassesAsAListWithoutUnit) {
    PropertyBase& p = Make("<Distance id='p' val='1,2.5' unit='mm' allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<ScalarList>(p));
    EXPECT_EQ(p.GetValue()->GetDimension(), 2u);
    EXPECT_EQ(NumberOf(p, 1), 2.5);
    EXPECT_EQ(p.GetValue()->GetUnits(), 0u);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, AUnitOnOtherElementsAddsTheFlagToo) {
    EXPECT_EQ(Make("<String id='p' unit='mm'/>").GetFlags(), kPublic | kUnits);
}

TEST_F(SchemaBuilderTest, AChoiceTakesTheValueOfTheNamedEntry) {
    PropertyBase& p = Make(
        "<Choice id='p' val='b'><ChoiceValue id='a' val='10' label='A'/>"
        "<ChoiceValue id='b' val='20' label='B'/></Choice>");
    EXPECT_TRUE(Is<ChoiceValue>(p));
    EXPECT_EQ(IntegerOf(p), 20);
    EXPECT_EQ(Str(p.Descriptor().choices->Name()), "p");
}

TEST_F(SchemaBuilderTest, AChoiceOfNoEntryIs0) {
    EXPECT_EQ(IntegerOf(Make("<Choice id='p' val='c'><ChoiceValue id='a' val='10'/></Choice>")), 0);
}

TEST_F(SchemaBuilderTest, AChoiceWithoutEntriesHasAnEmptyList) {
    PropertyBase& p = Make("<Choice id='p' val='a'/>");
    ASSERT_NE(As<IChoiceListValue>(p).GetChoices(), nullptr);
    EXPECT_EQ(As<IChoiceListValue>(p).GetChoices()->GetCount(), 0u);
}

TEST_F(SchemaBuilderTest, AChoiceListDropsTheNamesOfNoEntry) {
    PropertyBase& p = Make(
        "<Choice id='p' val='b,nope,a' allowmultiplevalues='true'>"
        "<ChoiceValue id='a' val='10'/><ChoiceValue id='b' val='20'/></Choice>");
    EXPECT_TRUE(Is<ChoiceListValue>(p));
    ASSERT_EQ(p.GetValue()->GetDimension(), 2u);
    EXPECT_EQ(IntegerOf(p, 0), 20);
    EXPECT_EQ(IntegerOf(p, 1), 10);
}

TEST_F(SchemaBuilderTest, AColorCountsFrom0To255) {
    PropertyBase& p = Make("<Color id='p' valR='255' valG='255' valB='255' valA='1'/>");
    EXPECT_TRUE(Is<Color4Value>(p));
    EXPECT_EQ(ColorOf(p), (std::vector<double>{255, 255, 255, 1}));
    EXPECT_FALSE(As<IColorValue>(p).SetValue(255, 255, 255, 1));
}

TEST_F(SchemaBuilderTest, AColorFillsMissingComponents) {
    EXPECT_EQ(ColorOf(Make("<Color id='p' valR='1' valG='2'/>")),
              (std::vector<double>{1, 2, 0, 1}));
    EXPECT_EQ(ColorOf(Make("<Color id='p'/>")), (std::vector<double>{0, 0, 0, 1}));
    EXPECT_EQ(ColorOf(Make("<Color id='p' valA='0.5'/>")), (std::vector<double>{0, 0, 0, 0.5}));
}

TEST_F(SchemaBuilderTest, AColorOutOfRangeMakesNothing) {
    EXPECT_TRUE(MakesNothing("<Color id='p' valR='256'/>"));
    EXPECT_TRUE(MakesNothing("<Color id='p' valG='-1'/>"));
    EXPECT_TRUE(MakesNothing("<Color id='p' valB='255.5'/>"));
    EXPECT_TRUE(MakesNothing("<Color id='p' valA='1.5'/>"));
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, AColorListTakesOneColorOfEachPlace) {
    PropertyBase& p = Make(
        "<Color id='p' valR='1,2' valG='3' valB='4,5' valA='0.5'"
        " allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<Color4List>(p));
    ASSERT_EQ(p.GetValue()->GetDimension(), 2u);
    EXPECT_EQ(ColorOf(p, 0), (std::vector<double>{1, 3, 4, 0.5}));
    EXPECT_EQ(ColorOf(p, 1), (std::vector<double>{2, 0, 5, 1}));
}

TEST_F(SchemaBuilderTest, OnlyTheFirstColorOfAListIsTested) {
    EXPECT_EQ(ColorOf(Make("<Color id='p' valR='1,999' allowmultiplevalues='true'/>"), 1),
              (std::vector<double>{999, 0, 0, 1}));
    EXPECT_TRUE(MakesNothing("<Color id='p' valR='999,1' allowmultiplevalues='true'/>"));
}

TEST_F(SchemaBuilderTest, AVectorTakesTheFirstOfEachAndIsNeverAList) {
    PropertyBase& p =
        Make("<Vector3 id='p' valX='1,9' valY='2.5' valZ='-3' allowmultiplevalues='true'/>");
    EXPECT_TRUE(Is<Vector3Value>(p));
    EXPECT_EQ(NumberOf(p, 0), 1);
    EXPECT_EQ(NumberOf(p, 1), 2.5);
    EXPECT_EQ(NumberOf(p, 2), -3);
    EXPECT_EQ(p.GetFlags(), kPublic);
    EXPECT_EQ(NumberOf(Make("<Vector3 id='p'/>"), 2), 0);
}

TEST_F(SchemaBuilderTest, AReferenceIsATextureByItsType) {
    EXPECT_TRUE(Is<ReferenceValue>(Make("<Reference id='p' allowconnectedassets='multiple'/>")));
    EXPECT_TRUE(
        Is<TextureValue>(Make("<Reference id='p' type='texture' allowconnectedassets='single'/>")));
    EXPECT_TRUE(Is<ReferenceValue>(
        Make("<Reference id='p' type='Texture' allowconnectedassets='single'/>")));
}

TEST_F(SchemaBuilderTest, AReferenceWithoutConnectionsIsRefusedWithCode32) {
    EXPECT_TRUE(MakesNothing("<Reference id='p'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 32"});
}

TEST_F(SchemaBuilderTest, ReadOnlyIteratorDataIsRefusedWithCode2) {
    EXPECT_TRUE(MakesNothing("<String id='p' readonly='true' definitionIteratorData='true'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 2"});
}

TEST_F(SchemaBuilderTest, AnElementWithoutBuilderIsReported) {
    EXPECT_TRUE(MakesNothing("<Matrix44 id='p'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Unknown Property name."});
}

TEST_F(SchemaBuilderTest, TextureAsAnElementHasNoBuilder) {
    EXPECT_TRUE(MakesNothing("<texture id='p' allowconnectedassets='single'/>"));
    EXPECT_EQ(reports.Take(), Lines{"warning: Unknown Property name."});
}

TEST_F(SchemaBuilderTest, AnEmptyOrTakenIdFailsInSilence) {
    KRVTSchemaDefinition& schema =
        ReadElements("<String val='x'/><Integer id='p' val='1'/><String id='p' val='2'/>");
    EXPECT_EQ(NamesOf(schema), Lines{"p"});
    EXPECT_EQ(IntegerOf(Find(schema, "p")), 1);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, TheNameOfAnAliasIsTaken) {
    KRVTSchemaDefinition& schema =
        ReadElements("<String id='p'/><PropertyAlias alias='q' id='p'/><Integer id='q' val='1'/>");
    EXPECT_EQ(NamesOf(schema), Lines{"p"});
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, APublicPropertyTakesItsIdAsLabel) {
    EXPECT_EQ(Str(Make("<String id='p'/>").Descriptor().label), "p");
    EXPECT_EQ(Str(Make("<String id='p' label='L'/>").Descriptor().label), "L");
    EXPECT_EQ(Str(Make("<String id='p' public='false'/>").Descriptor().label), "");
}

TEST_F(SchemaBuilderTest, UidSetsTheIdAndMakesNoProperty) {
    KRVTSchemaDefinition& schema = ReadElements("<UID val='MySchema'/>");
    EXPECT_EQ(Str(schema.Id()), "MySchema");
    EXPECT_EQ(NamesOf(schema), Lines{});
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, UidGoesOnWhereAPropertyWouldNot) {
    KRVTSchemaDefinition& schema =
        ReadElements("<String id='p'/><UID id='p' val='S' readonly='true'/>");
    EXPECT_EQ(Str(schema.Id()), "S");
}

TEST_F(SchemaBuilderTest, UidNeedsExactlyOneText) {
    EXPECT_EQ(Str(ReadElements("<UID/>").Id()), "");
    EXPECT_EQ(Str(ReadElements("<UID val=''/>").Id()), "");
    EXPECT_EQ(Str(ReadElements("<UID val='a,b'/>").Id()), "");
    EXPECT_EQ(reports.Take(),
              (Lines{"error: 'val' attribute is, not a valid name in property 'UID'",
                     "error: 'val' attribute is, not a valid name in property 'UID'",
                     "error: 'val' attribute isa,b, not a valid name in property 'UID'"}));
}

TEST_F(SchemaBuilderTest, ASecondUidIsReportedAndLeftOut) {
    KRVTSchemaDefinition& schema = ReadElements("<UID val='A'/><UID val='B'/>");
    EXPECT_EQ(Str(schema.Id()), "A");
    EXPECT_EQ(reports.Take(), Lines{"error: 'UID' property is redefined."});
}

TEST_F(SchemaBuilderTest, BaseIsNotedAsAProperty) {
    KRVTSchemaDefinition& schema = ReadElements("<Base val='CommonSchema'/>");
    EXPECT_EQ(TextOf(Find(schema, "BaseSchema")), "CommonSchema");
    EXPECT_EQ(Find(schema, "BaseSchema").GetFlags(), kDefinitionIteratorData);
    EXPECT_EQ(Str(schema.BaseId()), "CommonSchema");
    EXPECT_EQ(schema.GetBaseSchema(), nullptr);
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, BaseReplacesAnEmptyBaseSchema) {
    KRVTSchemaDefinition& schema =
        ReadElements("<String id='BaseSchema' definitionIteratorData='true'/><Base val='B'/>");
    EXPECT_EQ(Str(schema.BaseId()), "B");
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaBuilderTest, BaseNeedsExactlyOneText) {
    EXPECT_TRUE(MakesNothing("<Base/>"));
    EXPECT_TRUE(MakesNothing("<Base val='a|b'/>"));
    EXPECT_EQ(reports.Take(),
              (Lines{"error: 'val' attribute is , not a valid name in property 'Base'",
                     "error: 'val' attribute is a|b, not a valid name in property 'Base'"}));
}

TEST_F(SchemaBuilderTest, ASecondBaseIsReportedByItsIdAndLeftOut) {
    KRVTSchemaDefinition& schema = ReadElements("<Base val='A'/><Base id='BaseSchema' val='B'/>");
    EXPECT_EQ(Str(schema.BaseId()), "A");
    EXPECT_EQ(reports.Take(), Lines{"error: BaseSchema property is redefined."});
}

TEST_F(SchemaBuilderTest, TheNameTestReportsEmptyAndTakenNames) {
    const KRVTSchemaDefinition& schema = ReadElements("<String id='p'/>");
    EXPECT_TRUE(CheckPropertyName(schema, "q"));
    EXPECT_FALSE(CheckPropertyName(schema, ""));
    EXPECT_FALSE(CheckPropertyName(schema, "p"));
    EXPECT_EQ(reports.Take(),
              (Lines{"warning: Empty id name", "warning: Duplicated property name p"}));
}

}  // namespace korvanet::platform::assets
