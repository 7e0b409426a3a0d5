#include "assets/localization/localizationxmldata.h"

#include <fstream>
#include <iterator>

#include "io/memory_source.h"
#include "localization/message_files.h"
#include "support/paths.h"
#include "support/raised.h"

namespace {

using halvern_tests::MemorySource;
using halvern_tests::Raised;
using halvern_tests::Unit;
using halvern_tests::Xlf;
using korvanet::platform::assets::ILocalizationImp;
using korvanet::platform::assets::LocalizationXmlData;
using korvanet::platform::assets::ParseXml;
using korvanet::platform::assets::xml_malformed_ex;
using korvanet::platform::assets::XmlDriverState;

class LocalizationXmlDataTest : public testing::Test {
protected:
    void Read(const std::string& document) {
        LocalizationXmlData reader(table);
        XmlDriverState driver(reader);
        MemorySource source(document);
        ParseXml(driver, source.archive());
    }
    std::string Message(const char* key) const {
        const nuo::string* found = table.Find(key);
        return found == nullptr ? "none" : found->data();
    }

    ILocalizationImp table;
};

TEST_F(LocalizationXmlDataTest, ReadsTheTargetOfEachUnit) {
    Read(Xlf(Unit("A", "Oak") + Unit("B", "Pine")));
    EXPECT_EQ(Message("A"), "Oak");
    EXPECT_EQ(Message("B"), "Pine");
}

TEST_F(LocalizationXmlDataTest, JoinsAMessageWithEntitiesAndReferences) {
    Read(Xlf(Unit("A", "Oak &amp; &lt;Pine&gt; &#233;&#x1F600;")));
    EXPECT_EQ(Message("A"), "Oak & <Pine> \xc3\xa9\xf0\x9f\x98\x80");
}

TEST_F(LocalizationXmlDataTest, TakesCdataAsTextAndAPrefixedTagAsAnotherElement) {
    Read("<r xmlns:x='urn:x'>" + Unit("A", "<![CDATA[Oak & ]]>Pine") +
         "<trans-unit id=\"B\"><x:target>Ash</x:target></trans-unit></r>");
    EXPECT_EQ(Message("A"), "Oak & Pine");
    EXPECT_EQ(Message("B"), "none");
}

TEST_F(LocalizationXmlDataTest, KeepsTheBlanksOfAMessage) {
    Read(Xlf(Unit("A", "  Oak \n ")));
    EXPECT_EQ(Message("A"), "  Oak \n ");
}

TEST_F(LocalizationXmlDataTest, AddsNothingForAnEmptyTarget) {
    Read(Xlf(Unit("A", "") + "<trans-unit id=\"B\"><target/></trans-unit>"));
    EXPECT_EQ(Message("A"), "none");
    EXPECT_EQ(Message("B"), "none");
}

TEST_F(LocalizationXmlDataTest, KeepsTheFirstOfTwoUnitsWithOneId) {
    Read(Xlf(Unit("A", "Oak") + Unit("A", "Pine")));
    EXPECT_EQ(Message("A"), "Oak");
}

TEST_F(LocalizationXmlDataTest, KeepsAMessageThatTheTableHadBefore) {
    table.Set("A", "Beech");
    Read(Xlf(Unit("A", "Oak")));
    EXPECT_EQ(Message("A"), "Beech");
}

TEST_F(LocalizationXmlDataTest, AddsNothingForAUnitWithoutAnId) {
    Read(
        Xlf(Unit("A", "Oak") + "<trans-unit><target>Pine</target></trans-unit>" + Unit("", "Ash")));
    EXPECT_EQ(Message("A"), "Oak");
    EXPECT_EQ(Message(""), "none");
}

TEST_F(LocalizationXmlDataTest, LeavesOutTextOfElementsWithinTheTarget) {
    Read(Xlf(Unit("A", "one <g>two</g> three<x/>")));
    EXPECT_EQ(Message("A"), "one  three");
}

TEST_F(LocalizationXmlDataTest, ReadsATargetOutsideOfAUnitAsOneOfTheLastUnit) {
    Read("<r><trans-unit id=\"A\"/><target>Oak</target></r>");
    EXPECT_EQ(Message("A"), "Oak");
}

TEST_F(LocalizationXmlDataTest, IgnoresSourcesNotesAndWhereElementsStand) {
    Read(
        "<trans-unit id=\"A\"><note>n</note><source>s</source>t<target>Oak</target>u"
        "<alt-trans><target>Pine</target></alt-trans></trans-unit>");
    EXPECT_EQ(Message("A"), "Oak");
}

TEST_F(LocalizationXmlDataTest, KeepsWhatCameBeforeABreakInTheFile) {
    EXPECT_EQ(Raised<xml_malformed_ex>([&] { Read("<r>" + Unit("A", "Oak") + "<broken"); }),
              "The xml input is bad.");
    EXPECT_EQ(Message("A"), "Oak");
}

TEST_F(LocalizationXmlDataTest, ReadsTheSampleFile) {
    std::ifstream file(halvern_tests::DataFile("Starter-fra.xlf"), std::ios::binary);
    Read(std::string(std::istreambuf_iterator<char>(file), {}));
    EXPECT_EQ(Message("MAT_1"), "Mat\xc3\xa9riau 1");
    EXPECT_EQ(Message("MAT_2"), "Mat\xc3\xa9riau 2   ");
    EXPECT_EQ(Message("TEX_1"), "Texture \xf0\x9f\x98\x80");
    EXPECT_EQ(Message("EMPTY"), "none");
}

}  // namespace
