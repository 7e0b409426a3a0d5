#include "velmor/array_methods.h"

#include <string>
#include <vector>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::bufferOf;
using testing::Bytes;
using testing::bytesOf;
using testing::formOf;
using testing::readForm;
using testing::RuntimeTest;
using testing::text;
using testing::textOf;

/// Reads bytes and knows neither its size nor its position.
class Stream : public nuo::archive::archiveT<nuo::archive::reader> {
public:
    explicit Stream(const Bytes& bytes) : buffer_(bufferOf(bytes)), source_(buffer_) {}

    nuo::byte* read(nuo::archive::byte_range range) override { return source_.read(range); }
    bool readable() override { return source_.readable(); }
    nuo::archive::view_ptr view_rd(nuo::archive::offset_range) override { return nullptr; }
    bool viewable() override { return false; }

private:
    nuo::buffer<nuo::byte> buffer_;
    nuo::archive::buffer_in source_;
};

class ArrayMethodsTest : public RuntimeTest {
protected:
    ArrayMethodsTest() : creator(&heap, nullptr) {}

    Array& make(const char* element) {
        object = creator.create(makeArrayType(root, type(element)));
        return *bind<Array>(object);
    }
    std::string failureOf(const Bytes& bytes) {
        return textOf<nuo::archive::read_failed>([&] { readForm(object, bytes); });
    }

    ScopedObjectCreator creator;
    Object object;
};

TEST_F(ArrayMethodsTest, TheGenericHasTheLayoutOfOnePointer) {
    const Type generic = type("array");
    EXPECT_EQ(generic.payload(), 8u);
    EXPECT_EQ(generic.alignment(), 8u);
    EXPECT_FALSE(generic.isPod());
    EXPECT_TRUE(isNative<Array>(generic));
}

TEST_F(ArrayMethodsTest, ConstructBindsTheFirstArgument) {
    Array& array = make("double");
    EXPECT_TRUE(array.bound());
    EXPECT_EQ(array.type(), type("double"));
    EXPECT_TRUE(array.empty());
}

TEST_F(ArrayMethodsTest, ElementsComeFromTheHeapOfTheArray) {
    Array& array = make("double");
    const std::uint64_t before = heap.bytes;
    array.resize(2);
    EXPECT_EQ(heap.bytes, before + array.capacity());
}

TEST_F(ArrayMethodsTest, AssignCopiesTheElements) {
    Array& array = make("int");
    array.resize(2);
    *bind<std::int32_t>(array[1]) = 9;
    ScopedObjectCreator other(&heap, nullptr);
    const Object copy = other.create(object.type());
    object.type().methods().assign(object, copy);
    EXPECT_EQ(*bind<std::int32_t>((*bind<Array>(copy))[1]), 9);
    EXPECT_EQ(compare(object, copy), 0);
    *bind<std::int32_t>(array[1]) = 8;
    EXPECT_EQ(compare(object, copy), -1);
    EXPECT_EQ(compare(copy, object), 1);
}

TEST_F(ArrayMethodsTest, TheFormIsACountAndTheElements) {
    Array& array = make("short");
    EXPECT_EQ(formOf(object), (Bytes{0, 0, 0, 0}));
    array.resize(2);
    *bind<std::int16_t>(array[0]) = 0x0102;
    *bind<std::int16_t>(array[1]) = -1;
    EXPECT_EQ(formOf(object), (Bytes{2, 0, 0, 0, 2, 1, 255, 255}));
}

TEST_F(ArrayMethodsTest, TheFormOfStringsHasTheirLengths) {
    make("string");
    const Bytes bytes{2, 0, 0, 0, 1, 0, 0, 0, 'a', 0, 0, 0, 0};
    EXPECT_EQ(readForm(object, bytes), bytes.size());
    const Array& array = *bind<Array>(object);
    ASSERT_EQ(array.size(), 2u);
    EXPECT_EQ(text(*bind<nuo::string>(array[0])), "a");
    EXPECT_TRUE(bind<nuo::string>(array[1])->empty());
    EXPECT_EQ(formOf(object), bytes);
}

