#include "assets/property/propertygroup.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PropertyGroupTest : public PropertyTest {
protected:
    PropertyGroupTest() : group(heap) {}

    PropertyBase& Put(PropertyGroup& target, const char* name,
                      ValueClass value = ValueClass::kStringValue) {
        target.Insert(MakeProperty(context, value, name, "", 0));
        return *target.Find(name);
    }
    static std::vector<std::string> Names(const PropertyGroup& target) {
        std::vector<std::string> names;
        for (const PropertyGroup::Entry& entry : target) {
            names.push_back(Str(entry.Name()));
        }
        return names;
    }

    PropertyGroup group;
};

TEST_F(PropertyGroupTest, NamesStandInTheOrderOfTheirSignedBytes) {
    for (const char* name : {"b", "a", "Z", "\xC3\xA4", "aa", "", "longer-than-eight-2",
                             "longer-than-eight-1", "longer-than-eight"}) {
        Put(group, name);
    }
    EXPECT_THAT(Names(group), ElementsAre("", "\xC3\xA4", "Z", "a", "aa", "b", "longer-than-eight",
                                          "longer-than-eight-1", "longer-than-eight-2"));
}

TEST_F(PropertyGroupTest, GroupsAreOrderedByNamesKindsAndData) {
    PropertyGroup other(heap);
    EXPECT_EQ(compareNative(group, other), 0);
    Put(group, "a");
    EXPECT_EQ(compareNative(group, other), 1);
    EXPECT_EQ(compareNative(other, group), -1);
    Put(other, "b");
    EXPECT_EQ(compareNative(group, other), -1);
    Put(other, "a", ValueClass::kUuidValue);
    EXPECT_EQ(compareNative(group, other), -1);
    other = group;
    EXPECT_EQ(compareNative(group, other), 0);
    dynamic_cast<IStringValue*>(other.Find("a")->GetValue())->SetValue(L"text");
    EXPECT_EQ(compareNative(group, other), -1);
    const velmor::Type type = context.types.At(4);
    EXPECT_EQ(velmor::compare({type, &other}, {type, &group}), 1);
}

TEST_F(PropertyGroupTest, NamesThatGoOnSortBehindThoseThatEnd) {
    Put(group,
        "a\x80"
        "b");
    Put(group, "a\x80");
    Put(group, "a");
    Put(group, "a\x81");
    EXPECT_THAT(Names(group), ElementsAre("a", "a\x80",
                                          "a\x80"
                                          "b",
                                          "a\x81"));
    EXPECT_EQ(Str(group.Find("a")->Name()), "a");
    EXPECT_EQ(Str(group.Find("a\x80")->Name()), "a\x80");
    EXPECT_EQ(group.Find("a\x80\x80"), nullptr);
}

TEST_F(PropertyGroupTest, EachOfVeryManyNamesIsFound) {
    const auto name = [](int i) { return nuo::string(("name" + std::to_string(i)).c_str()); };
    for (int i = 0; i < 1000; ++i)
        group.Insert(MakeProperty(context, ValueClass::kScalarValue, name(i), "", 0));
    for (int i = 0; i < 1000; ++i) {
        ASSERT_NE(group.Find(name(i)), nullptr) << i;
        EXPECT_TRUE(group.Find(name(i))->Name() == name(i)) << i;
    }
    EXPECT_EQ(group.Find(name(1000)), nullptr);
    EXPECT_EQ(group.Find(""), nullptr);
    EXPECT_TRUE(group.Remove(name(500)));
    EXPECT_EQ(group.Find(name(500)), nullptr);
}

TEST_F(PropertyGroupTest, OrderIsThatOfTheStrings) {
    const char* const pieces[] = {"", "a", "\x80", "\xFF", "\x7F", "z", "0"};
    std::vector<nuo::string> names;
    for (const char* first : pieces) {
        for (const char* second : pieces) {
            for (const char* tail : {"", "1234567", "12345678", "123456789"}) {
                const nuo::string name(nuo::string(nuo::string_ref(tail), first), second);
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                    group.Insert(MakeProperty(context, ValueClass::kScalarValue, name, "", 0));
                }
            }
        }
    }
    std::sort(names.begin(), names.end());
    ASSERT_EQ(group.Size(), names.size());
    auto expected = names.begin();
    for (const PropertyGroup::Entry& entry : group) {
        EXPECT_EQ(entry.Name(), *expected);
        EXPECT_EQ(group.Find(*expected), &entry.Property());
        ++expected;
    }
}

