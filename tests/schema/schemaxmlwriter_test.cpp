#include "assets/schema/schemaxmlwriter.h"

#include "assets/property/numbervalues.h"
#include "assets/property/stringvalues.h"
#include "assets/schema/propertyflags.h"
#include "assets/schema/schemainheritance.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

using namespace PropertyFlags;

class SchemaXmlWriterTest : public SchemaTest {
protected:
    // What is written of the elements, between the UID and the end of the root.
    std::string Written(const std::string& elements) {
        return Inner(ReadElements("<UID val='S'/>" + elements));
    }
    std::string Inner(const KRVTSchemaDefinition& schema) {
        const std::string head = "<AssetSchema>\n<UID val=\"" + Str(schema.Id()) + "\">\n</UID>";
        const std::string tail = "</AssetSchema>";
        const std::string text = Str(WriteSchemaXml(schema));
        if (text.size() < head.size() + tail.size() || text.substr(0, head.size()) != head ||
            text.substr(text.size() - tail.size()) != tail) {
            return "not framed: " + text;
        }
        return text.substr(head.size(), text.size() - head.size() - tail.size());
    }
    KRVTSchemaDefinition& ReadBack(const KRVTSchemaDefinition& schema) {
        return Read(Str(WriteSchemaXml(schema)));
    }
};

TEST_F(SchemaXmlWriterTest, WritesDirectivesPropertiesAndAliasesInTheirOrder) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<type val='texture'/><PropertyAlias alias='old' id='b'/><Base val='B'/>"
        "<Float id='b' val='0.5' label='Bee'><Bounds minimum='0' maximum='1'/></Float>"
        "<UID val='S'/><String id='Z' val='z'/>");
    EXPECT_EQ(Str(WriteSchemaXml(schema)),
              "<AssetSchema>\n"
              "<UID val=\"S\">\n</UID>"
              "<Base val=\"B\">\n</Base>"
              "<type val=\"texture\">\n</type>"
              "<String id=\"Z\" val=\"z\" label=\"Z\">\n</String>"
              "<Float id=\"b\" val=\"0.5\" label=\"Bee\">\n"
              "<Bounds percentage=\"false\" incrementsize=\"1\" minimum=\"0\""
              " minimumisinclusive=\"true\" maximum=\"1\" maximumisinclusive=\"true\">\n</Bounds>"
              "</Float>"
              "<PropertyAlias alias=\"old\" id=\"b\">\n</PropertyAlias>"
              "</AssetSchema>");
}

TEST_F(SchemaXmlWriterTest, AnExclusiveMinimumIsWritten) {
    EXPECT_EQ(Written("<Integer id='p' val='7'><Bounds minimum='5' minimumisinclusive='no'/>"
                      "</Integer>"),
              "<Integer id=\"p\" val=\"7\" label=\"p\">\n<Bounds percentage=\"false\""
              " incrementsize=\"1\" minimum=\"5\" minimumisinclusive=\"false\">\n</Bounds>"
              "</Integer>");
}

TEST_F(SchemaXmlWriterTest, AKindThatTheGrammarDoesNotKnowWritesNothing) {
    KRVTSchemaDefinition& schema = ReadElements("<UID val='S'/><Float id='p' val='1'/>");
    const nuo::string before = WriteSchemaXml(schema);
    schema.AddProperty(
        MakeProperty(schema.Context(), ValueClass::kUnSpecifiedValue, "a", "", kPublic));
    EXPECT_EQ(Str(WriteSchemaXml(schema)), Str(before));
}

TEST_F(SchemaXmlWriterTest, ASchemaWithoutIdWritesNothing) {
    EXPECT_EQ(Str(WriteSchemaXml(ReadElements("<Float id='p'/>"))), "");
}

