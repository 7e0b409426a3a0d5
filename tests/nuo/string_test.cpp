#include "nuo/common/string.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>

#include "nuo/counting_heap.h"

namespace {

using nuo::string;
using nuo::string_ref;
using nuo_tests::CountingHeap;

constexpr std::uint64_t kSeed = 2166136261u;

TEST(String, IsTwoPointers) {
    EXPECT_EQ(sizeof(string), 2 * sizeof(void*));
}

TEST(String, EmptyOneHasNoBlockAndAValidText) {
    CountingHeap heap;
    for (const string& text :
         {string(), string(""), string(string_ref("x", std::uint64_t{0}), heap),
          string(string_ref(), heap), string(string_ref(), string_ref(), heap)}) {
        EXPECT_EQ(text.use_count(), 0u);
        EXPECT_STREQ(text.data(), "");
        EXPECT_EQ(text.hash(), kSeed);
        EXPECT_TRUE(text.empty());
        EXPECT_EQ(text.data(), string().data());
    }
    EXPECT_TRUE(heap.requests.empty());
}

TEST(String, BlockIsOneAllocationOfSizeAndThirtyTwoBytes) {
    CountingHeap heap;
    const string text("hello", heap);
    ASSERT_EQ(heap.requests.size(), 1u);
    EXPECT_EQ(heap.requests[0], (CountingHeap::Request{37, 8}));
    EXPECT_STREQ(text.data(), "hello");
    EXPECT_EQ(text.size(), 5u);
    EXPECT_EQ(text.end() - text.begin(), 5);
}

TEST(String, JoinsTwoRangesInOneAllocation) {
    CountingHeap heap;
    const string text(string_ref(".sys."), string_ref("name"), heap);
    EXPECT_EQ(text, ".sys.name");
    EXPECT_EQ(heap.requests.size(), 1u);
    EXPECT_EQ(string(string_ref(), string_ref("b")), "b");
    EXPECT_EQ(string(string_ref("a"), string_ref()), "a");
}

TEST(String, APairOfPointersIsARangeAndTwoTextsAreJoined) {
    CountingHeap heap;
    const char* const bytes = "abcdef";
    const string text(string_ref(bytes + 1, bytes + 4), heap);
    EXPECT_EQ(text, "bcd");
    EXPECT_EQ(&text.get_allocator(), &heap);
    EXPECT_EQ(string(string_ref(bytes, bytes)).use_count(), 0u);
    EXPECT_EQ(string("abc", "def"), "abcdef");
}

const string kMadeBeforeMain("made before main");

TEST(String, CanBeMadeDuringStaticInitialisation) {
    EXPECT_EQ(kMadeBeforeMain, "made before main");
    EXPECT_EQ(&kMadeBeforeMain.get_allocator(), &nuo::get_heap());
}

TEST(String, HashMultipliesFirstAndTakesSignedBytes) {
    const auto step = [](std::uint64_t h, signed char c) {
        return (h * 16777619u) ^ static_cast<std::uint64_t>(static_cast<std::int64_t>(c));
    };
    EXPECT_EQ(string("a").hash(), step(kSeed, 'a'));
    EXPECT_EQ(string("ab").hash(), step(step(kSeed, 'a'), 'b'));
    EXPECT_EQ(string("\xFF").hash(), (kSeed * 16777619u) ^ ~0ull);
    EXPECT_NE(string("\xFF").hash(), (kSeed * 16777619u) ^ 0xFFull);
    // ten bytes: the step is 2
    std::uint64_t sampled = kSeed;
    for (const char c : std::string("acegi"))
        sampled = step(sampled, static_cast<signed char>(c));
    EXPECT_EQ(string("abcdefghij").hash(), sampled);
}

TEST(String, AllBytesOfShortTextsTakePartInTheHash) {
    EXPECT_NE(string("abc").hash(), string("abd").hash());
    EXPECT_NE(string("12345678a").hash(), string("12345678b").hash());
}

TEST(String, LongTextsThatDifferBetweenTheSamplesShareAHashAndAreUnequal) {
    std::string other(100, 'x');
    const string a(other.c_str());
    other[5] = 'y';
    const string b(other.c_str());
    EXPECT_EQ(a.hash(), b.hash());
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    other[5] = 'x';
    other[11] = 'y';
    EXPECT_NE(string(other.c_str()).hash(), a.hash());
}

TEST(String, CopyConstructionSharesTheBlockAndKeepsTheHeap) {
    CountingHeap heap;
    const string a("text", heap);
    const string b(a);
    EXPECT_EQ(a.data(), b.data());
    EXPECT_EQ(a.use_count(), 2u);
    EXPECT_EQ(&b.get_allocator(), &heap);
    EXPECT_EQ(heap.requests.size(), 1u);
}

TEST(String, AssignmentMakesANewBlockInItsOwnHeap) {
    CountingHeap first, second;
    string a("old", first);
    const string b("new", second);
    a = b;
    EXPECT_EQ(a, b);
    EXPECT_NE(a.data(), b.data());
    EXPECT_EQ(&a.get_allocator(), &first);
    EXPECT_EQ(a.use_count(), 1u);
    EXPECT_EQ(b.use_count(), 1u);
    EXPECT_EQ(first.live(), 1u);
}

TEST(String, AssignmentOfTheSameBlockDoesNothing) {
    CountingHeap heap;
    string a("text", heap);
    const string b(a);
    a = b;
    EXPECT_EQ(a.data(), b.data());
    EXPECT_EQ(a.use_count(), 2u);
    EXPECT_EQ(heap.requests.size(), 1u);
}

TEST(String, AssignmentOfAnEmptyOneReleasesTheBlock) {
    CountingHeap heap;
    string a("text", heap);
    a = string();
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(heap.live(), 0u);
    const string b(heap);
    a = string("x");
    a = b;
    EXPECT_TRUE(a.empty());
}

TEST(String, MovingHandsTheBlockOverWithinOneHeap) {
    CountingHeap heap, other;
    string a("text", heap);
    const char* text = a.data();
    string b(std::move(a));
    EXPECT_EQ(b.data(), text);
    string c("more", heap);
    c = std::move(b);
    EXPECT_EQ(c.data(), text);
    string d("far", other);
    d = std::move(c);
    EXPECT_EQ(d, "text");
    EXPECT_EQ(&d.get_allocator(), &other);
    EXPECT_EQ(other.live(), 1u);
}

TEST(String, LastReleaseFreesTheBlock) {
    CountingHeap heap;
    {
        string a("text", heap);
        string b(a);
        a.clear();
        EXPECT_EQ(heap.live(), 1u);
        EXPECT_EQ(b.use_count(), 1u);
    }
    EXPECT_EQ(heap.live(), 0u);
}

TEST(String, ComparesWithLiteralsAndViews) {
    const string text("abc");
    EXPECT_TRUE(text == "abc");
    EXPECT_TRUE("abc" == text);
    EXPECT_TRUE(text == string_ref("abc"));
    EXPECT_TRUE(text != "abd");
    EXPECT_TRUE(text < "abd");
    EXPECT_TRUE("abb" < text);
    EXPECT_FALSE(text < text);
    EXPECT_TRUE(string(string_ref("a\0b", 3)) == string(string_ref("a\0b", 3)));
    EXPECT_FALSE(string(string_ref("a\0b", 3)) == "a");
}

TEST(String, BytesAbove127SortBeforeAscii) {
    EXPECT_LT(string("\xC3\xA9"), string("A"));
    EXPECT_LT(string("ab"), string("abc"));
    EXPECT_FALSE(string("abc") < string("ab"));
    EXPECT_FALSE(string("abc") < string("abc"));
    EXPECT_FALSE(string() < string());
    EXPECT_LT(string(), string("\x80"));
}

TEST(String, MapsAreSearchedWithoutMakingAString) {
    CountingHeap heap;
    std::map<string, int, nuo::string_less> map;
    map.emplace(string("one", heap), 1);
    map.emplace(string("\xC3\xA9", heap), 2);
    EXPECT_EQ(map.begin()->second, 2);
    EXPECT_EQ(map.find("one")->second, 1);
    EXPECT_EQ(map.find(string_ref("one!", 3))->second, 1);
    EXPECT_EQ(map.find(string("one"))->second, 1);
    EXPECT_EQ(map.find("two"), map.end());
    EXPECT_EQ(map.lower_bound("a")->second, 1);
    EXPECT_EQ(heap.requests.size(), 2u);
}

TEST(String, FilledStringIsZeroWhereNothingWasWritten) {
    const string text = string::filled(4, [](char* bytes) { bytes[1] = 'x'; });
    EXPECT_EQ(text, string_ref("\0x\0\0", 4));
    EXPECT_EQ(text.hash(), string(string_ref("\0x\0\0", 4)).hash());
    EXPECT_TRUE(string::filled(0, [](char*) { FAIL(); }).empty());
}

TEST(String, FilledStringFreesItsBlockWhenTheFillRaises) {
    CountingHeap heap;
    EXPECT_THROW(string::filled(
                     4, [](char*) { throw std::runtime_error("no"); }, heap),
                 std::runtime_error);
    EXPECT_EQ(heap.live(), 0u);
}

TEST(String, ImpossibleSizeIsAnAllocationFailure) {
    EXPECT_THROW(string::filled(~0ull - 8, [](char*) {}), std::bad_alloc);
}

TEST(String, SwapSwapsHeapAndBlock) {
    CountingHeap heap;
    string a("a", heap), b("b");
    a.swap(b);
    EXPECT_EQ(a, "b");
    EXPECT_EQ(b, "a");
    EXPECT_EQ(&b.get_allocator(), &heap);
}

}  // namespace
