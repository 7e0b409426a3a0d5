#include "velmor/vfs/local_fs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "velmor/vfs/in_memory_fs.h"
#include "vfs/support.h"

namespace {

using namespace vfs_tests;
using testing::ElementsAre;
using testing::StartsWith;

constexpr uid_t nobody = 65534;

class LocalFsTest : public testing::Test {
protected:
    DiskFolder folder_;
    fs::LocalFs files_{folder_.path().c_str()};
};

TEST_F(LocalFsTest, ShowsWhatLiesOnTheDisk) {
    WriteDisk(folder_.file("a"), "12345");
    std::filesystem::create_directory(folder_.file("b"));
    EXPECT_EQ(Text(files_.resource()), folder_.path());
    EXPECT_THAT(Names(files_, ""), ElementsAre("a", "b"));
    EXPECT_EQ(files_.state("a").size, 5u);
    EXPECT_EQ(ReadFile(files_, "a"), "12345");
}

TEST_F(LocalFsTest, WritesReachTheDisk) {
    WriteFile(files_, "a", "text");
    EXPECT_EQ(ReadDisk(folder_.file("a")), "text");
    EXPECT_EQ(files_.truncate("a", 2), fs::er_ok);
    EXPECT_EQ(ReadDisk(folder_.file("a")), "te");
    EXPECT_EQ(files_.remove("a"), fs::er_ok);
    EXPECT_FALSE(std::filesystem::exists(folder_.file("a")));
}

TEST_F(LocalFsTest, TheTopCannotBeMade) {
    EXPECT_EQ(files_.createDir(""), fs::er_invalid);
    EXPECT_EQ(files_.createDir("/"), fs::er_invalid);
    fs::LocalFs absent((folder_.path() + "/absent").c_str());
    EXPECT_EQ(absent.createDir(""), fs::er_invalid);
}

TEST_F(LocalFsTest, ReadingNeverMakesAFile) {
    EXPECT_EQ(files_.create("a", fs::mode_read, fs::open_or_create), nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder_.file("a")));
}

TEST_F(LocalFsTest, TruncateOfAnythingButAFileIsADataError) {
    ASSERT_EQ(files_.createDir("b"), fs::er_ok);
    EXPECT_EQ(files_.truncate("absent", 0), fs::er_data_error);
    EXPECT_EQ(files_.truncate("b", 0), fs::er_data_error);
}

TEST_F(LocalFsTest, PathsOutOfTheDirectoryAreInvalid) {
    ASSERT_EQ(files_.createDir("in"), fs::er_ok);
    WriteDisk(folder_.file("secret"), "x");
    fs::LocalFs inner((folder_.path() + "/in").c_str());
    EXPECT_EQ(inner.state("../secret").state, fs::state_invalid);
    EXPECT_EQ(inner.create("../secret", fs::mode_read, fs::open_existing), nullptr);
    EXPECT_EQ(inner.create("a/../../new", fs::mode_write, fs::open_or_create), nullptr);
    EXPECT_EQ(inner.remove("../secret"), fs::er_invalid);
    EXPECT_EQ(inner.createDir("../new"), fs::er_invalid);
    EXPECT_EQ(inner.truncate("../secret", 0), fs::er_data_error);
    EXPECT_TRUE(inner.children("..").empty());
    EXPECT_EQ(ReadDisk(folder_.file("secret")), "x");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("new")));
}

TEST_F(LocalFsTest, ANulInAPathIsInvalid) {
    WriteFile(files_, "a", "text");
    const nuo::string_ref path("a\0b", std::uint64_t{3});
    EXPECT_EQ(files_.state(path).state, fs::state_invalid);
    EXPECT_EQ(files_.create(path, fs::mode_read, fs::open_existing), nullptr);
    EXPECT_EQ(files_.remove(path), fs::er_invalid);
    EXPECT_EQ(ReadFile(files_, "a"), "text");
}

TEST_F(LocalFsTest, ADirectoryThatIsNotThereIsEmpty) {
    fs::LocalFs files((folder_.path() + "/absent").c_str());
    EXPECT_EQ(files.state("").state, fs::state_not_found);
    EXPECT_TRUE(files.children("").empty());
    EXPECT_EQ(files.createDir("a"), fs::er_not_found);
    EXPECT_EQ(files.create("a", fs::mode_all, fs::open_or_create), nullptr);
}

TEST_F(LocalFsTest, NeitherFilesNorDirectoriesAreInvalid) {
    ASSERT_EQ(::mkfifo(folder_.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.state("pipe").state, fs::state_invalid);
    EXPECT_EQ(files_.create("pipe", fs::mode_read, fs::open_existing), nullptr);
}

TEST_F(LocalFsTest, RecursiveRemoveLeavesWhatALinkLeadsTo) {
    const DiskFolder outside;
    WriteDisk(outside.file("kept"), "text");
    ASSERT_EQ(files_.createDir("a"), fs::er_ok);
    std::filesystem::create_directory_symlink(outside.path(), folder_.file("a/link"));
    EXPECT_EQ(fs::recursiveRemove(files_, "a"), fs::er_ok);
    EXPECT_EQ(ReadDisk(outside.file("kept")), "text");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("a")));
}