TEST_F(SchemaXmlWriterTest, WritesTheFlagsThatDifferFromTheReadersDefaults) {
    EXPECT_EQ(Written("<String id='p'/>"), "<String id=\"p\" val=\"\" label=\"p\">\n</String>");
    EXPECT_EQ(Written("<String id='p' public='false' readonly='true' local='true'"
                      " metadata='true' allowconnectedassets='single' val='x'/>"),
              "<String id=\"p\" public=\"false\" readonly=\"true\" local=\"true\""
              " allowconnectedassets=\"single\" metadata=\"true\" val=\"x\">\n</String>");
    EXPECT_EQ(Written("<String id='p' allowmultiplevalues='true' definitionIteratorData='true'"
                      " allowconnectedassets='multiple'/>"),
              "<String id=\"p\" allowmultiplevalues=\"true\" definitionIteratorData=\"true\""
              " allowconnectedassets=\"multiple\" label=\"p\">\n</String>");
}

TEST_F(SchemaXmlWriterTest, WritesABinaryWithoutData) {
    EXPECT_EQ(Written("<Binary id='p'/>"), "<Binary id=\"p\" label=\"p\">\n</Binary>");
}

TEST_F(SchemaXmlWriterTest, WritesTextsWithTheirSeparatorsEscaped) {
    EXPECT_EQ(Written("<String id='p' val='a\\,b\\|c\\\\d'/>"),
              "<String id=\"p\" val=\"a\\,b\\|c\\\\d\" label=\"p\">\n</String>");
    EXPECT_EQ(Written("<String id='p' val='a\\,b,c' allowmultiplevalues='true'/>"),
              "<String id=\"p\" allowmultiplevalues=\"true\" val=\"a\\,b,c\" label=\"p\">\n"
              "</String>");
    EXPECT_EQ(Written("<DateTime id='p' val='now'/>"),
              "<DateTime id=\"p\" val=\"now\" label=\"p\">\n</DateTime>");
    EXPECT_EQ(Written("<Uuid id='p' val='u'/>"), "<Uuid id=\"p\" val=\"u\" label=\"p\">\n</Uuid>");
}

TEST_F(SchemaXmlWriterTest, AListWithoutElementsHasNoVal) {
    EXPECT_EQ(Written("<String id='p' allowmultiplevalues='true'/>"),
              "<String id=\"p\" allowmultiplevalues=\"true\" label=\"p\">\n</String>");
    EXPECT_EQ(Written("<Integer id='p' allowmultiplevalues='true'/>"),
              "<Integer id=\"p\" allowmultiplevalues=\"true\" label=\"p\">\n</Integer>");
    EXPECT_EQ(Written("<Float id='p' allowmultiplevalues='true'/>"),
              "<Float id=\"p\" allowmultiplevalues=\"true\" label=\"p\">\n</Float>");
    EXPECT_EQ(Written("<Color id='p' allowmultiplevalues='true'/>"),
              "<Color id=\"p\" allowmultiplevalues=\"true\" label=\"p\">\n</Color>");
}

TEST_F(SchemaXmlWriterTest, TheElementOfAUriFollowsItsRole) {
    EXPECT_EQ(Written("<URL id='p' val='u\\,v'/>"),
              "<URL id=\"p\" val=\"u\\,v\" label=\"p\">\n</URL>");
    EXPECT_EQ(Written("<TextureURI id='p' val='a,b'/>"),
              "<TextureURI id=\"p\" allowmultiplevalues=\"true\" val=\"a,b\" label=\"p\">\n"
              "</TextureURI>");
    EXPECT_EQ(Written("<ui id='p' val='a,b\\c'/>"),
              "<ui id=\"p\" public=\"false\" readonly=\"true\" val=\"a,b\\c\">\n</ui>");
    EXPECT_EQ(Written("<implementation id='p' val='a,b'/>"),
              "<implementation id=\"p\" public=\"false\" readonly=\"true\" val=\"a,b\">\n"
              "</implementation>");
}

TEST_F(SchemaXmlWriterTest, WritesABoolean) {
    EXPECT_EQ(Written("<Boolean id='p' val='true'/>"),
              "<Boolean id=\"p\" val=\"true\" label=\"p\">\n</Boolean>");
    EXPECT_EQ(Written("<Boolean id='p'/>"),
              "<Boolean id=\"p\" val=\"false\" label=\"p\">\n</Boolean>");
}

