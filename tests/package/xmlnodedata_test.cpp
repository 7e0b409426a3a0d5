#include "assets/package/xmlnodedata.h"

#include "assets/package/packageerrors.h"
#include "io/memory_source.h"
#include "package/package_files.h"
#include "tests/support/raised.h"

namespace {

using halvern_tests::MemorySource;
using halvern_tests::Raised;
using korvanet::platform::assets::JpkFsErr;
using korvanet::platform::assets::PackageFolder;
using korvanet::platform::assets::ParseXml;
using korvanet::platform::assets::PropertyMap;
using korvanet::platform::assets::XmlDriverState;
using korvanet::platform::assets::XmlNodeData;
using package_tests::kCoreHead;
using package_tests::kCoreTail;
using package_tests::kLinksHead;
using package_tests::kLinksTail;
using testing::ElementsAre;
using testing::IsEmpty;

template <class Target>
void Read(Target& target, const std::string& document, std::uint64_t count = 0) {
    XmlNodeData receiver(target, count);
    XmlDriverState driver(receiver);
    MemorySource source(document);
    ParseXml(driver, source.archive());
}

// Elements as "type/name=text".
std::vector<std::string> Listed(const PropertyMap& elements) {
    std::vector<std::string> list;
    for (const auto& [key, text] : elements) {
        list.push_back(std::string(key.type.data()) + "/" + key.name.data() + "=" + text.data());
    }
    return list;
}

std::vector<std::string> NodeOf(const std::string& document) {
    PropertyMap node;
    Read(node, document);
    return Listed(node);
}

TEST(XmlNodeData, ReadsTheElementsOfANodeSortedByTypeAndName) {
    EXPECT_THAT(NodeOf(kCoreHead +
                       "<string name=\"b\">2</string><string name=\"a\">1</string>"
                       "<bool name=\"z\">0</bool>" +
                       kCoreTail),
                ElementsAre("bool/z=0", "string/a=1", "string/b=2"));
}

TEST(XmlNodeData, ReadsTheElementsOfEachLink) {
    PackageFolder links;
    Read(links, kLinksHead +
                    "<link name=\"R\"><string name=\"name\">R</string></link>"
                    "<link name=\"a&amp;b\" class=\"c\"><bool name=\"x\">1</bool>"
                    "</link>" +
                    kLinksTail);
    ASSERT_EQ(links.size(), 2U);
    EXPECT_THAT(Listed(links.at("R").properties), ElementsAre("string/name=R"));
    EXPECT_THAT(Listed(links.at("a&b").properties), ElementsAre("bool/x=1"));
    EXPECT_STREQ(links.at("R").name.data(), "R");
}

TEST(XmlNodeData, TakesTwoLinksOfOneNameAsOneChild) {
    PackageFolder links;
    Read(links, kLinksHead +
                    "<link name=\"a\"><s name=\"v\">1</s><s name=\"w\">1</s></link>"
                    "<link name=\"a\"><s name=\"v\">2</s></link>" +
                    kLinksTail);
    ASSERT_EQ(links.size(), 1U);
    EXPECT_THAT(Listed(links.at("a").properties), ElementsAre("s/v=2", "s/w=1"));
}

TEST(XmlNodeData, KeepsElementsOfAnyKindAndName) {
    EXPECT_THAT(NodeOf(kCoreHead + "<foreign name=\"f\" other=\"o\">x</foreign>" + kCoreTail),
                ElementsAre("foreign/f=x"));
}

TEST(XmlNodeData, TakesAnElementWithoutANameAsOneOfTheEmptyName) {
    EXPECT_THAT(NodeOf(kCoreHead + "<name locale=\"en-us\">QMX objects</name>" + kCoreTail),
                ElementsAre("name/=QMX objects"));
}

TEST(XmlNodeData, JoinsTheChunksOfAValueAndKeepsItsBlanks) {
    EXPECT_THAT(NodeOf(kCoreHead + "<s name=\"v\"> a &amp; b&#10; </s>" + kCoreTail),
                ElementsAre("s/v= a & b\n "));
}

TEST(XmlNodeData, IgnoresTextOutsideOfElementsAndElementsWithinThem) {
    EXPECT_THAT(NodeOf(kCoreHead + "\n <s name=\"v\">a<i name=\"w\">deep</i>b</s>\n" + kCoreTail),
                ElementsAre("s/v=ab"));
}

TEST(XmlNodeData, KeepsTheLastOfTwoEqualElements) {
    EXPECT_THAT(NodeOf(kCoreHead + "<s name=\"v\">1</s><s name=\"v\">2</s>" + kCoreTail),
                ElementsAre("s/v=2"));
}

TEST(XmlNodeData, LeavesOutTheTablesOfTheGroupQmx) {
    EXPECT_THAT(NodeOf("<root><group name=\"qmx\"><table name=\"t\"><double name=\"v\">0</double>"
                       "</table><node name=\"n\"><s name=\"v\">1</s></node></group>"
                       "<group name=\"content\"><node><s name=\"w\">2</s></node></group></root>"),
                ElementsAre("s/w=2"));
}

TEST(XmlNodeData, TakesNoLinksFromACorePartAndNoNodesFromALinksPart) {
    EXPECT_THAT(NodeOf("<root><group><link name=\"R\"><s name=\"v\">1</s></link></group></root>"),
                IsEmpty());
    PackageFolder links;
    Read(links, "<root><group><node name=\"R\"><s name=\"v\">1</s></node></group></root>");
    EXPECT_TRUE(links.empty());
}

TEST(XmlNodeData, TakesNothingFromPlacesOfAnotherDepth) {
    EXPECT_THAT(NodeOf("<root><node><s name=\"v\">1</s></node></root>"), IsEmpty());
    EXPECT_THAT(NodeOf("<root><g><g><node><s name=\"v\">1</s></node></g></g></root>"), IsEmpty());
}

TEST(XmlNodeData, EndsWhereAPackageHoldsTooMuch) {
    const std::string one =
        kLinksHead + R"(<link name="a"><string name="b">c</string></link>)" + kLinksTail;
    // A link of one letter, and an element of "string", "b" and "c".
    constexpr std::uint64_t kTaken = 2 * XmlNodeData::kHeldEach + 1 + 8;
    PackageFolder links;
    Read(links, one, XmlNodeData::kMostHeld - kTaken);
    EXPECT_EQ(links.size(), 1U);
    for (const std::uint64_t missing : {std::uint64_t{1}, kTaken - 1, kTaken})
        EXPECT_EQ(
            Raised<JpkFsErr>([&] { Read(links, one, XmlNodeData::kMostHeld - kTaken + missing); }),
            "");
}

}  // namespace
