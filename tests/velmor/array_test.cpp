#include "velmor/array.h"

#include <string>
#include <vector>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::CountingHeap;
using testing::Probe;
using testing::raises;
using testing::RuntimeTest;
using testing::text;
using testing::textOf;
using Log = std::vector<std::string>;

class ArrayTest : public RuntimeTest {
protected:
    Array makeArray(Type element) { return Array(element, &heap, nullptr); }

    Array makeInts(const std::vector<std::int32_t>& values) {
        Array array = makeArray(type("int"));
        for (std::int32_t value : values)
            array.push_back(Object(type("int"), &value));
        return array;
    }
    Array makeStrings(const std::vector<const char*>& values) {
        Array array = makeArray(type("string"));
        for (const char* value : values)
            push(array, value);
        return array;
    }
    void push(Array& array, const char* value) {
        nuo::string string(value);
        array.push_back(Object(type("string"), &string));
    }
    Array makeProbes(int count) {
        Array array = makeArray(probeType());
        array.resize(static_cast<std::uint64_t>(count));
        return array;
    }
    static std::vector<std::int32_t> ints(const Array& array) {
        std::vector<std::int32_t> values;
        for (const Object element : array)
            values.push_back(*bind<std::int32_t>(element));
        return values;
    }
    static Log strings(const Array& array) {
        Log values;
        for (const Object element : array)
            values.push_back(text(*bind<nuo::string>(element)));
        return values;
    }
};

using Ints = std::vector<std::int32_t>;

TEST(Array, AnUnboundArrayIsEmptyAndItsPositionsAreNull) {
    const Array array;
    EXPECT_FALSE(array.bound());
    EXPECT_FALSE(array.type().valid());
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.size(), 0u);
    EXPECT_EQ(array.capacity(), 0u);
    EXPECT_FALSE(array.begin().valid());
    EXPECT_EQ(array.begin(), array.end());
}

TEST(Array, IsAValueOfOnePointer) {
    EXPECT_EQ(sizeof(Array), sizeof(void*));
}

TEST_F(ArrayTest, AnEmptyBoundArrayHasNullPositionsToo) {
    const Array array = makeArray(type("int"));
    EXPECT_TRUE(array.bound());
    EXPECT_EQ(array.type(), type("int"));
    EXPECT_TRUE(array.empty());
    EXPECT_FALSE(array.begin().valid());
    EXPECT_EQ(array.begin(), array.end());
    EXPECT_EQ(heap.bytes, 0u);
}

TEST_F(ArrayTest, ElementsLieSideBySide) {
    const Array array = makeInts({1, 2, 3});
    EXPECT_EQ(array.size(), 3u);
    EXPECT_EQ(ints(array), (Ints{1, 2, 3}));
    EXPECT_EQ(*bind<std::int32_t>(array.front()), 1);
    EXPECT_EQ(*bind<std::int32_t>(array.back()), 3);
    EXPECT_EQ(*bind<std::int32_t>(array[1]), 2);
    EXPECT_EQ(static_cast<char*>(array[2].data()) - static_cast<char*>(array[0].data()), 8);
    EXPECT_EQ(array.begin(), array[0]);
    EXPECT_EQ(static_cast<char*>(array.end().data()) - static_cast<char*>(array[0].data()), 12);
}

TEST_F(ArrayTest, PositionsStepBySizeOfTheElement) {
    const Array array = makeInts({1, 2});
    Array::Position at = array.begin();
    EXPECT_EQ(*bind<std::int32_t>(*++at), 2);
    EXPECT_EQ(++at, array.end());
    EXPECT_EQ(*bind<std::int32_t>(*--at), 2);
}

TEST_F(ArrayTest, GrowingDoublesTheCapacityOrTakesHalfAsMuchAgain) {
    Array array = makeArray(type("int"));
    array.resize(1);
    EXPECT_EQ(array.capacity(), 6u) << "4 and half of it";
    array.resize(2);
    EXPECT_EQ(array.capacity(), 12u) << "8 is above 6 and below 12";
    array.resize(3);
    EXPECT_EQ(array.capacity(), 12u);
    array.resize(100);
    EXPECT_EQ(array.capacity(), 600u);
}

