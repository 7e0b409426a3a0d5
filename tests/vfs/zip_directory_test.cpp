#include "velmor/vfs/zip_directory.h"

#include <gmock/gmock.h>

#include "velmor/vfs/zip_errors.h"
#include "vfs/zip_fixture.h"

namespace {

using namespace vfs_tests;
using testing::ElementsAre;
using testing::IsEmpty;

using ZipDirectoryTest = ZipTest;

constexpr const char* no_end = "end central dir signature is not found";

TEST_F(ZipDirectoryTest, ReadsBytesWrittenByHand) {
    const std::string zip(
        "PK\x03\x04\x14\0\0\0\0\0\0\x60\x21\x5a\xac\x2a\x93\xd8\x02\0\0\0\x02\0\0\0\x05\0\0\0"
        "a.txthi"
        "PK\x01\x02\x14\0\x14\0\0\0\0\0\0\x60\x21\x5a\xac\x2a\x93\xd8\x02\0\0\0\x02\0\0\0\x05\0"
        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "a.txt"
        "PK\x05\x06\0\0\0\0\x01\0\x01\0\x33\0\0\0\x25\0\0\0\0\0",
        30 + 7 + 46 + 5 + 22);
    fs::ZipFs& files = Open(zip);
    EXPECT_THAT(Names(files, ""), ElementsAre("a.txt"));
    EXPECT_EQ(files.state("a.txt").size, 2u);
    EXPECT_EQ(ReadFile(files, "a.txt"), "hi");
}

TEST_F(ZipDirectoryTest, AnArchiveOfSizeZeroIsAnEmptyZip) {
    EXPECT_THAT(Names(Open(""), ""), IsEmpty());
}

TEST_F(ZipDirectoryTest, AnArchiveLeftAtItsEndIsReadAllTheSame) {
    nuo::archive::mem_read_write_archive archive(Buffer(Zip({Stored("a", "text")})));
    archive.seek(archive.size());
    fs::ZipFs files(archive, cache_, "test.zip", false);
    EXPECT_EQ(ReadFile(files, "a"), "text");
}

TEST_F(ZipDirectoryTest, AnEmptyDirectoryIsAnEmptyZip) {
    EXPECT_THAT(Names(Open(EndRecord(0, 0, 0)), ""), IsEmpty());
}

TEST_F(ZipDirectoryTest, NoEndRecordRaises) {
    for (const std::size_t size : {1u, 3u, 4u, 21u, 22u, 70000u})
        EXPECT_EQ(OpeningRaises<fs::bad_end_central_dir_signature>(std::string(size, 'x')), no_end);
    EXPECT_EQ(OpeningRaises<fs::bad_end_central_dir_signature>("PK\x05"), no_end);
}

TEST_F(ZipDirectoryTest, AnEndRecordThatIsCutRaises) {
    const std::string end = EndRecord(0, 0, 0);
    for (std::size_t size = 4; size < 20; ++size)
        EXPECT_EQ(OpeningRaises<fs::bad_end_central_dir_signature>(end.substr(0, size)),
                  "end central dir record is cut short");
    // The length of the comment is not looked at.
    EXPECT_THAT(Names(Open(end.substr(0, 20)), ""), IsEmpty());
}

TEST_F(ZipDirectoryTest, ACommentOf1000BytesIsAllowed) {
    EXPECT_EQ(ReadFile(Open(Zip({Stored("a", "text")}, std::string(1000, 'c'))), "a"), "text");
}

TEST_F(ZipDirectoryTest, TheLongestCommentReachesTheEndOfTheSearch) {
    const std::vector<ZipEntry> entries{Stored("a", "text")};
    EXPECT_EQ(ReadFile(Open(Zip(entries, std::string(65536 - 22, 'c'))), "a"), "text");
    EXPECT_EQ(OpeningRaises<fs::bad_end_central_dir_signature>(
                  Zip(entries, std::string(65536 - 21, 'c'))),
              no_end);
}

TEST_F(ZipDirectoryTest, TheLastEndRecordWins) {
    const std::string inner = Zip({Stored("inner", "1")});
    EXPECT_THAT(Names(Open(Zip({Stored("outer", inner)})), ""), ElementsAre("outer"));
}

TEST_F(ZipDirectoryTest, ADirectoryBehindTheEndOfTheArchiveRaises) {
    const ZipEntry entry = Stored("a", "text");
    const std::string local = LocalHeader(entry) + entry.data;
    const std::string central = CentralHeader(entry, 0);
    const auto size = static_cast<std::uint32_t>(central.size());
    const auto start = static_cast<std::uint32_t>(local.size());
    const auto opening = [&](std::uint32_t directorySize, std::uint32_t offset) {
        return OpeningRaises<fs::bad_central_dir_offset_or_size>(
            local + central + EndRecord(1, directorySize, offset));
    };
    EXPECT_EQ(opening(size, 0xFFFFFFFF), "");
    EXPECT_EQ(opening(0xFFFFFFFF, start), "");
    EXPECT_EQ(opening(0xFFFFFFFF, 0xFFFFFFFF), "");
    EXPECT_EQ(opening(size + 23, start), "");
}

TEST_F(ZipDirectoryTest, AnArchiveThatGivesFewerBytesThanItTellsRaises) {
    class Short : public nuo::archive::mem_read_write_archive {
    public:
        using mem_read_write_archive::mem_read_write_archive;
        std::uint64_t size() override { return mem_read_write_archive::size() + 5; }
    } archive(Buffer("PK\x05\x06"));
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>(
                  [&] { fs::ZipFs(archive, cache_, "test.zip", false); }),
              "");
}

