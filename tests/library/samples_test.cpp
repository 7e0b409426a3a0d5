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

// The two groups that records hold, one after the other.
std::string StoredBytes(const AssetDefinition& definition) {
    const auto& schema = *AsSchemaDefinition(definition.Base());
    const RecordLayout layout(schema);
    nuo::archive::mem_write_archive out;
    for (const auto group : {PropertyTableImp::kReadWriteGroup, PropertyTableImp::kIterationGroup})
        WriteRecordGroup(out, layout, group, {}, definition, schema);
    const auto& bytes = out.get_buffer();
    return {reinterpret_cast<const char*>(bytes.begin()), bytes.size()};
}

// The connections are told by the names of the definitions, which both libraries have alike.
bool SameValues(const AssetDefinition& a, const AssetDefinition& b) {
    return StoredBytes(a) == StoredBytes(b);
}

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

// All records are written anew, by the schemas as they are written too.
TEST_P(GoodSample, IsSavedWholeAndReadsBackUnlessItMayNotBeSaved) {
    const std::string name = GetParam();
    TestHost host;
    TestLibrary library(host, name + ".jpk", true);
    const std::vector<nuo::string> names = library->RecordNames();
    for (const nuo::string& each : names) {
        library->LoadDefinition(each);
        library->FindRecord(each)->state = 1;
    }
    if (name == "instances-v4" || name == "starter-read-only") {
        EXPECT_FALSE(library->Save());
        return;
    }
    const nuo::buffer<nuo::byte> bytes = library.SavedBytes();
    TestHost other;
    TestLibrary again(other, bytes, false);
    ASSERT_EQ(again->RecordNames(), names);
    for (const nuo::string& each : names)
        EXPECT_TRUE(SameValues(library.Definition(each.data()), again.Definition(each.data())))
            << each.data();
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
