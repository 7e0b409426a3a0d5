#include "velmor/object.h"

#include <string>
#include <vector>

#include "velmor/support.h"

namespace velmor {
namespace {

using testing::RuntimeTest;
using testing::text;
using testing::textOf;

class ObjectTest : public RuntimeTest {
protected:
    ObjectTest() : creator(&heap, nullptr) {
        TypeBuilder builder;
        derived = builder.begin()
                      .setName("derived")
                      .addBase("int", type("int"))
                      .addMember("flag", "bool", type("bool"))
                      .addMember("number", "double", type("double"))
                      .endBuild()
                      .adoptBy(root);
        object = creator.create(derived);
    }
    char* at(std::uint64_t offset) { return static_cast<char*>(object.data()) + offset; }

    ScopedObjectCreator creator;
    Type derived;
    Object object;
};

TEST(Object, WithoutBytesItIsInvalid) {
    EXPECT_FALSE(Object().valid());
    EXPECT_FALSE(ConstObject().valid());
    EXPECT_EQ(Object(), Object());
}

TEST_F(ObjectTest, AnObjectStandsWhereAConstObjectIsWanted) {
    const ConstObject view = object;
    EXPECT_EQ(view.type(), object.type());
    EXPECT_EQ(view.data(), object.data());
    EXPECT_EQ(view, ConstObject(object));
}

TEST_F(ObjectTest, MembersAreViewsOfBasesAndMembers) {
    std::vector<std::string> names;
    std::vector<void*> places;
    for (const SubObject sub : object.members()) {
        names.push_back(text(sub.name()));
        places.push_back(sub.data());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"", "flag", "number"}));
    EXPECT_EQ(places, (std::vector<void*>{at(0), at(4), at(8)}));
}

TEST_F(ObjectTest, TheEndPositionLiesBehindTheValue) {
    const SubObject end = *object.members().end();
    EXPECT_TRUE(end.atEnd());
    EXPECT_EQ(end.index(), 3u);
    EXPECT_EQ(end.data(), at(derived.payload()));
}

TEST_F(ObjectTest, MembersCanBeWalkedBackwards) {
    std::vector<std::string> names;
    for (const SubObject sub : object.reverseMembers())
        names.push_back(text(sub.name()));
    EXPECT_EQ(names, (std::vector<std::string>{"number", "flag", ""}));
}

TEST_F(ObjectTest, PositionsAreEqualByTheirIndex) {
    const auto range = object.members();
    auto position = range.begin();
    EXPECT_EQ(position, range.begin());
    ++position;
    EXPECT_FALSE(position == range.begin());
    --position;
    EXPECT_EQ(position, range.begin());
    for (int i = 0; i < 3; ++i)
        ++position;
    EXPECT_EQ(position, range.end());
    EXPECT_EQ(SubObjIterator(SubObject(derived, object.data(), 1)),
              SubObjIterator(SubObject(derived, nullptr, 1)));
}

TEST_F(ObjectTest, AMemberIsFoundByName) {
    const SubObject number = object.member("number");
    EXPECT_EQ(number.index(), 2u);
    EXPECT_EQ(number.type(), type("double"));
    EXPECT_EQ(number.data(), at(8));
    EXPECT_EQ(number.owner(), derived);
    EXPECT_EQ(number.asObject(), Object(type("double"), at(8)));
    *bind<double>(number.asObject()) = 2.5;
    EXPECT_EQ(*bind<double>(ConstObject(object).member("number").asObject()), 2.5);
}

TEST_F(ObjectTest, ABaseIsNotFoundByTheNameOfItsType) {
    EXPECT_TRUE(object.member("int").atEnd());
    EXPECT_TRUE(object.member("").atEnd());
}

TEST_F(ObjectTest, AnUnknownNameIsTheEndPosition) {
    const SubObject none = object.member("nothing");
    EXPECT_TRUE(none.atEnd());
    EXPECT_EQ(none.index(), (*object.members().end()).index());
}

TEST_F(ObjectTest, TheIndexOfAllOnesIsTheValueItself) {
    const SubObject whole(derived, object.data(), SubObject::kWhole);
    EXPECT_EQ(SubObject::kWhole, ~std::uint64_t{0});
    EXPECT_FALSE(whole.atEnd());
    EXPECT_EQ(whole.type(), derived);
    EXPECT_EQ(whole.data(), object.data());
    EXPECT_EQ(whole.asObject(), object);
}

TEST_F(ObjectTest, BindGivesTheNativeObject) {
    const Object number = object.member("number").asObject();
    EXPECT_EQ(bind<double>(number), number.data());
    EXPECT_EQ(bind<double>(ConstObject(number)), number.data());
    EXPECT_EQ(bindOrNull<double>(number), number.data());
}

TEST_F(ObjectTest, BindRefusesAnotherNativeClassWithNoText) {
    const Object number = object.member("number").asObject();
    EXPECT_EQ(textOf<TypeMismatchException>([&] { bind<float>(number); }), "");
    EXPECT_EQ(textOf<TypeMismatchException>([&] { bind<float>(ConstObject(number)); }), "");
    EXPECT_EQ(textOf<TypeMismatchException>([&] { bind<double>(object); }), "");
    EXPECT_EQ(bindOrNull<float>(number), nullptr);
    EXPECT_EQ(bindOrNull<float>(ConstObject(number)), nullptr);
}

TEST_F(ObjectTest, BindTakesTwinsOfOneNativeClass) {
    creator.create(type("int32"));
    EXPECT_NE(bindOrNull<std::int32_t>(creator.get()), nullptr);
    EXPECT_TRUE(isNative<std::int32_t>(type("long")));
    EXPECT_FALSE(isNative<std::int32_t>(type("uint")));
}

/// Methods with a tag object of their own, as a second module would have.
class ForeignInt : public PrimitiveMethods<std::int32_t> {
public:
    const TypeInfoHandle& typeinfo() const override { return tag_; }

private:
    TypeInfo<std::int32_t> tag_;
};

TEST_F(ObjectTest, BindTakesASecondTagOfTheSameClass) {
    static const ForeignInt methods;
    TypeBuilder builder;
    const Type foreign = builder.begin(&methods).setName("foreign").endBuild().adoptBy(root);
    creator.create(foreign);
    EXPECT_NE(&foreign.methods().typeinfo(), &TypeInfo<std::int32_t>::instance());
    EXPECT_EQ(bind<std::int32_t>(creator.get()), creator.get().data());
}

}  // namespace
}  // namespace velmor