TEST_F(ZipDirectoryTest, ADirectoryThatCannotBeReadWholeRaises) {
    // Tells the truth about its size, and ends early where the directory stands.
    class Holed : public nuo::archive::mem_read_write_archive {
    public:
        using mem_read_write_archive::mem_read_write_archive;
        nuo::byte* read(nuo::archive::byte_range range) override {
            if (offset() == 0) range.last = range.first + std::min<std::uint64_t>(range.size(), 10);
            return ended_ ? range.first : mem_read_write_archive::read(range);
        }
        bool readable() override { return !ended_ && mem_read_write_archive::readable(); }
        std::uint64_t seek(std::uint64_t position) override {
            ended_ = position == 0 && seeks_++ > 0;
            return mem_read_write_archive::seek(position);
        }

    private:
        bool ended_ = false;
        int seeks_ = 0;
    } archive(Buffer(CentralHeader(Stored("a", ""), 0) + EndRecord(1, 47, 0)));
    EXPECT_EQ(RaisedText<fs::bad_central_dir_offset_or_size>(
                  [&] { fs::ZipFs(archive, cache_, "test.zip", false); }),
              "");
}

TEST_F(ZipDirectoryTest, AWrongCentralSignatureRaises) {
    std::string zip = Zip({Stored("a", "text"), Stored("b", "text")});
    zip[zip.rfind("PK\x01\x02")] = 'X';
    EXPECT_EQ(OpeningRaises<fs::bad_central_file_header_signature>(zip), "");
}

TEST_F(ZipDirectoryTest, ACentralHeaderThatIsCutRaises) {
    const std::string central = CentralHeader(Stored("name", ""), 0);
    for (const std::size_t size : {3u, 45u, 49u})
        EXPECT_EQ(OpeningRaises<fs::bad_no_enough_head_content>(
                      central.substr(0, size) + EndRecord(1, static_cast<std::uint32_t>(size), 0)),
                  "")
            << size;
}

TEST_F(ZipDirectoryTest, MoreEntriesThanTheDirectoryHoldsRaise) {
    const std::string central = CentralHeader(Stored("a", ""), 0);
    EXPECT_EQ(OpeningRaises<fs::bad_no_enough_head_content>(
                  central + EndRecord(65535, static_cast<std::uint32_t>(central.size()), 0)),
              "");
}

TEST_F(ZipDirectoryTest, ExtraFieldsAndCommentsThatReachPastTheEndRaise) {
    for (const std::size_t field : {30u, 32u}) {
        std::string central = CentralHeader(Stored("a", ""), 0);
        central[field] = 1;
        EXPECT_EQ(OpeningRaises<fs::bad_no_enough_head_content>(
                      central + EndRecord(1, static_cast<std::uint32_t>(central.size()), 0)),
                  "");
    }
}

TEST_F(ZipDirectoryTest, ExtraFieldsAndCommentsAreSkipped) {
    ZipEntry entry = Stored("a", "text");
    entry.extra = "extra";
    entry.comment = "comment";
    fs::ZipFs& files = Open(Zip({entry, Stored("b", "more")}));
    EXPECT_EQ(ReadFile(files, "a"), "text");
    EXPECT_EQ(ReadFile(files, "b"), "more");
}

TEST_F(ZipDirectoryTest, TheLocalExtraFieldIsTakenToBeAsLongAsTheCentralOne) {
    ZipEntry local = Stored("a", "text");
    local.extra = "xx";
    const std::string head = LocalHeader(local) + local.data;
    const std::string central = CentralHeader(Stored("a", "text"), 0);
    fs::ZipFs& files = Open(head + central +
                            EndRecord(1, static_cast<std::uint32_t>(central.size()),
                                      static_cast<std::uint32_t>(head.size())));
    EXPECT_EQ(ReadFile(files, "a"), "xxte");
}

