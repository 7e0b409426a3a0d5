#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "command/running.h"
#include "support/child.h"
#include "support/samplefile.h"
#include "support/temporaryfolder.h"
#include "tests/support/paths.h"

namespace halvern_tests {
namespace {

using nlohmann::json;
using Names = std::set<std::string>;

// A copy of a sample in a folder of its own, where the command runs too, so that whatever it leaves
// behind is seen.
class Writing : public testing::Test {
protected:
    Writing() { Take("starter.jpk"); }

    void Take(const std::string& sample) {
        WriteFile(File(), ReadFile(DataFile(sample)));
        before_ = ReadFile(File());
    }
    std::string File() const { return folder_.Path("a.jpk"); }
    Ran Run(std::vector<std::string> arguments) const {
        return RunHalvern(arguments, folder_.Path());
    }
    json Show(const std::string& identifier) const {
        return Run({"show", "a.jpk", identifier, "--json"}).Json()["properties"];
    }
    // Runs what must fail: with this status and this line, and with nothing changed.
    void ExpectRefused(const std::vector<std::string>& arguments, int status,
                       const std::string& words) {
        const Names names = folder_.Names();
        const Ran ran = Run(arguments);
        EXPECT_EQ(ran.status, status);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err, "halvern: a.jpk: " + words + "\n");
        EXPECT_TRUE(ReadFile(File()) == before_);
        EXPECT_EQ(folder_.Names(), names);
    }

