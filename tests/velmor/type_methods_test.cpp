#include "velmor/type_methods.h"

#include <string>
#include <vector>

#include "tests/support/virtualslots.h"
#include "velmor/array.h"
#include "velmor/support.h"

namespace velmor {
namespace {

using testing::Bytes;
using testing::formOf;
using testing::Probe;
using testing::readForm;
using testing::RuntimeTest;
using testing::text;
using testing::textOf;
using Log = std::vector<std::string>;

class TypeMethodsTest : public RuntimeTest {
protected:
    TypeMethodsTest() : creator(&heap, nullptr) {}

    Type boolAndDouble() {
        return builder.begin()
            .setName("pair")
            .addMember("flag", "bool", type("bool"))
            .addMember("number", "double", type("double"))
            .endBuild()
            .adoptBy(root);
    }
    Type threeProbes() {
        return builder.begin()
            .setName("probes")
            .addBase("Probe", probeType())
            .addMember("n", "int", type("int"))
            .addMember("a", "Probe", probeType())
            .addMember("b", "Probe", probeType())
            .endBuild()
            .adoptBy(root);
    }

    TypeBuilder builder;
    ScopedObjectCreator creator;
};

TEST(TypeMethods, OperationsKeepTheirOrder) {
    using halvern_tests::Place;
    halvern_tests::ExpectOrder(0, {Place(&TypeMethods::construct), Place(&TypeMethods::destruct),
                                   Place(&TypeMethods::assign), Place(&TypeMethods::deserialize),
                                   Place(&TypeMethods::serialize), Place(&TypeMethods::beginLayout),
                                   Place(&TypeMethods::nextLayout), Place(&TypeMethods::typeinfo),
                                   Place(&TypeMethods::extendMethods), halvern_tests::kDestructor});
}

TEST_F(TypeMethodsTest, ALayoutStartsWithNothing) {
    std::uint64_t payload = 9, offset = 9, alignment = 9;
    bool pod = false;
    TypeMethods::defaults().beginLayout(payload, offset, alignment, pod);
    EXPECT_EQ(payload, 0u);
    EXPECT_EQ(offset, 0u);
    EXPECT_EQ(alignment, 1u);
    EXPECT_TRUE(pod);
}

TEST_F(TypeMethodsTest, AnUnknownLayoutStaysUnknown) {
    builder.begin().addMember("lost", "nowhere").addMember("n", "int", type("int"));
    EXPECT_EQ(builder.get().payload(), kUnknown);
    EXPECT_EQ(builder.get().alignment(), kUnknown);
}

TEST_F(TypeMethodsTest, ARecordHasNoNativeClassAndDoesNotCompare) {
    const Type pair = boolAndDouble();
    EXPECT_TRUE(isNative<void>(pair));
    EXPECT_EQ(pair.methods().extendMethods(), nullptr);
    const Object object = creator.create(pair);
    EXPECT_EQ(compare(object, object), 0);
}

TEST_F(TypeMethodsTest, AFormHasNoPadding) {
    const Object object = creator.create(boolAndDouble());
    EXPECT_EQ(object.type().payload(), 16u);
    *bind<bool>(object.member("flag").asObject()) = true;
    *bind<double>(object.member("number").asObject()) = 1.0;
    const Bytes form{1, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
    EXPECT_EQ(formOf(object), form);

    ScopedObjectCreator other(&heap, nullptr);
    const Object read = other.create(object.type());
    EXPECT_EQ(readForm(read, form), 9u);
    EXPECT_TRUE(*bind<bool>(read.member("flag").asObject()));
    EXPECT_EQ(*bind<double>(read.member("number").asObject()), 1.0);
}

TEST_F(TypeMethodsTest, ABaseIsStoredFirstWithoutAMarker) {
    const Type pair = boolAndDouble();
    const Type derived = builder.begin()
                             .setName("derived")
                             .addBase("pair", pair)
                             .addMember("tail", "uint8", type("uint8"))
                             .endBuild()
                             .adoptBy(root);
    const Object object = creator.create(derived);
    readForm(object, {1, 0, 0, 0, 0, 0, 0, 0, 64, 5});
    EXPECT_EQ(*bind<std::uint8_t>(object.member("tail").asObject()), 5);
    EXPECT_EQ(formOf(object), (Bytes{1, 0, 0, 0, 0, 0, 0, 0, 64, 5}));
}

// The second example of docs/formats/reflective_values.md.
TEST_F(TypeMethodsTest, ARecordOfBaseTextTypeAndTextsIsStoredAsThePageShows) {
    const Type base = builder.begin()
                          .setName("base")
                          .addMember("n", "uint16", type("uint16"))
                          .endBuild()
                          .adoptBy(root);
    const Type texts = makeArrayType(root, type("string"));
    const Type whole = builder.begin()
                           .setName("whole")
                           .addBase("base", base)
                           .addMember("text", "string", type("string"))
                           .addMember("kind", "type", type("type"))
                           .addMember("texts", "string_array", texts)
                           .endBuild()
                           .adoptBy(root);
    const Bytes form{2, 1, 3, 0, 0, 0, 0x4A, 0xC3, 0xBA, 2,    0,    0,
                     0, 0, 0, 0, 0, 3, 0,    0,    0,    0x6F, 0x61, 0x6B};
    const Object object = creator.create(whole);
    EXPECT_EQ(readForm(object, form), form.size());
    EXPECT_EQ(text(*bind<nuo::string>(object.member("text").asObject())), "J\xC3\xBA");
    EXPECT_FALSE(bind<Type>(object.member("kind").asObject())->valid());
    EXPECT_EQ(bind<Array>(object.member("texts").asObject())->size(), 2u);
    EXPECT_EQ(formOf(object), form);
}

TEST_F(TypeMethodsTest, ItemsAreMadeInOrderAndEndedInReverse) {
    {
        ScopedObjectCreator own(&heap, nullptr);
        own.create(threeProbes());
        EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2", "make 3"}));
    }
    EXPECT_EQ(Probe::takeLog(), (Log{"end 3", "end 2", "end 1"}));
}

TEST_F(TypeMethodsTest, AFailedItemEndsTheItemsBeforeIt) {
    Probe::failAt = 3;
    EXPECT_THROW(creator.create(threeProbes()), std::bad_alloc);
    EXPECT_EQ(Probe::takeLog(), (Log{"make 1", "make 2", "end 2", "end 1"}));
    EXPECT_EQ(heap.bytes, 0u);
}

TEST_F(TypeMethodsTest, AssignCopiesItemByItem) {
    const Object source = creator.create(threeProbes());
    *bind<std::int32_t>(source.member("n").asObject()) = 6;
    ScopedObjectCreator other(&heap, nullptr);
    const Object target = other.create(source.type());
    Probe::takeLog();
    source.type().methods().assign(source, target);
    EXPECT_EQ(Probe::takeLog(), (Log{"assign 1 to 4", "assign 2 to 5", "assign 3 to 6"}));
    EXPECT_EQ(*bind<std::int32_t>(target.member("n").asObject()), 6);
}

TEST_F(TypeMethodsTest, AssignCopiesAPodAsBytes) {
    const Object source = creator.create(boolAndDouble());
    *bind<double>(source.member("number").asObject()) = 3.5;
    ScopedObjectCreator other(&heap, nullptr);
    const Object target = other.create(source.type());
    source.type().methods().assign(source, target);
    EXPECT_EQ(*bind<double>(target.member("number").asObject()), 3.5);
    source.type().methods().assign(target, target);
    EXPECT_EQ(*bind<double>(target.member("number").asObject()), 3.5);
}

TEST_F(TypeMethodsTest, ATypeMemberIsNotStored) {
    const Type record = builder.begin()
                            .setName("typed")
                            .addMember("type", "type", type("type"))
                            .addMember("n", "uint8", type("uint8"))
                            .endBuild()
                            .adoptBy(root);
    const Object object = creator.create(record);
    *bind<std::uint8_t>(object.member("n").asObject()) = 4;
    EXPECT_EQ(formOf(object), (Bytes{4}));
    EXPECT_EQ(readForm(object, {9}), 1u);
    EXPECT_FALSE(bind<Type>(object.member("type").asObject())->valid());
}

TEST_F(TypeMethodsTest, AShortRecordKeepsWhatWasRead) {
    const Object object = creator.create(boolAndDouble());
    EXPECT_EQ(textOf<nuo::archive::read_failed>([&] { readForm(object, {1, 2, 3}); }), "");
    EXPECT_TRUE(*bind<bool>(object.member("flag").asObject()));
}

TEST_F(TypeMethodsTest, ReferencesAreStoredAsRawAddresses) {
    const Object ref = creator.create(type("ref"));
    EXPECT_EQ(formOf(ref), (Bytes{0, 0, 0, 0, 0, 0, 0, 0}));
    ScopedObjectCreator other(&heap, nullptr);
    const Object dynamic = other.create(type("dynamic_ref"));
    *bind<void*>(dynamic.member("to").asObject()) = reinterpret_cast<void*>(0x0102030405060708);
    EXPECT_EQ(formOf(dynamic), (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
}

}  // namespace
}  // namespace velmor