TEST_F(ArrayMethodsTest, AnArrayThatKnowsNoTypeReadsNothing) {
    Array& array = make("int");
    array = Array();
    ASSERT_FALSE(array.bound());
    EXPECT_EQ(failureOf({0, 0, 0, 0}), "");
}

TEST_F(ArrayMethodsTest, AnArrayOfArraysNestsTheForm) {
    makeArrayType(root, type("uint8"));
    make("uint8_array");
    const Bytes bytes{2, 0, 0, 0, 1, 0, 0, 0, 7, 0, 0, 0, 0};
    EXPECT_EQ(readForm(object, bytes), bytes.size());
    const Array& array = *bind<Array>(object);
    EXPECT_EQ(bind<Array>(array[0])->size(), 1u);
    EXPECT_EQ(formOf(object), bytes);
    EXPECT_EQ(text(object.type().name()), "uint8_array_array");
}

TEST_F(ArrayMethodsTest, ElementsOfUnitsHaveNoPaddingInTheForm) {
    Array& array = make("units_value");
    array.resize(2);
    EXPECT_EQ(formOf(object).size(), 4u + 2 * 12);
}

TEST_F(ArrayMethodsTest, ReadingReplacesWhatWasThere) {
    Array& array = make("uint8");
    array.resize(5);
    readForm(object, {2, 0, 0, 0, 8, 9});
    EXPECT_EQ(formOf(object), (Bytes{2, 0, 0, 0, 8, 9}));
    readForm(object, {0, 0, 0, 0});
    EXPECT_TRUE(array.empty());
    readForm(object, {3, 0, 0, 0, 1, 2, 3});
    EXPECT_EQ(formOf(object), (Bytes{3, 0, 0, 0, 1, 2, 3}));
}

TEST_F(ArrayMethodsTest, AStoredBoolIsAnyByteButZero) {
    Array& array = make("bool");
    readForm(object, {3, 0, 0, 0, 0, 1, 200});
    EXPECT_FALSE(*bind<bool>(array[0]));
    EXPECT_TRUE(*bind<bool>(array[1]));
    EXPECT_TRUE(*bind<bool>(array[2]));
    EXPECT_EQ(formOf(object), (Bytes{3, 0, 0, 0, 0, 1, 1}));
}

TEST_F(ArrayMethodsTest, FewerBytesThanElementsRaiseBeforeAnyElement) {
    Array& array = make("double");
    const std::uint64_t bytes = heap.bytes;
    EXPECT_EQ(failureOf({5, 0, 0, 0, 1, 2, 3, 4}), "");
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(heap.bytes, bytes);
}

TEST_F(ArrayMethodsTest, AsManyBytesAsElementsRaiseAtTheFirstShortElement) {
    make("double");
    const nuo::buffer<nuo::byte> buffer = bufferOf({5, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7});
    nuo::archive::buffer_in archive(buffer);
    EXPECT_EQ(textOf<nuo::archive::read_failed>(
                  [&] { object.type().methods().deserialize(archive, object, &heap, nullptr); }),
              "");
    EXPECT_EQ(archive.offset(), 11u) << "the count passed, the element took what was there";
}

TEST_F(ArrayMethodsTest, AShortElementLeavesTheEarlierOnes) {
    Array& array = make("string");
    EXPECT_EQ(failureOf({2, 0, 0, 0, 1, 0, 0, 0, 'a', 9, 0, 0, 0}), "");
    EXPECT_EQ(text(*bind<nuo::string>(array[0])), "a");
}

TEST_F(ArrayMethodsTest, AShortCountRaises) {
    make("double");
    EXPECT_EQ(failureOf({5, 0, 0}), "");
}

