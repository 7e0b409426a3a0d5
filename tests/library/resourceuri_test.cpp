#include "assets/library/resourceuri.h"

#include <gtest/gtest.h>

#include "assets/manager/base/resourceprefix.h"

namespace korvanet::platform::assets {
namespace {

TEST(ResourceUri, ThePrefixIsTwelveBytesComparedAsTheyAre) {
    EXPECT_EQ(kResourcePrefix.size(), 12U);
    EXPECT_TRUE(IsResourceUri("jpk:?asset=/id/Resources/a.png"));
    EXPECT_TRUE(IsResourceUri("jpk:?asset=/"));
    EXPECT_FALSE(IsResourceUri("JPK:?asset=/id/a.png"));
    EXPECT_FALSE(IsResourceUri("jpk:?asset="));
    EXPECT_FALSE(IsResourceUri("/jpk:?asset=/a"));
    EXPECT_TRUE(ResourcePath("jpk:?asset=/id/a.png") == "id/a.png");
    EXPECT_TRUE(MakeResourceUri("id/a.png") == "jpk:?asset=/id/a.png");
}

TEST(ResourceUri, TheFileSchemeKeepsTheRootOfAPathWithoutADrive) {
    EXPECT_TRUE(WithoutFileScheme("file:///home/x/a.png") == "/home/x/a.png");
    EXPECT_TRUE(WithoutFileScheme("file:///C:/a.png") == "C:/a.png");
    EXPECT_TRUE(WithoutFileScheme("a file:///x") == "a file:///x");
    EXPECT_TRUE(WithoutFileScheme("file://x") == "file://x");
    EXPECT_TRUE(WithoutFileScheme("file:///") == "/");
}

TEST(ResourceUri, AComponentCanNeitherLeaveItsPlaceNorBreakAManifest) {
    EXPECT_TRUE(PathComponent("a/b\\c<d\"e") == "a%2Fb%5Cc%3Cd%22e");
    EXPECT_TRUE(PathComponent(".") == "%2E");
    EXPECT_TRUE(PathComponent("..") == "%2E%2E");
    EXPECT_TRUE(PathComponent("...") == "...");
    EXPECT_TRUE(PathComponent("a#b&c") == "a#b%26c");
    EXPECT_TRUE(PathComponent("a\nb\x7f") == "a%0Ab%7F");
    EXPECT_TRUE(PathComponent("core.xml") == "core%2Exml");
    EXPECT_TRUE(PathComponent("a/core.xml") == "a%2Fcore.xml");
    EXPECT_TRUE(PathComponent("[Content_Types].xml") == "[Content_Types]%2Exml");
}

TEST(ResourceUri, AFileNameHasItsHashAndAmpersandEscaped) {
    EXPECT_TRUE(ResourceFileName("a#b.png") == "a%23b.png");
    EXPECT_TRUE(ResourceFileName("a&b.png") == "a%26b.png");
    EXPECT_TRUE(ResourceFileName("a<b\".png") == "a%3Cb%22.png");
    EXPECT_TRUE(ResourceFileName("cnx.xml") == "cnx%2Exml");
}

TEST(ResourceUri, DotsAndNothingAreNoFileName) {
    EXPECT_TRUE(ResourceFileName("").empty());
    EXPECT_TRUE(ResourceFileName(".").empty());
    EXPECT_TRUE(ResourceFileName("..").empty());
}

TEST(ResourceUri, ANumberStandsBeforeTheExtension) {
    EXPECT_TRUE(NumberedFileName("a.png", 1) == "a(1).png");
    EXPECT_TRUE(NumberedFileName("a.b.png", 12) == "a.b(12).png");
    EXPECT_TRUE(NumberedFileName("a", 2) == "a(2)");
}

}  // namespace
}  // namespace korvanet::platform::assets