TEST_F(ArrayTest, PushBackConstructsThenAssigns) {
    Array array = makeProbes(0);
    Probe source;
    source.value = 7;
    Probe::takeLog();
    array.push_back(ConstObject(probeType(), &source));
    EXPECT_EQ(Probe::takeLog(), (Log{"make 2", "assign 1 to 2"}));
    EXPECT_EQ(bind<Probe>(array.front())->value, 7);
}

TEST_F(ArrayTest, PushBackTakesAnElementOfTheArrayItself) {
    Array array = makeStrings({"first", "second"});
    for (int i = 0; i < 20; ++i)
        array.push_back(array.front());
    EXPECT_EQ(array.size(), 22u);
    EXPECT_EQ(text(*bind<nuo::string>(array.back())), "first");
}

TEST_F(ArrayTest, PopBackEndsTheLastElement) {
    Array array = makeProbes(2);
    Probe::takeLog();
    array.pop_back();
    EXPECT_EQ(Probe::takeLog(), (Log{"end 2"}));
    EXPECT_EQ(array.size(), 1u);
}

TEST_F(ArrayTest, InsertOpensAGap) {
    Array array = makeInts({1, 3});
    std::int32_t value = 2;
    const Array::Position at = array.insert(array[1], Object(type("int"), &value));
    EXPECT_EQ(at, array[1]);
    EXPECT_EQ(ints(array), (Ints{1, 2, 3}));
    value = 0;
    array.insert(array.begin(), Object(type("int"), &value));
    value = 4;
    array.insert(array.end(), Object(type("int"), &value));
    EXPECT_EQ(ints(array), (Ints{0, 1, 2, 3, 4}));
}

TEST_F(ArrayTest, InsertIntoAnEmptyArrayTakesTheNullPosition) {
    Array array = makeArray(type("int"));
    std::int32_t value = 5;
    array.insert(array.end(), Object(type("int"), &value));
    EXPECT_EQ(ints(array), (Ints{5}));
}

TEST_F(ArrayTest, InsertConstructsInTheGapAndMovesTheOthersAsBytes) {
    Array array = makeProbes(2);
    Probe source;
    Probe::takeLog();
    array.insert(array[1], ConstObject(probeType(), &source));
    EXPECT_EQ(Probe::takeLog(), (Log{"make 4", "assign 3 to 4"}));
    EXPECT_EQ(bind<Probe>(array[0])->id, 1);
    EXPECT_EQ(bind<Probe>(array[1])->id, 4);
    EXPECT_EQ(bind<Probe>(array[2])->id, 2);
}

TEST_F(ArrayTest, InsertTakesAnElementOfTheArrayItself) {
    Array array = makeStrings({"a", "b", "c"});
    array.insert(array[1], array[2]);
    EXPECT_EQ(strings(array), (Log{"a", "c", "b", "c"}));
    array.insert(array[3], array[0]);
    EXPECT_EQ(strings(array), (Log{"a", "c", "b", "a", "c"}));
}

TEST_F(ArrayTest, AFailedInsertClosesTheGap) {
    Array array = makeProbes(2);
    Probe source;
    Probe::failAt = 4;
    EXPECT_THROW(array.insert(array[1], ConstObject(probeType(), &source)), std::bad_alloc);
    EXPECT_EQ(array.size(), 2u);
    EXPECT_EQ(bind<Probe>(array[1])->id, 2);
}

TEST_F(ArrayTest, EraseMovesTheLaterElementsByAssignment) {
    Array array = makeProbes(4);
    Probe::takeLog();
    const Array::Position at = array.erase(array[1]);
    EXPECT_EQ(at, array[1]);
    EXPECT_EQ(Probe::takeLog(), (Log{"assign 3 to 2", "assign 4 to 3", "end 4"}));
    EXPECT_EQ(array.size(), 3u);
}

TEST_F(ArrayTest, EraseOfTheLastElementAssignsNothing) {
    Array array = makeProbes(3);
    Probe::takeLog();
    array.erase(array.back());
    EXPECT_EQ(Probe::takeLog(), (Log{"end 3"}));
}

TEST_F(ArrayTest, EraseKeepsTheOrder) {
    Array array = makeStrings({"a", "b", "c"});
    array.erase(array.begin());
    EXPECT_EQ(strings(array), (Log{"b", "c"}));
}