    TemporaryFolder folder_;
    std::string before_;
};

TEST_F(Writing, APresetIsStoredWithItsValues) {
    const Ran ran = Run({"preset", "a.jpk", "Generic-001", "NEW", "--set", "UIName=Hello", "--set",
                         "generic_glossiness=0.25", "--set", "generic_bump_amount=2.5 in", "--set",
                         "generic_diffuse=0.1,0.2,0.3", "--set", "generic_is_metal=false", "--set",
                         "keyword=one,two\\, three"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "NEW\n");
    const json shown = Show("NEW");
    EXPECT_EQ(shown["UIName"]["value"], "Hello");
    EXPECT_EQ(shown["generic_glossiness"]["value"], 0.25);
    EXPECT_EQ(shown["generic_bump_amount"]["value"], 2.5);
    EXPECT_EQ(shown["generic_bump_amount"]["units"], 8214);
    EXPECT_EQ(shown["generic_diffuse"]["value"], (json{0.1, 0.2, 0.3, 1.0}));
    EXPECT_EQ(shown["generic_is_metal"]["value"], false);
    EXPECT_EQ(shown["keyword"]["value"], (json{"one", "two, three"}));
    EXPECT_EQ(Run({"verify", "a.jpk"}).out, "");
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, APresetLeavesTheOthersAsTheyWere) {
    const json answers = json::parse(ReadFile(DataFile("starter.json")));
    ASSERT_EQ(Run({"preset", "a.jpk", "Generic-002", "NEW", "--quiet"}).out, "");
    for (const auto& [identifier, answer] : answers["show"].items())
        EXPECT_EQ(Run({"show", "a.jpk", identifier, "--json"}).Json(), answer) << identifier;
}

TEST_F(Writing, AHiddenPresetIsLeftOutOfListings) {
    ASSERT_EQ(Run({"preset", "a.jpk", "Generic-002", "NEW", "--hidden", "--json"}).Json(),
              (json{{"identifier", "NEW"}}));
    EXPECT_EQ(Run({"list", "a.jpk"}).out.find("NEW"), std::string::npos);
    EXPECT_NE(Run({"list", "a.jpk", "--all"}).out.find("NEW"), std::string::npos);
}

TEST_F(Writing, APresetIsConnected) {
    ASSERT_EQ(
        Run({"preset", "a.jpk", "Generic-001", "NEW", "--connect", "generic_bump_map=Bitmap-003"})
            .status,
        0);
    EXPECT_EQ(Show("NEW")["generic_bump_map"]["connected"].size(), 1U);
    ASSERT_EQ(
        Run({"preset", "a.jpk", "Generic-001", "BARE", "--connect", "generic_bump_map="}).status,
        0);
    EXPECT_EQ(Show("BARE")["generic_bump_map"]["connected"], json::array());
    EXPECT_EQ(Run({"verify", "a.jpk"}).out, "");
}

TEST_F(Writing, EveryKindOfValueIsTaken) {
    Take("every-kind.jpk");
    WriteFile(folder_.Path("blob"), std::string("\0\1\2", 3));
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    const Ran ran = Run({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@blob", "--set",
                         "k_vector=1,-2.5,3e2", "--set", "k_ints=4,-5", "--set",
                         "k_doubles=0.5,1e-3", "--set", "k_colors=1,0,0|0,1,0,0.5", "--set",
                         "k_textures=a.png,b.png", "--set", "k_when=2026-03-14T12:00:00"});
    ASSERT_EQ(ran.status, 0) << ran.err;
    const json shown = Show("NEW");
    EXPECT_EQ(shown["k_blob"]["value"], "AAEC");
    EXPECT_EQ(shown["k_vector"]["value"], (json{1, -2.5, 300}));
    EXPECT_EQ(shown["k_ints"]["value"], (json{4, -5}));
    EXPECT_EQ(shown["k_doubles"]["value"], (json{0.5, 0.001}));
    EXPECT_EQ(shown["k_colors"]["value"], (json{{1, 0, 0, 1}, {0, 1, 0, 0.5}}));
    EXPECT_EQ(shown["k_textures"]["value"].size(), 2U);
    EXPECT_EQ(shown["k_when"]["value"], "2026-03-14T12:00:00");
    ASSERT_EQ(Run({"preset", "a.jpk", source, "EMPTY", "--set", "k_blob=", "--set",
                   "k_ints=", "--set", "k_when="})
                  .status,
              0);
    EXPECT_EQ(Show("EMPTY")["k_blob"]["value"], "");
    EXPECT_EQ(Show("EMPTY")["k_ints"]["value"], json::array());
    EXPECT_EQ(Show("EMPTY")["k_when"]["value"], "");
}

TEST_F(Writing, ARefusedPresetChangesNothing) {
    const auto preset = [](std::vector<std::string> more) {
        std::vector<std::string> all{"preset", "a.jpk", "Generic-001", "NEW"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    ExpectRefused({"preset", "a.jpk", "Ghost", "NEW"}, 1, "there is no definition Ghost");
    ExpectRefused({"preset", "a.jpk", "Generic-001", "Generic-002"}, 1,
                  "there is a definition Generic-002 already");
    ExpectRefused(preset({"--set", "ghost=1"}), 1, "there is no property ghost");
    ExpectRefused(preset({"--set", "generic_glossiness=7"}), 1,
                  "the property generic_glossiness does not take \"7\": Value out of range");
    ExpectRefused(preset({"--set", "generic_glossiness=much"}), 1,
                  "the property generic_glossiness does not take \"much\": it is not one of its "
                  "values: a number");
    ExpectRefused(preset({"--set", "generic_bump_amount=2 parsec"}), 1,
                  "the property generic_bump_amount does not take \"2 parsec\": it is not one of "
                  "its values: a number, or a number, a blank and a unit such as mm");
    ExpectRefused(preset({"--set", "generic_diffuse=1,2"}), 1,
                  "the property generic_diffuse does not take \"1,2\": it is not one of its "
                  "values: r,g,b or r,g,b,a");
    ExpectRefused(preset({"--set", "generic_bump_map=x"}), 1,
                  "the property generic_bump_map takes connections and no value");
    ExpectRefused(preset({"--set", "SchemaVersion=9"}), 1,
                  "the property SchemaVersion is read-only");
    ExpectRefused(preset({"--connect", "generic_bump_map=Ghost"}), 1,
                  "there is no definition Ghost");
    ExpectRefused(preset({"--connect", "UIName=Bitmap-001"}), 1,
                  "the property UIName takes no connections");
}

TEST_F(Writing, ALibraryThatMayNotBeWrittenStaysByteForByte) {
    Take("starter-read-only.jpk");
    ExpectRefused({"preset", "a.jpk", "Generic-001", "NEW"}, 3,
                  "the library is marked as read-only, in core.xml, element read only");
    Take("instances-v4.jpk");
    ExpectRefused({"preset", "a.jpk", "Generic-001", "NEW"}, 3,
                  "InstanceProperties is of version 4.0: the library can be read and not be saved, "
                  "in B4EACF4B-2DC3-4005-D40A-408F5AE85905/AssetData/StreamVersionTable.inf, key "
                  "InstanceProperties");
    Take("starter.jpk");
    ASSERT_EQ(::chmod(File().c_str(), 0444), 0);
    ExpectRefused({"preset", "a.jpk", "Generic-001", "NEW"}, 3,
                  "Cannot open a read-only asset library for writing.");
}

TEST_F(Writing, ARemovedDefinitionIsGone) {
    const Ran ran = Run({"remove", "a.jpk", "Generic-008"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(Run({"list", "a.jpk", "--all"}).out.find("Generic-008"), std::string::npos);
    EXPECT_EQ(Run({"verify", "a.jpk"}).out, "");
    before_ = ReadFile(File());
    ExpectRefused({"remove", "a.jpk", "Generic-008"}, 1, "there is no definition Generic-008");
}

TEST_F(Writing, ADefinitionIsAddedFromASchema) {
    const Ran ran =
        Run({"add", "a.jpk", "GenericSchema", "Plaster", "--name", "Fine plaster", "--set",
             "generic_glossiness=0.125", "--connect", "generic_bump_map=Bitmap-001"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "Plaster\n");
    const json shown = Run({"show", "a.jpk", "Plaster", "--json"}).Json();
    EXPECT_EQ(shown["schema"], "GenericSchema");
    EXPECT_EQ(shown["properties"]["UIName"]["value"], "Fine plaster");
    EXPECT_EQ(shown["properties"]["generic_glossiness"]["value"], 0.125);
    EXPECT_EQ(shown["properties"]["generic_bump_map"]["connected"].size(), 1U);
    EXPECT_EQ(Run({"verify", "a.jpk"}).out, "");
    before_ = ReadFile(File());
    ExpectRefused({"add", "a.jpk", "GhostSchema", "X"}, 1, "there is no schema GhostSchema");
    ExpectRefused({"add", "a.jpk", "GenericSchema", "Plaster"}, 1,
                  "there is a definition Plaster already");
}

TEST_F(Writing, AnAgedOrForeignLibraryStaysSound) {
    for (const char* sample :
         {"aged", "foreign", "toc-3-0", "definitions-3-1", "no-version-table"}) {
        Take(std::string(sample) + ".jpk");
        const json answers = json::parse(ReadFile(DataFile(std::string(sample) + ".json")))["show"];
        const std::string source = answers.begin().key();
        ASSERT_EQ(Run({"preset", "a.jpk", source, "NEW"}).status, 0) << sample;
        EXPECT_EQ(Run({"verify", "a.jpk"}).out, "") << sample;
        ASSERT_EQ(Run({"remove", "a.jpk", "NEW"}).status, 0) << sample;
        EXPECT_EQ(Run({"verify", "a.jpk"}).out, "") << sample;
        EXPECT_EQ(Run({"show", "a.jpk", source, "--json"}).Json(), answers[source]) << sample;
    }
}

TEST_F(Writing, TheFileKeepsModeAndOwnerAndALinkStaysALink) {
    ASSERT_EQ(::chown(File().c_str(), 1234, 4321), 0);
    ASSERT_EQ(::chmod(File().c_str(), 0640), 0);
    ASSERT_EQ(::symlink("a.jpk", folder_.Path("link.jpk").c_str()), 0);
    ASSERT_EQ(Run({"remove", "link.jpk", "Generic-008"}).status, 0);
    struct stat state {};
    ASSERT_EQ(::lstat(File().c_str(), &state), 0);
    EXPECT_EQ(state.st_mode, S_IFREG | 0640U);
    EXPECT_EQ(state.st_uid, 1234U);
    EXPECT_EQ(state.st_gid, 4321U);
    ASSERT_EQ(::lstat(folder_.Path("link.jpk").c_str(), &state), 0);
    EXPECT_TRUE(S_ISLNK(state.st_mode));
    EXPECT_FALSE(ReadFile(File()) == before_);
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "link.jpk"}));
}

// A member of the file's group, who does not own it.
TEST_F(Writing, TheGroupStaysWhereTheOwnerCannot) {
    ASSERT_EQ(::chown(File().c_str(), 0, 4321), 0);
    ASSERT_EQ(::chmod(File().c_str(), 0664), 0);
    ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
    EXPECT_TRUE(InChild([&] {
        return BecomeUser(1234, {4321}) && Run({"remove", "a.jpk", "Generic-008"}).status == 0;
    }));
    struct stat state {};
    ASSERT_EQ(::stat(File().c_str(), &state), 0);
    EXPECT_EQ(state.st_uid, 1234U);
    EXPECT_EQ(state.st_gid, 4321U);
    EXPECT_EQ(state.st_mode, S_IFREG | 0664U);
}

TEST_F(Writing, AFolderThatCannotBeReadNeedNotBe) {
    ASSERT_EQ(::chown(File().c_str(), 1234, 1234), 0);
    ASSERT_EQ(::chown(folder_.Path().c_str(), 1234, 1234), 0);
    ASSERT_EQ(::chmod(folder_.Path().c_str(), 0300), 0);
    EXPECT_TRUE(InChild([&] {
        return BecomeUser(1234, {}) && Run({"remove", "a.jpk", "Generic-008"}).status == 0 &&
               Run({"create", "b.jpk"}).status == 0;
    }));
    ASSERT_EQ(::chmod(folder_.Path().c_str(), 0700), 0);
    EXPECT_EQ(Run({"show", "a.jpk", "Generic-008"}).status, 1);
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "b.jpk"}));
}

TEST_F(Writing, AFailureToWriteIsNotLaidToWhatVerifyFinds) {
    Take("odd-zip-crc.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("odd-zip-crc.json")))["show"].begin().key();
    Running saving({"preset", "a.jpk", source, "NEW"}, folder_.Path(),
                   {.file_size = before_.size() + 16});
    const Ran saved = saving.Wait();
    EXPECT_EQ(saved.status, 3);
    EXPECT_EQ(saved.err, "halvern: a.jpk: the library cannot be written\n");
    EXPECT_TRUE(ReadFile(File()) == before_);
}

// The schemas of this one give warnings when they are read, whatever else is wrong.
TEST_F(Writing, AWarningDoesNotHideWhyALibraryCannotBeWritten) {
    SampleFile sample("odd-schema-noise.jpk");
    const std::string part = sample.Path("AssetData/AssetTableOfContents.bin");
    sample.Part(part).pop_back();
    before_ = sample.Bytes();
    WriteFile(File(), before_);
    const std::string why = Run({"list", "a.jpk"}).err;
    ASSERT_NE(why.find(part), std::string::npos) << why;
    const Ran ran = Run({"remove", "a.jpk", "Bitmap-001"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, why);
}

// The schemas of this one have findings that stand in the way of nothing.
TEST_F(Writing, WhatKeepsALibraryFromBeingSavedIsToldAndNotWhatIsHarmless) {
    SampleFile sample("odd-schema-noise.jpk");
    const auto rows = ReadToc(sample.Part(sample.Path("AssetData/AssetTableOfContents.bin")));
    ASSERT_GE(rows.size(), 2U);
    const std::string part = sample.Path("AssetData/InstanceProperties.bin");
    StoreBytes(sample.Part(part)).SetNext(rows[0].instance_block, 0xFFFFFF);
    before_ = sample.Bytes();
    WriteFile(File(), before_);
    const Ran ran = Run({"remove", "a.jpk", rows[1].identifier});
    EXPECT_EQ(ran.status, 3);
    EXPECT_NE(ran.err.find(part), std::string::npos) << ran.err;
    EXPECT_TRUE(ReadFile(File()) == before_);
}

TEST_F(Writing, AFileOfBytesMayHaveAnyName) {
    Take("every-kind.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    WriteFile(folder_.Path("odd\xFF"), "abc");
    EXPECT_EQ(Run({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@odd\xFF"}).status, 0);
    EXPECT_EQ(Show("NEW")["k_blob"]["value"], "YWJj");
}

TEST_F(Writing, AFileThatCannotBeReadToItsEndIsNamed) {
    Take("every-kind.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    ExpectRefused({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@/proc/self/mem"}, 3,
                  "the file /proc/self/mem cannot be read: Input/output error");
}

// What is opened later must not take what is printed.
TEST_F(Writing, AStandardOutputThatIsClosedCannotBeWritten) {
    const std::string program = BuildFolder() + "/bin/halvern";
    const std::string line = "cd '" + folder_.Path() + "' && TMPDIR=. '" + program +
                             "' add a.jpk GenericSchema made >&- 2> err";
    const int status = std::system(line.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 3);
    EXPECT_EQ(ReadFile(folder_.Path("err")),
              "halvern: a.jpk: the file is saved, but standard output cannot be written: Bad file "
              "descriptor\n");
    EXPECT_EQ(Run({"show", "a.jpk", "made"}).status, 0);
}

TEST_F(Writing, ALengthWithoutAUnitHasNone) {
    ASSERT_EQ(::mkdir(folder_.Path("schemas").c_str(), 0755), 0);
    const std::string common = ReadFile(DataFile("schemas/CommonSchema.xml"));
    WriteFile(folder_.Path("schemas/CommonSchema.xml"), common);
    WriteFile(folder_.Path("schemas/Long.xml"),
              "<AssetSchema><UID val=\"Long\"/><Base val=\"CommonSchema\"/><type val=\"t\"/>"
              "<Distance id=\"plain\" val=\"1.5\"/>"
              "<Distance id=\"inches\" val=\"2\" unit=\"in\"/></AssetSchema>");
    ASSERT_EQ(Run({"create", "b.jpk", "--schemas", "schemas"}).status, 0);
    ASSERT_EQ(Run({"add", "b.jpk", "Long", "L"}).status, 0);
    const json shown = Run({"show", "b.jpk", "L", "--json"}).Json()["properties"];
    EXPECT_EQ(shown["plain"], json({{"type", "kScalar"}, {"flags", 0x401}, {"value", 1.5}}));
    EXPECT_EQ(shown["inches"]["units"], 8214);
}

TEST_F(Writing, AFolderInThePlaceOfAValueIsRefused) {
    Take("every-kind.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    ExpectRefused({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@/tmp"}, 3,
                  "/tmp is a folder and no file");
    ExpectRefused({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@none"}, 3,
                  "the file none cannot be read: No such file or directory");
    ExpectRefused({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@"}, 3,
                  "the name of a file is empty");
}

TEST_F(Writing, WhatIsNoRegularFileIsRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
    for (const char* verb : {"remove", "list"}) {
        std::vector<std::string> arguments{verb, "pipe"};
        if (std::string(verb) == "remove") arguments.push_back("x");
        const Ran ran = Run(arguments);
        EXPECT_EQ(ran.status, 3);
        EXPECT_EQ(ran.err, "halvern: pipe: this is no regular file\n");
    }
    const Ran folder = Run({"remove", ".", "x"});
    EXPECT_EQ(folder.status, 3);
    EXPECT_EQ(folder.err, "halvern: .: this is a folder and no file\n");
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "pipe"}));
}

// Nobody reads what the verb would print, and the change stands.
TEST_F(Writing, AClosedPipeTakesNoSavedChangeBack) {
    Running adding({"add", "a.jpk", "GenericSchema", "made"}, folder_.Path());
    adding.CloseOutput();
    EXPECT_EQ(adding.Wait().status, 0);
    EXPECT_EQ(Run({"show", "a.jpk", "made"}).status, 0);
    Running full({"add", "a.jpk", "GenericSchema", "more"}, folder_.Path(), {.full_output = true});
    const Ran ran = full.Wait();
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err,
              "halvern: a.jpk: the file is saved, but standard output cannot be written: No space "
              "left on device\n");
    EXPECT_EQ(Run({"show", "a.jpk", "more"}).status, 0);
}

TEST_F(Writing, TextsThatAreNoUtf8AreWrongUsage) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"add", "a.jpk", "GenericSchema", "id\xFF"},
          {"add", "a.jpk", "GenericSchema", "id", "--name", "\xC3"},
          {"add", "a.jpk", "GenericSchema", "id", "--set", "UIName=\x80"},
          {"create", "b.jpk", "--id", "\xFE"}})
        EXPECT_EQ(Run(arguments).status, 2);
    EXPECT_TRUE(ReadFile(File()) == before_);
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, ASystemLibraryOfTheSameIdentifierIsNamedAsTheCause) {
    ExpectRefused({"add", "a.jpk", "GenericSchema", "id", "--system", DataFile("starter.jpk")}, 3,
                  "the system library has the identifier of this one");
}

