#include "assets/schema/xmldocument.h"

#include "schema/support.h"

namespace korvanet::platform::assets {

TEST(XmlDocumentTest, EachElementHoldsALineFeedAndHasAnEndTag) {
    XmlDocument document("root");
    const XmlElement child = document.Root().AddChild("child");
    child.SetAttribute("b", "2");
    child.SetAttribute("a", "1");
    child.AddChild("inner");
    document.Root().AddChild("last");
    EXPECT_EQ(Str(document.Dump()),
              "<root>\n<child b=\"2\" a=\"1\">\n<inner>\n</inner></child><last>\n</last></root>");
}

TEST(XmlDocumentTest, EscapesWhatAnAttributeCannotHoldAsItIs) {
    XmlDocument document("root");
    document.Root().SetAttribute("a", "&<>\"'\t\n\r\xC3\xA9\xF0\x9F\x8E\xA8");
    EXPECT_EQ(Str(document.Dump()),
              "<root a=\"&amp;&lt;&gt;&quot;'&#9;&#10;&#13;&#xE9;&#x1F3A8;\">\n</root>");
}

TEST(XmlDocumentTest, ATextThatXmlCannotHoldMakesNoDocument) {
    for (const char* text : {"\x01", "a\x1Fz", "\xFF", "a\xC3", "\xEF\xBF\xBE"}) {
        XmlDocument document("root");
        document.Root().SetAttribute("a", text);
        EXPECT_EQ(Str(document.Dump()), "") << text;
    }
}

}  // namespace korvanet::platform::assets
