#include "assets/package/contenttype.h"

namespace {

using korvanet::platform::assets::ContentTypeOf;
using korvanet::platform::assets::ContentTypeSet;
using korvanet::platform::assets::ExtensionOf;

std::string Extension(const char* leaf) {
    const nuo::string_ref text = ExtensionOf(leaf);
    return std::string(text.begin(), text.end());
}

TEST(ExtensionOf, IsWhatFollowsTheLastDot) {
    EXPECT_EQ(Extension("a.png"), "png");
    EXPECT_EQ(Extension("a.tar.gz"), "gz");
    EXPECT_EQ(Extension(".png"), "png");
    EXPECT_EQ(Extension("a."), "");
    EXPECT_EQ(Extension("a"), "");
}

TEST(ContentTypeOf, ListsFourImageTypesAsPng) {
    EXPECT_STREQ(ContentTypeOf("png").data(), "image/png");
    EXPECT_STREQ(ContentTypeOf("jpg").data(), "image/png");
    EXPECT_STREQ(ContentTypeOf("exr").data(), "image/png");
    EXPECT_STREQ(ContentTypeOf("hdr").data(), "image/png");
}

TEST(ContentTypeOf, KnowsXmlAndTakesAllElseAsBytes) {
    EXPECT_STREQ(ContentTypeOf("xml").data(), "application/xml");
    EXPECT_STREQ(ContentTypeOf("bin").data(), "application/octet-stream");
    EXPECT_STREQ(ContentTypeOf("").data(), "application/octet-stream");
}

TEST(ContentTypeOf, ComparesExtensionsByteByByte) {
    EXPECT_STREQ(ContentTypeOf("PNG").data(), "application/octet-stream");
    EXPECT_STREQ(ContentTypeOf("Xml").data(), "application/octet-stream");
}

TEST(ContentTypeSet, KeepsTheOrderOfFirstAddition) {
    ContentTypeSet types;
    for (const char* extension : {"xml", "bin", "", "png", "bin", "XML"})
        types.Add(extension);
    std::vector<std::string> got;
    for (const nuo::string& extension : types.Extensions())
        got.emplace_back(extension.data());
    EXPECT_THAT(got, testing::ElementsAre("xml", "bin", "png", "XML"));
}

}  // namespace
