#include <gtest/gtest.h>

#include "inspect/verifying.h"
#include "tests/support/paths.h"

namespace halvern::inspect {
namespace {

using halvern_tests::DataFile;

// A part of the odd samples, which share an identifier.
std::string OddPart(const char* below) {
    std::string part("AB85E779-94ED-7117-08AD-DEEFD3E824C1/");
    part.append(below);
    return part;
}

class SoundSample : public testing::TestWithParam<const char*> {};

TEST_P(SoundSample, HasNoFinding) {
    EXPECT_EQ(Verify(DataFile(GetParam())), Expected());
    EXPECT_EQ(WhyNotOpened(DataFile(GetParam())), "");
}

INSTANTIATE_TEST_SUITE_P(Inspect, SoundSample,
                         testing::Values("aged.jpk", "definitions-3-1.jpk", "every-kind.jpk",
                                         "foreign.jpk", "large.jpk", "no-lib-version.jpk",
                                         "no-version-table.jpk", "odd-no-definitions.jpk",
                                         "odd-version-table.jpk", "odd-zip-extras.jpk",
                                         "odd-zip-folders.jpk", "odd-zip-no-folders.jpk",
                                         "starter-read-only.jpk", "starter.jpk", "toc-3-0.jpk"));

TEST(OddSample, WithAnEntryWithoutABlockIsFoundThere) {
    EXPECT_EQ(Verify(DataFile("odd-toc-none-block.jpk")),
              (Expected{{"contents.block", OddPart("AssetData/AssetTableOfContents.bin"),
                         "entry 13 (Ghost), offset 720",
                         "an entry without a block of its instance properties is passed over"}}));
}

TEST(OddSample, WithAnIdentifierTwiceIsFoundThere) {
    EXPECT_EQ(Verify(DataFile("odd-toc-twice.jpk")),
              (Expected{{"contents.twice", OddPart("AssetData/AssetTableOfContents.bin"),
                         "entry 13 (Bitmap-001), offset 720",
                         "the identifier stands a second time, and the entry is passed over"}}));
}

TEST(OddSample, WithALastFreeBlockPastTheEndIsFoundThere) {
    EXPECT_EQ(Verify(DataFile("odd-last-free-past-end.jpk")),
              (Expected{{"store.free", OddPart("AssetData/DefinitionIteratorProperties.bin"),
                         "offset 8", "the last free block 16777215 lies past the end"}}));
}

TEST(OddSample, WithNoiseInASchemaIsFoundPropertyByProperty) {
    const std::string part = OddPart("Schemas/GenericSchema.xml");
    EXPECT_EQ(Verify(DataFile("odd-schema-noise.jpk")),
              (Expected{{"schema.report", part, "", "very is unknown attribute."},
                        {"schema.report", part, "property n2",
                         "Property flags conflict in Node: n2, ErrorCode: 32"},
                        {"schema.report", part, "property n3",
                         "Property flags conflict in Node: n3, ErrorCode: 4"},
                        {"schema.report", part, "property n4",
                         "Property flags conflict in Node: n4, ErrorCode: 32"},
                        {"schema.report", part, "", "Unknown Property name."},
                        {"schema.property", part, "property n5",
                         "the property is left out: its default is not one it may have"},
                        {"schema.property", part, "property generic_glossiness",
                         "the property stands a second time, and is passed over"}}));
}

TEST(OddSample, WithWrongChecksumsIsFoundEntryByEntry) {
    const std::vector<Finding> findings = Verify(DataFile("odd-zip-crc.jpk"));
    ASSERT_FALSE(findings.empty());
    for (const Finding& finding : findings) {
        EXPECT_EQ(finding.rule, "zip.crc");
        EXPECT_EQ(finding.what, "the checksum of the data is not that of its header");
    }
    EXPECT_EQ(findings.front().part, OddPart("AssetData/AssetTableOfContents.bin"));
    EXPECT_EQ(findings.front().where, "offset 4685");
}

TEST(OddSample, WithANewerStoreIsFoundInTheVersionTable) {
    EXPECT_EQ(Verify(DataFile("instances-v4.jpk")),
              (Expected{{"version.newer",
                         "B4EACF4B-2DC3-4005-D40A-408F5AE85905/AssetData/StreamVersionTable.inf",
                         "key InstanceProperties",
                         "InstanceProperties is of version 4.0: the library can be read and not "
                         "be saved"}}));
}

TEST(Inspect, TellsWhyALibraryThatOpensCannotBeSaved) {
    EXPECT_EQ(WhyNotSaved(DataFile("starter-read-only.jpk")),
              "the library is marked as read-only, in core.xml, element read only");
    EXPECT_EQ(WhyNotSaved(DataFile("instances-v4.jpk")),
              "InstanceProperties is of version 4.0: the library can be read and not be saved, in "
              "B4EACF4B-2DC3-4005-D40A-408F5AE85905/AssetData/StreamVersionTable.inf, key "
              "InstanceProperties");
    EXPECT_EQ(WhyNotSaved(DataFile("starter.jpk")), "");
}

TEST(Inspect, SaysOfAFileThatIsNotThereThatItIsNotThere) {
    EXPECT_EQ(Verify("/nowhere/a.jpk"), (Expected{{"file", "", "", "there is no such file"}}));
}

}  // namespace
}  // namespace halvern::inspect
