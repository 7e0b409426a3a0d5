#include <gmock/gmock.h>
#include <sys/resource.h>

#include <boost/numeric/conversion/cast.hpp>
#include <csignal>

#include "nuo/common/file_archive.h"
#include "nuo/common/multiplex.h"
#include "velmor/vfs/local_fs.h"
#include "vfs/zip_fixture.h"

// Commits that fail: in the cache, while the ZIP is put together, and while it is put back.

namespace {

using namespace vfs_tests;
using testing::ElementsAre;
using testing::IsEmpty;

// An archive in memory whose writes fail from a given byte on, as long as they are told to.
class FailingArchive : public nuo::archive::mem_read_write_archive {
public:
    using mem_read_write_archive::mem_read_write_archive;

    std::uint64_t room = ~std::uint64_t{0};

    const nuo::byte* write(nuo::archive::const_byte_range range) override {
        if (range.size() > room) NUO_RAISE(nuo::archive::archive_append_failed);
        room -= range.size();
        return mem_read_write_archive::write(range);
    }
};

// A cache whose temporary files take no more than `room` bytes and, on request, lose their tail.
class FailingCache : public fs::InMemory {
public:
    FailingCache() : InMemory("cache") {}

    std::uint64_t room = ~std::uint64_t{0};

    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override {
        auto file = InMemory::create(path, mode, flag);
        if (file == nullptr || !path.starts_with("TMP")) return file;
        return nuo::archive::make_archive<Temporary>(
            std::shared_ptr<nuo::archive::iarchive>(std::move(file)), room);
    }

private:
    using Form = nuo::archive::multiplex_owner<nuo::archive::multiplex_read_write_archive>;
    class Temporary : public Form {
    public:
        Temporary(std::shared_ptr<nuo::archive::iarchive> file, std::uint64_t& room)
            : Form(std::move(file)), room_(room) {}
        const nuo::byte* write(nuo::archive::const_byte_range range) override {
            if (range.size() > room_) NUO_RAISE(nuo::archive::archive_append_failed);
            return Form::write(range);
        }

    private:
        std::uint64_t& room_;
    };
};

std::vector<ZipEntry> SomeEntries() {
    return {Deflated("a", std::string(1000, 'a')), Stored("b", "untouched"), Stored("c", "old")};
}

class ZipFailureTest : public testing::Test {
protected:
    ZipFailureTest() {
        WriteFile(files_, "c", "new text");
        WriteFile(files_, "d", "made new");
    }

    std::string Raised() {
        return RaisedText<nuo::archive::archive_append_failed>([this] { files_.commit(); });
    }
    void ExpectWhole() {
        fs::InMemory cache("second");
        fs::ZipFs again(archive_, cache, "again.zip", false);
        EXPECT_EQ(ReadFile(again, "a"), std::string(1000, 'a'));
        EXPECT_EQ(ReadFile(again, "b"), "untouched");
        EXPECT_EQ(ReadFile(again, "c"), "new text");
        EXPECT_EQ(ReadFile(again, "d"), "made new");
    }
    std::vector<std::string> Temporaries() {
        std::vector<std::string> found;
        for (const std::string& name : Names(cache_, ""))
            if (name.starts_with("TMP")) found.push_back(name);
        return found;
    }

