#include <chrono>

#include "assets/library/definitioniterator.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

const char* const kGood[] = {"aged",
                             "definitions-3-1",
                             "every-kind",
                             "foreign",
                             "instances-v4",
                             "no-lib-version",
                             "no-version-table",
                             "odd-last-free-past-end",
                             "odd-no-definitions",
                             "odd-schema-noise",
                             "odd-toc-none-block",
                             "odd-toc-twice",
                             "odd-version-table",
                             "odd-zip-crc",
                             "odd-zip-extras",
                             "odd-zip-folders",
                             "odd-zip-no-folders",
                             "starter",
                             "starter-read-only",
                             "toc-3-0"};

class GoodSample : public ::testing::TestWithParam<const char*> {};

TEST_P(GoodSample, OpensForReadingAndForWritingAndEveryDefinitionLoads) {
    for (const bool for_writing : {false, true}) {
        TestHost host;
        TestLibrary library(host, std::string(GetParam()) + ".jpk", for_writing);
        for (const nuo::string& name : library->RecordNames())
            EXPECT_NE(library->LoadDefinition(name), nullptr) << name.data();
        EXPECT_FALSE(library->HasOutstandingReferences());
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, GoodSample, ::testing::ValuesIn(kGood));

TEST(Samples, StarterAnswersItsFirstDefinition) {
    TestHost host;
    TestLibrary library(host, "starter.jpk", false);
    EXPECT_TRUE(library->Identifier() == "F38B2FFC-80A4-DF5A-51C9-BC701E7EA419");
    EXPECT_EQ(library->Version().version, 3U);
    EXPECT_EQ(library->Version().revision, 7U);
    EXPECT_EQ(library->RecordNames().size(), 12U);
    EXPECT_TRUE(library.Text("Bitmap-001", "UIName") == "TEX_1");
    EXPECT_TRUE(library.Text("Bitmap-001", "BaseSchema") == "UnifiedBitmapSchema");
    EXPECT_TRUE(library.Text("Bitmap-001", "AssetLibID") == "F38B2FFC-80A4-DF5A-51C9-BC701E7EA419");
    EXPECT_EQ(library.Definition("Bitmap-001").GetRevision(), 256);
}

TEST(Samples, AStarterThatIsSavedReadsBackTheSameAndKeepsItsBlocks) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, "starter.jpk", true);
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(again->RecordNames().size(), 12U);
    EXPECT_EQ(again.Definition("Bitmap-001").GetRevision(), 256);
    EXPECT_EQ(again->FindRecord("Generic-008")->instanceBlock, 23U);
}

}  // namespace
}  // namespace korvanet::platform::assets