// What a damaged library is not written for is what it is not read for.
TEST_F(Writing, TheDamageOfALibraryIsToldByWritingVerbsToo) {
    SampleFile sample("starter.jpk");
    sample.Part("cnx.xml") = "<root>";
    before_ = sample.Bytes();
    WriteFile(File(), before_);
    const Ran listed = Run({"list", "a.jpk"});
    ASSERT_EQ(listed.status, 3);
    const Ran ran = Run({"remove", "a.jpk", "Bitmap-001"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, listed.err);
    EXPECT_EQ(ran.err.find(".cpp("), std::string::npos);
}

TEST_F(Writing, ALibraryInALinkedFolderIsWritten) {
    ASSERT_EQ(::mkdir(folder_.Path("real").c_str(), 0755), 0);
    ASSERT_EQ(::mkdir(folder_.Path("real/inner").c_str(), 0755), 0);
    ASSERT_EQ(::rename(File().c_str(), folder_.Path("real/a.jpk").c_str()), 0);
    ASSERT_EQ(::symlink("real/inner", folder_.Path("linked").c_str()), 0);
    const Ran removed = Run({"remove", "linked/../a.jpk", "Generic-008"});
    EXPECT_EQ(removed.err, "");
    EXPECT_EQ(removed.status, 0);
    EXPECT_FALSE(ReadFile(folder_.Path("real/a.jpk")) == before_);
    ASSERT_EQ(
        ::rename(folder_.Path("real/a.jpk").c_str(), folder_.Path("real/inner/a.jpk").c_str()), 0);
    EXPECT_EQ(Run({"preset", "linked/a.jpk", "Generic-001", "NEW"}).status, 0);
    EXPECT_EQ(Run({"verify", "real/inner/a.jpk"}).out, "");
    EXPECT_EQ(Run({"show", "real/inner/a.jpk", "NEW"}).status, 0);
}

TEST_F(Writing, ALockFileThatCannotBeMadeIsToldWithItsReason) {
    ASSERT_EQ(::mkdir((File() + ".lck").c_str(), 0755), 0);
    ExpectRefused({"remove", "a.jpk", "Generic-008"}, 3,
                  "the lock file " + File() + ".lck cannot be made: Is a directory");
}

TEST_F(Writing, ALockedLibraryIsRefusedAtOnce) {
    const int lock = ::open((File() + ".lck").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0666);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(::flock(lock, LOCK_EX | LOCK_NB), 0);
    ExpectRefused({"remove", "a.jpk", "Generic-008"}, 3,
                  "the library is locked by another process, in " + File() + ".lck");
    EXPECT_EQ(Run({"list", "a.jpk"}).status, 0);
    ::close(lock);
    EXPECT_EQ(Run({"remove", "a.jpk", "Generic-008"}).status, 0);
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, ALockThatNobodyHoldsIsTaken) {
    WriteFile(File() + ".lck", "");
    EXPECT_EQ(Run({"remove", "a.jpk", "Generic-008"}).status, 0);
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, AFullDiskChangesNothing) {
    const std::vector<std::string> preset{"preset", "a.jpk", "Generic-001", "NEW"};
    Running copying(preset, folder_.Path(), {.file_size = before_.size() / 2});
    const Ran copied = copying.Wait();
    EXPECT_EQ(copied.status, 3);
    EXPECT_EQ(copied.err, "halvern: a.jpk: the file cannot be copied: File too large\n");
    Running saving(preset, folder_.Path(), {.file_size = before_.size() + 16});
    const Ran saved = saving.Wait();
    EXPECT_EQ(saved.status, 3);
    EXPECT_EQ(saved.err, "halvern: a.jpk: the library cannot be written\n");
    EXPECT_TRUE(ReadFile(File()) == before_);
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, FilesOfTheFolderBesideTheLibraryAreFound) {
    ASSERT_EQ(::mkdir(folder_.Path("a.qmm").c_str(), 0755), 0);
    WriteFile(folder_.Path("a.qmm/oak.png"), "picture");
    ASSERT_EQ(Run({"preset", "a.jpk", "Bitmap-001", "NEW", "--set", "unifiedbitmap_Bitmap=oak.png"})
                  .status,
              0);
    const json value = Show("NEW")["unifiedbitmap_Bitmap"]["value"];
    EXPECT_NE(value.dump().find("jpk:?asset=/"), std::string::npos) << value;
    EXPECT_NE(value.dump().find("oak.png"), std::string::npos) << value;
    EXPECT_EQ(Run({"verify", "a.jpk"}).out, "");
}

TEST_F(Writing, ASystemLibraryIsOpenedBesideTheFile) {
    ASSERT_EQ(
        Run({"preset", "a.jpk", "Generic-001", "NEW", "--system", DataFile("aged.jpk")}).status, 0);
    before_ = ReadFile(File());
    ExpectRefused({"preset", "a.jpk", "Generic-001", "OTHER", "--system", "nowhere.jpk"}, 3,
                  "the system library nowhere.jpk: there is no such file");
}

// The run is held where it reads a value from a pipe that nobody writes.
TEST_F(Writing, ASignalEndsTheVerbWithNothingLeft) {
    Take("every-kind.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        ASSERT_EQ(::mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
        Running running({"preset", "a.jpk", source, "NEW", "--set", "k_blob=@pipe"},
                        folder_.Path());
        // Returns when the run has opened the other end.
        const int pipe = ::open(folder_.Path("pipe").c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_GE(pipe, 0);
        EXPECT_GT(folder_.Names().size(), 3U);
        running.Signal(signal);
        EXPECT_EQ(running.Wait().status, 128 + signal);
        ::close(pipe);
        ::unlink(folder_.Path("pipe").c_str());
        EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
        EXPECT_TRUE(ReadFile(File()) == before_);
    }
}

TEST_F(Writing, ALibraryIsCreatedWithTheSchemasOfAFolder) {
    const std::string schemas = SourceFolder() + "/content/schemas";
    const Ran ran = Run({"create", "new.jpk", "--id", "walls", "--schemas", schemas});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "walls\n");
    EXPECT_EQ(Run({"verify", "new.jpk"}).out, "");
    ASSERT_EQ(
        Run({"add", "new.jpk", "CeramicSchema", "tile", "--set", "ceramic_type=porcelain"}).status,
        0);
    EXPECT_EQ(
        Run({"show", "new.jpk", "tile", "--json"}).Json()["properties"]["ceramic_type"]["value"],
        1);
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "new.jpk"}));
}

