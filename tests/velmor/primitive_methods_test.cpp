#include "velmor/primitive_methods.h"

#include <limits>
#include <optional>
#include <string>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::bufferOf;
using testing::Bytes;
using testing::formOf;
using testing::readForm;
using testing::RuntimeTest;
using testing::text;
using testing::textOf;

class PrimitiveMethodsTest : public RuntimeTest {
protected:
    /// A value in a creator of its own: a creator ends its old value as one of the new type.
    using Slot = std::optional<ScopedObjectCreator>;

    Object create(Slot& slot, Type made) { return slot.emplace(&heap, nullptr).create(made); }
    template <class T>
    T& make(Slot& slot, const char* name) {
        return *bind<T>(create(slot, type(name)));
    }
    /// Compares two values of the type `name`.
    template <class T>
    int order(const char* name, T left, T right) {
        make<T>(first, name) = left;
        make<T>(second, name) = right;
        return compare(first->get(), second->get());
    }
    template <class T>
    void expectOrder(const char* name, T less, T more) {
        EXPECT_EQ(order(name, less, more), -1) << name;
        EXPECT_EQ(order(name, more, less), 1) << name;
        EXPECT_EQ(order(name, less, less), 0) << name;
    }

    Slot first;
    Slot second;
};

TEST_F(PrimitiveMethodsTest, ANewValueIsZeroOrEmpty) {
    for (const Type each : root.findChild("sys").types()) {
        if (each.unresolvedArgs() != 0) continue;
        const Bytes form = formOf(create(first, each));
        EXPECT_EQ(form, Bytes(form.size(), 0)) << text(each.name());
    }
}

TEST_F(PrimitiveMethodsTest, EachValueReadsBackAsItWasWritten) {
    for (const Type each : root.findChild("sys").types()) {
        if (each.unresolvedArgs() != 0) continue;
        const Object object = create(first, each);
        Bytes bytes(formOf(object).size(), 1);
        if (text(each.name()) == "string" || text(each.name()) == "byte_buffer") {
            bytes = {2, 0, 0, 0, 7, 8};
        }
        EXPECT_EQ(readForm(object, bytes), bytes.size()) << text(each.name());
        EXPECT_EQ(formOf(object), bytes) << text(each.name());
        const Object copy = create(second, each);
        each.methods().assign(object, copy);
        EXPECT_EQ(formOf(copy), bytes) << text(each.name());
    }
}

TEST_F(PrimitiveMethodsTest, ABoolIsReadThroughItsByte) {
    bool& value = make<bool>(first, "bool");
    readForm(first->get(), {2});
    EXPECT_TRUE(value);
    EXPECT_EQ(formOf(first->get()), (Bytes{1}));
    readForm(first->get(), {0});
    EXPECT_FALSE(value);
}