TEST_F(ZipDirectoryTest, TheLocalHeaderIsNeverRead) {
    std::string zip = Zip({Stored("a", "text")});
    zip.replace(0, 30, 30, '?');
    EXPECT_EQ(ReadFile(Open(zip), "a"), "text");
}

TEST_F(ZipDirectoryTest, DiskNumbersAreNotLookedAt) {
    std::string zip = Zip({Stored("a", "text")});
    zip.replace(zip.size() - 18, 6, "\7\7\7\7\7\7");
    EXPECT_EQ(ReadFile(Open(zip), "a"), "text");
}

TEST_F(ZipDirectoryTest, AnOffsetThatNoEntryCanHaveRaises) {
    const ZipEntry entry = Stored("a", "");
    for (const std::uint32_t offset : {0xFFFFFFFFu, 0xFFFFFFFFu - 31}) {
        const std::string central = CentralHeader(entry, offset);
        EXPECT_EQ(OpeningRaises<fs::bad_central_dir_offset_or_size>(
                      central + EndRecord(1, static_cast<std::uint32_t>(central.size()), 0)),
                  "");
    }
}

TEST_F(ZipDirectoryTest, TwoEntriesOfOneNameRaise) {
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(
                  Zip({Stored("a/b", "1"), Stored("x", ""), Stored("a/b", "2")})),
              "a/b");
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(Zip({Stored("a", "1"), Stored("/a", "2")})),
              "/a");
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(Zip({Folder("a/"), Folder("a")})), "a");
}

TEST_F(ZipDirectoryTest, AFileWhereAFolderIsRaises) {
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(Zip({Stored("a/b", ""), Stored("a", "")})),
              "a");
}

TEST_F(ZipDirectoryTest, AFolderWhereAFileIsRaises) {
    EXPECT_EQ(OpeningRaises<fs::not_all_parent_are_dir>(Zip({Stored("a", ""), Stored("a/b", "")})),
              "");
    EXPECT_EQ(
        OpeningRaises<fs::not_all_parent_are_dir>(Zip({Stored("a", ""), Stored("a/b/c", "")})), "");
}

TEST_F(ZipDirectoryTest, TheFirstFaultOfTheDirectoryIsTold) {
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(
                  Zip({Stored("z", ""), Stored("z", ""), Stored("a", ""), Stored("a", "")})),
              "z");
    EXPECT_EQ(OpeningRaises<fs::not_all_parent_are_dir>(
                  Zip({Stored("z", ""), Stored("z/z", ""), Stored("a", ""), Stored("a", "")})),
              "");
    std::string zip = Zip({Stored("a", ""), Stored("a", ""), Stored("b", "")});
    zip[zip.rfind("PK\x01\x02")] = 'X';
    EXPECT_EQ(OpeningRaises<fs::duplicated_file_name>(zip), "a");
}

TEST_F(ZipDirectoryTest, TheOrderOfTheEntriesDoesNotMatter) {
    const std::vector<std::string> names = {"p/\xC3\xA4", "p/b/x",         "p/b-c",         "p/a",
                                            "p/a\x80",    "p/long-name-1", "p/long-name-0", "p/b"};
    std::vector<ZipEntry> entries;
    for (const std::string& name : names)
        entries.push_back(name == "p/b" ? Folder(name) : Stored(name, name));
    fs::ZipFs& files = Open(Zip(entries));
    std::vector<std::string> listed;
    for (const fs::VfsNode& child : files.children("p"))
        listed.push_back(Text(child.path));
    EXPECT_THAT(listed,
                ElementsAre("\xC3\xA4", "a", "a\x80", "b", "b-c", "long-name-0", "long-name-1"));
    for (const std::string& name : names)
        EXPECT_EQ(name == "p/b" ? name : ReadFile(files, name), name);
}

TEST_F(ZipDirectoryTest, FoldersWithoutAnEntryAreMade) {
    fs::ZipFs& files = Open(Zip({Stored("a/b/c", "text"), Stored("a/d", "")}));
    EXPECT_THAT(Names(files, ""), ElementsAre("a"));
    EXPECT_THAT(Names(files, "a"), ElementsAre("b", "d"));
    EXPECT_EQ(files.state("a/b").state, fs::state_directory);
    EXPECT_EQ(ReadFile(files, "a/b/c"), "text");
}