TEST_F(Writing, ALibraryIsCreatedWithAFreshIdentifier) {
    const Ran ran = Run({"create", "new.jpk", "--json"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.Json()["identifier"].get<std::string>().size(), 36U);
    EXPECT_EQ(Run({"list", "new.jpk", "--all", "--json"}).out, "[]\n");
}

TEST_F(Writing, ALibraryIsNotCreatedOverAFile) {
    ExpectRefused({"create", "a.jpk"}, 1, "a file of this name exists already");
}

TEST_F(Writing, ALibraryIsNotCreatedFromSchemasThatDoNotLoad) {
    ASSERT_EQ(::mkdir(folder_.Path("schemas").c_str(), 0755), 0);
    WriteFile(folder_.Path("schemas/Odd.xml"), "<AssetSchema>\n<UID");
    const Ran ran = Run({"create", "new.jpk", "--schemas", "schemas"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: new.jpk: the schema " + folder_.Path("schemas/Odd.xml") +
                           " cannot be loaded: unclosed token, line 2\n");
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "schemas"}));
}

TEST_F(Writing, ALibraryIsNotCreatedFromAFolderWithoutSchemas) {
    ASSERT_EQ(::mkdir(folder_.Path("schemas").c_str(), 0755), 0);
    const Ran ran = Run({"create", "new.jpk", "--schemas", "schemas"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: new.jpk: the folder " + folder_.Path("schemas") +
                           " holds no schema file (*.xml)\n");
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "schemas"}));
}

