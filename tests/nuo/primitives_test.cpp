#include "nuo/common/archive/primitives.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "nuo/common/buffer_archive.h"
#include "nuo/temp_folder.h"

namespace {

using namespace nuo::archive;
using nuo_tests::Bytes;
using nuo_tests::Text;

/// The stored form of one value.
template <class T>
std::string Stored(const T& value) {
    mem_write_archive archive;
    *get_writer(archive) << value;
    return Text(archive.get_buffer());
}

template <class T>
T Read(const std::string& bytes) {
    const auto source = Bytes(bytes);
    buffer_in in(source);
    return read_value<T>(in);
}

TEST(Primitives, WholeNumbersAreLittleEndian) {
    EXPECT_EQ(Stored(std::uint8_t{0x12}), "\x12");
    EXPECT_EQ(Stored(std::int8_t{-1}), "\xFF");
    EXPECT_EQ(Stored('c'), "c");
    EXPECT_EQ(Stored(std::uint16_t{0x1234}), "\x34\x12");
    EXPECT_EQ(Stored(std::int16_t{-2}), "\xFE\xFF");
    EXPECT_EQ(Stored(std::uint32_t{0x12345678}), "\x78\x56\x34\x12");
    EXPECT_EQ(Stored(std::int32_t{-2}), "\xFE\xFF\xFF\xFF");
    EXPECT_EQ(Stored(std::uint64_t{0x1122334455667788}), "\x88\x77\x66\x55\x44\x33\x22\x11");
    EXPECT_EQ(Stored(std::int64_t{-2}), "\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
}

TEST(Primitives, FloatingNumbersAreTheirBits) {
    EXPECT_EQ(Stored(1.0f), std::string("\0\0\x80\x3F", 4));
    EXPECT_EQ(Stored(-2.0), std::string("\0\0\0\0\0\0\0\xC0", 8));
    EXPECT_EQ(Read<double>(Stored(0.1)), 0.1);
}

TEST(Primitives, PointersTakeEightBytes) {
    EXPECT_EQ(Stored(reinterpret_cast<const void*>(0x0102)),
              std::string("\x02\x01\0\0\0\0\0\0", 8));
}

TEST(Primitives, BoolIsOneByte) {
    EXPECT_EQ(Stored(true), "\1");
    EXPECT_EQ(Stored(false), std::string("\0", 1));
    EXPECT_TRUE(Read<bool>("\1"));
    EXPECT_FALSE(Read<bool>(std::string("\0", 1)));
    EXPECT_TRUE(Read<bool>("\x80"));
}

TEST(Primitives, ReadBackWhatWasWritten) {
    EXPECT_EQ(Read<std::int16_t>(Stored(std::int16_t{-1234})), -1234);
    EXPECT_EQ(Read<std::int64_t>(Stored(std::int64_t{-1234567890123})), -1234567890123);
    EXPECT_EQ(Read<float>(Stored(0.5f)), 0.5f);
}

TEST(Primitives, ShortDataRaisesAndIsConsumed) {
    const auto source = Bytes("abc");
    buffer_in in(source);
    std::uint32_t value = 7;
    try {
        in >> value;
        FAIL();
    } catch (const read_failed& failure) {
        EXPECT_EQ(std::string(failure.what()).back(), ')');
    }
    EXPECT_EQ(in.offset(), 3u);
    EXPECT_FALSE(in.readable());
}

/// Gives one byte per call and takes one byte per call.
class Trickle : public archiveT<reader, writer> {
public:
    nuo::byte* read(byte_range range) override {
        *range.first = static_cast<nuo::byte>(next_++);
        return range.first + 1;
    }
    bool readable() override { return next_ < 100; }
    view_ptr view_rd(offset_range) override { return nullptr; }
    const nuo::byte* write(const_byte_range range) override {
        taken.push_back(static_cast<char>(*range.first));
        return range.first + 1;
    }
    std::uint64_t truncate(std::uint64_t size) override { return size; }
    bool writable() override { return true; }
    void sync() override {}
    view_ptr view_wr(offset_range) override { return nullptr; }
    bool viewable() override { return false; }

    std::string taken;

private:
    int next_ = 1;
};

TEST(Primitives, ShortReadsAndWritesLoop) {
    Trickle trickle;
    std::uint32_t value = 0;
    *get_reader(trickle) >> value;
    EXPECT_EQ(value, 0x04030201u);
    *get_writer(trickle) << value;
    EXPECT_EQ(trickle.taken, "\1\2\3\4");
    EXPECT_EQ(get_sequence(trickle), nullptr);
}

TEST(Primitives, ReadSomeStopsAtTheEnd) {
    const auto source = Bytes("abc");
    buffer_in in(source);
    nuo::byte target[8] = {};
    EXPECT_EQ(read_some(in, {target, sizeof target}), target + 3);
    EXPECT_EQ(read_some(in, {target, sizeof target}), target);
}

}  // namespace
