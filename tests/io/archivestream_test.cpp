#include "assets/serialization/io/archivestream.h"

#include <limits>

#include "io/memory_source.h"

namespace {

using halvern_tests::Bytes;
using halvern_tests::MemorySource;
using halvern_tests::Text;
using korvanet::platform::assets::MemoryStream;
using korvanet::platform::assets::OwnReadArchiveStream;
using korvanet::platform::assets::OwnReadWriteArchiveStream;
using korvanet::platform::assets::OwnWriteArchiveStream;
using korvanet::platform::assets::ReadArchiveStream;
using korvanet::platform::assets::ReadWriteArchiveStream;
using korvanet::platform::assets::WriteArchiveStream;
using korvanet::platform::core::IDataReader;
using korvanet::platform::core::SeekOrigin;

std::string ReadText(IDataReader& stream, std::size_t length) {
    std::string text(length, '?');
    text.resize(stream.Read(text.data(), length));
    return text;
}

TEST(ReadArchiveStream, ReadsUpToTheEnd) {
    MemorySource source("hello");
    ReadArchiveStream stream(&source.archive());
    EXPECT_TRUE(stream.IsOpen());
    EXPECT_TRUE(stream.CanRead());
    EXPECT_EQ(ReadText(stream, 3), "hel");
    EXPECT_EQ(stream.Tell(), 3U);
    EXPECT_EQ(ReadText(stream, 10), "lo");
    EXPECT_FALSE(stream.CanRead());
    EXPECT_EQ(ReadText(stream, 1), "");
}

TEST(ReadArchiveStream, ReadsExactlyOrTellsThatItCouldNot) {
    MemorySource source("hello");
    ReadArchiveStream stream(&source.archive());
    char text[6] = {};
    EXPECT_TRUE(stream.ReadExact(text, 5));
    EXPECT_STREQ(text, "hello");
    EXPECT_TRUE(stream.ReadExact(text, 0));
    EXPECT_TRUE(stream.ReadExact(nullptr, 0));
    EXPECT_FALSE(stream.ReadExact(text, 1));
}

// Gives one byte at a time.
class Dribble : public nuo::archive::buffer_in {
public:
    using buffer_in::buffer_in;
    nuo::byte* read(nuo::archive::byte_range range) override {
        if (!range.empty()) range.last = range.first + 1;
        return buffer_in::read(range);
    }
};

TEST(ReadArchiveStream, ReadsExactlyFromAnArchiveThatGivesLittleAtATime) {
    const nuo::buffer<nuo::byte> bytes = Bytes("hello");
    Dribble archive(bytes);
    ReadArchiveStream stream(&archive);
    char text[6] = {};
    EXPECT_TRUE(stream.ReadExact(text, 5));
    EXPECT_STREQ(text, "hello");
}

TEST(ReadArchiveStream, SeeksFromStartPositionAndEndWithinTheData) {
    MemorySource source("hello");
    ReadArchiveStream stream(&source.archive());
    EXPECT_EQ(stream.Seek(2, SeekOrigin::kBegin), 2U);
    EXPECT_EQ(stream.Seek(1, SeekOrigin::kCurrent), 3U);
    EXPECT_EQ(stream.Seek(-2, SeekOrigin::kCurrent), 1U);
    EXPECT_EQ(stream.Seek(-1, SeekOrigin::kEnd), 4U);
    EXPECT_EQ(stream.Seek(100, SeekOrigin::kBegin), 5U);
    EXPECT_EQ(stream.Seek(-100, SeekOrigin::kCurrent), 0U);
    EXPECT_EQ(stream.Seek(std::numeric_limits<std::int64_t>::min(), SeekOrigin::kEnd), 0U);
    EXPECT_EQ(stream.Seek(std::numeric_limits<std::int64_t>::max(), SeekOrigin::kEnd), 5U);
}

TEST(ReadArchiveStream, StaysWhereItIsForAnOriginThatDoesNotExist) {
    MemorySource source("hello");
    ReadArchiveStream stream(&source.archive());
    stream.Seek(2, SeekOrigin::kBegin);
    EXPECT_EQ(stream.Seek(1, static_cast<SeekOrigin>(7)), 2U);
}

TEST(ReadArchiveStream, StaysOpenWhenItIsClosed) {
    MemorySource source("hello");
    ReadArchiveStream stream(&source.archive());
    stream.Close();
    EXPECT_TRUE(stream.IsOpen());
    EXPECT_EQ(ReadText(stream, 5), "hello");
}

TEST(ReadArchiveStream, IsNotOpenAndReadsNothingWithoutAnArchive) {
    ReadArchiveStream stream(nullptr);
    char byte = 0;
    EXPECT_FALSE(stream.IsOpen());
    EXPECT_FALSE(stream.CanRead());
    EXPECT_EQ(stream.Read(&byte, 1), 0U);
    EXPECT_FALSE(stream.ReadExact(&byte, 1));
    EXPECT_EQ(stream.Seek(5, SeekOrigin::kBegin), 0U);
    EXPECT_EQ(stream.Tell(), 0U);
}

TEST(WriteArchiveStream, WritesWholeRangesAndAnswersTheirLength) {
    nuo::archive::mem_write_archive archive;
    WriteArchiveStream stream(&archive);
    EXPECT_TRUE(stream.IsOpen());
    EXPECT_TRUE(stream.CanWrite());
    EXPECT_EQ(stream.Write("hello", 5), 5U);
    EXPECT_TRUE(stream.WriteExact("!", 1));
    EXPECT_TRUE(stream.WriteExact(nullptr, 0));
    EXPECT_EQ(stream.Tell(), 6U);
    EXPECT_EQ(Text(archive.get_buffer()), "hello!");
}

TEST(WriteArchiveStream, SeeksBehindTheEndButNotBeforeTheStart) {
    nuo::archive::mem_write_archive archive;
    WriteArchiveStream stream(&archive);
    EXPECT_EQ(stream.Seek(3, SeekOrigin::kBegin), 3U);
    stream.Write("x", 1);
    EXPECT_EQ(Text(archive.get_buffer()), std::string("\0\0\0x", 4));
    EXPECT_EQ(stream.Seek(-10, SeekOrigin::kCurrent), 0U);
    EXPECT_EQ(stream.Seek(2, SeekOrigin::kEnd), 6U);
}

TEST(WriteArchiveStream, TakesNothingWithoutAnArchive) {
    WriteArchiveStream stream(nullptr);
    EXPECT_FALSE(stream.IsOpen());
    EXPECT_FALSE(stream.CanWrite());
    EXPECT_EQ(stream.Write("x", 1), 0U);
    EXPECT_FALSE(stream.WriteExact("x", 1));
    EXPECT_EQ(stream.Seek(1, SeekOrigin::kBegin), 0U);
}

TEST(ReadWriteArchiveStream, ReadsWhatItWroteAndCutsAtThePosition) {
    nuo::archive::mem_read_write_archive archive;
    ReadWriteArchiveStream stream(&archive);
    stream.Write("hello", 5);
    EXPECT_FALSE(stream.CanRead());
    EXPECT_EQ(stream.Seek(1, SeekOrigin::kBegin), 1U);
    EXPECT_EQ(ReadText(stream, 2), "el");
    EXPECT_TRUE(stream.TruncateHere());
    EXPECT_EQ(Text(archive.get_buffer()), "hel");
    EXPECT_EQ(stream.Seek(5, SeekOrigin::kBegin), 5U);
    EXPECT_FALSE(stream.CanRead());
    stream.Flush();
    stream.Reserved();
    EXPECT_EQ(stream.Tell(), 5U);
}

TEST(ReadWriteArchiveStream, CannotCutAnArchiveThatIsOnlyRead) {
    MemorySource source("hello");
    ReadWriteArchiveStream stream(&source.archive());
    EXPECT_FALSE(stream.CanWrite());
    EXPECT_FALSE(stream.TruncateHere());
    EXPECT_EQ(stream.Write("x", 1), 0U);
}

// Tells when it ends.
class Mortal : public nuo::archive::mem_read_write_archive {
public:
    explicit Mortal(bool& ended) : ended_(&ended) {}
    ~Mortal() override { *ended_ = true; }

private:
    bool* ended_;
};

template <class Stream>
bool EndsItsArchive() {
    bool ended = false;
    auto archive = nuo::archive::make_archive<Mortal>(ended);
    { Stream stream(std::move(archive)); }
    return ended;
}

TEST(OwnArchiveStream, EndsTheArchive) {
    EXPECT_TRUE(EndsItsArchive<OwnReadArchiveStream>());
    EXPECT_TRUE(EndsItsArchive<OwnWriteArchiveStream>());
    EXPECT_TRUE(EndsItsArchive<OwnReadWriteArchiveStream>());
}

TEST(OwnArchiveStream, IsOpenOverWhatItOwns) {
    OwnReadWriteArchiveStream stream(
        nuo::archive::make_archive<nuo::archive::mem_read_write_archive>());
    EXPECT_TRUE(stream.IsOpen());
    EXPECT_TRUE(stream.WriteExact("x", 1));
}

TEST(MemoryStream, KeepsItsBytesWhenClosed) {
    MemoryStream stream;
    stream.Write("hello", 5);
    stream.Close();
    EXPECT_TRUE(stream.IsOpen());
    EXPECT_EQ(Text(stream.GetBuffer()), "hello");
    stream.Seek(0, SeekOrigin::kBegin);
    EXPECT_EQ(ReadText(stream, 5), "hello");
}

TEST(MemoryStream, CanBeginWithBytes) {
    MemoryStream stream(Bytes("hello"));
    EXPECT_EQ(stream.Tell(), 0U);
    EXPECT_EQ(ReadText(stream, 9), "hello");
}

}  // namespace
