#include "velmor/vfs/zip.h"

#include <gmock/gmock.h>

#include "vfs/zip_fixture.h"

namespace {

using namespace vfs_tests;

bool Flag(nuo::any value) {
    return *nuo::any_cast<bool>(&value);
}

TEST_F(ZipTest, KeepsItsResource) {
    EXPECT_EQ(Text(Open("").resource()), "test.zip");
}

TEST_F(ZipTest, OptionsTellReadOnlyAndCommitOnClose) {
    fs::ZipFs& files = Open("", true);
    EXPECT_FALSE(Flag(files.getopt(fs::option_read_only, nuo::any())));
    EXPECT_TRUE(Flag(files.getopt(fs::option_commit_on_close, nuo::any())));
    EXPECT_TRUE(Flag(files.setopt(fs::option_commit_on_close, nuo::any(false), nuo::any())));
    EXPECT_FALSE(Flag(files.getopt(fs::option_commit_on_close, nuo::any())));
}

TEST_F(ZipTest, OptionsThatDoNotFitChangeNothing) {
    fs::ZipFs& files = Open("");
    EXPECT_TRUE(files.setopt(fs::option_read_only, nuo::any(true), nuo::any()).empty());
    EXPECT_TRUE(files.setopt(fs::option_commit_on_close, nuo::any(), nuo::any(true)).empty());
    EXPECT_TRUE(files.setopt(fs::option_commit_on_close, nuo::any(1), nuo::any()).empty());
    EXPECT_FALSE(Flag(files.getopt(fs::option_commit_on_close, nuo::any())));
}

TEST_F(ZipTest, ReadOnlyRefusesEveryChange) {
    ReadOnlyArchive archive(Zip({Stored("a", "text"), Folder("b")}));
    fs::ZipFs files(archive, cache_, "test.zip", true);
    EXPECT_TRUE(Flag(files.getopt(fs::option_read_only, nuo::any())));
    EXPECT_EQ(files.createDir("c"), fs::er_permission_denied);
    EXPECT_EQ(files.createDir("b"), fs::er_permission_denied);
    EXPECT_EQ(files.remove("a"), fs::er_permission_denied);
    EXPECT_EQ(files.truncate("a", 0), fs::er_permission_denied);
    EXPECT_EQ(files.create("a", fs::mode_write, fs::open_existing), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_all, fs::open_existing), nullptr);
    EXPECT_EQ(files.create("c", fs::mode_read, fs::open_or_create), nullptr);
    EXPECT_EQ(files.copy("a", "c"), fs::er_open_failed);
    EXPECT_EQ(ReadFile(files, "a"), "text");
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>([&] { files.commit(); }),
              "the archive is read-only.");
}

TEST_F(ZipTest, TruncateTellsWhatIsMissingFromWhatIsNoFile) {
    fs::ZipFs& files = Open(Zip({Folder("b")}));
    EXPECT_EQ(files.truncate("absent", 0), fs::er_not_found);
    EXPECT_EQ(files.truncate("b", 0), fs::er_not_a_file);
}

TEST_F(ZipTest, FoldersWithoutAnEntryCanBeRemoved) {
    fs::ZipFs& files = Open(Zip({Stored("a/b", "text")}));
    EXPECT_EQ(files.remove("a"), fs::er_not_empty);
    EXPECT_EQ(files.remove("a/b"), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_directory);
    EXPECT_EQ(files.remove("a"), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

TEST_F(ZipTest, EntriesAreCountedAsACommitWritesThem) {
    fs::ZipFs& files = Open(Zip({Stored("a/b", "text"), Folder("c")}));
    EXPECT_EQ(files.entryCount(), 2U);  // "a" stands for itself alone
    EXPECT_EQ(files.createDir("d"), fs::er_ok);
    EXPECT_EQ(files.entryCount(), 3U);
    EXPECT_EQ(files.remove("a/b"), fs::er_ok);
    EXPECT_EQ(files.entryCount(), 2U);
}

TEST_F(ZipTest, NamesThatNoHeaderCanHoldAreRefused) {
    fs::ZipFs& files = Open("");
    const std::string longest(65535, 'n');
    EXPECT_EQ(files.createDir(longest.c_str()), fs::er_ok);
    EXPECT_EQ(files.createDir((longest + "n").c_str()), fs::er_invalid);
    EXPECT_EQ(files.create((longest + "n").c_str(), fs::mode_all, fs::create_new), nullptr);
    std::string deep = "d";
    for (int i = 1; i < 256; ++i) {
        ASSERT_EQ(files.createDir(deep.c_str()), fs::er_ok);
        deep += "/d";
    }
    EXPECT_EQ(files.createDir(deep.c_str()), fs::er_ok);
    EXPECT_EQ(files.createDir((deep + "/d").c_str()), fs::er_invalid);
    EXPECT_EQ(files.create((deep + "/d").c_str(), fs::mode_all, fs::create_new), nullptr);
}

TEST_F(ZipTest, StateFollowsWritesBeforeTheCommit) {
    fs::ZipFs& files = Open(Zip({Deflated("a", "0123456789")}));
    EXPECT_EQ(files.state("a").size, 10u);
    EXPECT_EQ(files.truncate("a", 3), fs::er_ok);
    EXPECT_EQ(files.state("a").size, 3u);
}

}  // namespace
