#include "assets/schema/schemaxmlreader.h"

#include "support/raised.h"

#include "assets/property/bounds.h"
#include "assets/property/choice.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaXmlReaderTest : public SchemaTest {
protected:
    std::uint32_t FlagsOf(const std::string& attributes) {
        return Find(ReadElements("<Float id='p' " + attributes + "/>"), "p").GetFlags();
    }
    const KRVTBounds& BoundsOf(const std::string& children) {
        return *Find(ReadElements("<Float id='p' val='0.5'>" + children + "</Float>"), "p")
                    .Descriptor()
                    .bounds;
    }
    std::string Repeat(const std::string& text, int count) {
        std::string result;
        for (int i = 0; i < count; ++i)
            result += text;
        return result;
    }
};

TEST_F(SchemaXmlReaderTest, PublicIsOnUnlessFalse) {
    EXPECT_EQ(FlagsOf(""), kPublic);
    EXPECT_EQ(FlagsOf("public='true'"), kPublic);
    EXPECT_EQ(FlagsOf("public=''"), kPublic);
    EXPECT_EQ(FlagsOf("public='False'"), kPublic);
    EXPECT_EQ(FlagsOf("public='false'"), 0u);
}

TEST_F(SchemaXmlReaderTest, LocalIsOnForAnyWordButFalse) {
    EXPECT_EQ(FlagsOf("local='true'"), kPublic | kLocal);
    EXPECT_EQ(FlagsOf("local='no'"), kPublic | kLocal);
    EXPECT_EQ(FlagsOf("local='false'"), kPublic);
}

TEST_F(SchemaXmlReaderTest, OtherFlagsAreOnForTrueAlone) {
    const std::pair<const char*, std::uint32_t> flags[] = {
        {"readonly", kReadOnly},
        {"allowmultiplevalues", kAllowMultipleValues},
        {"definitionIteratorData", kDefinitionIteratorData},
        {"metadata", kMetadata}};
    for (const auto& [name, flag] : flags) {
        EXPECT_EQ(FlagsOf(std::string(name) + "='true'"), kPublic | flag) << name;
        EXPECT_EQ(FlagsOf(std::string(name) + "='false'"), kPublic) << name;
        EXPECT_EQ(FlagsOf(std::string(name) + "='TRUE'"), kPublic) << name;
        EXPECT_EQ(FlagsOf(std::string(name) + "='1'"), kPublic) << name;
    }
}

TEST_F(SchemaXmlReaderTest, ConnectionsAreSingleMultipleOrNone) {
    EXPECT_EQ(FlagsOf("allowconnectedassets='single'"), kPublic | kAllowConnectedAsset);
    EXPECT_EQ(FlagsOf("allowconnectedassets='multiple'"), kPublic | kAllowConnectedAssets);
    EXPECT_EQ(FlagsOf("allowconnectedassets='true'"), kPublic);
}

TEST_F(SchemaXmlReaderTest, AnUnknownAttributeIsReportedByItsValue) {
    KRVTSchemaDefinition& schema =
        ReadElements("<Float id='p' hasminimum='yes' val='2' colour='red'/>");
    EXPECT_EQ(NumberOf(Find(schema, "p")), 2);
    EXPECT_EQ(reports.Take(),
              (Lines{"warning: red is unknown attribute.", "warning: yes is unknown attribute."}));
}

TEST_F(SchemaXmlReaderTest, EveryAttributeOfTheGrammarIsKnown) {
    ReadElements(
        "<Float id='p' val='' type='' label='' unit='' alias='' local='' public=''"
        " readonly='' definitionIteratorData='' allowmultiplevalues='' metadata=''"
        " allowconnectedassets='' valR='' valG='' valB='' valA='' valX='' valY=''"
        " valZ='' file=''/>");
    EXPECT_EQ(reports.Take(), Lines{});
}

TEST_F(SchemaXmlReaderTest, VectorAndColorAttributesShareTheirPlace) {
    // Attributes are read in the order of their names: valX comes behind valR.
    EXPECT_EQ(ColorOf(Find(ReadElements("<Color id='p' valX='7' valR='1'/>"), "p")),
              (std::vector<double>{7, 0, 0, 1}));
}

TEST_F(SchemaXmlReaderTest, BoundsHaveTheLimitsThatAreThere) {
    const KRVTBounds& none = BoundsOf("<Bounds/>");
    EXPECT_FALSE(none.HasMinimum());
    EXPECT_FALSE(none.HasMaximum());
    EXPECT_EQ(none.GetIncrementSize(), 1.0);
    EXPECT_TRUE(none.MinimumIsInclusive());
    EXPECT_TRUE(none.MaximumIsInclusive());
    EXPECT_FALSE(none.IsPercentage());

    const KRVTBounds& both = BoundsOf(
        "<Bounds minimum='-1e1' maximum='1.0' incrementsize='0.05' minimumisinclusive='true'"
        " maximumisinclusive='yes'/>");
    EXPECT_TRUE(both.HasMinimum());
    EXPECT_EQ(both.GetMinimum(), -10.0);
    EXPECT_TRUE(both.HasMaximum());
    EXPECT_EQ(both.GetMaximum(), 1.0);
    EXPECT_EQ(both.GetIncrementSize(), 0.05);
    EXPECT_TRUE(both.MinimumIsInclusive());
    EXPECT_FALSE(both.MaximumIsInclusive());

    const KRVTBounds& odd = BoundsOf(
        "<Bounds percentage='yes' minimum='-2' maximum='3' minimumisinclusive='yes'"
        " maximumisinclusive='true'/>");
    EXPECT_FALSE(odd.IsPercentage());
    EXPECT_EQ(odd.GetMinimum(), -2.0);
    EXPECT_FALSE(odd.MinimumIsInclusive());
    EXPECT_TRUE(odd.MaximumIsInclusive());
}