TEST_F(SchemaXmlWriterTest, WritesIntegersWithTheirBounds) {
    EXPECT_EQ(Written("<Integer id='p' val='-7'><Bounds maximum='5' maximumisinclusive='no'/>"
                      "</Integer>"),
              "<Integer id=\"p\" val=\"-7\" label=\"p\">\n<Bounds percentage=\"false\""
              " incrementsize=\"1\" maximum=\"5\" maximumisinclusive=\"false\">\n</Bounds>"
              "</Integer>");
    EXPECT_EQ(Written("<Integer id='p' val='1,-2,3' allowmultiplevalues='true'/>"),
              "<Integer id=\"p\" allowmultiplevalues=\"true\" val=\"1,-2,3\" label=\"p\">\n"
              "</Integer>");
}

TEST_F(SchemaXmlWriterTest, APercentageHasNoLimits) {
    EXPECT_EQ(Written("<Float id='p'><Bounds percentage='true'/></Float>"),
              "<Float id=\"p\" val=\"0\" label=\"p\">\n<Bounds percentage=\"true\""
              " incrementsize=\"1\">\n</Bounds></Float>");
}

TEST_F(SchemaXmlWriterTest, WritesNumbersInTheirShortestForm) {
    EXPECT_EQ(Written("<Float id='p' val='0.1,1e-3,-2.5E+10,1234567'"
                      " allowmultiplevalues='true'/>"),
              "<Float id=\"p\" allowmultiplevalues=\"true\" val=\"0.1,0.001,-2.5e+10,1234567\""
              " label=\"p\">\n</Float>");
}

TEST_F(SchemaXmlWriterTest, ANumberWithAUnitIsADistanceWithItsShortWord) {
    EXPECT_EQ(Written("<Float id='p' val='2' unit='inches'/>"),
              "<Distance id=\"p\" val=\"2\" unit=\"in\" label=\"p\">\n</Distance>");
    EXPECT_EQ(Written("<Distance id='p' val='2'/>"),
              "<Distance id=\"p\" val=\"2\" label=\"p\">\n</Distance>");
}

TEST_F(SchemaXmlWriterTest, AnUnknownUnitIsNotSpecified) {
    KRVTSchemaDefinition& schema = ReadElements("<UID val='S'/><Float id='p' unit='furlong'/>");
    const std::string written =
        "<Float id=\"p\" val=\"0\" unit=\"NotSpecified\" label=\"p\">\n</Float>";
    EXPECT_EQ(Inner(schema), written);
    EXPECT_TRUE(Is<GeneralUnitsValue>(Find(ReadBack(schema), "p")));
    EXPECT_EQ(Find(ReadBack(schema), "p").GetValue()->GetUnits(), 0u);
    As<IScalarValue>(Find(schema, "p")).SetUnits(77);
    EXPECT_EQ(Inner(schema), written);
}

TEST_F(SchemaXmlWriterTest, AUriWithARoleThatItsElementWouldNotRestoreIsAUrl) {
    KRVTSchemaDefinition& schema = NewSchema("S");
    schema.AddUriProperty(L"a", kPublic | kTextureURI, L"", L"x,y");
    schema.AddUriProperty(L"b", kPublic | kImplementation, L"", L"x,y");
    schema.AddUriProperty(L"c", kPublic | kUIDefinition, L"", L"x,y");
    schema.AddUriProperty(L"d", kReadOnly | kUIDefinition | kAllowMultipleValues, L"", L"x,y");
    EXPECT_EQ(Inner(schema),
              "<URL id=\"a\" val=\"x\\,y\" label=\"a\">\n</URL>"
              "<URL id=\"b\" val=\"x\\,y\" label=\"b\">\n</URL>"
              "<URL id=\"c\" val=\"x\\,y\" label=\"c\">\n</URL>"
              "<URL id=\"d\" public=\"false\" readonly=\"true\" allowmultiplevalues=\"true\""
              " val=\"x\\,y\">\n</URL>");
}

