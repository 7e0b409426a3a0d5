#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "command/running.h"
#include "support/samplefile.h"
#include "support/temporaryfolder.h"
#include "tests/support/paths.h"

namespace halvern_tests {
namespace {

using nlohmann::json;

const std::string kStarter = DataFile("starter.jpk");

TEST(List, ShowsAlignedColumnsWithoutHiddenDefinitions) {
    EXPECT_EQ(RunHalvern({"list", kStarter}).out,
              "Bitmap-001   texture             UnifiedBitmapSchema  TEX_1\n"
              "Bitmap-002   texture             UnifiedBitmapSchema  TEX_2\n"
              "Bitmap-003   texture             UnifiedBitmapSchema  TEX_3\n"
              "Bitmap-004   texture             UnifiedBitmapSchema  TEX_4\n"
              "Generic-001  materialappearance  GenericSchema        MAT_1\n"
              "Generic-002  materialappearance  GenericSchema        MAT_2\n"
              "Generic-003  materialappearance  GenericSchema        MAT_3\n"
              "Generic-004  materialappearance  GenericSchema        MAT_4\n"
              "Generic-005  materialappearance  GenericSchema        MAT_5\n"
              "Generic-007  materialappearance  GenericSchema        MAT_7\n"
              "Generic-008  materialappearance  GenericSchema        MAT_8\n");
}

TEST(List, OfATypeShowsOnlyThatAssetTypeOrSchema) {
    const json textures = RunHalvern({"list", kStarter, "--type", "texture", "--json"}).Json();
    ASSERT_EQ(textures.size(), 4U);
    EXPECT_EQ(textures[3]["identifier"], "Bitmap-004");
    EXPECT_EQ(RunHalvern({"list", kStarter, "--type", "UnifiedBitmapSchema", "--json"}).Json(),
              textures);
    const Ran none = RunHalvern({"list", kStarter, "--type", "nothing", "--json"});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.out, "[]\n");
}

TEST(List, WithAllMarksHiddenDefinitions) {
    const std::string out = RunHalvern({"list", kStarter, "--all", "--locale", "ENG"}).out;
    EXPECT_NE(out.find("Generic-006  materialappearance  GenericSchema        "
                       "Material 6          (hidden)\n"),
              std::string::npos)
        << out;
}

TEST(List, TakesRelativePaths) {
    const TemporaryFolder folder;
    WriteFile(folder.Path("a.jpk"), ReadFile(kStarter));
    const Ran ran = RunHalvern({"list", "./a.jpk", "--json"}, folder.Path());
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.Json().size(), 11U);
    EXPECT_EQ(folder.Names(), std::set<std::string>{"a.jpk"});
}

