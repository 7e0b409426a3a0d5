#include "velmor/type.h"

#include <vector>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::RuntimeTest;
using testing::text;

class TypeTest : public RuntimeTest {
protected:
    TypeBuilder builder;
};

TEST(Type, TheNullHandleIsInvalid) {
    EXPECT_FALSE(Type().valid());
    EXPECT_EQ(Type(), Type());
    EXPECT_FALSE(TypeAlias().valid());
    EXPECT_EQ(TypeAlias(), TypeAlias());
}

TEST_F(TypeTest, HandlesAreEqualWhenTheyPointToOneRecord) {
    EXPECT_EQ(type("int"), type(".sys.int"));
    EXPECT_NE(type("int"), type("int32"));
}

TEST_F(TypeTest, TheFullNameStartsAtTheRoot) {
    EXPECT_EQ(text(type("ref").fullName()), ".sys.ref");
    const Type deep = builder.begin().setName("t").endBuild().adoptBy(makeNamespace("a.b"));
    EXPECT_EQ(text(deep.fullName()), ".a.b.t");
    const Type atRoot = builder.begin().setName("r").endBuild().adoptBy(root);
    EXPECT_EQ(text(atRoot.fullName()), ".r");
}

TEST_F(TypeTest, WithoutAParentTheFullNameIsTheName) {
    builder.begin().setName("alone");
    EXPECT_EQ(text(builder.get().fullName()), "alone");
    EXPECT_FALSE(builder.get().parent().valid());
}

TEST_F(TypeTest, MembersAreARangeOverBasesAndMembers) {
    const Type made = builder.begin()
                          .setName("derived")
                          .addBase("int", type("int"))
                          .addMember("x", "int", type("int"))
                          .addMember("y", "int", type("int"))
                          .endBuild()
                          .adoptBy(root);
    std::vector<std::string> names;
    for (const TypeItem& item : made.members())
        names.push_back(text(item.name()));
    EXPECT_EQ(names, (std::vector<std::string>{"", "x", "y"}));
}

TEST_F(TypeTest, AMemberIsFoundByItsNameTheFirstOneWins) {
    const Type made = builder.begin()
                          .setName("derived")
                          .addBase("int", type("int"))
                          .addMember("x", "int", type("int"))
                          .addMember("x", "double", type("double"))
                          .endBuild()
                          .adoptBy(root);
    ASSERT_NE(made.member("x"), nullptr);
    EXPECT_EQ(made.member("x")->index(), 1u);
    EXPECT_EQ(made.member("int"), nullptr);
    EXPECT_EQ(made.member(""), nullptr) << "a base has no name to be found by";
    EXPECT_EQ(made.member("X"), nullptr);
}

TEST_F(TypeTest, ArgumentsAreARangeAndFoundByName) {
    const Type made = builder.begin()
                          .setName("map")
                          .setArg("key", "string", type("string"))
                          .setArg("value", "")
                          .endBuild()
                          .adoptBy(root);
    std::vector<std::string> names;
    for (const TypeArg& arg : made.args())
        names.push_back(text(arg.name()));
    EXPECT_EQ(names, (std::vector<std::string>{"key", "value"}));
    EXPECT_EQ(made.arg("key")->type(), type("string"));
    EXPECT_FALSE(made.arg("value")->type().valid());
    EXPECT_EQ(made.arg("other"), nullptr);
    EXPECT_EQ(made.unresolvedArgs(), 1u);
}

TEST_F(TypeTest, AnItemIsValidWhenItsTypeHasALayout) {
    const Type lost =
        builder.begin().setName("lost").addMember("x", "nowhere").endBuild().adoptBy(root);
    builder.begin().addMember("a", "int", type("int")).addMember("b", "lost", lost);
    EXPECT_TRUE(builder.get().items()[0].valid());
    EXPECT_FALSE(builder.get().items()[1].valid());
    EXPECT_FALSE(TypeItem().valid());
}

class TypeLookupTest : public TypeTest {
protected:
    TypeLookupTest() {
        // `double` names an argument here, and a type of another kind around it.
        inner = builder.begin()
                    .setName("inner")
                    .setArg("element", "int", type("int"))
                    .setArg("open", "")
                    .endBuild()
                    .adoptBy(root);
        outer = builder.begin()
                    .setName("outer")
                    .setArg("value_type", "inner", inner)
                    .setArg("double", "string", type("string"))
                    .setArg("open", "")
                    .endBuild()
                    .adoptBy(makeNamespace("space"));
    }

    Type inner;
    Type outer;
};

TEST_F(TypeLookupTest, AnArgumentComesBeforeTheNamespaces) {
    EXPECT_EQ(outer.locateType("value_type"), inner);
    EXPECT_EQ(outer.locateType("double"), type("string"));
}

TEST_F(TypeLookupTest, AnAbsolutePathGoesToTheNamespaces) {
    EXPECT_EQ(outer.locateType(".sys.double"), type("double"));
    EXPECT_EQ(outer.locateType(".double"), type("double"));
    EXPECT_FALSE(outer.locateType(".value_type").valid());
}

TEST_F(TypeLookupTest, FurtherTokensSelectArgumentsOfArguments) {
    EXPECT_EQ(outer.locateType("value_type.element"), type("int"));
    EXPECT_FALSE(outer.locateType("value_type.nothing").valid());
    EXPECT_FALSE(outer.locateType("value_type.element.more").valid());
    EXPECT_FALSE(outer.locateType("value_type.").valid());
}

TEST_F(TypeLookupTest, AnOpenArgumentIsTheInvalidType) {
    EXPECT_FALSE(outer.locateType("open").valid());
    EXPECT_FALSE(outer.locateType("open.element").valid());
    EXPECT_FALSE(outer.locateType("value_type.open").valid());
}

TEST_F(TypeLookupTest, WhatNoArgumentNamesIsLookedUpAroundTheType) {
    EXPECT_EQ(outer.locateType("int"), type("int"));
    EXPECT_EQ(outer.locateType("outer"), outer);
    EXPECT_EQ(outer.locateType("space.outer"), outer);
    EXPECT_FALSE(outer.locateType("nowhere").valid());
    EXPECT_FALSE(outer.locateType("").valid());
}

TEST_F(TypeLookupTest, WithoutAParentOnlyArgumentsAreFound) {
    builder.begin().setArg("value_type", "int", type("int"));
    EXPECT_EQ(builder.get().locateType("value_type"), type("int"));
    EXPECT_FALSE(builder.get().locateType("int").valid());
    EXPECT_FALSE(builder.get().locateType(".sys.int").valid());
    EXPECT_FALSE(builder.get().locateType("").valid());
}

}  // namespace
}  // namespace velmor
