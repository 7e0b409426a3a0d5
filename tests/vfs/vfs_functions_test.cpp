#include "velmor/vfs/vfs_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "nuo/common/file_archive.h"
#include "nuo/common/multiplex.h"
#include "velmor/vfs/in_memory_fs.h"
#include "vfs/support.h"

namespace {

using namespace vfs_tests;

// A file system whose archives take no more than `room` bytes in all, or tell a size of their own.
class LimitedFs : public fs::InMemory {
public:
    explicit LimitedFs(std::uint64_t room) : InMemory("limited"), room_(room) {}

    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override;

private:
    class Writer : public nuo::archive::multiplex_owner<nuo::archive::multiplex_write_archive> {
    public:
        Writer(std::shared_ptr<nuo::archive::iarchive> file, std::uint64_t& room)
            : multiplex_owner(std::move(file)), room_(room) {}
        const nuo::byte* write(nuo::archive::const_byte_range range) override {
            if (range.size() > room_) NUO_RAISE(nuo::archive::archive_append_failed);
            room_ -= range.size();
            return multiplex_owner::write(range);
        }

    private:
        std::uint64_t& room_;
    };

    std::uint64_t room_;
};

nuo::archive::archive_ptr LimitedFs::create(nuo::string_ref path, unsigned mode, unsigned flag) {
    auto file = InMemory::create(path, mode, flag);
    if (file == nullptr || (mode & fs::mode_write) == 0) return file;
    return nuo::archive::make_archive<Writer>(
        std::shared_ptr<nuo::archive::iarchive>(std::move(file)), room_);
}

using ReadForm = nuo::archive::multiplex_owner<nuo::archive::multiplex_read_archive>;

// A file system whose files are read through a `Reader`.
template <class Reader>
class ReadThrough : public fs::InMemory {
public:
    ReadThrough() : InMemory("read through") {}

    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override {
        auto file = InMemory::create(path, mode, flag);
        if (file == nullptr) return file;
        return nuo::archive::make_archive<Reader>(
            std::shared_ptr<nuo::archive::iarchive>(std::move(file)));
    }
};

// Claims to be one byte longer than it is.
class Boaster : public ReadForm {
public:
    using ReadForm::ReadForm;
    std::uint64_t size() override { return ReadForm::size() + 1; }
};

// Cannot be read.
class Broken : public ReadForm {
public:
    using ReadForm::ReadForm;
    bool readable() override { return true; }
    nuo::byte* read(nuo::archive::byte_range) override { NUO_RAISE(nuo::archive::read_failed); }
};

TEST(NormalizePathTest, DropsEmptyPartsAndKeepsALeadingSlash) {
    EXPECT_EQ(Text(fs::normalizePath("a//b/")), "a/b");
    EXPECT_EQ(Text(fs::normalizePath("/a//b/")), "/a/b");
    EXPECT_EQ(Text(fs::normalizePath("a/b")), "a/b");
    EXPECT_EQ(Text(fs::normalizePath("///a")), "/a");
    EXPECT_EQ(Text(fs::normalizePath("/")), "/");
    EXPECT_EQ(Text(fs::normalizePath("//")), "/");
    EXPECT_EQ(Text(fs::normalizePath("")), "");
}

TEST(JoinPathTest, PutsExactlyOneSlashBetween) {
    EXPECT_EQ(Text(fs::joinPath("a", "b")), "a/b");
    EXPECT_EQ(Text(fs::joinPath("a/", "/b")), "a/b");
    EXPECT_EQ(Text(fs::joinPath("a//", "//b")), "a/b");
    EXPECT_EQ(Text(fs::joinPath("/", "b")), "/b");
    EXPECT_EQ(Text(fs::joinPath("", "b")), "b");
    EXPECT_EQ(Text(fs::joinPath("a", "")), "a");
    EXPECT_EQ(Text(fs::joinPath("/", "/")), "/");
    EXPECT_EQ(Text(fs::joinPath("", "")), "");
}

TEST(FolderOfTest, CutsTheLastComponent) {
    EXPECT_EQ(Text(fs::folderOf("a/b/c")), "a/b");
    EXPECT_EQ(Text(fs::folderOf("a/b//")), "a");
    EXPECT_EQ(Text(fs::folderOf("a//b")), "a");
    EXPECT_EQ(Text(fs::folderOf("a")), "");
    EXPECT_EQ(Text(fs::folderOf("/a")), "/");
    EXPECT_EQ(Text(fs::folderOf("/")), "/");
    EXPECT_EQ(Text(fs::folderOf("")), "");
}

TEST(CopyFileTest, AFullTargetIsADataError) {
    fs::InMemory source("source");
    WriteFile(source, "a", std::string(200000, 'x'));
    LimitedFs target(100000);
    EXPECT_EQ(fs::copyFile({"a", &source}, {"b", &target}), fs::er_data_error);
}

TEST(CopyFileTest, FewerBytesThanTheSourceTellsIsADataError) {
    ReadThrough<Boaster> source;
    fs::InMemory target("target");
    ASSERT_NE(source.InMemory::create("a", fs::mode_write, fs::create_new), nullptr);
    EXPECT_EQ(fs::copyFile({"a", &source}, {"b", &target}), fs::er_data_error);
}

TEST(CopyFileTest, ASourceThatCannotBeReadIsADataError) {
    ReadThrough<Broken> source;
    fs::InMemory target("target");
    ASSERT_NE(source.InMemory::create("a", fs::mode_write, fs::create_new), nullptr);
    EXPECT_EQ(fs::copyFile({"a", &source}, {"b", &target}), fs::er_data_error);
}

TEST(CopyFileTest, CopiesBetweenFileSystems) {
    fs::InMemory source("source");
    fs::InMemory target("target");
    const std::string content(150000, 'y');
    WriteFile(source, "a", content);
    EXPECT_EQ(fs::copyFile({"a", &source}, {"b", &target}), fs::er_ok);
    EXPECT_TRUE(ReadFile(target, "b") == content);
}

TEST(RecursiveRemoveTest, StopsAtTheFirstFailure) {
    class Stubborn : public fs::InMemory {
    public:
        Stubborn() : InMemory("stubborn") {}
        fs::fs_error remove(nuo::string_ref path) override {
            return path == "a/b" ? fs::er_data_error : InMemory::remove(path);
        }
    } files;
    ASSERT_EQ(fs::recursiveCreateDir(files, "a"), fs::er_ok);
    for (const char* name : {"a/a", "a/b", "a/c"})
        WriteFile(files, name, "");
    EXPECT_EQ(fs::recursiveRemove(files, "a"), fs::er_data_error);
    EXPECT_THAT(Names(files, "a"), testing::ElementsAre("b", "c"));
}

// Tells of the first few names of files and directories that they are taken.
class CrowdedFs : public fs::InMemory {
public:
    CrowdedFs() : InMemory("crowded") {}

    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override {
        if (!Tried(path)) return {};
        return InMemory::create(path, mode, flag);
    }
    fs::fs_error createDir(nuo::string_ref path) override {
        return Tried(path) ? InMemory::createDir(path) : fs::er_exist;
    }