TEST_F(SchemaXmlWriterTest, ARoleIsToldWhereTheBaseRestoresTheOtherFlags) {
    KRVTSchemaDefinition& base =
        ReadElements("<UID val='B'/><URL id='a'/><implementation id='b' val='x'/>");
    KRVTSchemaDefinition& child =
        ReadElements("<UID val='S'/><implementation id='a' val='x,y'/><ui id='b' val='x,y'/>");
    child.SetBase(&base);
    InheritFrom(child, base);
    KRVTSchemaDefinition& again = ReadBack(child);
    InheritFrom(again, base);
    EXPECT_EQ(Find(again, "a").GetFlags(), kPublic | kImplementation);
    EXPECT_EQ(Find(again, "b").GetFlags(), kReadOnly | kImplementation | kUIDefinition);
    EXPECT_EQ(TextsOf(Find(again, "a")), Lines{"x,y"});
    EXPECT_EQ(TextsOf(Find(again, "b")), Lines{"x,y"});
}

TEST_F(SchemaXmlWriterTest, AValueOfAnotherClassThanTheBasesReadsBackAsItsOwn) {
    constexpr const char* kForms[] = {
        "<String id='p' val='a,b'/>", "<String id='p' val='a,b' allowmultiplevalues='true'/>",
        "<URL id='p' val='a,b'/>",    "<URL id='p' val='a,b' allowmultiplevalues='true'/>",
        "<ui id='p' val='a,b'/>",     "<TextureURI id='p' val='a,b'/>",
        "<Float id='p' val='1'/>",    "<Float id='p' val='1,2' allowmultiplevalues='true'/>",
        "<Float id='p' unit='mm'/>",  "<Float id='p' unit='parsec'/>",
        "<Distance id='p' val='1'/>", "<Vector3 id='p' valX='1'/>",
        "<Color id='p' valR='1'/>",   "<Color id='p' valR='1,2' allowmultiplevalues='true'/>",
        "<Integer id='p' val='1'/>",  "<Integer id='p' val='1,2' allowmultiplevalues='true'/>"};
    for (const char* ofBase : kForms) {
        for (const char* ofChild : kForms) {
            KRVTSchemaDefinition& base = ReadElements(ofBase);
            KRVTSchemaDefinition& child = ReadElements(std::string("<UID val='S'/>") + ofChild);
            child.SetBase(&base);
            InheritFrom(child, base);
            const PropertyBase& property = Find(child, "p");
            if (CheckPropertyFlags(property.GetType(), property.GetFlags()) != 0) continue;
            KRVTSchemaDefinition& again = ReadBack(child);
            InheritFrom(again, base);
            const PropertyBase& twin = Find(again, "p");
            EXPECT_TRUE(twin.IsEqual(&property)) << ofBase << ofChild;
            EXPECT_EQ(twin.GetFlags(), property.GetFlags()) << ofBase << ofChild;
        }
    }
}

TEST_F(SchemaXmlWriterTest, WritesVectorsAndColors) {
    EXPECT_EQ(Written("<Vector3 id='p' valX='1' valY='2.5' valZ='-3'/>"),
              "<Vector3 id=\"p\" valX=\"1\" valY=\"2.5\" valZ=\"-3\" label=\"p\">\n</Vector3>");
    EXPECT_EQ(Written("<Color id='p' valR='255' valG='128'/>"),
              "<Color id=\"p\" valR=\"255\" valG=\"128\" valB=\"0\" valA=\"1\" label=\"p\">\n"
              "</Color>");
    EXPECT_EQ(Written("<Color id='p' valR='1,2' valA='0.5' allowmultiplevalues='true'/>"),
              "<Color id=\"p\" allowmultiplevalues=\"true\" valR=\"1,2\" valG=\"0,0\""
              " valB=\"0,0\" valA=\"0.5,1\" label=\"p\">\n</Color>");
}

