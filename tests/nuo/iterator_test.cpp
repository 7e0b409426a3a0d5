#include "nuo/common/iterator.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <vector>

#include "tests/support/virtualslots.h"

namespace {

using IntTraits = nuo::const_itr_traits<int>;
using IntIterator = nuo::IteratorT<IntTraits>;

/// Yields a member of its own, so that the address of the element tells where it lives.
template <std::size_t Words>
struct Counter {
    explicit Counter(int start) : value(start) { ++live; }
    Counter(const Counter& other) : value(other.value) { ++live; }
    Counter& operator=(const Counter&) = default;
    ~Counter() { --live; }
    const int& operator*() const { return value; }
    Counter& operator++() {
        ++value;
        return *this;
    }
    bool operator==(const Counter& other) const { return value == other.value; }

    int value;
    std::array<void*, Words> ballast{};
    static inline int live = 0;
};

bool LiesInside(const IntIterator& iterator) {
    const auto* element = reinterpret_cast<const char*>(&*iterator);
    const auto* first = reinterpret_cast<const char*>(&iterator);
    return element >= first && element < first + sizeof iterator;
}

TEST(Iterator, HasThirtyTwoInlineBytesAndAPointer) {
    EXPECT_EQ(sizeof(IntIterator), 40u);
}

TEST(Iterator, SmallOnesLiveInTheValueItself) {
    const IntIterator small{Counter<1>(5)};
    EXPECT_TRUE(LiesInside(small));
    const IntIterator copy(small);
    EXPECT_TRUE(LiesInside(copy));
    EXPECT_EQ(*copy, 5);
}

TEST(Iterator, LargeOnesLiveOnTheHeap) {
    {
        IntIterator large{Counter<8>(5)};
        EXPECT_FALSE(LiesInside(large));
        IntIterator copy(large);
        ++copy;
        EXPECT_EQ(*large, 5);
        EXPECT_EQ(*copy, 6);
        large = copy;
        EXPECT_EQ(*large, 6);
        EXPECT_TRUE(large == copy);
        EXPECT_EQ(Counter<8>::live, 2);
    }
    EXPECT_EQ(Counter<8>::live, 0);
}

TEST(Iterator, AssignmentReplacesSmallByLargeAndBack) {
    {
        IntIterator iterator{Counter<1>(1)};
        iterator = IntIterator{Counter<8>(2)};
        EXPECT_EQ(*iterator, 2);
        iterator = IntIterator{Counter<1>(3)};
        EXPECT_EQ(*iterator, 3);
        iterator = IntIterator();
        EXPECT_FALSE(iterator.valid());
    }
    EXPECT_EQ(Counter<1>::live, 0);
    EXPECT_EQ(Counter<8>::live, 0);
}

TEST(Iterator, ForwardOnlyOnesDoNotStepBack) {
    IntIterator iterator{Counter<1>(5)};
    --iterator;
    EXPECT_EQ(*iterator, 5);
}

TEST(Iterator, WalksBothWays) {
    const std::vector<int> numbers = {1, 2, 3};
    IntIterator at{numbers.begin()};
    EXPECT_EQ(*at++, 1);
    EXPECT_EQ(*++at, 3);
    EXPECT_EQ(*at--, 3);
    EXPECT_EQ(*--at, 1);
    EXPECT_TRUE(at == IntIterator{numbers.begin()});
    EXPECT_TRUE(at != IntIterator{numbers.end()});
}

TEST(Iterator, EmptyOnesAreEqual) {
    EXPECT_TRUE(IntIterator() == IntIterator());
    EXPECT_FALSE(IntIterator() == IntIterator{Counter<1>(1)});
}

TEST(Iterator, Swaps) {
    IntIterator a{Counter<1>(1)}, b{Counter<1>(2)}, none;
    a.swap(b);
    EXPECT_EQ(*a, 2);
    EXPECT_EQ(*b, 1);
    a.swap(none);
    EXPECT_FALSE(a.valid());
    EXPECT_EQ(*none, 2);
}

/// A map iterator that makes its element on the fly.
struct Keys {
    std::map<int, int>::const_iterator at;
    int operator*() const { return at->first; }
    Keys& operator++() {
        ++at;
        return *this;
    }
    Keys& operator--() {
        --at;
        return *this;
    }
    bool operator==(const Keys&) const = default;
};

TEST(Iterator, StoresElementsThatAreMadeOnTheFly) {
    const std::map<int, int> map = {{7, 0}, {8, 0}};
    const auto keys = nuo::make_range<int>(Keys{map.begin()}, Keys{map.end()});
    EXPECT_TRUE(LiesInside(keys.first));
    std::vector<int> found;
    for (const int& key : keys)
        found.push_back(key);
    EXPECT_EQ(found, (std::vector<int>{7, 8}));
    EXPECT_FALSE(keys.empty());
}

TEST(Iterator, HandsOutByValueWhereTheTraitsSaySo) {
    const std::map<int, int> map = {{7, 0}};
    const auto keys = nuo::make_range<int, int>(Keys{map.begin()}, Keys{map.end()});
    EXPECT_EQ(*keys.first, 7);
    EXPECT_EQ(*keys.first.operator->().operator->(), 7);
}

TEST(Iterator, ArrowReachesMembers) {
    const std::map<int, int> map = {{7, 9}};
    using Pair = std::pair<const int, int>;
    const auto pairs = nuo::make_range<Pair>(map.begin(), map.end());
    EXPECT_EQ(pairs.first->second, 9);
}

TEST(IteratorImp, OperationsKeepTheirOrder) {
    using halvern_tests::Place;
    using Base = nuo::IteratorImpBase<IntTraits>;
    halvern_tests::ExpectOrder(
        0, {Place(&Base::current), Place(&Base::next), Place(&Base::previous), Place(&Base::clone),
            Place(&Base::destroy), Place(&Base::equal_to), Place(&Base::swap),
            halvern_tests::kDestructor, Place(&Base::storage_size)});
}

TEST(IteratorImp, CloneIntoNullGivesNull) {
    const nuo::IteratorImp<IntTraits, Counter<1>> imp{Counter<1>(1)};
    EXPECT_EQ(imp.clone(nullptr), nullptr);
}

}  // namespace