TEST_F(SchemaXmlReaderTest, ALimitThatIsNoNumberIs0) {
    EXPECT_EQ(BoundsOf("<Bounds minimum='low'/>").GetMinimum(), 0.0);
    EXPECT_TRUE(BoundsOf("<Bounds minimum=''/>").HasMinimum());
}

TEST_F(SchemaXmlReaderTest, APercentageIgnoresTheOtherLimits) {
    const KRVTBounds& bounds = BoundsOf("<Bounds percentage='true' minimum='5' maximum='9'/>");
    EXPECT_TRUE(bounds.IsPercentage());
    EXPECT_EQ(bounds.GetMinimum(), 0.0);
    EXPECT_EQ(bounds.GetMaximum(), 1.0);
}

TEST_F(SchemaXmlReaderTest, ASecondBoundsElementReplacesTheFirst) {
    EXPECT_FALSE(BoundsOf("<Bounds minimum='0'/><Bounds maximum='1'/>").HasMinimum());
}

TEST_F(SchemaXmlReaderTest, BoundsMayHaveAnyNameAndDepth) {
    EXPECT_EQ(BoundsOf("<Limits minimum='0.25'/>").GetMinimum(), 0.25);
    EXPECT_EQ(BoundsOf("<a><b minimum='0.25'/></a>").GetMinimum(), 0.25);
}

TEST_F(SchemaXmlReaderTest, AnUnknownBoundsAttributeIsReportedByItsValue) {
    BoundsOf("<Bounds hasmaximum='oh'/>");
    EXPECT_EQ(reports.Take(), Lines{"warning: oh is unknown attribute."});
}

TEST_F(SchemaXmlReaderTest, BoundsEndWithTheirProperty) {
    KRVTSchemaDefinition& schema =
        ReadElements("<Float id='a'><Bounds minimum='0'/></Float><Float id='b'/>");
    EXPECT_NE(Find(schema, "a").Descriptor().bounds.get(), nullptr);
    EXPECT_EQ(Find(schema, "b").Descriptor().bounds.get(), nullptr);
}

TEST_F(SchemaXmlReaderTest, ChoiceValuesMayLackAnything) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<Choice id='p'><ChoiceValue/><ChoiceValue id='b' val='x3'/>"
        "<ChoiceValue id='c' val='3 ' label='C'/></Choice>");
    const KRVTChoiceList& choices = *Find(schema, "p").Descriptor().choices;
    // The second has the value 0 of the first and is refused.
    ASSERT_EQ(choices.GetCount(), 2u);
    EXPECT_NE(choices.FindById(""), nullptr);
    ASSERT_NE(choices.FindById("c"), nullptr);
    EXPECT_EQ(choices.FindById("c")->GetValue(), 3);
    EXPECT_EQ(Str(choices.FindById("c")->Label()), "C");
}

TEST_F(SchemaXmlReaderTest, OtherChildrenOfAChoiceAreBounds) {
    KRVTSchemaDefinition& schema =
        ReadElements("<Choice id='p'><Bounds minimum='1'/><ChoiceValue id='a' val='1'/></Choice>");
    EXPECT_EQ(Find(schema, "p").Descriptor().choices->GetCount(), 1u);
}

TEST_F(SchemaXmlReaderTest, AChoiceValueElsewhereIsABoundsElement) {
    ReadElements("<Float id='p'><ChoiceValue id='odd'/></Float>");
    EXPECT_EQ(reports.Take(), Lines{"warning: odd is unknown attribute."});
}

TEST_F(SchemaXmlReaderTest, TheRootMayHaveAnyName) {
    EXPECT_EQ(NamesOf(Read("<whatever id='x'><Float id='p'/></whatever>")), Lines{"p"});
}

TEST_F(SchemaXmlReaderTest, TextIsIgnored) {
    EXPECT_EQ(NamesOf(ReadElements("text<Float id='p'>more<Bounds>x</Bounds></Float>end")),
              Lines{"p"});
}

TEST_F(SchemaXmlReaderTest, AnythingBadIsLeftOutAndReadingGoesOn) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<UID val=''/><Base val='a,b'/><Unknown id='u'/><texture id='t'/><type/>"
        "<Boolean id='b' allowmultiplevalues='true'/><Reference id='r'/><Float odd='x'/>"
        "<Color id='c' valR='300'/><Float id='f' val='9'><Bounds maximum='1'/></Float>"
        "<Float id='last'/>");
    EXPECT_EQ(NamesOf(schema), Lines{"last"});
    EXPECT_EQ(reports.Take().size(), 8u);
}

TEST_F(SchemaXmlReaderTest, FarTooManyElementsEndTheReading) {
    EXPECT_EQ(halvern_tests::Raised<schema_too_large>([&] { ReadElements(Repeat("<a/>", 16384)); }),
              "The schema is too large.");
    EXPECT_NO_THROW(ReadElements(Repeat("<a/>", 16383)));
    EXPECT_THROW(Read(Repeat("<a>", 20000) + Repeat("</a>", 20000)), schema_too_large);
}

TEST_F(SchemaXmlReaderTest, FarTooManyListElementsEndTheReading) {
    EXPECT_THROW(ReadElements("<String id='p' val='" + Repeat(",", 1 << 20) + "'/>"),
                 schema_too_large);
    EXPECT_THROW(ReadElements(Repeat("<String val='" + Repeat(",", 1 << 19) + "'/>", 2)),
                 schema_too_large);
}

}  // namespace korvanet::platform::assets
