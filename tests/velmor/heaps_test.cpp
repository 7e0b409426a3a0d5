// Which heaps reach the values, wherever they are made or read.

#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "velmor/array.h"
#include "velmor/support.h"

namespace velmor {
namespace {

using testing::bufferOf;
using testing::CountingHeap;
using ::testing::Each;
using ::testing::ElementsAre;
using testing::RuntimeTest;

using Heaps = std::pair<nuo::heap*, nuo::ext_heap*>;

/// A number that is not plain memory and notes the heaps that it is given.
class NotingMethods : public PrimitiveMethods<std::int32_t> {
public:
    void construct(Object object, nuo::heap* heap, nuo::ext_heap* extHeap) const override {
        made.emplace_back(heap, extHeap);
        PrimitiveMethods::construct(object, heap, extHeap);
    }
    void deserialize(nuo::archive::reader& reader, Object object, nuo::heap* heap,
                     nuo::ext_heap* extHeap) const override {
        read.emplace_back(heap, extHeap);
        PrimitiveMethods::deserialize(reader, object, heap, extHeap);
    }
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override {
        PrimitiveMethods::beginLayout(payload, offset, alignment, pod);
        pod = false;
    }

    static inline std::vector<Heaps> made;
    static inline std::vector<Heaps> read;
};

class HeapsTest : public RuntimeTest {
protected:
    HeapsTest() : creator(&heap, ext) {
        static const NotingMethods methods;
        TypeBuilder builder;
        number = builder.begin(&methods).setName("number").endBuild().adoptBy(root);
        NotingMethods::made.clear();
        NotingMethods::read.clear();
    }
    void read(Object object, const testing::Bytes& bytes) {
        const nuo::buffer<nuo::byte> buffer = bufferOf(bytes);
        nuo::archive::buffer_in archive(buffer);
        object.type().methods().deserialize(archive, object, &other, ext);
    }

    nuo::ext_heap* const ext = &nuo::get_extern_heap();
    CountingHeap other;
    ScopedObjectCreator creator;
    Type number;
};

TEST_F(HeapsTest, ACreatorHandsItsHeapsToTheValue) {
    creator.create(number);
    EXPECT_THAT(NotingMethods::made, ElementsAre(Heaps(&heap, ext)));
}

TEST_F(HeapsTest, ARecordHandsThemToItsItems) {
    TypeBuilder builder;
    const Type record = builder.begin()
                            .setName("record")
                            .addBase("number", number)
                            .addMember("n", "number", number)
                            .endBuild()
                            .adoptBy(root);
    const Object object = creator.create(record);
    EXPECT_THAT(NotingMethods::made, ElementsAre(Heaps(&heap, ext), Heaps(&heap, ext)));
    read(object, {1, 0, 0, 0, 2, 0, 0, 0});
    EXPECT_THAT(NotingMethods::read, ElementsAre(Heaps(&other, ext), Heaps(&other, ext)));
}

TEST_F(HeapsTest, AnArrayHandsItsOwnToItsElementsAndACopyKeepsThem) {
    Array array(number, &other, ext);
    array.resize(2);
    std::int32_t value = 7;
    array.push_back(Object(number, &value));
    array.insert(array.begin(), Object(number, &value));
    const Array copy(array);
    EXPECT_EQ(NotingMethods::made.size(), 8u);
    EXPECT_THAT(NotingMethods::made, Each(Heaps(&other, ext)));
    EXPECT_EQ(copy.size(), 4u);
}

TEST_F(HeapsTest, ACopyOfPlainElementsTakesItsBytesFromTheHeapOfTheSource) {
    Array array(type("int"), &other, ext);
    array.resize(3);
    const std::uint64_t before = other.bytes;
    const Array copy(array);
    EXPECT_EQ(other.bytes, before + 12);
}

TEST_F(HeapsTest, AnArrayIsMadeWithItsOwnAndReadWithTheGivenOnes) {
    const Object object = creator.create(makeArrayType(root, number));
    read(object, {2, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0});
    EXPECT_THAT(NotingMethods::made, ElementsAre(Heaps(&heap, ext), Heaps(&heap, ext)));
    EXPECT_THAT(NotingMethods::read, ElementsAre(Heaps(&other, ext), Heaps(&other, ext)));
}

}  // namespace
}  // namespace velmor