TEST_F(ArrayTest, ResizeConstructsUpwardsAndEndsDownwards) {
    Array array = makeProbes(1);
    array.resize(3);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2", "make 3"}));
    const std::uint64_t capacity = array.capacity();
    array.resize(1);
    EXPECT_EQ(Probe::takeLog(), (Log{"end 3", "end 2"}));
    array.resize(0);
    EXPECT_EQ(Probe::takeLog(), (Log{"end 1"}));
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.capacity(), capacity);
}

TEST_F(ArrayTest, ResizeToNothingReleasesEachString) {
    const nuo::string shared("shared text");
    Array array = makeArray(type("string"));
    array.resize(3);
    for (const Object element : array) {
        bind<nuo::string>(element)->~basic_string();
        ::new (element.data()) nuo::string(shared);
    }
    EXPECT_EQ(shared.use_count(), 4u);
    const std::uint64_t capacity = array.capacity();
    array.resize(0);
    EXPECT_EQ(shared.use_count(), 1u);
    EXPECT_EQ(array.capacity(), capacity);
}

TEST_F(ArrayTest, NewElementsOfAPodAreZero) {
    Array array = makeInts({1, 2, 3});
    array.resize(0);
    array.resize(3);
    EXPECT_EQ(ints(array), (Ints{0, 0, 0}));
}

TEST_F(ArrayTest, AFailedResizeKeepsTheArrayAsItWas) {
    Array array = makeProbes(1);
    Probe::failAt = 3;
    EXPECT_THROW(array.resize(4), std::bad_alloc);
    EXPECT_EQ(array.size(), 1u);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2", "end 2"}));
}

TEST_F(ArrayTest, ClearEndsFromTheLastAndStaysBound) {
    Array array = makeProbes(2);
    Probe::takeLog();
    const std::uint64_t capacity = array.capacity();
    array.clear();
    EXPECT_EQ(Probe::takeLog(), (Log{"end 2", "end 1"}));
    EXPECT_TRUE(array.bound());
    EXPECT_EQ(array.capacity(), capacity);
    Array unbound;
    unbound.clear();
    EXPECT_FALSE(unbound.bound());
}

TEST_F(ArrayTest, AnArrayBeyondTheLimitsIsRefusedBeforeItAllocates) {
    EXPECT_TRUE(Array::fits(type("uint8"), std::uint64_t{1} << 31));
    EXPECT_FALSE(Array::fits(type("uint8"), (std::uint64_t{1} << 31) + 1));
    EXPECT_TRUE(Array::fits(type("double"), std::uint64_t{1} << 28));
    EXPECT_FALSE(Array::fits(type("double"), (std::uint64_t{1} << 28) + 1));
    EXPECT_FALSE(Array::fits(type("double"), std::uint64_t{1} << 61)) << "the product wraps to 0";
    EXPECT_FALSE(Array::fits(type("double"), ~std::uint64_t{0}));

    Array array = makeInts({1});
    const std::uint64_t bytes = heap.bytes;
    EXPECT_EQ(textOf<array_too_large>([&] { array.resize(std::uint64_t{1} << 62); }), "");
    EXPECT_TRUE(raises<array_too_large>([&] { array.resize((std::uint64_t{1} << 29) + 1); }));
    EXPECT_EQ(ints(array), (Ints{1}));
    EXPECT_EQ(heap.bytes, bytes);
}

TEST_F(ArrayTest, ElementsOfNoBytesAreNoElements) {
    const Type nothing = TypeBuilder().begin().setName("nothing").endBuild().adoptBy(root);
    Array array = makeArray(nothing);
    array.resize(3);
    EXPECT_EQ(array.size(), 0u);
    EXPECT_FALSE(Array::fits(nothing, (std::uint64_t{1} << 32) + 1));
}

TEST_F(ArrayTest, ACopyOfPodElementsIsOneBlock) {
    const Array source = makeInts({1, 2, 3});
    const Array copy(source);
    EXPECT_EQ(ints(copy), (Ints{1, 2, 3}));
    EXPECT_NE(copy[0].data(), source[0].data());
    EXPECT_EQ(copy.capacity(), 12u) << "exactly the bytes in use";
}

