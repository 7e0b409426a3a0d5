#include "velmor/vfs/zip_writer.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include <ctime>

#include "nuo/common/file_archive.h"
#include "vfs/fixed_clock.h"
#include "vfs/zip_fixture.h"

namespace {

using namespace vfs_tests;
using testing::ElementsAre;
using testing::IsEmpty;

// Monday, 6 May 2024, 07:08:10 in the zone of the tests, and as headers tell it.
constexpr std::time_t kNow = 1714979290;
const std::string kDosNow = U16(7 << 11 | 8 << 5 | 5) + U16(44 << 9 | 5 << 5 | 6);

class ZipWriterTest : public ZipTest {
protected:
    FixedClock clock_{kNow, "UTC"};
};

std::uint32_t Crc(std::string_view text) {
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
}

TEST_F(ZipWriterTest, AnEmptyZipIsItsEndRecord) {
    Open("").commit();
    EXPECT_EQ(Content(), std::string("PK\x05\x06\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 22));
}

TEST_F(ZipWriterTest, NewEntriesByteForByte) {
    fs::ZipFs& files = Open("");
    ASSERT_EQ(files.createDir("dir"), fs::er_ok);
    WriteFile(files, "dir/a.txt", "hello hello hello");
    files.commit();
    const std::string packed = RawDeflate("hello hello hello", 1);
    EXPECT_EQ(Content(), [&](const std::string& time) {
        const std::string sizes = U32(Crc("hello hello hello")) +
                                  U32(static_cast<std::uint32_t>(packed.size())) + U32(17);
        const std::string dirEntry = std::string("PK\x03\x04\x14\0\0\x08\0\0", 10) + time + U32(0) +
                                     U32(0) + U32(0) + U16(3) + U16(0) + "dir";
        const std::string fileEntry = std::string("PK\x03\x04\x14\0\x06\x08\x08\0", 10) + time +
                                      sizes + U16(9) + U16(0) + "dir/a.txt" + packed;
        const std::string directory =
            std::string("PK\x01\x02\x14\0\x14\0\0\x08\0\0", 12) + time + U32(0) + U32(0) + U32(0) +
            U16(3) + U16(0) + U16(0) + U16(0) + U16(0) + U32(0x10) + U32(0) + "dir" +
            std::string("PK\x01\x02\x14\0\x14\0\x06\x08\x08\0", 12) + time + sizes + U16(9) +
            U16(0) + U16(0) + U16(0) + U16(0) + U32(0) + U32(33) + "dir/a.txt";
        const auto start = static_cast<std::uint32_t>(dirEntry.size() + fileEntry.size());
        return dirEntry + fileEntry + directory +
               std::string("PK\x05\x06\0\0\0\0\x02\0\x02\0", 12) +
               U32(static_cast<std::uint32_t>(directory.size())) + U32(start) + U16(0);
    }(kDosNow));
}

TEST_F(ZipWriterTest, ChangingNothingRewritesTheSameEntriesPlainly) {
    ZipEntry first = Deflated("z/first", "some text");
    first.extra = "extra";
    first.comment = "comment";
    ZipEntry second = Stored("a", "stored");
    ZipEntry folder = Folder("folder/");
    Open(Zip({first, second, folder}, "of the whole"), true);
    Close();
    first.extra.clear();
    first.comment.clear();
    EXPECT_EQ(Content(), Zip({first, second, folder}));
}

TEST_F(ZipWriterTest, AttributesAreReducedToTheDirectoryBit) {
    ZipEntry file = Stored("a", "text");
    file.attributes = 0x81A40020;
    ZipEntry folder = Folder("b");
    folder.attributes = 0x41ED0010;
    Open(Zip({file, folder})).commit();
    file.attributes = 0;
    folder.attributes = 0x10;
    EXPECT_EQ(Content(), Zip({file, folder}));
}

TEST_F(ZipWriterTest, UntouchedEntriesAreCopiedAsBytes) {
    // No inflater would take these bytes: they are not looked at.
    ZipEntry entry = Stored("a", "\x07 no deflate stream at all");
    entry.method = 8;
    entry.crc = 1;
    entry.uncompressedSize = 2;
    Open(Zip({entry})).commit();
    EXPECT_EQ(Content(), Zip({entry}));
}

TEST_F(ZipWriterTest, EntriesThatWereOnlyReadAreCopiedAsBytes) {
    const std::string zip = Zip({Deflated("a", std::string(10000, 'x'))});
    fs::ZipFs& files = Open(zip);
    ReadFile(files, "a");
    files.commit();
    EXPECT_EQ(Content(), zip);
}

TEST_F(ZipWriterTest, FoldersWithoutAnEntryAreNotWritten) {
    const std::string zip = Zip({Stored("a/b/c", "text")});
    Open(zip).commit();
    EXPECT_EQ(Content(), zip);
}

TEST_F(ZipWriterTest, EntriesKeepTheirOrderAndNewOnesComeBehind) {
    fs::ZipFs& files = Open(Zip({Stored("z", "1"), Stored("a", "2")}));
    WriteFile(files, "m", "3");
    WriteFile(files, "b", "4");
    WriteFile(files, "a", "5");
    files.commit();
    const std::string content = Content();
    std::string order;
    for (std::size_t at = 0; (at = content.find("PK\x01\x02", at)) != std::string::npos; ++at)
        order += content[at + 46];
    EXPECT_EQ(order, "zamb");
}

TEST_F(ZipWriterTest, TouchedEntriesAreDeflatedAndDated) {
    ZipEntry entry = Stored("a", "old text");
    entry.flags = 0x0808;
    fs::ZipFs& files = Open(Zip({entry}));
    WriteFile(files, "a", "new");
    files.commit();
    const std::string packed = RawDeflate("new", 1);
    EXPECT_EQ(Content(), [&](const std::string& time) {
        // The sizes stand in the header now, and the method tells what was done.
        const std::string common = U16(0x0800) + U16(8) + time + U32(Crc("new")) +
                                   U32(static_cast<std::uint32_t>(packed.size())) + U32(3) +
                                   U16(1) + U16(0);
        const std::string local = "PK\x03\x04" + U16(20) + common + "a" + packed;
        const std::string central = "PK\x01\x02" + U16(20) + U16(20) + common + U16(0) + U16(0) +
                                    U16(0) + U32(0) + U32(0) + "a";
        return local + central +
               EndRecord(1, static_cast<std::uint32_t>(central.size()),
                         static_cast<std::uint32_t>(local.size()));
    }(kDosNow));
    EXPECT_EQ(ReadFile(Reopen(), "a"), "new");
}

TEST_F(ZipWriterTest, TheDescriptorFlagIsClearedOnUntouchedEntriesToo) {
    ZipEntry entry = Deflated("a", "text");
    entry.flags = 0xFFFF;
    Open(Zip({entry})).commit();
    entry.flags = 0xFFF7;
    EXPECT_EQ(Content(), Zip({entry}));
}

TEST_F(ZipWriterTest, AnEmptyUntouchedFileIsStored) {
    ZipEntry entry = Stored("a", "");
    entry.method = 8;
    entry.crc = 7;
    entry.uncompressedSize = 9;
    Open(Zip({entry})).commit();
    EXPECT_EQ(Content(), Zip({Stored("a", "")}));
}

TEST_F(ZipWriterTest, AFileMadeByReadingIsWrittenEmpty) {
    fs::ZipFs& files = Open("");
    ASSERT_NE(files.create("a", fs::mode_read, fs::create_new), nullptr);
    files.commit();
    EXPECT_EQ(Content(), [&](const std::string& time) {
        const std::string common =
            U16(0x0806) + U16(0) + time + U32(0) + U32(0) + U32(0) + U16(1) + U16(0);
        return "PK\x03\x04" + U16(20) + common + "a" + "PK\x01\x02" + U16(20) + U16(20) + common +
               U16(0) + U16(0) + U16(0) + U32(0) + U32(0) + "a" + EndRecord(1, 47, 31);
    }(kDosNow));
    EXPECT_EQ(ReadFile(Reopen(), "a"), "");
}

TEST_F(ZipWriterTest, ATouchedFileThatIsEmptyComesBackEmpty) {
    fs::ZipFs& files = Open(Zip({Stored("a", "text")}));
    WriteFile(files, "a", "");
    files.commit();
    EXPECT_EQ(ReadFile(Reopen(), "a"), "");
}

TEST_F(ZipWriterTest, NewNamesAreNormalized) {
    fs::ZipFs& files = Open("");
    ASSERT_EQ(files.createDir("/a//"), fs::er_ok);
    WriteFile(files, "//a///b", "text");
    files.commit();
    const std::string content = Content();
    EXPECT_NE(content.find(std::string("\x01\0\0\0a", 5)), std::string::npos);
    EXPECT_NE(content.find(std::string("\x03\0\0\0a/b", 7)), std::string::npos);
    EXPECT_EQ(content.find("//"), std::string::npos);
}

TEST_F(ZipWriterTest, RemovedEntriesAreGone) {
    fs::ZipFs& files = Open(Zip({Stored("a", "1"), Folder("b"), Stored("b/c", "2")}));
    ASSERT_EQ(files.remove("b/c"), fs::er_ok);
    ASSERT_EQ(files.remove("b"), fs::er_ok);
    files.commit();
    EXPECT_EQ(Content(), Zip({Stored("a", "1")}));
}

TEST_F(ZipWriterTest, AShorterZipCutsTheArchive) {
    fs::ZipFs& files = Open(Zip({Stored("a", std::string(100000, 'x'))}));
    ASSERT_EQ(files.remove("a"), fs::er_ok);
    files.commit();
    EXPECT_EQ(Content(), EndRecord(0, 0, 0));
}

TEST_F(ZipWriterTest, TheTimeIsThatOfTheCommit) {
    fs::ZipFs& files = Open("");
    WriteFile(files, "a", "text");
    clock_.Set(kNow + 60);
    files.commit();
    EXPECT_EQ(Content().substr(10, 4), U16(7 << 11 | 9 << 5 | 5) + U16(44 << 9 | 5 << 5 | 6));
}

TEST_F(ZipWriterTest, TheTimeIsThatOfTheLocalClock) {
    const FixedClock west(kNow, "UTC+11");
    fs::ZipFs& files = Open("");
    WriteFile(files, "a", "text");
    files.commit();
    EXPECT_EQ(Content().substr(10, 4), U16(20 << 11 | 8 << 5 | 5) + U16(44 << 9 | 5 << 5 | 5));
}

TEST_F(ZipWriterTest, AClockBefore1980TellsTheFirstYearOfTheForm) {
    clock_.Set(0);
    fs::ZipFs& files = Open("");
    WriteFile(files, "a", "text");
    files.commit();
    EXPECT_EQ(Content().substr(10, 4), U16(0) + U16(1 << 5 | 1));
}

TEST_F(ZipWriterTest, ACommitCanFollowACommit) {
    fs::ZipFs& files = Open("");
    WriteFile(files, "a", "first");
    files.commit();
    WriteFile(files, "b", "second");
    files.commit();
    WriteFile(files, "a", "third");
    files.commit();
    const std::string thrice = Content();
    files.commit();
    EXPECT_EQ(Content(), thrice);
    fs::ZipFs& again = Reopen();
    EXPECT_EQ(ReadFile(again, "a"), "third");
    EXPECT_EQ(ReadFile(again, "b"), "second");
}

TEST_F(ZipWriterTest, WritesOfAnArchiveThatStayedOpenOverACommitAreKept) {
    fs::ZipFs& files = Open("");
    const auto archive = files.create("a", fs::mode_all, fs::create_new);
    WriteAll(*archive, "first");
    files.commit();
    WriteAll(*archive, " second");
    files.commit();
    archive->query_writer()->truncate(8);
    files.commit();
    EXPECT_EQ(ReadFile(Reopen(), "a"), "first se");
}

TEST_F(ZipWriterTest, ArchivesOfTheEntryLookTheSameAfterACommit) {
    fs::ZipFs& files = Open(Zip({Deflated("a", "0123456789")}));
    const auto archive = files.create("a", fs::mode_read, fs::open_existing);
    archive->query_random()->seek(5);
    files.commit();
    EXPECT_EQ(ReadAll(*archive), "56789");
}

TEST_F(ZipWriterTest, TheTemporaryFileIsRemoved) {
    fs::ZipFs& files = Open(Zip({Stored("a", "text")}));
    files.commit();
    EXPECT_THAT(Names(cache_, ""), IsEmpty());
    WriteFile(files, "a", "new");
    files.commit();
    EXPECT_THAT(Names(cache_, ""), ElementsAre("a"));
}

TEST_F(ZipWriterTest, TheCloseCommitsWhenItIsToldTo) {
    fs::ZipFs& files = Open("", true);
    WriteFile(files, "a", "text");
    EXPECT_EQ(Content(), "");
    files.sync();
    EXPECT_EQ(Content(), "");
    Close();
    EXPECT_EQ(ReadFile(Reopen(), "a"), "text");
}

TEST_F(ZipWriterTest, TheCloseDiscardsWhenItIsToldTo) {
    const std::string zip = Zip({Stored("a", "text")});
    fs::ZipFs& files = Open(zip, true);
    WriteFile(files, "a", "changed");
    files.setopt(fs::option_commit_on_close, nuo::any(false), nuo::any());
    Close();
    EXPECT_EQ(Content(), zip);
}

TEST_F(ZipWriterTest, AReadOnlyZipIsNotWrittenOnClose) {
    ReadOnlyArchive archive(Zip({Stored("a", "text")}));
    { fs::ZipFs files(archive, cache_, "test.zip", true); }
    EXPECT_THAT(Names(cache_, ""), IsEmpty());
}

TEST_F(ZipWriterTest, LargeEntriesComeBackWhole) {
    std::string content;
    for (std::uint32_t i = 0; content.size() < 1000000; ++i)
        content += std::to_string(i * 2654435761u);
    fs::ZipFs& files = Open("");
    WriteFile(files, "a", content);
    files.commit();
    EXPECT_LT(Content().size(), content.size());
    EXPECT_TRUE(ReadFile(Reopen(), "a") == content);
}

TEST_F(ZipWriterTest, TheCountOfEntriesIsCutTo16Bits) {
    fs::ZipFs& files = Open("");
    for (int i = 0; i < 65537; ++i)
        ASSERT_EQ(files.createDir(std::to_string(i).c_str()), fs::er_ok);
    files.commit();
    const std::string content = Content();
    EXPECT_EQ(content.substr(content.size() - 14, 4), std::string("\x01\0\x01\0", 4));
    EXPECT_THAT(Names(Reopen(), ""), ElementsAre("0"));
}

}  // namespace