TEST_F(ArrayMethodsTest, ACountFromAStreamOfUnknownSizeClaimsNoMemory) {
    make("double");
    const std::uint64_t before = heap.bytes;
    Stream stream({0, 0, 0, 8, 1, 2, 3});
    EXPECT_EQ(textOf<nuo::archive::read_failed>(
                  [&] { object.type().methods().deserialize(stream, object, &heap, nullptr); }),
              "");
    EXPECT_LT(heap.bytes - before, 256u * 1024);
}

TEST_F(ArrayMethodsTest, ACountBeyondTheLimitsRaises) {
    make("double");
    Stream stream({255, 255, 255, 255, 1, 2, 3});
    EXPECT_EQ(textOf<nuo::archive::read_failed>(
                  [&] { object.type().methods().deserialize(stream, object, &heap, nullptr); }),
              "");
    EXPECT_TRUE(bind<Array>(object)->empty());
}

TEST_F(ArrayMethodsTest, ALongArrayIsReadFromAStreamInPieces) {
    make("int");
    const int count = 100000;
    Bytes bytes{count & 255, (count >> 8) & 255, (count >> 16) & 255, 0};
    for (int i = 0; i < count; ++i) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back((i >> shift) & 255);
    }
    Stream stream(bytes);
    object.type().methods().deserialize(stream, object, &heap, nullptr);
    const Array& array = *bind<Array>(object);
    ASSERT_EQ(array.size(), static_cast<std::uint64_t>(count));
    EXPECT_EQ(*bind<std::int32_t>(array[16383]), 16383);
    EXPECT_EQ(*bind<std::int32_t>(array[16384]), 16384);
    EXPECT_EQ(*bind<std::int32_t>(array.back()), count - 1);
    EXPECT_EQ(formOf(object), bytes);
}

TEST_F(ArrayMethodsTest, AnArrayInARecordIsReadInItsPlace) {
    TypeBuilder builder;
    const Type record = builder.begin()
                            .setName("record")
                            .addMember("flag", "bool", type("bool"))
                            .addMember("list", "uint8_array", makeArrayType(root, type("uint8")))
                            .addMember("tail", "short", type("short"))
                            .endBuild()
                            .adoptBy(root);
    object = creator.create(record);
    const Bytes bytes{1, 2, 0, 0, 0, 5, 6, 3, 0};
    EXPECT_EQ(readForm(object, bytes), bytes.size());
    EXPECT_EQ(bind<Array>(object.member("list").asObject())->size(), 2u);
    EXPECT_EQ(*bind<std::int16_t>(object.member("tail").asObject()), 3);
    EXPECT_EQ(formOf(object), bytes);
}

TEST_F(ArrayMethodsTest, TheExampleOfTheFormatPageReadsBack) {
    TypeBuilder builder;
    const Type record = builder.begin()
                            .setName("example")
                            .addMember("flag", "bool", type("bool"))
                            .addMember("list", "short_array", makeArrayType(root, type("short")))
                            .addMember("length", "units_value", type("units_value"))
                            .endBuild()
                            .adoptBy(root);
    object = creator.create(record);
    const Bytes bytes{1, 2, 0, 0, 0, 1, 0, 255, 255, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 64};
    EXPECT_EQ(readForm(object, bytes), bytes.size());
    EXPECT_TRUE(*bind<bool>(object.member("flag").asObject()));
    const Array& list = *bind<Array>(object.member("list").asObject());
    EXPECT_EQ(*bind<std::int16_t>(list[0]), 1);
    EXPECT_EQ(*bind<std::int16_t>(list[1]), -1);
    const UnitsValue& length = *bind<UnitsValue>(object.member("length").asObject());
    EXPECT_EQ(length.unit, 7u);
    EXPECT_EQ(length.value, 2.0);
    EXPECT_EQ(formOf(object), bytes);
}

}  // namespace
}  // namespace velmor
