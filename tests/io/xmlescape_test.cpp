#include "assets/serialization/io/xmlescape.h"

namespace {

using korvanet::platform::assets::AppendEscapedXml;
using korvanet::platform::assets::EscapeXml;

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

}  // namespace
