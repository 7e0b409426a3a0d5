#include "nuo/common/buffer.h"

#include <gtest/gtest.h>

#include <new>

#include "nuo/counting_heap.h"
#include "nuo/temp_folder.h"

namespace {

using nuo_tests::Bytes;
using nuo_tests::CountingHeap;
using nuo_tests::Text;
using Buffer = nuo::buffer<nuo::byte>;

TEST(Buffer, AllocatesNothingUntilItHoldsBytes) {
    CountingHeap heap;
    Buffer empty(heap);
    EXPECT_EQ(empty.data(), nullptr);
    EXPECT_EQ(empty.size(), 0u);
    EXPECT_EQ(empty.capacity(), 0u);
    empty.append(empty.begin(), empty.begin());
    empty.insert_gap(empty.end(), 0);
    EXPECT_TRUE(heap.requests.empty());
}

TEST(Buffer, InsertKeepsHeadAndTail) {
    Buffer bytes = Bytes("adef");
    const Buffer middle = Bytes("bc");
    nuo::byte* gap = bytes.insert(bytes.begin() + 1, middle.begin(), middle.end());
    EXPECT_EQ(Text(bytes), "abcdef");
    EXPECT_EQ(gap, bytes.begin() + 1);
    bytes.insert(bytes.begin(), '<');
    bytes.append('>');
    EXPECT_EQ(Text(bytes), "<abcdef>");
}

TEST(Buffer, GapIsFilledWithZeros) {
    Buffer bytes = Bytes("ab");
    bytes.insert_gap(bytes.begin() + 1, 3);
    EXPECT_EQ(Text(bytes), std::string("a\0\0\0b", 5));
}

TEST(Buffer, FirstInsertTakesHalfAsMuchAgain) {
    // need = 0 + 4 + 1; the doubled capacity is 0, so 5 + 5 / 2
    Buffer bytes = Bytes("abcd");
    EXPECT_EQ(bytes.capacity(), 7u);
}

TEST(Buffer, InsertBelowTheCapacityMovesTheTailInPlace) {
    CountingHeap heap;
    Buffer bytes(heap);
    bytes.reserve(8);
    ASSERT_EQ(bytes.capacity(), 12u);
    const nuo::byte* array = bytes.data();
    for (nuo::byte b = 0; b < 11; ++b)
        bytes.append(b);
    EXPECT_EQ(bytes.data(), array);
    // 11 + 1 is not below 12: need 13 is below the doubled 24
    bytes.append(7);
    EXPECT_NE(bytes.data(), array);
    EXPECT_EQ(bytes.capacity(), 24u);
}

TEST(Buffer, GrowthBeyondTheDoubleTakesHalfAsMuchAgain) {
    Buffer bytes;
    bytes.reserve(4);
    ASSERT_EQ(bytes.capacity(), 6u);
    bytes.insert_gap(bytes.end(), 11);  // need 12 is at least 12
    EXPECT_EQ(bytes.capacity(), 18u);
}

TEST(Buffer, TakesBytesOfItsOwnAlsoWhereItGrows) {
    Buffer bytes = Bytes("ab");
    std::string expected = "ab";
    for (int i = 0; i < 6; ++i) {
        bytes.append(bytes.begin(), bytes.end());
        expected += expected;
        ASSERT_EQ(Text(bytes), expected);
    }
    bytes.insert(bytes.begin() + 2, bytes.begin(), bytes.begin() + 1);
    EXPECT_EQ(Text(bytes), expected.insert(2, "a"));
}

TEST(Buffer, ResizeDoublesOrTakesHalfAsMuchAgain) {
    Buffer bytes;
    bytes.resize(10);
    EXPECT_EQ(bytes.capacity(), 15u);
    bytes.resize(16);
    EXPECT_EQ(bytes.capacity(), 30u);
    bytes.resize(60);
    EXPECT_EQ(bytes.capacity(), 90u);
    bytes.resize(90);
    EXPECT_EQ(bytes.capacity(), 90u);
    EXPECT_EQ(bytes.size(), 90u);
}

TEST(Buffer, ResizeKeepsBytesAndZeroesNewOnes) {
    Buffer bytes = Bytes("abc");
    bytes.resize(1);
    bytes.resize(3);
    EXPECT_EQ(Text(bytes), std::string("a\0\0", 3));
}

TEST(Buffer, ClearKeepsTheArray) {
    Buffer bytes = Bytes("abc");
    const auto capacity = bytes.capacity();
    bytes.clear();
    EXPECT_TRUE(bytes.empty());
    EXPECT_EQ(bytes.capacity(), capacity);
}

TEST(Buffer, CopyAllocatesExactlyItsSizeInTheSourcesHeap) {
    CountingHeap heap;
    Buffer source(heap);
    source.append('a');
    source.append('b');
    const Buffer copy(source);
    EXPECT_EQ(Text(copy), "ab");
    EXPECT_EQ(copy.capacity(), 2u);
    EXPECT_EQ(&copy.get_allocator(), &heap);
    EXPECT_EQ(heap.requests.back(), (CountingHeap::Request{2, 1}));
}

TEST(Buffer, CopyOfAnEmptyOneHasNoArray) {
    CountingHeap heap;
    Buffer source(heap);
    source.reserve(8);
    const Buffer copy(source);
    EXPECT_EQ(copy.data(), nullptr);
    EXPECT_EQ(copy.capacity(), 0u);
}

TEST(Buffer, AssignmentTakesOverTheHeapAndFreesThroughTheOldOne) {
    CountingHeap first, second;
    Buffer target(first), source(second);
    target.append('x');
    source.append('y');
    target = source;
    EXPECT_EQ(first.live(), 0u);
    EXPECT_EQ(&target.get_allocator(), &second);
    EXPECT_EQ(Text(target), "y");
    const Buffer& same = target;
    target = same;
    EXPECT_EQ(Text(target), "y");
}

TEST(Buffer, SwapSwapsAllFields) {
    CountingHeap first, second;
    Buffer a(first), b(second);
    a.append('a');
    a.swap(b);
    EXPECT_EQ(&a.get_allocator(), &second);
    EXPECT_EQ(&b.get_allocator(), &first);
    EXPECT_EQ(Text(b), "a");
    EXPECT_TRUE(a.empty());
}

TEST(Buffer, MovingHandsTheArrayOver) {
    Buffer source = Bytes("abc");
    const nuo::byte* array = source.data();
    Buffer target(std::move(source));
    EXPECT_EQ(target.data(), array);
}

TEST(Buffer, ComparesBytes) {
    EXPECT_EQ(Bytes("abc"), Bytes("abc"));
    EXPECT_EQ(Bytes(""), Buffer());
    EXPECT_FALSE(Bytes("abc") == Bytes("abd"));
    EXPECT_FALSE(Bytes("abc") == Bytes("ab"));
}

TEST(Buffer, SizesThatCannotExistAreAllocationFailures) {
    Buffer bytes = Bytes("abc");
    EXPECT_THROW(bytes.resize(~0ull), std::bad_alloc);
    EXPECT_THROW(bytes.reserve(~0ull - 1), std::bad_alloc);
    EXPECT_THROW(bytes.insert_gap(bytes.end(), ~0ull - 2), std::bad_alloc);
    EXPECT_EQ(Text(bytes), "abc");
}

}  // namespace