TEST_F(LocalFsTest, ALinkThatLeadsNowhereCanBeRemoved) {
    ASSERT_EQ(files_.createDir("a"), fs::er_ok);
    std::filesystem::create_symlink("nowhere", folder_.file("a/link"));
    EXPECT_EQ(files_.state("a/link").state, fs::state_not_found);
    EXPECT_EQ(fs::recursiveRemove(files_, "a"), fs::er_ok);
}

TEST_F(LocalFsTest, RefusedByTheDiskIsADataError) {
    WriteFile(files_, "a", "text");
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_EQ(RunInChild([&] {
                  if (::setuid(nobody) != 0) return false;
                  return files_.createDir("b") == fs::er_data_error &&
                         files_.remove("a") == fs::er_data_error &&
                         files_.truncate("a", 0) == fs::er_data_error &&
                         files_.create("a", fs::mode_write, fs::open_existing) == nullptr &&
                         files_.create("b", fs::mode_write, fs::create_new) == nullptr;
              }),
              0);
    EXPECT_EQ(ReadDisk(folder_.file("a")), "text");
}

TEST_F(LocalFsTest, CopyOntoAFullDiskIsADataError) {
    fs::InMemory memory("memory");
    WriteFile(memory, "a", std::string(200000, 'x'));
    EXPECT_EQ(RunInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{100000, 100000};
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
                  return fs::copyFile({"a", &memory}, {"b", &files_}) == fs::er_data_error;
              }),
              0);
}

class LocalTempTest : public testing::Test {
protected:
    LocalTempTest() {
        ::unsetenv("TMPDIR");
        ::unsetenv("TMP");
    }
    ~LocalTempTest() override {
        restore("TMPDIR", tmpdir_);
        restore("TMP", tmp_);
    }

    DiskFolder folder_;

private:
    static std::optional<std::string> get(const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    }
    static void restore(const char* name, const std::optional<std::string>& value) {
        if (value)
            ::setenv(name, value->c_str(), 1);
        else
            ::unsetenv(name);
    }

    std::optional<std::string> tmpdir_ = get("TMPDIR");
    std::optional<std::string> tmp_ = get("TMP");
};

TEST_F(LocalTempTest, FilesLieInTheGivenDirectory) {
    const fs::TempFile file = fs::local::createTempFile(folder_.path().c_str(), "pre");
    ASSERT_NE(file.archive, nullptr);
    WriteAll(*file.archive, "text");
    EXPECT_THAT(Text(file.path), StartsWith(folder_.path() + "/pre"));
    EXPECT_EQ(ReadDisk(Text(file.path)), "text");
}

TEST_F(LocalTempTest, DirectoriesLieInTheGivenDirectory) {
    const std::string path = Text(fs::local::createTempDir(folder_.path().c_str(), "mgr40_"));
    EXPECT_THAT(path, StartsWith(folder_.path() + "/mgr40_"));
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST_F(LocalTempTest, TmpdirComesBeforeTmp) {
    const DiskFolder second;
    ::setenv("TMP", second.path().c_str(), 1);
    EXPECT_THAT(Text(fs::local::createTempDir("", "pre")), StartsWith(second.path() + "/pre"));
    ::setenv("TMPDIR", folder_.path().c_str(), 1);
    EXPECT_THAT(Text(fs::local::createTempDir("", "pre")), StartsWith(folder_.path() + "/pre"));
    EXPECT_THAT(Text(fs::local::createTempFile("", "pre").path),
                StartsWith(folder_.path() + "/pre"));
}

TEST_F(LocalTempTest, WithoutADirectoryNothingIsMade) {
    EXPECT_EQ(RaisedText<nuo::archive::create_failed>([] { fs::local::createTempDir("", "pre"); }),
              "failed to locate the temp directory:");
    ::setenv("TMPDIR", "/absent/folder", 1);
    EXPECT_EQ(RaisedText<nuo::archive::create_failed>([] { fs::local::createTempFile("", "pre"); }),
              "failed to locate the temp directory:/absent/folder");
}

TEST_F(LocalTempTest, ADirectoryThatRefusesIsNamed) {
    const std::string path = folder_.path();
    ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
    EXPECT_EQ(RunInChild([&] {
                  if (::setuid(nobody) != 0) return false;
                  const std::string text = "failed to create temp file in directory:" + path;
                  return RaisedText<nuo::archive::create_failed>(
                             [&] { fs::local::createTempFile(path.c_str(), "pre"); }) == text &&
                         RaisedText<nuo::archive::create_failed>(
                             [&] { fs::local::createTempDir(path.c_str(), "pre"); }) == text;
              }),
              0);
}

}  // namespace
