#include "assets/package/manifestwriter.h"

#include "package/package_files.h"

namespace {

using korvanet::platform::assets::ContentTypeSet;
using korvanet::platform::assets::ContentTypesText;
using korvanet::platform::assets::CoreText;
using korvanet::platform::assets::FormatText;
using korvanet::platform::assets::LinksText;
using korvanet::platform::assets::PropertyMap;
using package_tests::kCoreHead;
using package_tests::kCoreTail;
using package_tests::kLinksHead;
using package_tests::kLinksTail;

TEST(ManifestWriter, WritesTheContentTypesInTheOrderOfTheSet) {
    ContentTypeSet types;
    for (const char* extension : {"png", "b&c", "xml"})
        types.Add(extension);
    EXPECT_STREQ(ContentTypesText(types).data(),
                 "<?xml version=\"1.0\" encoding=\"utf-8\" ?>"
                 "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                 "<Default Extension=\"png\" ContentType=\"image/png\"/>"
                 "<Default Extension=\"b&amp;c\" ContentType=\"application/octet-stream\"/>"
                 "<Default Extension=\"xml\" ContentType=\"application/xml\"/></Types>");
}

TEST(ManifestWriter, WritesTheFormatMarker) {
    EXPECT_STREQ(FormatText().data(),
                 "<?xml version=\"1.0\" encoding=\"utf-8\" ?><formats><format>"
                 "http://www.korvanet.com/design-package/2009</format></formats>");
}

TEST(ManifestWriter, WritesTheIdentifierFirstAndThenTheOrderOfTheMap) {
    PropertyMap node;
    node.Set({"bool", "a"}, "1");
    node.Set({"uuid", "identifier"}, "X-1");
    node.Set({"uuid", "a"}, "X-2");
    EXPECT_EQ(std::string(CoreText("R", node).data()),
              kCoreHead +
                  "<uuid name=\"identifier\">X-1</uuid><bool name=\"a\">1</bool>"
                  "<uuid name=\"a\">X-2</uuid>" +
                  kCoreTail);
}

TEST(ManifestWriter, WritesTheTablesForTheFolderNamedQmxAlone) {
    const PropertyMap node;
    EXPECT_EQ(std::string(CoreText("qmx", node).data()),
              kCoreHead +
                  "</node></group><group name=\"qmx\"><table name=\"kqmxvector4\">"
                  "<double name=\"values\">0 0 0 0</double></table><table name=\"kqmxvector2\">"
                  "<double name=\"values\">0 0</double></table><table name=\"triangle attributes\">"
                  "<double name=\"per-vtx normals\">0 0 0 0 0 0 0 0 0 0 0 0</double>"
                  "<double name=\"per-vtx colors\">0 0 0 0 0 0 0 0 0 0 0 0</double></table></group>"
                  "</root>");
    for (const char* leaf : {"", "Qmx", "qmx2"}) {
        EXPECT_EQ(std::string(CoreText(leaf, node).data()), kCoreHead + kCoreTail);
    }
}

TEST(ManifestWriter, WritesAnElementWithoutANameWithALocale) {
    PropertyMap node;
    node.Set({"name", ""}, "QMX & objects");
    EXPECT_EQ(std::string(CoreText("R", node).data()),
              kCoreHead + "<name locale=\"en-us\">QMX &amp; objects</name>" + kCoreTail);
}

TEST(ManifestWriter, EscapesValuesAndNames) {
    PropertyMap node;
    node.Set({"string", "a\"b"}, "<&>\"'");
    EXPECT_EQ(
        std::string(CoreText("R", node).data()),
        kCoreHead + "<string name=\"a&quot;b\">&lt;&amp;&gt;&quot;&apos;</string>" + kCoreTail);
}

// A reader hands on a carriage return as a line feed, and in attributes all of them as blanks.
TEST(ManifestWriter, WritesTheWhiteSpaceThatAReaderWouldChangeAsReferences) {
    PropertyMap node;
    node.Set({"string", "a\tb\nc\rd"}, "a\tb\nc\r<");
    EXPECT_EQ(
        std::string(CoreText("R", node).data()),
        kCoreHead + "<string name=\"a&#9;b&#10;c&#13;d\">a\tb\nc&#13;&lt;</string>" + kCoreTail);
}

TEST(LinksText, EscapesTheNamesOfFilesAndNotThoseOfFolders) {
    PropertyMap elements;
    elements.Set({"bool", "x"}, "1");
    LinksText text;
    text.AddFolder("a&b", elements);
    text.AddFile("a&b", elements);
    EXPECT_EQ(std::string(text.Finish().data()),
              kLinksHead +
                  "<link name=\"a&b\"><bool name=\"x\">1</bool></link>"
                  "<link name=\"a&amp;b\" class=\"schema.korvanet.data.1.resource\">"
                  "<bool name=\"x\">1</bool></link>" +
                  kLinksTail);
}

TEST(ManifestWriter, LeavesOutElementsThatNoDocumentCanHold) {
    PropertyMap node;
    node.Set({"string", "a"}, "\x01");
    node.Set({"string", "b\xff"}, "1");
    node.Set({"string", "c"}, "2");
    EXPECT_EQ(std::string(CoreText("R", node).data()),
              kCoreHead + "<string name=\"c\">2</string>" + kCoreTail);
}

TEST(LinksText, WritesAnEmptyFolder) {
    EXPECT_EQ(std::string(LinksText().Finish().data()), kLinksHead + kLinksTail);
}

}  // namespace