TEST_F(PropertyGroupTest, LongNamesThatDifferAnywhereAreToldApart) {
    const std::string base(60, 'x');
    Put(group, base.c_str());
    for (std::size_t i = 0; i < base.size(); ++i) {
        std::string name = base;
        name[i] = 'y';
        EXPECT_EQ(group.Find(nuo::string_ref(name.c_str())), nullptr);
        PropertyBase& property = Put(group, name.c_str());
        EXPECT_TRUE(property.Name() == name.c_str());
    }
    EXPECT_EQ(group.Size(), base.size() + 1);
    EXPECT_TRUE(group.Find(nuo::string_ref(base.c_str()))->Name() == base.c_str());
}

TEST_F(PropertyGroupTest, AnAbsentNameIsNotFound) {
    EXPECT_EQ(group.Find("a"), nullptr);
    Put(group, "b");
    EXPECT_EQ(group.Find("a"), nullptr);
    EXPECT_EQ(group.Find("c"), nullptr);
    EXPECT_FALSE(group.Remove("a"));
}

TEST_F(PropertyGroupTest, ASecondPropertyOfANameReplacesTheFirst) {
    Put(group, "a");
    const int blocks = heap.blocks;
    PropertyBase& second = Put(group, "a", ValueClass::kScalarValue);
    EXPECT_EQ(group.Size(), 1u);
    EXPECT_EQ(group.Find("a"), &second);
    EXPECT_EQ(second.GetType(), PropertyType::kScalar);
    EXPECT_EQ(heap.blocks, blocks);
}

TEST_F(PropertyGroupTest, RemovalAndClearingGiveTheBlocksBack) {
    const int blocks = heap.blocks;
    Put(group, "a");
    Put(group, "b");
    EXPECT_EQ(heap.blocks, blocks + 2);
    EXPECT_TRUE(group.Remove("a"));
    EXPECT_THAT(Names(group), ElementsAre("b"));
    EXPECT_EQ(heap.blocks, blocks + 1);
    group.Clear();
    EXPECT_TRUE(group.Empty());
    EXPECT_EQ(heap.blocks, blocks);
}

TEST_F(PropertyGroupTest, ACopyHasObjectsOfItsOwnInOneBlock) {
    As<IStringValue>(Put(group, "a")).SetValue(L"text");
    As<IScalarValue>(Put(group, "b", ValueClass::kScalarValue)).SetValue(2);
    group.Find("b")->SetMarked(false);
    const int allocations = heap.allocations;
    PropertyGroup copy(group);
    EXPECT_EQ(heap.allocations, allocations + 1);
    EXPECT_THAT(Names(copy), ElementsAre("a", "b"));
    EXPECT_NE(copy.Find("a"), group.Find("a"));
    EXPECT_EQ(&copy.Find("a")->Descriptor(), &group.Find("a")->Descriptor());
    EXPECT_FALSE(copy.Find("b")->IsMarked());
    As<IStringValue>(*copy.Find("a")).SetValue(L"other");
    EXPECT_EQ(TextOf(*group.Find("a")), "text");
    EXPECT_EQ(As<IScalarValue>(*copy.Find("b")).GetValue(), 2);
}

TEST_F(PropertyGroupTest, CopiedPropertiesCanBeReplacedAndRemoved) {
    Put(group, "a");
    Put(group, "b");
    {
        PropertyGroup copy(group);
        Put(copy, "a", ValueClass::kScalarValue);
        EXPECT_TRUE(copy.Remove("b"));
        Put(copy, "c");
        EXPECT_THAT(Names(copy), ElementsAre("a", "c"));
        EXPECT_EQ(copy.Find("a")->GetType(), PropertyType::kScalar);
    }
    EXPECT_EQ(group.Find("a")->GetType(), PropertyType::kString);
    group.Clear();
    EXPECT_EQ(heap.blocks, 0);
}

TEST_F(PropertyGroupTest, AssignmentReplacesTheContent) {
    Put(group, "a");
    PropertyGroup other(heap);
    Put(other, "b");
    other = group;
    EXPECT_THAT(Names(other), ElementsAre("a"));
    other = *&other;
    EXPECT_THAT(Names(other), ElementsAre("a"));
    other = PropertyGroup(heap);
    EXPECT_THAT(Names(other), IsEmpty());
}

TEST_F(PropertyGroupTest, TheReflectedTypeMakesAndCopiesGroups) {
    const velmor::Type type = context.types.At(4);
    ASSERT_EQ(type.payload(), sizeof(PropertyGroup));
    alignas(PropertyGroup) std::byte memory[sizeof(PropertyGroup)];
    const velmor::Object object(type, memory);
    type.methods().construct(object, &heap, nullptr);
    Put(group, "a");
    type.methods().assign({type, &group}, object);
    EXPECT_THAT(Names(*velmor::bind<PropertyGroup>(object)), ElementsAre("a"));
    type.methods().destruct(object);
}

}  // namespace
}  // namespace korvanet::platform::assets
