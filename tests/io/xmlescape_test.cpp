#include "assets/serialization/io/xmlescape.h"

namespace {

using korvanet::platform::assets::AppendEscapedXml;
using korvanet::platform::assets::EscapeXml;
using korvanet::platform::assets::IsXmlText;

TEST(EscapeXml, WritesTheFiveEntities) {
    EXPECT_STREQ(EscapeXml("&<>\"'").data(), "&amp;&lt;&gt;&quot;&apos;");
    EXPECT_STREQ(EscapeXml("a&b").data(), "a&amp;b");
    EXPECT_STREQ(EscapeXml("&amp;").data(), "&amp;amp;");
}

TEST(EscapeXml, LeavesAllOtherBytesAsTheyAre) {
    EXPECT_STREQ(EscapeXml("M\xc3\xa4rz\t1\n").data(), "M\xc3\xa4rz\t1\n");
    EXPECT_TRUE(EscapeXml("").empty());
}

TEST(EscapeXml, SharesTheBlockOfATextWithoutEntities) {
    const nuo::string text("plain");
    EXPECT_EQ(EscapeXml(text).data(), text.data());
}

TEST(AppendEscapedXml, AddsBehindWhatIsThere) {
    nuo::string_builder out;
    out.append("<v>");
    AppendEscapedXml(out, "1 < 2");
    AppendEscapedXml(out, "");
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
