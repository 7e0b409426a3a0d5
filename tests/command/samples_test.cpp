// What the command says of each sample library is what stands beside it.

#include <gtest/gtest.h>

#include "command/running.h"
#include "support/samplefile.h"
#include "support/temporaryfolder.h"
#include "tests/support/paths.h"

namespace halvern_tests {
namespace {

using nlohmann::json;

class GoodSample : public testing::TestWithParam<const char*> {
protected:
    std::string File() const { return DataFile(std::string(GetParam()) + ".jpk"); }
    json Answers() const {
        return json::parse(ReadFile(DataFile(std::string(GetParam()) + ".json")));
    }
};

TEST_P(GoodSample, IsListedAsItsAnswersSay) {
    const Ran ran = RunHalvern({"list", File(), "--all", "--json"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.Json(), Answers()["list"]);
}

TEST_P(GoodSample, ShowsEveryDefinitionAsItsAnswersSay) {
    const json answers = Answers();
    for (const auto& [identifier, answer] : answers["show"].items()) {
        const Ran ran = RunHalvern({"show", File(), identifier, "--json"});
        EXPECT_EQ(ran.status, 0) << identifier << ": " << ran.err;
        EXPECT_EQ(ran.Json(), answer) << identifier;
    }
}

TEST_P(GoodSample, IsNotChangedByReading) {
    const std::string before = ReadFile(File());
    RunHalvern({"list", File()});
    RunHalvern({"verify", File()});
    EXPECT_TRUE(ReadFile(File()) == before);
}

INSTANTIATE_TEST_SUITE_P(
    Command, GoodSample,
    testing::Values("aged", "definitions-3-1", "every-kind", "foreign", "instances-v4", "large",
                    "no-lib-version", "no-version-table", "odd-last-free-past-end",
                    "odd-no-definitions", "odd-schema-noise", "odd-toc-none-block", "odd-toc-twice",
                    "odd-version-table", "odd-zip-crc", "odd-zip-extras", "odd-zip-folders",
                    "odd-zip-no-folders", "starter", "starter-read-only", "toc-3-0"));

TEST(StarterSample, IsListedInThreeLanguages) {
    const json answers = json::parse(ReadFile(DataFile("starter.json")));
    ASSERT_EQ(answers["list_by_locale"].size(), 3U);
    for (const auto& [locale, answer] : answers["list_by_locale"].items()) {
        const Ran ran =
            RunHalvern({"list", DataFile("starter.jpk"), "--all", "--json", "--locale", locale});
        EXPECT_EQ(ran.Json(), answer) << locale;
    }
}

// A file that does not open, and the words behind its name.
struct Bad {
    const char* name;
    const char* words;
};

void PrintTo(const Bad& bad, std::ostream* out) {
    *out << bad.name;
}

#define IN_PART(part) ", in 5E04061B-54FC-0D3B-2DEF-8478AA02E3F9/" part

constexpr Bad kBad[] = {
    {"bad-cut-half", "this is no ZIP: the record that ends its directory is missing, offset 32421"},
    {"bad-cut-tail", "the record that ends the directory of the ZIP is cut short, offset 64821"},
    {"bad-empty", "the package holds no folder, which would be the library"},
    {"bad-no-store", "the block store is missing" IN_PART("AssetData/InstanceProperties.bin")},
    {"bad-no-toc",
     "the table of contents is missing" IN_PART("AssetData/AssetTableOfContents.bin")},
    {"bad-schema-no-uid",
     "the part holds no schema: it has no UID, names no base, or is too large" IN_PART(
         "Schemas/GenericSchema.xml")},
    {"bad-schema-not-xml", "the part is not well-formed XML: unclosed token" IN_PART(
                               "Schemas/GenericSchema.xml") ", line 1, offset 13"},
    {"bad-store-block-size", "the block size is 128 in place of 136" IN_PART(
                                 "AssetData/InstanceProperties.bin") ", offset 0"},
    {"bad-store-free-cycle", "the chain of free blocks runs in a circle" IN_PART(
                                 "AssetData/InstanceProperties.bin") ", block 26, offset 3552"},
    {"bad-store-free-past-end", "the first free block 900000 lies past the end" IN_PART(
                                    "AssetData/DefinitionIteratorProperties.bin") ", offset 4"},
    {"bad-store-mismatch", "there is a last free block and no first one" IN_PART(
                               "AssetData/DefinitionIteratorProperties.bin") ", offset 4"},
    {"bad-store-version", "the block store is of version 1, which cannot be read" IN_PART(
                              "AssetData/InstanceProperties.bin") ", offset 12"},
    {"bad-text", "this is no ZIP: the record that ends its directory is missing, offset 261"},
    {"bad-toc-long-string", "the length 2147483647 of the identifier reaches past the end" IN_PART(
                                "AssetData/AssetTableOfContents.bin") ", entry 1, offset 0"},
    {"bad-toc-short", "the length 13 of the base schema reaches past the end" IN_PART(
                          "AssetData/AssetTableOfContents.bin") ", entry 12, offset 703"},
    {"bad-toc-v4", "the table of contents is of version 4.1, which cannot be read" IN_PART(
                       "AssetData/StreamVersionTable.inf") ", key AssetTableOfContents"},
    {"bad-zip-central-offset",
     "the directory of the ZIP (19970 bytes from offset 64920) reaches past the end of the file, "
     "offset 64833"},
    {"bad-zip-central-signature",
     "there is no entry header where there should be entry 1 of 171 of the directory of the ZIP, "
     "offset 44851"},
    {"bad-zip-central-size",
     "the directory of the ZIP (4294967280 bytes from offset 44851) reaches past the end of the "
     "file, offset 64833"},
    {"bad-zip-duplicate",
     "a second entry of the ZIP has this name, in korvanet-design-package.xml, offset 64976"},
};

#undef IN_PART

class BadSample : public testing::TestWithParam<Bad> {
protected:
    std::string File() const { return DataFile(std::string(GetParam().name) + ".jpk"); }
    std::string Line() const { return "halvern: " + File() + ": " + GetParam().words + "\n"; }
};

TEST_P(BadSample, IsNotListedAndTheReasonIsTold) {
    const Ran ran = RunHalvern({"list", File()});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, Line());
}

TEST_P(BadSample, IsNotChangedAndTheReasonIsTold) {
    const TemporaryFolder folder;
    const std::string before = ReadFile(File());
    WriteFile(folder.Path("a.jpk"), before);
    const Ran ran = RunHalvern({"remove", "a.jpk", "Generic-001"}, folder.Path());
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, std::string("halvern: a.jpk: ") + GetParam().words + "\n");
    EXPECT_TRUE(ReadFile(folder.Path("a.jpk")) == before);
    EXPECT_EQ(folder.Names(), std::set<std::string>{"a.jpk"});
}

// Chosen: what an ordinary program may take; a length or a count from the file would soon pass it.
constexpr std::uint64_t kMemory = 256u << 20;

TEST_P(BadSample, NeedsNoMoreMemoryThanAnOrdinaryFile) {
    for (const char* verb : {"list", "verify"}) {
        Running::Limits limits;
        limits.memory = kMemory;
        const Ran ran = Running({verb, File()}, "/tmp", limits).Wait();
        EXPECT_EQ(ran.status, std::string(verb) == "list" ? 3 : 1) << ran.err;
    }
}

TEST_P(BadSample, IsFoundByVerify) {
    const Ran ran = RunHalvern({"verify", File(), "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.Json()["ok"], false);
    EXPECT_FALSE(ran.Json()["findings"].empty());
}

INSTANTIATE_TEST_SUITE_P(Command, BadSample, testing::ValuesIn(kBad));

}  // namespace
}  // namespace halvern_tests
