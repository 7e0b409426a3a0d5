#include "velmor/start_runtime.h"

#include <string>
#include <vector>

#include "velmor/array.h"
#include "velmor/support.h"

namespace velmor {
namespace {

using testing::formOf;
using testing::RuntimeTest;
using testing::text;

struct Row {
    const char* name;
    std::uint64_t size;
    std::uint64_t alignment;
    bool pod;
    /// Bytes in the form of a new value.
    std::size_t form;
};

class PrimitiveRowTest : public RuntimeTest, public ::testing::WithParamInterface<Row> {};

TEST_P(PrimitiveRowTest, HasItsLayoutFormAndAlias) {
    const Row& row = GetParam();
    const Type made = root.findChild("sys").findType(row.name);
    ASSERT_TRUE(made.valid());
    EXPECT_EQ(made.payload(), row.size);
    EXPECT_EQ(made.alignment(), row.alignment);
    EXPECT_EQ(made.isPod(), row.pod);
    EXPECT_TRUE(made.items().empty());
    EXPECT_EQ(text(made.name()), row.name);
    EXPECT_EQ(text(made.fullName()), std::string(".sys.") + row.name);
    ScopedObjectCreator creator(&heap, nullptr);
    EXPECT_EQ(formOf(creator.create(made)).size(), row.form);

    const TypeAlias alias = root.findAlias(row.name);
    ASSERT_TRUE(alias.valid());
    EXPECT_EQ(text(alias.typeName()), std::string(".sys.") + row.name);
    EXPECT_EQ(alias.type(), made);
    EXPECT_EQ(makeNamespace("deep.down").locateType(row.name), made);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PrimitiveRowTest,
    ::testing::Values(
        Row{"bool", 1, 1, true, 1}, Row{"short", 2, 2, true, 2}, Row{"ushort", 2, 2, true, 2},
        Row{"int", 4, 4, true, 4}, Row{"uint", 4, 4, true, 4}, Row{"long", 4, 4, true, 4},
        Row{"ulong", 4, 4, true, 4}, Row{"longlong", 8, 8, true, 8},
        Row{"ulonglong", 8, 8, true, 8}, Row{"float", 4, 4, true, 4}, Row{"double", 8, 8, true, 8},
        Row{"int8", 1, 1, true, 1}, Row{"uint8", 1, 1, true, 1}, Row{"int16", 2, 2, true, 2},
        Row{"uint16", 2, 2, true, 2}, Row{"int32", 4, 4, true, 4}, Row{"uint32", 4, 4, true, 4},
        Row{"int64", 8, 8, true, 8}, Row{"uint64", 8, 8, true, 8}, Row{"byte", 1, 1, true, 1},
        Row{"pointer", 8, 8, true, 8}, Row{"type", 8, 8, false, 0}, Row{"string", 16, 8, false, 4},
        Row{"matrix44", 128, 8, true, 128}, Row{"color3", 24, 8, true, 24},
        Row{"color4", 32, 8, true, 32}, Row{"units_value", 16, 8, true, 12},
        Row{"vector3", 24, 8, true, 24}, Row{"vector4", 32, 8, true, 32},
        Row{"byte_buffer", 32, 8, false, 4}),
    [](const ::testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

class StartRuntimeTest : public RuntimeTest {};

TEST_F(StartRuntimeTest, TheVocabularyIsThePrimitivesAndThreeGenerics) {
    const Namespace sys = root.findChild("sys");
    EXPECT_EQ(sys.imp()->types.size(), 33u);
    EXPECT_EQ(root.imp()->aliases.size(), 33u);
    EXPECT_TRUE(root.imp()->types.empty());
    EXPECT_EQ(root.imp()->children.size(), 1u);
    EXPECT_EQ(sys.parent(), root);
    EXPECT_TRUE(sys.imp()->aliases.empty());
}

TEST_F(StartRuntimeTest, NativeClassesStandBehindTheRows) {
    EXPECT_TRUE(isNative<bool>(type("bool")));
    EXPECT_TRUE(isNative<std::int32_t>(type("long")));
    EXPECT_TRUE(isNative<std::uint32_t>(type("ulong")));
    EXPECT_TRUE(isNative<std::int64_t>(type("longlong")));
    EXPECT_TRUE(isNative<std::uint8_t>(type("byte")));
    EXPECT_TRUE(isNative<void*>(type("pointer")));
    EXPECT_TRUE(isNative<Type>(type("type")));
    EXPECT_TRUE(isNative<nuo::string>(type("string")));
    EXPECT_TRUE(isNative<UnitsValue>(type("units_value")));
    EXPECT_TRUE(isNative<nuo::buffer<nuo::byte>>(type("byte_buffer")));
}

TEST_F(StartRuntimeTest, TwinsAreTypesOfTheirOwnWithOneTag) {
    const std::pair<const char*, const char*> twins[] = {
        {"int16", "short"},    {"uint16", "ushort"},    {"int32", "int"},
        {"uint32", "uint"},    {"long", "int"},         {"ulong", "uint"},
        {"int64", "longlong"}, {"uint64", "ulonglong"}, {"byte", "uint8"},
    };
    for (const auto& [name, twin] : twins) {
        EXPECT_NE(type(name), type(twin)) << name;
        EXPECT_EQ(&type(name).methods(), &type(twin).methods()) << name;
        EXPECT_EQ(type(name).methods().typeinfo(), type(twin).methods().typeinfo()) << name;
    }
}

TEST_F(StartRuntimeTest, ARefHasAnOpenArgumentAndAPointer) {
    const Type ref = type(".sys.ref");
    EXPECT_EQ(ref.unresolvedArgs(), 1u);
    ASSERT_NE(ref.arg("ref_type"), nullptr);
    EXPECT_TRUE(ref.arg("ref_type")->typeName().empty());
    ASSERT_EQ(ref.items().size(), 1u);
    EXPECT_EQ(text(ref.items()[0].name()), "to");
    EXPECT_EQ(text(ref.items()[0].typeName()), "pointer");
    EXPECT_EQ(ref.items()[0].type(), type("pointer"));
    EXPECT_EQ(ref.payload(), 8u);
    EXPECT_TRUE(ref.isPod());
    EXPECT_EQ(text(root.findAlias("ref").typeName()), ".sys.ref");
    EXPECT_EQ(type("ref"), ref);
}

TEST_F(StartRuntimeTest, ADynamicRefIsATypeAndAPointer) {
    const Type ref = type(".sys.dynamic_ref");
    ASSERT_EQ(ref.items().size(), 2u);
    EXPECT_EQ(text(ref.items()[0].name()), "type");
    EXPECT_EQ(text(ref.items()[0].typeName()), "type");
    EXPECT_EQ(ref.items()[0].type(), type("type"));
    EXPECT_EQ(text(ref.items()[1].name()), "to");
    EXPECT_EQ(text(ref.items()[1].typeName()), "pointer");
    EXPECT_EQ(ref.items()[1].offset(), 8u);
    EXPECT_EQ(ref.payload(), 16u);
    EXPECT_FALSE(ref.isPod());
    EXPECT_EQ(ref.unresolvedArgs(), 0u);
    EXPECT_EQ(text(root.findAlias("dynamic_ref").typeName()), ".sys.dynamic_ref");
}

TEST_F(StartRuntimeTest, AnArrayHasAnOpenArgument) {
    const Type array = type("array");
    EXPECT_EQ(type(".sys.array"), array);
    EXPECT_EQ(array.unresolvedArgs(), 1u);
    ASSERT_NE(array.arg("value_type"), nullptr);
    EXPECT_TRUE(array.arg("value_type")->typeName().empty());
    EXPECT_TRUE(array.items().empty());
    EXPECT_EQ(text(root.findAlias("array").typeName()), ".sys.array");
}

TEST_F(StartRuntimeTest, AnArrayTypeIsMadeOnceForItsElement) {
    const Namespace run = makeNamespace("run");
    const Type made = makeArrayType(run, type("color3"));
    EXPECT_EQ(text(made.name()), "color3_array");
    EXPECT_EQ(text(made.fullName()), ".run.color3_array");
    EXPECT_EQ(made.model(), type("array"));
    EXPECT_EQ(text(made.modelName()), "array");
    EXPECT_EQ(made.unresolvedArgs(), 0u);
    EXPECT_EQ(made.arg("value_type")->type(), type("color3"));
    EXPECT_EQ(text(made.arg("value_type")->typeName()), ".sys.color3");
    EXPECT_EQ(makeArrayType(run, type("color3")), made);
    EXPECT_EQ(root.locateType("run.color3_array"), made);
}

TEST_F(StartRuntimeTest, TwoRuntimesShareMethodsAndNoTypes) {
    Runtime other("other", &heap, nullptr);
    startRuntime(other);
    const Type there = other.root().locateType("double");
    EXPECT_NE(there, type("double"));
    EXPECT_EQ(&there.methods(), &type("double").methods());
}

}  // namespace
}  // namespace velmor
