#include "assets/library/versiontable.h"

#include <gtest/gtest.h>

namespace korvanet::platform::assets {
namespace {

TEST(VersionTable, AnEmptyTextKeepsAllDefaultsAndIsIncomplete) {
    const VersionTable table = ParseVersionTable("");
    EXPECT_EQ(table.toc, (StreamVersion{3, 1}));
    EXPECT_EQ(table.definitions, (StreamVersion{3, 2}));
    EXPECT_EQ(table.instances, (StreamVersion{3, 1}));
    EXPECT_EQ(table.library.version, 1U);
    EXPECT_EQ(table.library.revision, 0U);
    EXPECT_FALSE(table.complete);
}

TEST(VersionTable, WrittenFormHasFourLinesAndNoCommaOnTheLast) {
    EXPECT_STREQ(FormatVersionTable({1, 0}).data(),
                 "AssetTableOfContents:3.1,\nDefinitionIteratorProperties:3.2,\n"
                 "InstanceProperties:3.1,\nAssetLibVersion:1.0\n");
    EXPECT_EQ(FormatVersionTable({1, 0}).size(), 104U);
}

TEST(VersionTable, WrittenFormReadsBackComplete) {
    const VersionTable table = ParseVersionTable(FormatVersionTable({4294967295U, 7}));
    EXPECT_TRUE(table.complete);
    EXPECT_EQ(table.library.version, 4294967295U);
    EXPECT_EQ(table.library.revision, 7U);
}

TEST(VersionTable, WhiteSpaceInsideKeysAndValuesIsDropped) {
    const VersionTable table = ParseVersionTable(
        " AssetTableOf Contents : 3 . 0 ,\r\n DefinitionIteratorProperties:3 .1,\n"
        "Instance\tProperties:2.\v9,\n\tAssetLibVersion: 3.7 ,\n");
    EXPECT_EQ(table.toc, (StreamVersion{3, 0}));
    EXPECT_EQ(table.definitions, (StreamVersion{3, 1}));
    EXPECT_EQ(table.instances, (StreamVersion{2, 9}));
    EXPECT_EQ(table.library.version, 3U);
    EXPECT_EQ(table.library.revision, 7U);
    EXPECT_TRUE(table.complete);
}

TEST(VersionTable, AnyCharacterMayStandBetweenTheNumbers) {
    EXPECT_EQ(ParseVersionTable("InstanceProperties:4x12").instances, (StreamVersion{4, 12}));
}

TEST(VersionTable, ALaterEntryOfOneKeyWins) {
    EXPECT_EQ(ParseVersionTable("AssetTableOfContents:3.0,AssetTableOfContents:2.5").toc,
              (StreamVersion{2, 5}));
}

TEST(VersionTable, AnEntryThatIsNotTwoNumbersIsPassedOver) {
    for (const char* text :
         {"AssetTableOfContents:", "AssetTableOfContents:3", "AssetTableOfContents:3.",
          "AssetTableOfContents:.1", "AssetTableOfContents:a.b",
          "AssetTableOfContents:99999999999999999999.1"}) {
        const VersionTable table = ParseVersionTable(text);
        EXPECT_EQ(table.toc, kTocVersion) << text;
        EXPECT_FALSE(table.complete);
    }
}

TEST(VersionTable, TextWithoutAColonEndsTheReading) {
    const VersionTable table = ParseVersionTable("InstanceProperties:3.0,AssetTableOfContents 2.0");
    EXPECT_EQ(table.instances, (StreamVersion{3, 0}));
    EXPECT_EQ(table.toc, kTocVersion);
}

TEST(VersionTable, WithoutTheLibraryVersionItIsIncompleteAndKeepsOneDotZero) {
    const VersionTable table = ParseVersionTable(
        "AssetTableOfContents:3.1,\nDefinitionIteratorProperties:3.2,\nInstanceProperties:3.1,\n");
    EXPECT_FALSE(table.complete);
    EXPECT_EQ(table.library.version, 1U);
    EXPECT_EQ(table.library.revision, 0U);
}

TEST(VersionTable, UnknownKeysAreIgnored) {
    EXPECT_EQ(ParseVersionTable("Other:9.9,InstanceProperties:3.0").instances,
              (StreamVersion{3, 0}));
}

TEST(VersionTable, ANegativeLibraryVersionIsPassedOver) {
    EXPECT_EQ(ParseVersionTable("AssetLibVersion:-4.1").library.version, 1U);
}

}  // namespace
}  // namespace korvanet::platform::assets