    FailingArchive archive_{Buffer(Zip(SomeEntries()))};
    FailingCache cache_;
    fs::ZipFs files_{archive_, cache_, "test.zip", false};
};

TEST_F(ZipFailureTest, AFullCacheLeavesTheArchiveAsItWas) {
    for (const std::uint64_t room : {0u, 20u, 40u}) {
        cache_.room = room;
        EXPECT_EQ(Raised(), "");
        EXPECT_EQ(Bytes(archive_), Zip(SomeEntries()));
        EXPECT_THAT(Temporaries(), IsEmpty());
    }
    cache_.room = ~std::uint64_t{0};
    files_.commit();
    ExpectWhole();
}

TEST_F(ZipFailureTest, HeadersStillFitTheArchiveAfterAFailure) {
    // Every entry before the last one has been written by then, at another place than before.
    cache_.room = 60;
    ASSERT_EQ(files_.remove("a"), fs::er_ok);
    EXPECT_EQ(Raised(), "");
    EXPECT_EQ(ReadFile(files_, "b"), "untouched");
    cache_.room = ~std::uint64_t{0};
    files_.commit();
    fs::InMemory cache("second");
    fs::ZipFs again(archive_, cache, "again.zip", false);
    EXPECT_THAT(Names(again, ""), ElementsAre("b", "c", "d"));
    EXPECT_EQ(ReadFile(again, "b"), "untouched");
}

TEST_F(ZipFailureTest, AFailureOfPuttingBackIsRepairedByTheNextCommit) {
    archive_.room = 0;
    EXPECT_EQ(Raised(), "");
    EXPECT_EQ(Temporaries().size(), 1u);
    // The archive is lost here; everything is read from the temporary file.
    archive_.get_buffer() = Buffer("garbage");
    EXPECT_EQ(ReadFile(files_, "b"), "untouched");
    EXPECT_EQ(ReadFile(files_, "c"), "new text");
    archive_.room = ~std::uint64_t{0};
    files_.commit();
    EXPECT_THAT(Temporaries(), IsEmpty());
    ExpectWhole();
}

TEST_F(ZipFailureTest, SecondFailuresOfPuttingBackKeepOneTemporaryFile) {
    archive_.room = 0;
    EXPECT_EQ(Raised(), "");
    WriteFile(files_, "b", "untouched");
    EXPECT_EQ(Raised(), "");
    EXPECT_EQ(Temporaries().size(), 1u);
    cache_.room = 10;
    EXPECT_EQ(Raised(), "");
    EXPECT_EQ(Temporaries().size(), 1u);
    archive_.room = cache_.room = ~std::uint64_t{0};
    files_.commit();
    EXPECT_THAT(Temporaries(), IsEmpty());
    ExpectWhole();
}

TEST_F(ZipFailureTest, ATemporaryFileThatLosesItsTailRaises) {
    // The size is told, the bytes behind the first ones are not there.
    class Losing : public fs::InMemory {
    public:
        Losing() : InMemory("losing") {}
        nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode,
                                         unsigned flag) override {
            auto file = InMemory::create(path, mode, flag);
            if (file == nullptr) return file;
            return nuo::archive::make_archive<File>(
                std::shared_ptr<nuo::archive::iarchive>(std::move(file)));
        }

    private:
        using Form = nuo::archive::multiplex_owner<nuo::archive::multiplex_read_write_archive>;
        class File : public Form {
        public:
            using Form::Form;
            bool readable() override { return offset() < 10; }
            nuo::byte* read(nuo::archive::byte_range range) override {
                range.last = range.first + std::min<std::uint64_t>(range.size(), 10 - offset());
                return Form::read(range);
            }
        };
    } cache;
    nuo::archive::mem_read_write_archive archive;
    fs::ZipFs files(archive, cache, "test.zip", false);
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>([&] { files.commit(); }), "");
}

TEST_F(ZipFailureTest, AnArchiveThatCannotBeCutShorterRaises) {
    class Uncut : public nuo::archive::mem_read_write_archive {
    public:
        std::uint64_t truncate(std::uint64_t size) override {
            return size < this->size() ? this->size() : mem_read_write_archive::truncate(size);
        }
    } archive;
    fs::InMemory cache("cache");
    fs::ZipFs files(archive, cache, "test.zip", false);
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    ASSERT_EQ(files.createDir("b"), fs::er_ok);
    files.commit();
    ASSERT_EQ(files.remove("b"), fs::er_ok);
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>([&] { files.commit(); }), "");
}

TEST_F(ZipFailureTest, ASourceThatGotShorterRaises) {
    archive_.get_buffer().resize(50);
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>([this] { files_.commit(); }), "");
    EXPECT_THAT(Temporaries(), IsEmpty());
}

