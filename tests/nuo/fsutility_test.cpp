#include "nuo/common/fsutility.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "nuo/temp_folder.h"

namespace {

using namespace nuo::fsutility;
using nuo_tests::TempFolder;
using nuo_tests::WriteFile;

TEST(FsUtility, StatTellsSizeAndKind) {
    TempFolder folder;
    WriteFile(folder.Path("file"), "abc");
    const auto file = stat_file(folder.Path("file").c_str());
    ASSERT_TRUE(file.has_value());
    EXPECT_EQ(file->size, 3u);
    EXPECT_TRUE(file->is_regular);
    EXPECT_FALSE(file->is_directory);
    const auto self = stat_file(folder.Path().c_str());
    ASSERT_TRUE(self.has_value());
    EXPECT_TRUE(self->is_directory);
    EXPECT_FALSE(stat_file(folder.Path("none").c_str()).has_value());
}

TEST(FsUtility, CreatesAndKeeps) {
    TempFolder folder;
    const std::string path = folder.Path("file");
    EXPECT_TRUE(create_file(path.c_str(), true));
    WriteFile(path, "abc");
    EXPECT_FALSE(create_file(path.c_str(), true));
    EXPECT_TRUE(create_file(path.c_str(), false));
    EXPECT_EQ(nuo_tests::ReadFile(path), "abc");
    EXPECT_FALSE(create_file(folder.Path("none/file").c_str(), false));
}

TEST(FsUtility, OpensClosedOnExec) {
    TempFolder folder;
    WriteFile(folder.Path("file"), "abc");
    const int file = open_file(folder.Path("file").c_str(), O_RDONLY);
    ASSERT_GE(file, 0);
    EXPECT_NE(::fcntl(file, F_GETFD) & FD_CLOEXEC, 0);
    ::close(file);
    EXPECT_LT(open_file(folder.Path("none").c_str(), O_RDONLY), 0);
}

}  // namespace
