#include "nuo/common/file_archive.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/numeric/conversion/cast.hpp>
#include <csignal>
#include <filesystem>
#include <string>

#include "nuo/common/archive/primitives.h"
#include "nuo/failing_files.h"
#include "nuo/temp_folder.h"

namespace {

using namespace nuo::archive;
using nuo_tests::FailingCall;
using nuo_tests::ReadFile;
using nuo_tests::TempFolder;
using nuo_tests::TrueInChild;
using nuo_tests::WriteFile;

class FileArchive : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return folder_.Path(name); }
    std::string File(const std::string& bytes) const {
        WriteFile(Path("file"), bytes);
        return Path("file");
    }

    TempFolder folder_;
};

template <class Failure, class Body>
void ExpectBareFailure(Body body) {
    try {
        body();
        FAIL();
    } catch (const nuo::context_exception<Failure>& failure) {
        EXPECT_EQ(std::string(failure.what()).back(), ')');
    }
}

TEST_F(FileArchive, MissingFileIsNotOpened) {
    const std::string path = Path("none");
    ExpectBareFailure<archive_open_file_failed>([&] { file_read_archive(path.c_str()); });
    ExpectBareFailure<archive_open_file_failed>(
        [&] { file_write_archive(path.c_str(), open_existing); });
    ExpectBareFailure<archive_open_file_failed>(
        [&] { file_read_write_archive(path.c_str(), open_existing); });
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(FileArchive, CreateNewRefusesAnExistingPath) {
    const std::string path = File("abc");
    ExpectBareFailure<archive_create_file_failed>(
        [&] { file_write_archive(path.c_str(), create_new); });
    ExpectBareFailure<archive_create_file_failed>(
        [&] { file_read_write_archive(path.c_str(), create_new); });
    EXPECT_EQ(ReadFile(path), "abc");
}

TEST_F(FileArchive, CreateNewAndOpenOrCreateMakeAnEmptyFile) {
    file_write_archive first(Path("first").c_str(), create_new);
    file_read_write_archive second(Path("second").c_str(), open_or_create);
    EXPECT_EQ(first.size(), 0u);
    EXPECT_TRUE(std::filesystem::exists(Path("first")));
    EXPECT_TRUE(std::filesystem::exists(Path("second")));
}

TEST_F(FileArchive, OpenOrCreateKeepsAnExistingFile) {
    file_read_write_archive file(File("abc").c_str(), open_or_create);
    EXPECT_EQ(file.size(), 3u);
}

TEST_F(FileArchive, MissingFolderCannotHoldANewFile) {
    EXPECT_THROW(file_write_archive(Path("none/file").c_str(), create_new),
                 archive_create_file_failed);
    EXPECT_THROW(file_read_write_archive(Path("none/file").c_str(), open_or_create),
                 archive_create_file_failed);
}

TEST_F(FileArchive, FoldersAndPipesAreNotOpened) {
    EXPECT_THROW(file_read_archive(folder_.Path().c_str()), archive_open_file_failed);
    EXPECT_THROW(file_read_write_archive(folder_.Path().c_str(), open_or_create),
                 archive_open_file_failed);
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_THROW(file_read_archive(Path("pipe").c_str()), archive_open_file_failed);
}

TEST_F(FileArchive, RefusedPermissionIsAFailureToOpen) {
    const std::string path = File("abc");
    ASSERT_EQ(::chmod(folder_.Path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    const std::string fresh = Path("fresh");
    EXPECT_TRUE(TrueInChild([&] {
        constexpr uid_t nobody = 65534;
        if (::getuid() == 0 && ::setuid(nobody) != 0) return false;
        if (::getuid() != nobody) ::chmod(path.c_str(), 0);
        try {
            file_read_archive refused(path.c_str());
            return false;
        } catch (const archive_open_file_failed&) {
        }
        try {
            if (::getuid() != nobody) ::chmod(folder_.Path().c_str(), 0500);
            file_write_archive refused(fresh.c_str(), create_new);
            return false;
        } catch (const archive_create_file_failed&) {
            return true;
        }
    }));
    ::chmod(folder_.Path().c_str(), 0755);
}

TEST_F(FileArchive, AnOpenFileWhoseSizeCannotBeToldIsClosedAgain) {
    const std::string path = File("abc");
    const int next = ::dup(STDERR_FILENO);
    ::close(next);
    {
        const FailingCall broken(FailingCall::fstat);
        ExpectBareFailure<archive_stat_file_failed>([&] { file_read_archive(path.c_str()); });
        ExpectBareFailure<archive_stat_file_failed>([&] { file_write_archive(path.c_str()); });
        ExpectBareFailure<archive_stat_file_failed>([&] { file_read_write_archive(path.c_str()); });
    }
    EXPECT_EQ(::fcntl(next, F_GETFD), -1);
    EXPECT_EQ(file_read_archive(path.c_str()).size(), 3u);
}

TEST_F(FileArchive, PathsAreUtf8) {
    const std::string path = Path("caf\xC3\xA9-\xF0\x9F\x98\x80");
    file_write_archive out(path.c_str(), create_new);
    write_all(out, {"x", 1});
    EXPECT_EQ(ReadFile(path), "x");
}

TEST_F(FileArchive, PathViewNeedsNoTerminator) {
    const std::string path = File("abc") + "tail";
    file_read_archive in(nuo::string_ref(path.data(), path.size() - 4));
    EXPECT_EQ(in.size(), 3u);
}

TEST_F(FileArchive, IsClosedOnExec) {
    const std::string path = File("abc");
    file_read_archive in(path.c_str());
    bool found = false;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        if (std::filesystem::read_symlink(entry.path(), ignored) != path) continue;
        const int descriptor = std::stoi(entry.path().filename().string());
        EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
        found = true;
    }
    EXPECT_TRUE(found);
}

TEST_F(FileArchive, ClosesTheFile) {
    const auto open_files = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const std::string path = File("abc");
    const auto before = open_files();
    {
        file_read_archive in(path.c_str());
        file_read_write_archive both(path.c_str());
        EXPECT_EQ(open_files(), before + 2);
    }
    EXPECT_EQ(open_files(), before);
}

TEST_F(FileArchive, ReadOnAnEmptyFileGivesNothing) {
    file_read_archive in(File("").c_str());
    nuo::byte target[4];
    EXPECT_EQ(in.read({target, 4}), target);
    EXPECT_FALSE(in.readable());
}

TEST_F(FileArchive, FileCutBySomebodyElseEndsTheReading) {
    const std::string path = File("abcdef");
    file_read_archive in(path.c_str());
    in.seek(4);
    ASSERT_EQ(::truncate(path.c_str(), 2), 0);
    EXPECT_TRUE(in.readable());
    nuo::byte target[4];
    EXPECT_EQ(in.read({target, 4}), target);
    EXPECT_FALSE(in.readable());
    EXPECT_EQ(in.size(), 4u);
}

TEST_F(FileArchive, FileCutWithinTheReadGivesWhatIsThere) {
    const std::string path = File("abcdef");
    file_read_archive in(path.c_str());
    ASSERT_EQ(::truncate(path.c_str(), 2), 0);
    nuo::byte target[6];
    EXPECT_EQ(read_some(in, {target, 6}), target + 2);
    EXPECT_FALSE(in.readable());
}

TEST_F(FileArchive, WriteBehindTheEndLeavesAHoleOfZeros) {
    const std::string path = File("ab");
    file_write_archive out(path.c_str());
    EXPECT_EQ(out.seek(4), 4u);
    write_all(out, {"x", 1});
    EXPECT_EQ(out.size(), 5u);
    EXPECT_EQ(ReadFile(path), std::string("ab\0\0x", 5));
}

TEST_F(FileArchive, EmptyWriteBehindTheEndExtends) {
    const std::string path = File("ab");
    file_write_archive out(path.c_str());
    out.seek(4);
    out.write({});
    EXPECT_EQ(out.size(), 4u);
    EXPECT_EQ(ReadFile(path).size(), 4u);
}

/// Runs with files limited to 8 bytes, as on a full disk.
bool WithFullDisk(const std::function<bool()>& body) {
    return TrueInChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{8, 8};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && body();
    });
}

