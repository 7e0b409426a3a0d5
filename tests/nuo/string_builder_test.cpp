#include "nuo/common/string_builder.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "nuo/common/string.h"
#include "nuo/counting_heap.h"

namespace {

using nuo::string_builder;
using nuo_tests::CountingHeap;

TEST(StringBuilder, EmptyOneHandsOutTheSharedEmptyText) {
    const string_builder empty;
    EXPECT_EQ(empty.data(), nuo::string().data());
    EXPECT_STREQ(empty.c_str(), "");
    EXPECT_EQ(empty.capacity(), 0u);
}

TEST(StringBuilder, KeepsANulBehindTheText) {
    string_builder text;
    text.append("abc").append('d').append(3, '!');
    EXPECT_STREQ(text.c_str(), "abcd!!!");
    EXPECT_EQ(text.size(), 7u);
    text.resize(2);
    EXPECT_STREQ(text.c_str(), "ab");
    text.clear();
    EXPECT_STREQ(text.c_str(), "");
    text.reserve(100);
    EXPECT_STREQ(text.c_str(), "");
    text.resize(4);
    EXPECT_EQ(nuo::string_ref(text), nuo::string_ref("\0\0\0\0", 4));
    EXPECT_EQ(*text.end(), '\0');
}

TEST(StringBuilder, KeepsANulAtEverySizeOfGrowth) {
    string_builder text;
    for (unsigned i = 1; i < 300; ++i) {
        text.append('x');
        ASSERT_LT(text.size(), text.capacity());
        ASSERT_EQ(*text.end(), '\0');
        string_builder resized;
        resized.resize(i);
        ASSERT_LT(resized.size(), resized.capacity());
    }
}

TEST(StringBuilder, InsertsAtAPosition) {
    string_builder text;
    text.append("ad");
    char* at = text.insert(text.begin() + 1, "bc");
    EXPECT_EQ(at, text.begin() + 1);
    text.insert(text.begin(), '<');
    EXPECT_STREQ(text.c_str(), "<abcd");
    text.insert(text.end(), "");
    EXPECT_STREQ(text.c_str(), "<abcd");
}

TEST(StringBuilder, IsAppendedToItselfAlsoWhereItGrows) {
    string_builder text;
    text.append("ab");
    std::string expected = "ab";
    for (int i = 0; i < 12; ++i) {
        text.append(text);
        expected += expected;
        ASSERT_EQ(nuo::string_ref(text), nuo::string_ref(expected.data(), expected.size()));
    }
    text.insert(text.begin() + 3, nuo::string_ref(text.data(), 3));
    EXPECT_TRUE(nuo::string_ref(text).starts_with("abaababab"));
}

TEST(StringBuilder, AppendsNumbersInDecimal) {
    string_builder text;
    text.append_number(std::numeric_limits<std::int64_t>::min()).append(' ');
    text.append_number(std::numeric_limits<std::uint64_t>::max());
    EXPECT_STREQ(text.c_str(), "-9223372036854775808 18446744073709551615");
}

TEST(StringBuilder, CopyTakesOneByteMoreThanItsSize) {
    CountingHeap heap;
    string_builder text(heap);
    text.append("abc");
    const string_builder copy(text);
    EXPECT_STREQ(copy.c_str(), "abc");
    EXPECT_EQ(copy.capacity(), 4u);
    EXPECT_EQ(heap.requests.back(), (CountingHeap::Request{4, 1}));
}

TEST(StringBuilder, ASizeThatLeavesNoRoomForTheNulIsRefused) {
    string_builder text;
    text.append("kept");
    EXPECT_THROW(text.resize(~0ull), std::bad_alloc);
    EXPECT_THROW(text.reserve(~0ull), std::bad_alloc);
    EXPECT_THROW(text.resize(~0ull - 1), std::bad_alloc);
    EXPECT_STREQ(text.c_str(), "kept");
}

TEST(StringBuilder, SwapExchangesHeapSizeCapacityAndText) {
    CountingHeap first, second;
    string_builder a(first), b(second);
    a.append("abc");
    b.append("a text that is longer than the other one");
    const char* const short_text = a.data();
    const char* const long_text = b.data();
    const std::uint64_t short_room = a.capacity();
    const std::uint64_t long_room = b.capacity();
    a.swap(b);
    EXPECT_EQ(a.data(), long_text);
    EXPECT_EQ(a.size(), 40u);
    EXPECT_EQ(a.capacity(), long_room);
    EXPECT_EQ(&a.get_allocator(), &second);
    EXPECT_EQ(b.data(), short_text);
    EXPECT_EQ(b.size(), 3u);
    EXPECT_EQ(b.capacity(), short_room);
    EXPECT_EQ(&b.get_allocator(), &first);
}

TEST(StringBuilder, AssignmentTakesOverTheHeap) {
    CountingHeap first, second;
    string_builder target(first), source(second);
    target.append("old");
    source.append("new");
    target = source;
    EXPECT_STREQ(target.c_str(), "new");
    EXPECT_EQ(&target.get_allocator(), &second);
    EXPECT_EQ(first.live(), 0u);
    target = string_builder(first);
    EXPECT_STREQ(target.c_str(), "");
}

}  // namespace