TEST_F(ZipFailureTest, ACacheWithoutRoomForATemporaryFileRaises) {
    fs::InMemory cache("read only", true);
    nuo::archive::mem_read_write_archive archive;
    fs::ZipFs files(archive, cache, "test.zip", false);
    EXPECT_EQ(RaisedText<nuo::archive::create_failed>([&] { files.commit(); }),
              "failed to create temp file in directory:");
}

TEST_F(ZipFailureTest, TheCloseSwallowsWhatFails) {
    archive_.room = 0;
    {
        fs::InMemory cache("second");
        fs::ZipFs closing(archive_, cache, "closing.zip", true);
        WriteFile(closing, "c", "lost");
    }
    EXPECT_EQ(Bytes(archive_), Zip(SomeEntries()));
}

TEST_F(ZipFailureTest, OffsetsAbove32BitsRaise) {
    // An archive that lies about where it stands takes the place of 4 GiB of data.
    class Far : public fs::InMemory {
    public:
        Far() : InMemory("far") {}
        nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode,
                                         unsigned flag) override {
            auto file = InMemory::create(path, mode, flag);
            if (file == nullptr || !path.starts_with("TMP")) return file;
            return nuo::archive::make_archive<File>(
                std::shared_ptr<nuo::archive::iarchive>(std::move(file)));
        }

    private:
        using Form = nuo::archive::multiplex_owner<nuo::archive::multiplex_read_write_archive>;
        class File : public Form {
        public:
            using Form::Form;
            std::uint64_t offset() override { return Form::offset() + 0xFFFFFFFF; }
        };
    } cache;
    nuo::archive::mem_read_write_archive archive(Buffer(Zip({Stored("a", "text")})));
    fs::ZipFs files(archive, cache, "test.zip", false);
    EXPECT_THROW(files.commit(), boost::numeric::positive_overflow);
    EXPECT_EQ(Bytes(archive), Zip({Stored("a", "text")}));
}

TEST(ZipOnDiskTest, AFullDiskRaisesAndARetryRepairsTheFile) {
    const DiskFolder folder;
    const std::string path = folder.file("a.zip");
    WriteDisk(path, Zip({Stored("a", std::string(60000, 'a'))}));
    EXPECT_EQ(RunInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  nuo::archive::file_read_write_archive archive(path.c_str());
                  fs::InMemory cache("cache");
                  fs::ZipFs files(archive, cache, "a.zip", false);
                  std::string noise;
                  for (std::uint32_t i = 0; noise.size() < 100000; ++i)
                      noise += std::to_string(i * 2654435761u);
                  WriteFile(files, "b", noise);
                  rlimit limit{70000, RLIM_INFINITY};
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
                  RaisedText<nuo::archive::archive_append_failed>([&] { files.commit(); });
                  limit.rlim_cur = RLIM_INFINITY;
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
                  files.commit();
                  return ReadFile(files, "b") == noise && !testing::Test::HasFailure();
              }),
              0);
    nuo::archive::file_read_archive archive(path.c_str());
    fs::InMemory cache("cache");
    fs::ZipFs files(archive, cache, "a.zip", false);
    EXPECT_EQ(ReadFile(files, "a"), std::string(60000, 'a'));
    EXPECT_GE(files.state("b").size, 100000u);
}

TEST(ZipOnDiskTest, AFullCacheOnTheDiskLeavesTheFileAsItWas) {
    const DiskFolder folder;
    const std::string path = folder.file("a.zip");
    const std::string zip = Zip({Stored("a", std::string(60000, 'a'))});
    WriteDisk(path, zip);
    EXPECT_EQ(RunInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  nuo::archive::file_read_write_archive archive(path.c_str());
                  fs::LocalFs cache(folder.path().c_str());
                  fs::ZipFs files(archive, cache, "a.zip", false);
                  const rlimit limit{50000, 50000};
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
                  RaisedText<nuo::archive::archive_append_failed>([&] { files.commit(); });
                  return !testing::Test::HasFailure();
              }),
              0);
    EXPECT_EQ(ReadDisk(path), zip);
    fs::LocalFs left(folder.path().c_str());
    EXPECT_THAT(Names(left, ""), ElementsAre("a.zip"));
}

}  // namespace