TEST_F(FileArchive, FullDiskRaisesAtTheWriteAndKeepsTheOldLength) {
    const std::string path = File("abcd");
    EXPECT_TRUE(WithFullDisk([&] {
        file_read_write_archive both(path.c_str());
        both.seek(2);
        try {
            write_all(both, {"0123456789", 10});
            return false;
        } catch (const archive_append_failed&) {
            return both.size() == 4 && ReadFile(path).size() == 4;
        }
    }));
}

TEST_F(FileArchive, FullDiskRaisesAtTruncateAndAtAViewBehindTheEnd) {
    const std::string path = File("abcd");
    EXPECT_TRUE(WithFullDisk([&] {
        file_write_archive out(path.c_str());
        int failures = 0;
        try {
            out.truncate(100);
        } catch (const nuo::context_exception<archive_append_failed>&) {
            ++failures;
        }
        try {
            out.view_wr({0, 100});
        } catch (const archive_append_failed&) {
            ++failures;
        }
        return failures == 2 && out.size() == 4 && out.truncate(8) == 8;
    }));
}

TEST_F(FileArchive, LengthsThatNoFileHasAreRefused) {
    file_write_archive out(File("abcd").c_str());
    EXPECT_THROW(out.truncate(~0ull), archive_append_failed);
    out.seek(~0ull - 1);
    EXPECT_THROW(write_all(out, {"abcd", 4}), archive_append_failed);
    EXPECT_EQ(out.size(), 4u);
}