TEST_F(Writing, ALibraryIsNotCreatedInAFile) {
    const Ran ran = Run({"create", "a.jpk/new.jpk"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: a.jpk/new.jpk: there is no folder " + File() + "\n");
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, ALibraryIsNotCreatedInAFolderThatIsNotThere) {
    const Ran ran = Run({"create", "none/new.jpk"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: none/new.jpk: there is no folder " + folder_.Path("none") + "\n");
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

// A value that the library would write over, or that no reader could show, is not taken.
TEST_F(Writing, AValueThatWouldBeLostIsRefused) {
    const auto refused = [this](const std::string& set, const std::string& words) {
        ExpectRefused({"preset", "a.jpk", "Generic-001", "NEW", "--set", set}, 1, words);
    };
    for (const char* name : {"AssetLibID", "BaseSchema", "Hidden"})
        refused(std::string(name) + "=true",
                std::string("the property ") + name + " is written by the library itself");
    for (const char* number : {"nan", "inf", "-inf"})
        refused(std::string("generic_bump_amount=") + number,
                std::string("the property generic_bump_amount does not take \"") + number +
                    "\": it is not one of its values: a number, or a number, a blank and a unit "
                    "such as mm");
    refused("generic_is_metal=yes",
            "the property generic_is_metal does not take \"yes\": it is not one of its values: "
            "true, false");
}

TEST_F(Writing, AValueOfAnotherKindIsAnsweredWithTheFormThatIsDue) {
    Take("every-kind.jpk");
    const std::string source =
        json::parse(ReadFile(DataFile("every-kind.json")))["show"].begin().key();
    for (const auto& [name, form] : {std::pair{"k_vector", "x,y,z"},
                                     {"k_blob", "@FILE"},
                                     {"k_int", "a whole number"},
                                     {"k_double", "a number"}})
        ExpectRefused({"preset", "a.jpk", source, "NEW", "--set", std::string(name) + "=odd"}, 1,
                      std::string("the property ") + name +
                          " does not take \"odd\": it is not one of its values: " + form);
}

TEST_F(Writing, AnUnknownChoiceIsAnsweredWithTheKnownOnes) {
    const std::string schemas = SourceFolder() + "/content/schemas";
    ASSERT_EQ(Run({"create", "new.jpk", "--schemas", schemas}).status, 0);
    const Ran ran = Run({"add", "new.jpk", "CeramicSchema", "tile", "--set", "ceramic_type=glass"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err,
              "halvern: new.jpk: the property ceramic_type does not take \"glass\": it is not one "
              "of its values: ceramic, porcelain\n");
}

TEST_F(Writing, AControlCharacterInANameBreaksNoLine) {
    ASSERT_EQ(Run({"add", "a.jpk", "GenericSchema", "Odd", "--name", "two\nlines\x1B[2J"}).status,
              0);
    EXPECT_NE(Run({"list", "a.jpk"}).out.find("  two lines [2J\n"), std::string::npos);
    EXPECT_NE(Run({"list", "a.jpk", "--json"}).out.find("two\\nlines"), std::string::npos);
}

TEST_F(Writing, ALibraryIsNotCreatedWithAnIdentifierThatCannotBe) {
    const Ran ran = Run({"create", "new.jpk", "--id", "a/b"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "halvern: new.jpk: the library cannot be created with the identifier a/b\n");
    EXPECT_EQ(folder_.Names(), Names{"a.jpk"});
}

TEST_F(Writing, AFullDiskIsNotTheFaultOfTheIdentifier) {
    const std::string place = folder_.Path("full");
    ASSERT_EQ(::mkdir(place.c_str(), 0777), 0);
    EXPECT_TRUE(InChild([&] {
        HALVERN_NEED(EnterOwnMounts());
        HALVERN_NEED(::mount("tmpfs", place.c_str(), "tmpfs", 0, "nr_inodes=4") == 0);
        const Ran ran = RunHalvern({"create", "new.jpk", "--id", "fine"}, place);
        HALVERN_NEED(ran.status == 3);
        HALVERN_NEED(ran.err == "halvern: new.jpk: the library cannot be created\n");
        HALVERN_NEED(std::filesystem::is_empty(place));
        return true;
    }));
}

TEST_F(Writing, ADefinitionNeedsAnIdentifier) {
    ExpectRefused({"add", "a.jpk", "GenericSchema", ""}, 1, "a definition needs an identifier");
    ExpectRefused({"preset", "a.jpk", "Generic-001", ""}, 1, "a definition needs an identifier");
}

TEST_F(Writing, ASchemaWithoutItsDirectivesCreatesNothing) {
    ASSERT_EQ(::mkdir(folder_.Path("schemas").c_str(), 0755), 0);
    const std::string file = folder_.Path("schemas/Odd.xml");
    WriteFile(file, "<AssetSchema><type val=\"t\"/></AssetSchema>");
    const Ran ran = Run({"create", "new.jpk", "--schemas", "schemas"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(
        ran.err,
        "halvern: new.jpk: the schema " + file +
            " cannot be loaded: its base is missing, or its UID is not the name of the file\n");
    EXPECT_EQ(folder_.Names(), (Names{"a.jpk", "schemas"}));
}

}  // namespace
}  // namespace halvern_tests