TEST(List, OfAFileThatIsNotThereFails) {
    const Ran ran = RunHalvern({"list", "nowhere.jpk"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: nowhere.jpk: there is no such file\n");
}

TEST(List, OfAFolderFails) {
    const Ran ran = RunHalvern({"list", "/tmp"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: /tmp: this is a folder and no file\n");
}

TEST(Show, PrintsOnePropertyToALine) {
    const std::string out = RunHalvern({"show", kStarter, "Generic-001"}).out;
    EXPECT_EQ(out.substr(0, out.find('\n')), "Generic-001  GenericSchema");
    EXPECT_NE(out.find("\n  generic_bump_amount = 6.950847467298771 mm\n"), std::string::npos);
    EXPECT_NE(out.find("\n  generic_bump_map <- [\"Bitmap-002\"]\n"), std::string::npos);
    EXPECT_NE(out.find("\n  swatch = \"Brass, \\\\ and |\"\n"), std::string::npos);
}

TEST(Show, OfADefinitionThatIsNotThereIsNo) {
    const Ran ran = RunHalvern({"show", kStarter, "Ghost"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "halvern: " + kStarter + ": there is no definition Ghost\n");
}

TEST(Show, OfADamagedRecordTellsThePlace) {
    SampleFile sample("starter.jpk");
    std::string& store = sample.Part(sample.Path("AssetData/InstanceProperties.bin"));
    for (const TocRow& row :
         ReadToc(sample.Part(sample.Path("AssetData/AssetTableOfContents.bin"))))
        if (row.identifier == "Generic-003") StoreBytes(store).SetUsed(row.instance_block, 4);
    const TemporaryFolder folder;
    WriteFile(folder.Path("a.jpk"), sample.Bytes());
    const Ran ran = RunHalvern({"show", "a.jpk", "Generic-003"}, folder.Path());
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(
        ran.err.find("halvern: a.jpk: the record ends within its header, in " +
                     sample.Path("AssetData/InstanceProperties.bin") + ", record Generic-003"),
        0U)
        << ran.err;
}

TEST(Verify, OfASoundLibraryIsSilent) {
    const Ran ran = RunHalvern({"verify", kStarter});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out + ran.err, "");
    EXPECT_EQ(RunHalvern({"verify", kStarter, "--json"}).Json(),
              (json{{"ok", true}, {"findings", json::array()}}));
}

TEST(Verify, PrintsEachFinding) {
    const std::string part =
        "AB85E779-94ED-7117-08AD-DEEFD3E824C1/AssetData/AssetTableOfContents.bin";
    const std::string what = "the identifier stands a second time, and the entry is passed over";
    const Ran text = RunHalvern({"verify", DataFile("odd-toc-twice.jpk")});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out,
              "contents.twice: " + what + ", in " + part + ", entry 13 (Bitmap-001), offset 720\n");
    const Ran ran = RunHalvern({"verify", DataFile("odd-toc-twice.jpk"), "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.Json(), (json{{"ok", false},
                                {"findings",
                                 {{{"rule", "contents.twice"},
                                   {"part", part},
                                   {"where", "entry 13 (Bitmap-001), offset 720"},
                                   {"what", what}}}}}));
    EXPECT_EQ(RunHalvern({"verify", DataFile("odd-toc-twice.jpk"), "--quiet"}).out, "");
}

TEST(Verify, OfAFileThatIsNotThereFails) {
    const Ran ran = RunHalvern({"verify", "nowhere.jpk"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: nowhere.jpk: there is no such file\n");
}

TEST(Verify, OfAFolderFails) {
    const Ran ran = RunHalvern({"verify", "/tmp"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: /tmp: this is a folder and no file\n");
}

TEST(Output, ThatNobodyReadsEndsQuietly) {
    const TemporaryFolder folder;
    Running running({"list", DataFile("large.jpk"), "--all", "--json"}, folder.Path());
    running.CloseOutput();
    const Ran ran = running.Wait();
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(folder.Names(), std::set<std::string>());
}

TEST(Output, OfProgressGoesToATerminalAlone) {
    const TemporaryFolder folder;
    const std::vector<std::string> list{"list", DataFile("large.jpk"), "--json"};
    Running shown(list, folder.Path(), {.terminal = true});
    const Ran on_terminal = shown.Wait();
    EXPECT_EQ(on_terminal.status, 0);
    EXPECT_EQ(on_terminal.err.find("\r64 definitions\r128 definitions"), 0U);
    EXPECT_TRUE(on_terminal.err.ends_with("\r\033[K"));
    std::vector<std::string> quiet = list;
    quiet.push_back("--quiet");
    Running silent(quiet, folder.Path(), {.terminal = true});
    const Ran quietly = silent.Wait();
    EXPECT_EQ(quietly.err, "");
    EXPECT_TRUE(quietly.out == on_terminal.out);
}

TEST(CommandLine, ThatIsWrongIsTwoAndOneLine) {
    const struct {
        std::vector<std::string> arguments;
        const char* line;
    } kCases[] = {
        {{}, "halvern: A subcommand is required\n"},
        {{"dance", "a.jpk"}, "halvern: there is no verb dance\n"},
        {{"list"}, "halvern: FILE is required\n"},
        {{"list", ""}, "halvern: the name of a file is empty\n"},
        {{"show", "a.jpk"}, "halvern: a.jpk: IDENTIFIER is required\n"},
        {{"preset", "a.jpk", "A", "B", "--set", "noequals"},
         "halvern: a.jpk: --set: \"noequals\" is not of the form NAME=VALUE\n"},
    };
    for (const auto& wrong : kCases) {
        const Ran ran = RunHalvern(wrong.arguments);
        EXPECT_EQ(ran.status, 2);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err, wrong.line);
    }
    EXPECT_EQ(RunHalvern({"list", "a.jpk", "--sideways"}).status, 2);
}

TEST(CommandLine, HelpsWithAnExampleForEachVerb) {
    for (const char* verb : {"add", "create", "list", "preset", "remove", "show", "verify"}) {
        const Ran ran = RunHalvern({verb, "--help"});
        EXPECT_EQ(ran.status, 0);
        EXPECT_NE(ran.out.find(std::string("Example:\n  halvern ") + verb + " "), std::string::npos)
            << ran.out;
    }
    EXPECT_EQ(RunHalvern({"--help"}).status, 0);
}

TEST(Show, ControlCharactersOfAFileNeitherBreakALineNorSteerATerminal) {
    SampleFile sample("starter.jpk");
    std::string& schema = sample.Part(sample.Path("Schemas/UnifiedBitmapSchema.xml"));
    schema = Replaced(
        schema, "</AssetSchema>",
        "<String id=\"a&#10;b&#x9b;31m&#x7f;\" readonly=\"true\" val=\"x\"/></AssetSchema>");
    const TemporaryFolder folder;
    WriteFile(folder.Path("a.jpk"), sample.Bytes());
    const Ran ran = RunHalvern({"show", "a.jpk", "Bitmap-001"}, folder.Path());
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_NE(ran.out.find("\n  a b 31m  = \"x\"\n"), std::string::npos) << ran.out;
}

// A full disk behind standard output.
TEST(Output, ThatCannotBeWrittenIsTold) {
    Running::Limits limits;
    limits.full_output = true;
    const Ran ran = Running({"list", DataFile("starter.jpk")}, "/tmp", limits).Wait();
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "halvern: " + DataFile("starter.jpk") +
                           ": standard output cannot be written: No space left on device\n");
}

}  // namespace
}  // namespace halvern_tests
