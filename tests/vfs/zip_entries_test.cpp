#include "velmor/vfs/zip_entries.h"

#include <gmock/gmock.h>

#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/zip_errors.h"
#include "vfs/zip_fixture.h"

namespace {

using namespace vfs_tests;

using ZipEntriesTest = ZipTest;

// What the central header at this place tells of the data as they lie in the ZIP.
std::uint32_t DeflatedSize(const std::string& zip, std::size_t central) {
    std::uint32_t size = 0;
    zip.copy(reinterpret_cast<char*>(&size), sizeof size, central + 20);
    return size;
}

std::string Numbers(std::size_t size) {
    std::string text;
    for (std::uint32_t i = 0; text.size() < size; ++i)
        text += std::to_string(i * 2654435761u);
    text.resize(size);
    return text;
}

TEST_F(ZipEntriesTest, InflatesDeflatedEntries) {
    for (const std::size_t size : {0u, 1u, 65535u, 65536u, 65537u, 400000u}) {
        const std::string content = Numbers(size);
        EXPECT_TRUE(ReadFile(Open(Zip({Deflated("a", content)})), "a") == content) << size;
    }
}

TEST_F(ZipEntriesTest, OutputThatFillsTheBufferWithTheLastInputComesWhole) {
    const std::string content(65536 * 3, 'x');
    EXPECT_TRUE(ReadFile(Open(Zip({Deflated("a", content)})), "a") == content);
}

// Of what comes out of a ZIP only that counts which comes out whole.
TEST_F(ZipEntriesTest, EntriesThatFailTakeNothingFromTheOthers) {
    ZipEntry claims = Stored("claims", "0123456789");
    std::string zip =
        Zip({Stored("good", "text"), Deflated("bad", std::string(300 << 20, 'x')), claims});
    const std::size_t central = zip.rfind("claims") - 46;
    zip.replace(central + 20, 4, U32(0x3FFFFFFF));
    // The end of the deflate stream of "bad", which its data lacks then.
    const std::size_t bad = zip.rfind("bad") - 46;
    zip.replace(bad + 20, 4, U32(static_cast<std::uint32_t>(DeflatedSize(zip, bad) - 20)));
    fs::ZipFs& files = Open(zip);
    const auto why = [&](const char* name) {
        return RaisedText<fs::archive_runtime_error>(
            [&] { files.create(name, fs::mode_read, fs::open_existing); });
    };
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(why("bad"), "bad data, need more");
        EXPECT_EQ(why("claims"), "data lost.");
    }
    EXPECT_EQ(ReadFile(files, "good"), "text");
}

TEST_F(ZipEntriesTest, CopiesStoredEntries) {
    const std::string content = Numbers(200000);
    EXPECT_TRUE(ReadFile(Open(Zip({Stored("a", content)})), "a") == content);
}

TEST_F(ZipEntriesTest, AnyMethodButStoredIsInflated) {
    ZipEntry entry = Deflated("a", "text");
    entry.method = 99;
    EXPECT_EQ(ReadFile(Open(Zip({entry})), "a"), "text");
}

TEST_F(ZipEntriesTest, NoCompressedDataIsAnEmptyFile) {
    ZipEntry entry = Stored("a", "");
    entry.method = 8;
    EXPECT_EQ(ReadFile(Open(Zip({entry})), "a"), "");
}

TEST_F(ZipEntriesTest, TheChecksumIsNotLookedAt) {
    ZipEntry entry = Deflated("a", "text");
    entry.crc = 12345;
    EXPECT_EQ(ReadFile(Open(Zip({entry})), "a"), "text");
}

TEST_F(ZipEntriesTest, TheUncompressedSizeIsNotTrusted) {
    ZipEntry entry = Deflated("a", "text");
    entry.uncompressedSize = 0xFFFFFFFF;
    EXPECT_EQ(ReadFile(Open(Zip({entry})), "a"), "text");
}

TEST_F(ZipEntriesTest, BytesBehindTheEndOfTheStreamAreIgnored) {
    ZipEntry entry = Deflated("a", "text");
    entry.data += "more";
    EXPECT_EQ(ReadFile(Open(Zip({entry})), "a"), "text");
}

TEST_F(ZipEntriesTest, BadDataRaises) {
    ZipEntry entry = Stored("a", "\x07 no deflate stream");
    entry.method = 8;
    fs::ZipFs& files = Open(Zip({entry}));
    const auto read = [&] { files.create("a", fs::mode_read, fs::open_existing); };
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(read), "inflate bad data");
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(read), "inflate bad data");
}

TEST_F(ZipEntriesTest, AStreamThatIsCutRaises) {
    ZipEntry entry = Deflated("a", Numbers(300000));
    for (const std::size_t size : {1u, 1000u, 65536u, 100000u}) {
        ZipEntry cut = entry;
        cut.data.resize(size);
        fs::ZipFs& files = Open(Zip({cut}));
        EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                      [&] { files.create("a", fs::mode_read, fs::open_existing); }),
                  "bad data, need more")
            << size;
    }
}