TEST_F(PrimitiveMethodsTest, UnitsLeaveTheirPaddingOut) {
    UnitsValue& value = make<UnitsValue>(first, "units_value");
    EXPECT_EQ(first->get().type().payload(), 16u);
    value = {0x01020304, 1.0};
    EXPECT_EQ(formOf(first->get()), (Bytes{4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    readForm(first->get(), {9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40});
    EXPECT_EQ(value.unit, 9u);
    EXPECT_EQ(value.value, 2.0);
}

TEST_F(PrimitiveMethodsTest, AMatrixIsSixteenDoublesInOrder) {
    Matrix44& value = make<Matrix44>(first, "matrix44");
    for (int i = 0; i < 16; ++i)
        value.m[i] = i % 2 ? 1.0 : 0.0;
    const Bytes form = formOf(first->get());
    ASSERT_EQ(form.size(), 128u);
    EXPECT_EQ(form[7], 0);
    EXPECT_EQ(form[15], 0x3F);
    EXPECT_EQ(form[127], 0x3F);
}

TEST_F(PrimitiveMethodsTest, ColoursAndVectorsAreTheirDoublesInOrder) {
    make<Color4>(first, "color4") = {1, 0, 0, 2};
    const Bytes wanted{0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0,
                       0, 0, 0, 0, 0, 0, 0,    0,    0, 0, 0, 0, 0, 0, 0, 0x40};
    EXPECT_EQ(formOf(first->get()), wanted);
    make<Vector4>(first, "vector4") = {1, 0, 0, 2};
    EXPECT_EQ(formOf(first->get()), wanted);
    const Bytes three(wanted.begin(), wanted.begin() + 24);
    make<Color3>(first, "color3") = {1, 0, 0};
    EXPECT_EQ(formOf(first->get()), three);
    make<Vector3>(first, "vector3") = {1, 0, 0};
    EXPECT_EQ(formOf(first->get()), three);
}

TEST_F(PrimitiveMethodsTest, StringsAndBuffersAreLengthAndBytes) {
    make<nuo::string>(first, "string") = nuo::string("ab");
    EXPECT_EQ(formOf(first->get()), (Bytes{2, 0, 0, 0, 'a', 'b'}));
    make<nuo::buffer<nuo::byte>>(first, "byte_buffer") = bufferOf({1, 0, 255});
    EXPECT_EQ(formOf(first->get()), (Bytes{3, 0, 0, 0, 1, 0, 255}));
}

TEST_F(PrimitiveMethodsTest, AShortValueRaises) {
    for (const Type each : root.findChild("sys").types()) {
        if (each.unresolvedArgs() != 0) continue;
        const Object object = create(first, each);
        Bytes bytes(formOf(object).size(), 0);
        if (bytes.empty()) continue;
        bytes.pop_back();
        EXPECT_EQ(textOf<nuo::archive::read_failed>([&] { readForm(object, bytes); }), "")
            << text(each.name());
    }
}

TEST_F(PrimitiveMethodsTest, ATypeIsNotStored) {
    make<Type>(first, "type") = type("int");
    EXPECT_EQ(formOf(first->get()), Bytes());
    EXPECT_EQ(readForm(first->get(), {1, 2, 3}), 0u);
    EXPECT_EQ(*bind<Type>(first->get()), type("int"));
}

TEST_F(PrimitiveMethodsTest, NumbersCompareByTheirOwnLessThan) {
    expectOrder<bool>("bool", false, true);
    expectOrder<std::int16_t>("short", -1, 1);
    expectOrder<std::uint16_t>("ushort", 1, 0xFFFF);
    expectOrder<std::int32_t>("int", -1, 1);
    expectOrder<std::uint32_t>("uint", 1, 0xFFFFFFFF);
    expectOrder<std::int32_t>("long", -1, 1);
    expectOrder<std::uint32_t>("ulong", 1, 0xFFFFFFFF);
    expectOrder<std::int64_t>("longlong", -1, 1);
    expectOrder<std::uint64_t>("ulonglong", 1, ~std::uint64_t{0});
    expectOrder<float>("float", -1.5F, 1.5F);
    expectOrder<double>("double", -1.5, 1.5);
    expectOrder<std::int8_t>("int8", -1, 1);
    expectOrder<std::uint8_t>("uint8", 1, 255);
    expectOrder<std::uint8_t>("byte", 1, 255);
}

TEST_F(PrimitiveMethodsTest, WhatIsNotANumberIsEqualToAll) {
    EXPECT_EQ(order<double>("double", std::numeric_limits<double>::quiet_NaN(), 1), 0);
}

TEST_F(PrimitiveMethodsTest, CompoundValuesCompareLexicographically) {
    expectOrder<nuo::string>("string", "a", "ab");
    expectOrder<nuo::string>("string", "\xC3", "A");
    expectOrder<Matrix44>("matrix44", Matrix44{{1}}, Matrix44{{2}});
    expectOrder<Color3>("color3", {1, 2, 3}, {1, 2, 4});
    expectOrder<Color4>("color4", {1, 2, 3, 4}, {1, 3, 3, 4});
    expectOrder<UnitsValue>("units_value", {1, 5}, {2, 0});
    expectOrder<Vector3>("vector3", {0, 0, 0}, {1, 0, 0});
    expectOrder<Vector4>("vector4", {0, 0, 0, 0}, {0, 0, 0, 1});
    expectOrder<nuo::buffer<nuo::byte>>("byte_buffer", bufferOf({1}), bufferOf({255}));
    expectOrder<nuo::buffer<nuo::byte>>("byte_buffer", bufferOf({1}), bufferOf({1, 0}));
    expectOrder<nuo::buffer<nuo::byte>>("byte_buffer", bufferOf({}), bufferOf({0}));
}

TEST_F(PrimitiveMethodsTest, OnlyTypesPointersAndRecordsDoNotCompare) {
    for (const Type each : root.findChild("sys").types()) {
        const std::string name = text(each.name());
        const bool plain =
            name == "type" || name == "pointer" || name == "ref" || name == "dynamic_ref";
        const ExtendMethods* const extend = each.methods().extendMethods();
        EXPECT_EQ(extend == nullptr, plain) << name;
        if (extend == nullptr) continue;
        EXPECT_EQ(extend->reserved, nullptr) << name;
    }
}

TEST_F(PrimitiveMethodsTest, ADerivedClassMayBindAClassThatStoresNothing) {
    struct Handle {
        int value = 3;
    };
    const PrimitiveMethods<Handle>& methods = PrimitiveMethods<Handle>::instance();
    TypeBuilder builder;
    const Type handle = builder.begin(&methods).setName("Handle").endBuild().adoptBy(root);
    EXPECT_EQ(handle.payload(), sizeof(Handle));
    EXPECT_EQ(handle.alignment(), alignof(Handle));
    EXPECT_EQ(bind<Handle>(create(first, handle))->value, 3);
    EXPECT_EQ(formOf(first->get()), Bytes());
    EXPECT_EQ(methods.extendMethods(), nullptr);
}

TEST_F(PrimitiveMethodsTest, ALayoutOfANativeClassIsNotChangedByItems) {
    TypeBuilder builder;
    builder.begin(&PrimitiveMethods<double>::instance()).addMember("m", "int", type("int"));
    EXPECT_EQ(builder.get().payload(), 8u);
    EXPECT_EQ(builder.get().alignment(), 8u);
}

}  // namespace
}  // namespace velmor