TEST_F(SchemaXmlWriterTest, WritesReferencesWithoutWhatIsConnected) {
    EXPECT_EQ(Written("<Reference id='p' allowconnectedassets='multiple'/>"),
              "<Reference id=\"p\" allowconnectedassets=\"multiple\" label=\"p\">\n</Reference>");
    EXPECT_EQ(Written("<Reference id='p' type='texture' allowconnectedassets='single'/>"),
              "<Reference id=\"p\" allowconnectedassets=\"single\" type=\"texture\" label=\"p\">\n"
              "</Reference>");
}

TEST_F(SchemaXmlWriterTest, WritesAChoiceWithItsEntries) {
    const std::string entries =
        "<ChoiceValue id='a,b' val='10' label='A'/><ChoiceValue id='c' val='20' label='C'/>";
    const std::string written =
        "<ChoiceValue id=\"a,b\" val=\"10\" label=\"A\">\n</ChoiceValue>"
        "<ChoiceValue id=\"c\" val=\"20\" label=\"C\">\n</ChoiceValue></Choice>";
    EXPECT_EQ(Written("<Choice id='p' val='a\\,b'>" + entries + "</Choice>"),
              "<Choice id=\"p\" val=\"a\\,b\" label=\"p\">\n" + written);
    EXPECT_EQ(Written("<Choice id='p' val='none'>" + entries + "</Choice>"),
              "<Choice id=\"p\" label=\"p\">\n" + written);
    EXPECT_EQ(
        Written("<Choice id='p' val='c,a\\,b' allowmultiplevalues='true'>" + entries + "</Choice>"),
        "<Choice id=\"p\" allowmultiplevalues=\"true\" val=\"c,a\\,b\" label=\"p\">\n" + written);
}

TEST_F(SchemaXmlWriterTest, APropertyWithConflictingFlagsIsReportedAndLeftOut) {
    EXPECT_EQ(Written("<String id='p' unit='mm'/><Float id='q'/>"),
              "<Float id=\"q\" val=\"0\" label=\"q\">\n</Float>");
    EXPECT_EQ(reports.Take(), Lines{"warning: Property flags conflict in Node: p, ErrorCode: 8"});
}

TEST_F(SchemaXmlWriterTest, ASchemaEqualToItsBaseIsDirectivesAlone) {
    KRVTSchemaDefinition& base = ReadElements(
        "<UID val='B'/><type val='t'/><Integer id='SchemaVersion' val='1' readonly='true'/>"
        "<Float id='f' val='2'/>");
    KRVTSchemaDefinition& child = ReadElements("<UID val='S'/><Base val='B'/><type val='t'/>");
    child.SetBase(&base);
    InheritFrom(child, base);
    EXPECT_EQ(Inner(child), "<Base val=\"B\">\n</Base><type val=\"t\">\n</type>");
}

TEST_F(SchemaXmlWriterTest, ADifferentDefaultIsWrittenAndAnInheritedAliasToo) {
    KRVTSchemaDefinition& base = ReadElements(
        "<UID val='B'/><Float id='f' val='2'/><Float id='g' val='1'/>"
        "<PropertyAlias alias='eff' id='f'/>");
    KRVTSchemaDefinition& child = ReadElements(
        "<UID val='S'/><Base val='B'/><Float id='f' val='3'/>"
        "<PropertyAlias alias='gee' id='g'/>");
    child.SetBase(&base);
    InheritFrom(child, base);
    EXPECT_EQ(Inner(child),
              "<Base val=\"B\">\n</Base><Float id=\"f\" val=\"3\" label=\"f\">\n</Float>"
              "<PropertyAlias alias=\"gee\" id=\"g\">\n</PropertyAlias>"
              "<PropertyAlias alias=\"eff\" id=\"f\">\n</PropertyAlias>");
}

