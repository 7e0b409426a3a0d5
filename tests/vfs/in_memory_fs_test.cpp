#include "velmor/vfs/in_memory_fs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vfs/support.h"

namespace {

using namespace vfs_tests;

TEST(InMemoryTest, KeepsItsResource) {
    fs::InMemory files("scratch");
    EXPECT_EQ(Text(files.resource()), "scratch");
}

TEST(InMemoryTest, ReadOnlyRefusesEveryChange) {
    fs::InMemory files("read only", true);
    EXPECT_EQ(files.createDir("a"), fs::er_permission_denied);
    EXPECT_EQ(files.remove(""), fs::er_permission_denied);
    EXPECT_EQ(files.remove("a"), fs::er_permission_denied);
    EXPECT_EQ(files.truncate("a", 0), fs::er_permission_denied);
    EXPECT_EQ(files.create("a", fs::mode_write, fs::open_or_create), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_all, fs::create_new), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_read, fs::open_or_create), nullptr);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

TEST(InMemoryTest, TruncateTellsWhatIsMissingFromWhatIsNoFile) {
    fs::InMemory files("scratch");
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    EXPECT_EQ(files.truncate("absent", 0), fs::er_not_found);
    EXPECT_EQ(files.truncate("a", 0), fs::er_data_error);
}

TEST(InMemoryTest, ListsInStringOrder) {
    fs::InMemory files("scratch");
    for (const char* name : {"b", "a", "\xC3\xA4", "B"})
        WriteFile(files, name, "");
    std::vector<std::string> names;
    for (const fs::VfsNode& child : files.children(""))
        names.push_back(Text(child.path));
    EXPECT_THAT(names, testing::ElementsAre("\xC3\xA4", "B", "a", "b"));
}

TEST(InMemoryTest, ListsBackwardToo) {
    fs::InMemory files("scratch");
    WriteFile(files, "a", "");
    WriteFile(files, "b", "");
    auto range = files.children("");
    auto at = range.last;
    --at;
    EXPECT_EQ(Text(at->path), "b");
    --at;
    EXPECT_EQ(Text(at->path), "a");
    EXPECT_TRUE(at == range.first);
}

TEST(InMemoryTest, AnArchiveMayOutliveTheFileSystem) {
    nuo::archive::archive_ptr archive;
    {
        fs::InMemory files("scratch");
        WriteFile(files, "a", "text");
        archive = files.create("a", fs::mode_read, fs::open_existing);
    }
    EXPECT_EQ(ReadAll(*archive), "text");
}

}  // namespace