TEST_F(ZipEntriesTest, DeflatedDataPastTheEndOfTheArchiveRaises) {
    std::string central = CentralHeader(Deflated("a", Numbers(5000)), 0);
    fs::ZipFs& files = Open(central + EndRecord(1, static_cast<std::uint32_t>(central.size()), 0));
    EXPECT_NE(files.state("a").state, fs::state_not_found);
    // What stands there instead of the data is the directory itself.
    EXPECT_NE(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("a", fs::mode_read, fs::open_existing); }),
              "");
}

TEST_F(ZipEntriesTest, StoredDataPastTheEndOfTheArchiveRaises) {
    const std::string central = CentralHeader(Stored("a", std::string(5000, 'x')), 0);
    fs::ZipFs& files = Open(central + EndRecord(1, static_cast<std::uint32_t>(central.size()), 0));
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("a", fs::mode_read, fs::open_existing); }),
              "data lost.");
}

TEST_F(ZipEntriesTest, ACacheThatCannotHoldTheFileRaises) {
    nuo::archive::mem_read_write_archive archive(Buffer(Zip({Stored("a/b", "text")})));
    fs::InMemory cache("read only", true);
    fs::ZipFs files(archive, cache, "test.zip", false);
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("a/b", fs::mode_read, fs::open_existing); }),
              "failed to create cached file.");
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("new", fs::mode_write, fs::create_new); }),
              "failed to create cached file.");
    EXPECT_EQ(files.state("new").state, fs::state_not_found);
}

TEST_F(ZipEntriesTest, AnEntryCannotLeadOutOfACacheOnTheDisk) {
    const DiskFolder folder;
    std::string inner = folder.path() + "/in";
    fs::LocalFs outer(folder.path().c_str());
    ASSERT_EQ(outer.createDir("in"), fs::er_ok);
    fs::LocalFs cache(inner.c_str());
    nuo::archive::mem_read_write_archive archive(Buffer(Zip({Stored("../out", "text")})));
    fs::ZipFs files(archive, cache, "test.zip", false);
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("../out", fs::mode_read, fs::open_existing); }),
              "failed to create cached file.");
    EXPECT_EQ(outer.state("out").state, fs::state_not_found);
}

TEST_F(ZipEntriesTest, TheCachedFileHasTheEntrysOwnPath) {
    fs::ZipFs& files = Open(Zip({Deflated("a/b/c", "text")}));
    EXPECT_EQ(cache_.state("a/b/c").state, fs::state_not_found);
    ReadFile(files, "a/b/c");
    EXPECT_EQ(ReadFile(cache_, "a/b/c"), "text");
}

TEST_F(ZipEntriesTest, AStaleCachedFileIsEmptiedFirst) {
    WriteFile(cache_, "a", "a longer text of an earlier object");
    WriteFile(cache_, "new", "stale");
    fs::ZipFs& files = Open(Zip({Stored("a", "short")}));
    EXPECT_EQ(ReadFile(files, "a"), "short");
    EXPECT_NE(files.create("new", fs::mode_write, fs::create_new), nullptr);
    EXPECT_EQ(ReadFile(files, "new"), "");
}

TEST_F(ZipEntriesTest, WritingAloneFetchesToo) {
    fs::ZipFs& files = Open(Zip({Deflated("a", "0123456789")}));
    WriteAll(*files.create("a", fs::mode_write, fs::open_existing), "ab");
    EXPECT_EQ(ReadFile(files, "a"), "ab23456789");
    EXPECT_EQ(files.state("a").size, 10u);
}

TEST_F(ZipEntriesTest, ACachedFileThatWasTakenAwayRaises) {
    fs::ZipFs& files = Open(Zip({Stored("a", "text")}));
    ReadFile(files, "a");
    ASSERT_EQ(cache_.remove("a"), fs::er_ok);
    EXPECT_EQ(RaisedText<fs::archive_runtime_error>(
                  [&] { files.create("a", fs::mode_read, fs::open_existing); }),
              "failed to open cached file.");
}

TEST_F(ZipEntriesTest, TheCachedFileGoesWithTheEntry) {
    fs::ZipFs& files = Open(Zip({Stored("a", "text"), Stored("b", "text")}));
    ReadFile(files, "a");
    WriteFile(cache_, "b", "of somebody else");
    EXPECT_EQ(files.remove("a"), fs::er_ok);
    EXPECT_EQ(files.remove("b"), fs::er_ok);
    EXPECT_EQ(cache_.state("a").state, fs::state_not_found);
    EXPECT_EQ(cache_.state("b").state, fs::state_file);
}

}  // namespace
