#include "assets/serialization/io/streamarchive.h"

#include "assets/serialization/io/archiveadaptor.h"
#include "io/fake_stream.h"
#include "nuo/common/archive/string.h"
#include "nuo/common/file_archive.h"
#include "support/raised.h"

namespace {

using halvern_tests::FakeStream;
using halvern_tests::Raised;
using korvanet::platform::assets::MemoryStream;
using korvanet::platform::assets::OwnReadStreamArchive;
using korvanet::platform::assets::OwnReadWriteStreamArchive;
using korvanet::platform::assets::OwnWriteStreamArchive;
using korvanet::platform::assets::ReadStreamArchive;
using korvanet::platform::assets::ReadWriteStreamArchive;
using korvanet::platform::assets::stream_open_failed;
using korvanet::platform::assets::WriteStreamArchive;
using nuo::archive::byte_range;
using nuo::archive::const_byte_range;

std::string ReadText(nuo::archive::reader& reader, std::size_t length) {
    std::string text(length, '?');
    const byte_range range(text.data(), length);
    text.resize(static_cast<std::size_t>(reader.read(range) - range.first));
    return text;
}

const nuo::byte* WriteText(nuo::archive::writer& writer, std::string_view text) {
    return writer.write(const_byte_range(text.data(), text.size()));
}

TEST(ReadStreamArchive, StartsAtTheFrontWithTheSizeOfTheStream) {
    FakeStream stream("hello");
    stream.position = 3;
    ReadStreamArchive archive(stream);
    EXPECT_EQ(archive.size(), 5U);
    EXPECT_EQ(archive.offset(), 0U);
    EXPECT_EQ(stream.position, 0U);
    EXPECT_TRUE(archive.readable());
}

TEST(ReadStreamArchive, RefusesAStreamThatWasClosedBefore) {
    FakeStream stream("hello");
    stream.Close();
    EXPECT_EQ(Raised<stream_open_failed>([&] { ReadStreamArchive archive(stream); }),
              "stream can not open!!");
    EXPECT_EQ(Raised<stream_open_failed>([&] { WriteStreamArchive archive(stream); }),
              "stream can not open!!");
    EXPECT_EQ(Raised<stream_open_failed>([&] { ReadWriteStreamArchive archive(stream); }),
              "stream can not open!!");
    EXPECT_EQ(stream.closes, 1);
}

TEST(ReadStreamArchive, ShowsAShortReadByTheEndOfTheFilledRange) {
    FakeStream stream("hello");
    ReadStreamArchive archive(stream);
    EXPECT_EQ(ReadText(archive, 3), "hel");
    EXPECT_EQ(archive.offset(), 3U);
    EXPECT_EQ(ReadText(archive, 3), "lo");
    EXPECT_FALSE(archive.readable());
}

TEST(ReadStreamArchive, AsksTheStreamOnceForAWholeRange) {
    FakeStream stream("hello");
    stream.most_at_once = 2;
    ReadStreamArchive archive(stream);
    EXPECT_EQ(ReadText(archive, 5), "he");
    EXPECT_EQ(stream.reads, 1);
}

TEST(ReadStreamArchive, StaysAtTheSizeWhenItSeeksPastTheEnd) {
    FakeStream stream("hello");
    ReadStreamArchive archive(stream);
    EXPECT_EQ(archive.seek(100), 5U);
    EXPECT_EQ(archive.offset(), 5U);
    EXPECT_FALSE(archive.readable());
    EXPECT_EQ(archive.seek(1), 1U);
    EXPECT_EQ(ReadText(archive, 4), "ello");
}

TEST(ReadStreamArchive, EndsWhereAStreamStopsBeforeTheSizeItTold) {
    FakeStream stream("hello");
    stream.claims_more = 10;
    ReadStreamArchive archive(stream);
    EXPECT_EQ(archive.size(), 15U);
    EXPECT_EQ(ReadText(archive, 15), "hello");
    EXPECT_TRUE(archive.readable());
    EXPECT_EQ(ReadText(archive, 10), "");
    EXPECT_FALSE(archive.readable());
    EXPECT_EQ(archive.size(), 5U);
}

TEST(ReadStreamArchive, ReadsAStoredStringThatTheStreamCutsShort) {
    FakeStream stream(std::string("\x04\0\0\0abc", 7));
    stream.claims_more = 1;
    ReadStreamArchive archive(stream);
    nuo::string text;
    static_cast<nuo::archive::reader&>(archive) >> text;
    EXPECT_EQ(text.size(), 4U);
    EXPECT_STREQ(text.data(), "abc");
}

TEST(ReadStreamArchive, TakesNoMoreThanItAskedForFromAStreamThatTellsMore) {
    FakeStream stream("hello");
    stream.lie_by = 100;
    ReadStreamArchive archive(stream);
    EXPECT_EQ(ReadText(archive, 2), "he");
    EXPECT_EQ(archive.offset(), 2U);
}

TEST(ReadStreamArchive, HasNoViewAndCannotBeWritten) {
    FakeStream stream("hello");
    ReadStreamArchive archive(stream);
    EXPECT_FALSE(archive.viewable());
    EXPECT_EQ(archive.view_rd({0, 5}), nullptr);
    EXPECT_EQ(archive.query_writer(), nullptr);
    EXPECT_NE(archive.query_sequence(), nullptr);
}

TEST(ReadStreamArchive, ClosesTheStreamAndLeavesItToItsOwner) {
    FakeStream stream("hello");
    { ReadStreamArchive archive(stream); }
    EXPECT_EQ(stream.closes, 1);
}

// Nobody would hear of it in a destructor.
TEST(ReadWriteStreamArchive, AStreamThatRaisesAsItIsClosedHarmsNobody) {
    class Raising final : public FakeStream {
    public:
        void Close() override {
            FakeStream::Close();
            throw std::runtime_error("the host is gone");
        }
    } stream;
    { ReadStreamArchive archive(stream); }
    stream.open = true;
    { WriteStreamArchive archive(stream); }
    stream.open = true;
    { ReadWriteStreamArchive archive(stream); }
    EXPECT_EQ(stream.closes, 3);
}

TEST(WriteStreamArchive, CountsPositionAndSizeFromZero) {
    FakeStream stream;
    WriteStreamArchive archive(stream);
    EXPECT_EQ(archive.size(), 0U);
    WriteText(archive, "hello");
    EXPECT_EQ(archive.offset(), 5U);
    EXPECT_EQ(archive.size(), 5U);
    archive.seek(1);
    WriteText(archive, "a");
    EXPECT_EQ(archive.size(), 5U);
    EXPECT_EQ(stream.content, "hallo");
    EXPECT_TRUE(archive.writable());
}

TEST(WriteStreamArchive, SeeksBehindTheEnd) {
    FakeStream stream;
    WriteStreamArchive archive(stream);
    EXPECT_EQ(archive.seek(3), 3U);
    EXPECT_EQ(archive.size(), 0U);
    WriteText(archive, "x");
    EXPECT_EQ(archive.size(), 4U);
    EXPECT_EQ(stream.content, std::string("\0\0\0x", 4));
}

TEST(WriteStreamArchive, RaisesWhenTheStreamTakesLess) {
    FakeStream stream;
    stream.most_at_once = 3;
    WriteStreamArchive archive(stream);
    EXPECT_EQ(Raised<nuo::archive::archive_append_failed>([&] { WriteText(archive, "hello"); }),
              "");
    EXPECT_EQ(archive.offset(), 3U);
    EXPECT_EQ(archive.size(), 3U);
}

TEST(WriteStreamArchive, CannotBeCut) {
    FakeStream stream;
    WriteStreamArchive archive(stream);
    WriteText(archive, "hello");
    EXPECT_EQ(archive.truncate(2), 5U);
    EXPECT_EQ(stream.content, "hello");
    EXPECT_EQ(archive.view_wr({0, 1}), nullptr);
    EXPECT_EQ(archive.query_reader(), nullptr);
}

TEST(ReadWriteStreamArchive, ReadsAndWritesWithOnePosition) {
    FakeStream stream("hello");
    ReadWriteStreamArchive archive(stream);
    EXPECT_EQ(archive.size(), 5U);
    EXPECT_EQ(ReadText(archive, 4), "hell");
    WriteText(archive, "!!");
    EXPECT_EQ(archive.size(), 6U);
    EXPECT_EQ(stream.content, "hell!!");
    EXPECT_EQ(archive.seek(10), 10U);
    EXPECT_FALSE(archive.readable());
}

TEST(ReadWriteStreamArchive, CutsTheStream) {
    FakeStream stream("hello");
    ReadWriteStreamArchive archive(stream);
    archive.seek(4);
    EXPECT_EQ(archive.truncate(2), 2U);
    EXPECT_EQ(archive.offset(), 2U);
    EXPECT_EQ(stream.content, "he");
    EXPECT_EQ(stream.position, 2U);
}

TEST(ReadWriteStreamArchive, KeepsItsPositionBeforeTheCut) {
    FakeStream stream("hello");
    ReadWriteStreamArchive archive(stream);
    archive.seek(1);
    EXPECT_EQ(archive.truncate(3), 3U);
    EXPECT_EQ(archive.offset(), 1U);
    EXPECT_EQ(stream.position, 1U);
}

TEST(ReadWriteStreamArchive, TellsItsOldSizeWhenTheStreamCannotBeCut) {
    FakeStream stream("hello");
    stream.can_cut = false;
    ReadWriteStreamArchive archive(stream);
    EXPECT_EQ(archive.truncate(0), 5U);
    EXPECT_EQ(archive.size(), 5U);
}

TEST(ReadWriteStreamArchive, FlushesTheStreamOnSync) {
    FakeStream stream("hello");
    ReadWriteStreamArchive archive(stream);
    archive.sync();
    EXPECT_EQ(stream.flushes, 1);
}

TEST(ReadWriteStreamArchive, RaisesWhenTheStreamTakesLess) {
    FakeStream stream;
    stream.most_at_once = 1;
    ReadWriteStreamArchive archive(stream);
    EXPECT_EQ(Raised<nuo::archive::archive_append_failed>([&] { WriteText(archive, "hello"); }),
              "");
}

template <class Archive>
bool DestroysItsStream() {
    auto stream = std::make_unique<FakeStream>("hello");
    bool destroyed = false;
    stream->destroyed = &destroyed;
    { Archive archive(std::move(stream)); }
    return destroyed;
}

TEST(OwnStreamArchive, DestroysTheStream) {
    EXPECT_TRUE(DestroysItsStream<OwnReadStreamArchive>());
    EXPECT_TRUE(DestroysItsStream<OwnWriteStreamArchive>());
    EXPECT_TRUE(DestroysItsStream<OwnReadWriteStreamArchive>());
}

TEST(OwnStreamArchive, DestroysAStreamThatIsNotOpen) {
    auto stream = std::make_unique<FakeStream>();
    stream->Close();
    bool destroyed = false;
    stream->destroyed = &destroyed;
    EXPECT_EQ(Raised<stream_open_failed>([&] { OwnReadStreamArchive archive(std::move(stream)); }),
              "stream can not open!!");
    EXPECT_TRUE(destroyed);
}

TEST(StreamArchive, ReadsWhatWasWrittenThroughTheSameMemoryStream) {
    MemoryStream stream;
    {
        ReadWriteStreamArchive archive(stream);
        static_cast<nuo::archive::writer&>(archive) << nuo::string("kept");
    }
    EXPECT_TRUE(stream.IsOpen());
    ReadStreamArchive archive(stream);
    nuo::string text;
    static_cast<nuo::archive::reader&>(archive) >> text;
    EXPECT_STREQ(text.data(), "kept");
}

}  // namespace