TEST_F(SchemaXmlWriterTest, TheRootSchemaListsBaseSchemaAndAssettype) {
    const std::string text = Str(WriteSchemaXml(Read(CommonXml())));
    EXPECT_THAT(text, testing::HasSubstr("<String id=\"BaseSchema\" public=\"false\""
                                         " definitionIteratorData=\"true\" val=\"\">"));
    EXPECT_THAT(text, testing::HasSubstr("<String id=\"assettype\" public=\"false\""
                                         " readonly=\"true\" val=\"\">"));
}

TEST_F(SchemaXmlWriterTest, WhatIsWrittenReadsBackAndIsWrittenTheSame) {
    KRVTSchemaDefinition& schema = ReadElements(
        "<UID val='S'/><Base val='B'/><type val='t'/><localname val='N'/>"
        "<String id='\xC3\xA9' val='&lt;&amp;&quot;&#10;' label='&#9;'/>"
        "<TextureURI id='tex' val='1/Mats/a,2/Mats/a'/><ui id='ui' val='a,b|c\\d'/>"
        "<Distance id='d' val='3.25' unit='yard'/><Vector3 id='v' valX='0.1'/>"
        "<Choice id='c' val='y'><ChoiceValue id='x' val='1' label='X'/>"
        "<ChoiceValue id='y' val='2' label='Y'/></Choice>"
        "<Color id='col' valR='1,2' allowmultiplevalues='true'/>"
        "<Float id='m' val='5' metadata='true'><Bounds percentage='false' minimum='1'/></Float>"
        "<PropertyAlias alias='m2' id='m'/>");
    KRVTSchemaDefinition& again = ReadBack(schema);
    EXPECT_EQ(NamesOf(again), NamesOf(schema));
    for (const PropertyBase* property : schema.Properties()) {
        const PropertyBase& twin = Find(again, property->Name().c_str());
        EXPECT_EQ(twin.GetFlags(), property->GetFlags()) << Str(property->Name());
        EXPECT_EQ(twin.GetType(), property->GetType()) << Str(property->Name());
        EXPECT_TRUE(twin.IsEqual(property)) << Str(property->Name());
    }
    EXPECT_EQ(Find(again, "d").GetValue()->GetUnits(), 8221u);
    EXPECT_EQ(Str(WriteSchemaXml(again)), Str(WriteSchemaXml(schema)));
}

TEST_F(SchemaXmlWriterTest, AReadOnlyDoubleOf17DigitsSurvives) {
    constexpr double kNumber = 0.12345678901234568;
    KRVTSchemaDefinition& schema = NewSchema("S");
    schema.AddFloatProperty(L"p", PropertyFlags::kReadOnly, L"", kNumber, nullptr, nullptr);
    EXPECT_EQ(Inner(schema),
              "<Float id=\"p\" public=\"false\" readonly=\"true\""
              " val=\"0.12345678901234568\">\n</Float>");
    EXPECT_EQ(NumberOf(Find(ReadBack(schema), "p")), kNumber);
}

TEST_F(SchemaXmlWriterTest, ATextThatXmlCannotHoldWritesNothing) {
    KRVTSchemaDefinition& schema = NewSchema("S");
    schema.AddStringProperty(L"p", 0, L"", L"\x01");
    EXPECT_EQ(Str(WriteSchemaXml(schema)), "");
}

// The decimal comma of a host's locale must not reach schema files.
class CommaNumpunct : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(SchemaXmlWriterTest, ADecimalCommaInTheLocaleChangesNothing) {
    const std::string elements = "<Float id='p' val='1234567.25'/><Integer id='q' val='1234567'/>";
    const std::string expected =
        "<Float id=\"p\" val=\"1234567.25\" label=\"p\">\n</Float>"
        "<Integer id=\"q\" val=\"1234567\" label=\"q\">\n</Integer>";
    const std::locale former = std::locale::global(std::locale(std::locale(), new CommaNumpunct));
    const std::string streamed = (std::ostringstream() << 0.5).str();
    const std::string written = Written(elements);
    std::locale::global(former);
    EXPECT_EQ(streamed, "0,5");
    EXPECT_EQ(written, expected);
}

}  // namespace korvanet::platform::assets
