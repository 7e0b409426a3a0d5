#include "nuo/common/buffer_archive.h"

#include <gtest/gtest.h>

#include <string>

#include "nuo/temp_folder.h"

namespace {

using namespace nuo::archive;
using nuo_tests::Bytes;
using nuo_tests::Text;

void Write(writer& out, const std::string& text) {
    const auto bytes = Bytes(text);
    EXPECT_EQ(out.write({bytes.begin(), bytes.end()}), bytes.end());
}

TEST(BufferIn, SeekStopsAtTheEnd) {
    const auto source = Bytes("abc");
    buffer_in in(source);
    EXPECT_EQ(in.seek(10), 3u);
    EXPECT_EQ(in.offset(), 3u);
    EXPECT_FALSE(in.readable());
}

TEST(BufferIn, FollowsABufferThatShrinks) {
    auto source = Bytes("abcdef");
    buffer_in in(source);
    in.seek(5);
    source.resize(2);
    nuo::byte target[4];
    EXPECT_FALSE(in.readable());
    EXPECT_EQ(in.read({target, sizeof target}), target);
}

TEST(BufferOut, SeekDoesNotStopAndTheGapIsZero) {
    auto target = Bytes("ab");
    buffer_out out(target);
    EXPECT_EQ(out.seek(4), 4u);
    EXPECT_EQ(out.size(), 2u);
    Write(out, "xy");
    EXPECT_EQ(Text(target), std::string("ab\0\0xy", 6));
    EXPECT_EQ(out.offset(), 6u);
}

TEST(BufferOut, WritingNothingBehindTheEndFillsUpToThePosition) {
    auto target = Bytes("ab");
    buffer_out out(target);
    out.seek(4);
    Write(out, "");
    EXPECT_EQ(out.offset(), 4u);
    EXPECT_EQ(Text(target), std::string("ab\0\0", 4));
}

TEST(BufferOut, OverwritesAndAppends) {
    auto target = Bytes("abcd");
    buffer_out out(target);
    out.seek(2);
    Write(out, "XYZ");
    EXPECT_EQ(Text(target), "abXYZ");
}

TEST(BufferIo, HasOnePositionForBoth) {
    auto bytes = Bytes("abcdef");
    buffer_io both(bytes);
    nuo::byte target[2];
    both.read({target, 2});
    Write(both, "XY");
    EXPECT_EQ(both.offset(), 4u);
    EXPECT_EQ(Text(bytes), "abXYef");
    both.read({target, 2});
    EXPECT_EQ(target[0], 'e');
}

TEST(BufferIo, ReadBehindTheEndGivesNothing) {
    auto bytes = Bytes("ab");
    buffer_io both(bytes);
    EXPECT_EQ(both.seek(5), 5u);
    nuo::byte target[2];
    EXPECT_EQ(both.read({target, 2}), target);
    EXPECT_FALSE(both.readable());
}

TEST(MemReadWriteArchive, StartsFromACopy) {
    const auto start = Bytes("abc");
    mem_read_write_archive memory(start);
    Write(memory, "X");
    EXPECT_EQ(Text(memory.get_buffer()), "Xbc");
    EXPECT_EQ(Text(start), "abc");
    EXPECT_EQ(mem_read_write_archive().size(), 0u);
}

TEST(MemWriteArchive, OwnsItsBytes) {
    mem_write_archive memory;
    Write(memory, "abc");
    EXPECT_EQ(Text(memory.get_buffer()), "abc");
}

}  // namespace