TEST_F(ArrayTest, ACopyConstructsAndAssignsOneElementAfterTheOther) {
    const Array source = makeProbes(2);
    Probe::takeLog();
    const Array copy(source);
    EXPECT_EQ(copy.size(), 2u);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 3", "assign 1 to 3", "make 4", "assign 2 to 4"}));
}

TEST_F(ArrayTest, AFailedCopyEndsTheElementsThatWereMade) {
    const Array source = makeProbes(3);
    Probe::takeLog();
    Probe::failAt = 5;
    EXPECT_THROW(Array(source).size(), std::bad_alloc);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 4", "assign 1 to 4", "end 4"}));
    EXPECT_EQ(source.size(), 3u);
}

TEST_F(ArrayTest, ACopyOfAnUnboundArrayIsUnbound) {
    const Array source;
    const Array copy(source);
    EXPECT_FALSE(copy.bound());
    Array assigned = makeInts({1});
    assigned = source;
    EXPECT_FALSE(assigned.bound());
}

TEST_F(ArrayTest, AssignmentCopiesAndEndsTheOldElements) {
    const Array source = makeProbes(1);
    Array target = makeProbes(2);
    Probe::takeLog();
    target = source;
    EXPECT_EQ(Probe::takeLog(), (Log{"make 4", "assign 1 to 4", "end 3", "end 2"}));
    EXPECT_EQ(target.size(), 1u);
}

TEST_F(ArrayTest, AssignmentToItselfDoesNothing) {
    Array array = makeProbes(1);
    Probe::takeLog();
    const Array& same = array;
    array = same;
    EXPECT_EQ(array.size(), 1u);
    EXPECT_TRUE(Probe::takeLog().empty());
}

TEST_F(ArrayTest, AnEmptyArrayTakesTheTypeOfTheSource) {
    Array target = makeArray(type("int"));
    const Array source = makeArray(type("double"));
    target = source;
    EXPECT_EQ(target.type(), type("double"));
    Array filled = makeInts({1, 2});
    filled = makeArray(type("int"));
    EXPECT_TRUE(filled.empty());
}

TEST_F(ArrayTest, SwapAndMoveChangeOwners) {
    Array first = makeInts({1});
    Array second = makeInts({2, 3});
    first.swap(second);
    EXPECT_EQ(ints(first), (Ints{2, 3}));
    EXPECT_EQ(ints(second), (Ints{1}));
    const Array moved(std::move(first));
    EXPECT_EQ(ints(moved), (Ints{2, 3}));
    EXPECT_FALSE(first.bound());
    second = Array(moved);
    EXPECT_EQ(ints(second), (Ints{2, 3}));
}

TEST_F(ArrayTest, EverythingGoesBackToTheHeap) {
    CountingHeap own;
    {
        Array array(type("string"), &own, nullptr);
        push(array, "one");
        push(array, "two");
        Array copy(array);
        push(copy, "three");
        array = copy;
        EXPECT_GT(own.bytes, 0u);
    }
    EXPECT_EQ(own.bytes, 0u);
    EXPECT_EQ(own.taken, own.given);
}

TEST_F(ArrayTest, ComparesByElementsThenByLength) {
    EXPECT_EQ(compareArrays(makeInts({1, 2}), makeInts({1, 2})), 0);
    EXPECT_EQ(compareArrays(makeInts({1, 2}), makeInts({1, 3})), -1);
    EXPECT_EQ(compareArrays(makeInts({2}), makeInts({1, 3})), 1);
    EXPECT_EQ(compareArrays(makeInts({1}), makeInts({1, 3})), -1);
    EXPECT_EQ(compareArrays(makeInts({1, 3}), makeInts({1})), 1);
    EXPECT_EQ(compareArrays(makeStrings({"a"}), makeStrings({"b"})), -1);
    EXPECT_EQ(compareArrays(Array(), Array()), 0);
    EXPECT_EQ(compareArrays(Array(), makeInts({1})), -1);
}

TEST_F(ArrayTest, ElementsThatDoNotCompareAreEqual) {
    EXPECT_EQ(compareArrays(makeProbes(2), makeProbes(2)), 0);
    EXPECT_EQ(compareArrays(makeProbes(1), makeProbes(2)), -1);
}

}  // namespace
}  // namespace velmor
