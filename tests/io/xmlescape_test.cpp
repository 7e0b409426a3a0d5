#include "assets/serialization/io/xmlescape.h"

namespace {

using korvanet::platform::assets::AppendEscapedXml;
using korvanet::platform::assets::IsXmlText;
using korvanet::platform::assets::XmlPlace;

nuo::string Escaped(nuo::string_ref text, XmlPlace place = XmlPlace::kText) {
    nuo::string_builder out;
    AppendEscapedXml(out, text, place);
    return nuo::string(out);
}

TEST(AppendEscapedXml, WritesTheFiveEntities) {
    for (const XmlPlace place : {XmlPlace::kText, XmlPlace::kAttribute}) {
        EXPECT_STREQ(Escaped("&<>\"'", place).data(), "&amp;&lt;&gt;&quot;&apos;");
        EXPECT_STREQ(Escaped("a&b", place).data(), "a&amp;b");
        EXPECT_STREQ(Escaped("&amp;", place).data(), "&amp;amp;");
    }
}

TEST(AppendEscapedXml, LeavesAllOtherBytesAsTheyAre) {
    EXPECT_STREQ(Escaped("M\xc3\xa4rz\t1\n").data(), "M\xc3\xa4rz\t1\n");
    EXPECT_TRUE(Escaped("").empty());
}

TEST(AppendEscapedXml, WritesTheWhiteSpaceThatAReaderWouldChangeAsReferences) {
    EXPECT_STREQ(Escaped("a\tb\nc\rd").data(), "a\tb\nc&#13;d");
    EXPECT_STREQ(Escaped("a\tb\nc\rd", XmlPlace::kAttribute).data(), "a&#9;b&#10;c&#13;d");
}

TEST(AppendEscapedXml, AddsBehindWhatIsThere) {
    nuo::string_builder out;
    out.append("<v>");
    AppendEscapedXml(out, "1 < 2", XmlPlace::kText);
    AppendEscapedXml(out, "", XmlPlace::kText);
    out.append("</v>");
    EXPECT_STREQ(out.data(), "<v>1 &lt; 2</v>");
}

TEST(IsXmlText, TakesWhatADocumentCanHold) {
    for (const char* text :
         {"", "plain & <escaped>", "\t\n\r", "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80",
          "\xed\x9f\xbf", "\xee\x80\x80", "\xef\xbf\xbd", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
        EXPECT_TRUE(IsXmlText(text)) << text;
    }
}

TEST(IsXmlText, RefusesControlCharactersAndWhatIsNoUtf8) {
    for (const char* text :
         {"\x01", "a\x1f", "\x80", "M\xe4rz", "\xc0\x80", "\xc1\xbf", "\xc3", "\xc3(",
          "\xe0\x9f\xbf", "\xe2\x82", "\xed\xa0\x80", "\xef\xbf\xbe", "\xef\xbf\xbf",
          "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff"}) {
        EXPECT_FALSE(IsXmlText(text)) << text;
    }
    EXPECT_FALSE(IsXmlText(nuo::string_ref("a\0b", std::uint64_t{3})));
}

}  // namespace