TEST_F(ZipDirectoryTest, AFolderEntryMayFollowItsContent) {
    fs::ZipFs& files = Open(Zip({Stored("a/b", "text"), Folder("a/")}));
    EXPECT_THAT(Names(files, "a"), ElementsAre("b"));
}

TEST_F(ZipDirectoryTest, AttributesDecideWhatIsAFolder) {
    ZipEntry folder = Folder("folder");
    folder.attributes = 0xFFFFFFFF;
    ZipEntry file = Stored("file/", "text");
    file.attributes = 0xFFFFFFEF;
    fs::ZipFs& files = Open(Zip({folder, file}));
    EXPECT_EQ(files.state("folder").state, fs::state_directory);
    EXPECT_EQ(files.state("file").state, fs::state_file);
    EXPECT_EQ(ReadFile(files, "file"), "text");
}

TEST_F(ZipDirectoryTest, EntriesThatNameTheRootAreIgnored) {
    fs::ZipFs& files =
        Open(Zip({Stored("", "x"), Stored("/", "y"), Folder("//"), Stored("a", "")}));
    EXPECT_THAT(Names(files, ""), ElementsAre("a"));
    EXPECT_EQ(files.state("").state, fs::state_directory);
}

TEST_F(ZipDirectoryTest, EmptyPartsOfANameAreDropped) {
    fs::ZipFs& files = Open(Zip({Stored("/a//b", "text"), Stored("a/c", "more")}));
    EXPECT_THAT(Names(files, "a"), ElementsAre("b", "c"));
    EXPECT_EQ(ReadFile(files, "a/b"), "text");
}

TEST_F(ZipDirectoryTest, NamesAreTakenAsTheirBytesWhateverTheFlagsSay) {
    ZipEntry latin = Stored("M\xE4rz", "1");
    ZipEntry locked = Stored("b", "2");
    locked.flags = 0xFFFF;
    fs::ZipFs& files = Open(Zip({latin, locked}));
    EXPECT_EQ(ReadFile(files, "M\xE4rz"), "1");
    EXPECT_EQ(ReadFile(files, "b"), "2");
}

TEST_F(ZipDirectoryTest, NamesOfMoreThan256ComponentsRaise) {
    std::string name = "d";
    for (int i = 1; i < 256; ++i)
        name += "/d";
    EXPECT_EQ(ReadFile(Open(Zip({Stored(name, "deep")})), name), "deep");
    EXPECT_EQ(OpeningRaises<fs::archive_runtime_error>(Zip({Stored(name + "/d", "")})),
              "too many folders in the name:" + name + "/d");
}

TEST_F(ZipDirectoryTest, MoreFoldersThanAnyPackageHasRaise) {
    std::string tail;
    for (int i = 1; i < 256; ++i)
        tail += "/d";
    std::vector<ZipEntry> entries;
    for (int i = 0; i < 1000; ++i)
        entries.push_back(Stored(std::to_string(i) + tail, ""));
    EXPECT_EQ(ReadFile(Open(Zip(entries)), "999" + tail), "");
    for (int i = 1000; i < 1100; ++i)
        entries.push_back(Stored(std::to_string(i) + tail, ""));
    EXPECT_EQ(OpeningRaises<fs::archive_runtime_error>(Zip(entries)), "too many folders");
}

TEST_F(ZipDirectoryTest, ADirectoryMayBeLongerThanItsEntries) {
    const std::string central = CentralHeader(Folder("a"), 0);
    const std::string tail(400000, '\0');
    fs::ZipFs& files = Open(
        central + tail + EndRecord(1, static_cast<std::uint32_t>(central.size() + tail.size()), 0));
    EXPECT_THAT(Names(files, ""), ElementsAre("a"));
}

TEST_F(ZipDirectoryTest, AnArchiveThatCannotSeekRaises) {
    class Unseekable : public nuo::archive::mem_read_write_archive {
    public:
        nuo::archive::random* query_random() override { return nullptr; }
    } archive;
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>(
                  [&] { fs::ZipFs(archive, cache_, "test.zip", false); }),
              "");
}

TEST_F(ZipDirectoryTest, AnArchiveThatCannotBeReadMustBeEmpty) {
    nuo::archive::mem_write_archive archive;
    EXPECT_THAT(Names(*std::make_unique<fs::ZipFs>(archive, cache_, "a", false), ""), IsEmpty());
    archive.get_buffer() = Buffer(EndRecord(0, 0, 0));
    EXPECT_EQ(RaisedText<fs::archive_io_fatal_error>(
                  [&] { fs::ZipFs(archive, cache_, "test.zip", false); }),
              "");
}

}  // namespace