    std::vector<std::string> tried;

private:
    bool Tried(nuo::string_ref path) {
        tried.push_back(Text(path));
        return tried.size() > 3;
    }
};

TEST(CreateTempTest, TriesOtherNamesAfterACollision) {
    CrowdedFs files;
    const fs::TempFile file = fs::createTempFile(files, "", "pre");
    ASSERT_NE(file.archive, nullptr);
    ASSERT_EQ(files.tried.size(), 4u);
    EXPECT_EQ(Text(file.path), files.tried.back());
    EXPECT_EQ(std::set<std::string>(files.tried.begin(), files.tried.end()).size(), 4u);
    CrowdedFs others;
    const std::string folder = Text(fs::createTempDir(others, "", "pre"));
    ASSERT_EQ(others.tried.size(), 4u);
    EXPECT_EQ(folder, others.tried.back());
}

TEST(RecursiveCreateDirTest, GoesOnWhereSomebodyElseJustMadeADirectory) {
    class Raced : public fs::InMemory {
    public:
        Raced() : InMemory("raced") {}
        fs::fs_error createDir(nuo::string_ref path) override {
            if (path == "a") InMemory::createDir(path);
            return InMemory::createDir(path);
        }
    } files;
    EXPECT_EQ(fs::recursiveCreateDir(files, "a/b"), fs::er_ok);
    EXPECT_EQ(files.state("a/b").state, fs::state_directory);
}

TEST(RecursiveCreateDirTest, TellsWhyADirectoryCouldNotBeMade) {
    fs::InMemory files("read only", true);
    EXPECT_EQ(fs::recursiveCreateDir(files, "a/b"), fs::er_permission_denied);
}

TEST(RecursiveCreateTest, WhatNoFileSystemMakesLeavesNoFolders) {
    fs::InMemory files("files");
    EXPECT_EQ(fs::recursiveCreate(files, "x/y", 0, fs::open_or_create), nullptr);
    std::string deep;
    for (std::size_t i = 0; i < fs::max_path_components; ++i)
        deep += "d/";
    EXPECT_EQ(fs::recursiveCreate(files, (deep + "file").c_str(), fs::mode_all, fs::open_or_create),
              nullptr);
    EXPECT_THAT(Names(files, ""), testing::IsEmpty());
}

// A child that was forked begins where its parent stood.
TEST(CreateTempTest, ForkedProcessesHaveNamesOfTheirOwn) {
    const DiskFolder folder;
    fs::InMemory first("files");
    const std::string before = Text(fs::createTempFile(first, "", "pre").path);
    const auto next_name = [&](const std::string& file) {
        fs::InMemory files("files");
        WriteDisk(folder.file(file), Text(fs::createTempFile(files, "", "pre").path));
        return true;
    };
    ASSERT_EQ(RunInChild([&] { return next_name("a"); }), 0);
    ASSERT_EQ(RunInChild([&] { return next_name("b"); }), 0);
    EXPECT_NE(ReadDisk(folder.file("a")), ReadDisk(folder.file("b")));
    EXPECT_NE(ReadDisk(folder.file("a")), before);
}

}  // namespace