TEST_F(FileArchive, ViewShowsTheWantedBytesAtAnyOffset) {
    std::string bytes(10000, 'x');
    bytes.replace(5000, 3, "abc");
    file_read_archive in(File(bytes).c_str());
    EXPECT_TRUE(in.viewable());
    const view_ptr view = in.view_rd({5000, 5003});
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->offset(), 5000u);
    EXPECT_EQ(view->size(), 3u);
    EXPECT_EQ(std::string(view->data().first, view->data().last), "abc");
}

TEST_F(FileArchive, ViewThatCannotBeMappedIsAFailureToOpen) {
    file_read_write_archive both(File("abc").c_str());
    {
        const FailingCall broken(FailingCall::mmap);
        ExpectBareFailure<archive_open_file_failed>([&] { both.view_rd({0, 3}); });
        ExpectBareFailure<archive_open_file_failed>([&] { both.view_wr({0, 3}); });
        EXPECT_EQ(both.view_rd({3, 3})->size(), 0u);
    }
    EXPECT_EQ(both.view_rd({0, 3})->data().first[1], 'b');
}

TEST_F(FileArchive, ReadViewIsCutToTheSize) {
    file_read_archive in(File("abcdef").c_str());
    EXPECT_EQ(in.view_rd({4, 100})->size(), 2u);
    EXPECT_EQ(in.view_rd({6, 100})->size(), 0u);
    EXPECT_EQ(in.view_rd({90, 100})->size(), 0u);
    EXPECT_TRUE(in.view_rd({3, 3})->data().empty());
    EXPECT_TRUE(in.view_rd({3, 1})->data().empty());
}

TEST_F(FileArchive, ViewOutlivesTheArchive) {
    auto in = std::make_unique<file_read_archive>(File("abc").c_str());
    const view_ptr view = in->view_rd({0, 3});
    in.reset();
    EXPECT_EQ(view->data().first[2], 'c');
}

TEST_F(FileArchive, WriteViewExtendsTheFile) {
    const std::string path = File("ab");
    file_read_write_archive both(path.c_str());
    {
        const view_ptr view = both.view_wr({1, 5});
        ASSERT_EQ(view->size(), 4u);
        view->data().first[3] = 'z';
    }
    EXPECT_EQ(both.size(), 5u);
    EXPECT_EQ(ReadFile(path), std::string("ab\0\0z", 5));
    EXPECT_EQ(both.view_rd({4, 5})->data().first[0], 'z');
}

TEST_F(FileArchive, NegativeOffsetFailsTheNumericConversion) {
    file_read_write_archive both(File("ab").c_str());
    EXPECT_THROW(both.view_rd({-1, 2}), boost::numeric::negative_overflow);
    EXPECT_THROW(both.view_rd({0, -2}), boost::numeric::negative_overflow);
    EXPECT_THROW(both.view_wr({-1, 2}), boost::numeric::negative_overflow);
}

}  // namespace
