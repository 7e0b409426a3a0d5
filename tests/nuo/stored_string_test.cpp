#include "nuo/common/archive/string.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "nuo/common/buffer_archive.h"
#include "nuo/counting_heap.h"
#include "nuo/temp_folder.h"

namespace {

using namespace nuo::archive;
using nuo::string;
using nuo::string_ref;
using nuo_tests::Bytes;
using nuo_tests::CountingHeap;
using nuo_tests::Text;
using Buffer = nuo::buffer<nuo::byte>;

template <class T>
std::string Stored(const T& value) {
    mem_write_archive archive;
    *get_writer(archive) << value;
    return Text(archive.get_buffer());
}

std::string Length(std::uint32_t length) {
    return {reinterpret_cast<const char*>(&length), sizeof length};
}

/// A source that can't tell its size.
class Stream : public archiveT<reader> {
public:
    explicit Stream(std::string bytes) : bytes_(std::move(bytes)) {}
    nuo::byte* read(byte_range range) override {
        const auto count = std::min<std::uint64_t>(range.size(), bytes_.size() - at_);
        std::memcpy(range.first, bytes_.data() + at_, count);
        at_ += count;
        return range.first + count;
    }
    bool readable() override { return at_ < bytes_.size(); }
    view_ptr view_rd(offset_range) override { return nullptr; }
    bool viewable() override { return false; }

private:
    std::string bytes_;
    std::uint64_t at_ = 0;
};

/// A source that tells a size which it does not have.
class Boaster : public Stream, public sequence {
public:
    using Stream::Stream;
    std::uint64_t offset() override { return 4; }
    std::uint64_t size() override { return 1000; }
};

TEST(StoredString, IsALengthAndItsBytes) {
    EXPECT_EQ(Stored(string("abc")), std::string("\3\0\0\0abc", 7));
    EXPECT_EQ(Stored(string_ref("ab\0c", 4)), std::string("\4\0\0\0ab\0c", 8));
}

TEST(StoredString, EmptyOneIsFourZeroBytesAndReadsBackWithoutABlock) {
    EXPECT_EQ(Stored(string()), std::string(4, '\0'));
    const auto source = Bytes(std::string(4, '\0'));
    buffer_in in(source);
    string value("old");
    in >> value;
    EXPECT_EQ(value.use_count(), 0u);
}

TEST(StoredString, ALengthAbove32BitsIsCut) {
    // No more than the three bytes that are left of it is looked at.
    EXPECT_EQ(Stored(string_ref("abcdef", (std::uint64_t{1} << 32) + 3)), Length(3) + "abc");
}

TEST(StoredString, ReadsIntoTheTargetsHeap) {
    CountingHeap heap;
    const auto source = Bytes(Length(3) + "abc" + Length(1) + "d");
    buffer_in in(source);
    string value(heap);
    in >> value;
    EXPECT_EQ(value, "abc");
    EXPECT_EQ(value.hash(), string("abc").hash());
    EXPECT_EQ(&value.get_allocator(), &heap);
    in >> value;
    EXPECT_EQ(value, "d");
}

TEST(StoredString, LengthBeyondTheDataRaisesBeforeAnyAllocation) {
    CountingHeap heap;
    const auto source = Bytes(Length(4) + "abc");
    buffer_in in(source);
    string value("old", heap);
    const auto before = heap.requests.size();
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(value.empty());
    EXPECT_EQ(heap.requests.size(), before);
    EXPECT_EQ(in.offset(), 4u);
}

TEST(StoredString, HugeLengthRaises) {
    const auto source = Bytes(Length(0xFFFFFFFF) + "abc");
    buffer_in in(source);
    string value;
    EXPECT_THROW(in >> value, nuo::context_exception<read_failed>);
}

TEST(StoredString, ShortLengthRaisesAndLeavesTheTargetEmpty) {
    const auto source = Bytes("abc");
    buffer_in in(source);
    string value("old");
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(value.empty());
}

/// Stands behind its own end, as a sink that can seek there does.
TEST(StoredString, PositionBehindTheEndLeavesNothing) {
    class Behind : public Boaster {
    public:
        using Boaster::Boaster;
        std::uint64_t offset() override { return 2000; }
    };
    Behind in(Length(5) + "abcde");
    string value;
    EXPECT_THROW(in >> value, read_failed);
}

TEST(StoredString, BytesThatAreMissingAfterAllReadAsZero) {
    Boaster in(Length(5) + "abc");
    string value;
    in >> value;
    EXPECT_EQ(value, string_ref("abc\0\0", 5));
}

TEST(StoredString, SourceWithoutASizeIsNotAskedForIt) {
    Stream in(Length(5) + "abc");
    string value;
    in >> value;
    EXPECT_EQ(value, string_ref("abc\0\0", 5));
    std::string bytes = Length(200000);
    bytes.resize(200004, 'x');
    Stream large(bytes);
    large >> value;
    EXPECT_EQ(value, bytes.c_str() + 4);
}

TEST(StoredString, SourceWithoutASizeDoesNotMakeUpGigabytes) {
    Stream in(Length(0xFFFFFFFF) + "abc");
    string value("old");
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(value.empty());
}

TEST(StoredBuffer, IsALengthAndItsBytes) {
    EXPECT_EQ(Stored(Bytes("ab")), std::string("\2\0\0\0ab", 6));
    EXPECT_EQ(Stored(Buffer()), std::string(4, '\0'));
}

TEST(StoredBuffer, ReadsBackAndReplacesTheOldBytes) {
    const auto source = Bytes(Length(2) + "ab" + Length(0));
    buffer_in in(source);
    Buffer value = Bytes("something");
    in >> value;
    EXPECT_EQ(Text(value), "ab");
    in >> value;
    EXPECT_TRUE(value.empty());
}

TEST(StoredBuffer, LengthBeyondTheDataRaisesBeforeAnyAllocation) {
    CountingHeap heap;
    const auto source = Bytes(Length(4) + "abc");
    buffer_in in(source);
    Buffer value(heap);
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(heap.requests.empty());
}

TEST(StoredBuffer, OldBytesNeverShowThrough) {
    const auto short_length = Bytes("abc");
    buffer_in in(short_length);
    Buffer value = Bytes("something");
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(value.empty());
    value = Bytes("something");
    Boaster cut(Length(5) + "abc");
    cut >> value;
    EXPECT_EQ(Text(value), std::string("abc\0\0", 5));
    value = Bytes("something");
    Stream whole(Length(5) + "abcde");
    whole >> value;
    EXPECT_EQ(Text(value), "abcde");
}

TEST(StoredBuffer, AReadThatFailsLeavesItEmpty) {
    class Broken : public Boaster {
    public:
        using Boaster::Boaster;
        nuo::byte* read(byte_range range) override {
            if (!told_) {
                told_ = true;
                return Boaster::read(range);
            }
            NUO_RAISE(read_failed);
        }

    private:
        bool told_ = false;
    } in(Length(5) + "abcde");
    Buffer value = Bytes("old");
    EXPECT_THROW(static_cast<reader&>(in) >> value, nuo::context_exception<read_failed>);
    EXPECT_TRUE(value.empty());
}

TEST(StoredBuffer, SourceWithoutASizeDoesNotMakeUpGigabytes) {
    Stream in(Length(0xFFFFFFFF) + "abc");
    Buffer value = Bytes("old");
    EXPECT_THROW(in >> value, read_failed);
    EXPECT_TRUE(value.empty());
    Stream shorter(Length(5) + "abc");
    shorter >> value;
    EXPECT_EQ(Text(value), std::string("abc\0\0", 5));
}

}  // namespace
