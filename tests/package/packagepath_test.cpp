#include "assets/package/packagepath.h"

namespace {

using korvanet::platform::assets::ChildPath;
using korvanet::platform::assets::IsReservedName;
using korvanet::platform::assets::PackagePath;

std::string Text(nuo::string_ref text) {
    return std::string(text.begin(), text.end());
}

std::string Normal(const char* text) {
    return Text(PackagePath(text).Ref());
}

TEST(PackagePath, HasOneFormForAllSpellings) {
    EXPECT_EQ(Normal("a/b"), "a/b");
    EXPECT_EQ(Normal("/a//b/"), "a/b");
    EXPECT_EQ(Normal("a/"), "a");
    EXPECT_EQ(Normal("///"), "");
    EXPECT_EQ(Normal(""), "");
}

TEST(PackagePath, ViewsATextThatHasTheFormAlready) {
    const nuo::string text("a/b");
    EXPECT_EQ(PackagePath(text).Ref().data(), text.data());
}

TEST(PackagePath, SplitsAtTheLastSeparator) {
    const PackagePath deep("a/b/c");
    EXPECT_EQ(Text(deep.Folder()), "a/b");
    EXPECT_EQ(Text(deep.Leaf()), "c");
    const PackagePath top("c");
    EXPECT_EQ(Text(top.Folder()), "");
    EXPECT_EQ(Text(top.Leaf()), "c");
    EXPECT_TRUE(PackagePath("/").IsRoot());
    EXPECT_EQ(Text(PackagePath("/").Leaf()), "");
}

TEST(PackagePath, KnowsTheFourReservedNamesInAnyFolder) {
    EXPECT_TRUE(PackagePath("core.xml").IsReserved());
    EXPECT_TRUE(PackagePath("a/cnx.xml/").IsReserved());
    EXPECT_TRUE(PackagePath("[Content_Types].xml").IsReserved());
    EXPECT_TRUE(PackagePath("a/korvanet-design-package.xml").IsReserved());
    EXPECT_FALSE(PackagePath("core.xml/a").IsReserved());
    EXPECT_FALSE(PackagePath("Core.xml").IsReserved());
    EXPECT_FALSE(PackagePath("").IsReserved());
    EXPECT_FALSE(IsReservedName("a/core.xml"));
}

TEST(ChildPath, JoinsWithOneSeparator) {
    EXPECT_STREQ(ChildPath("", "a").data(), "a");
    EXPECT_STREQ(ChildPath("a/b", "c").data(), "a/b/c");
}

}  // namespace
