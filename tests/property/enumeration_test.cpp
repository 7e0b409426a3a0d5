#include "assets/property/enumeration.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPublic = PropertyFlags::kPublic;
constexpr std::uint32_t kReadWrite = 0;
constexpr std::uint32_t kListed = PropertyFlags::kDefinitionIteratorData;
constexpr std::uint32_t kFixed = PropertyFlags::kReadOnly;

class EnumerationTest : public PropertyTest {
protected:
    EnumerationTest() : table(NewTable()) {}

    void Put(std::uint32_t flags, std::initializer_list<const char*> names) {
        for (const char* name : names) {
            Add(table, ValueClass::kScalarValue, name, flags);
        }
    }
    IEnumeration<IProperty*>& Walk(bool publicOnly = false) {
        walk_.reset(InstanceOf(table)->GetProperties(publicOnly));
        return *walk_;
    }
    static std::string NameOf(const IProperty* property) {
        if (property == nullptr) {
            return "(none)";
        }
        core::UTF8String name;
        property->GetName(name);
        return name.AsUTF8();
    }
    static std::vector<std::string> Forward(IEnumeration<IProperty*>& walk) {
        std::vector<std::string> names;
        for (IProperty* each = walk.First(); walk.IsValid(); walk.Next(), each = walk.Current()) {
            names.push_back(NameOf(each));
        }
        return names;
    }
    static std::vector<std::string> Backward(IEnumeration<IProperty*>& walk) {
        std::vector<std::string> names;
        for (IProperty* each = walk.Last(); walk.IsValid();
             walk.Previous(), each = walk.Current()) {
            names.push_back(NameOf(each));
        }
        return names;
    }

    PropertyTableImp& table;

private:
    std::unique_ptr<IEnumeration<IProperty*>> walk_;
};

TEST_F(EnumerationTest, AnEmptyTableHasNothingToWalk) {
    auto& walk = Walk();
    EXPECT_FALSE(walk.IsValid());
    EXPECT_EQ(walk.First(), nullptr);
    EXPECT_FALSE(walk.IsValid());
    EXPECT_FALSE(walk.Next());
    EXPECT_EQ(walk.Last(), nullptr);
    EXPECT_FALSE(walk.Previous());
    EXPECT_EQ(walk.Current(), nullptr);
}

TEST_F(EnumerationTest, TheMergeOfAnEmptyTableIsNeverValid) {
    SortedMultiGroupMergeIterator<IProperty*> merge(table);
    EXPECT_EQ(merge.First(), nullptr);
    EXPECT_FALSE(merge.IsValid());
    EXPECT_FALSE(merge.Next());
    EXPECT_FALSE(merge.Previous());
}

TEST_F(EnumerationTest, GroupsMergeIntoOneOrder) {
    Put(kReadWrite, {"b", "d"});
    Put(kListed, {"a"});
    Put(kFixed, {"c"});
    EXPECT_THAT(Forward(Walk()), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(Backward(Walk()), ElementsAre("d", "c", "b", "a"));
}

TEST_F(EnumerationTest, AWalkCanStartAnewAtBothEnds) {
    Put(kReadWrite, {"b", "d"});
    Put(kFixed, {"a", "c"});
    auto& walk = Walk();
    EXPECT_EQ(NameOf(walk.First()), "a");
    EXPECT_TRUE(walk.Next());
    EXPECT_EQ(NameOf(walk.Last()), "d");
    EXPECT_TRUE(walk.Previous());
    EXPECT_EQ(NameOf(walk.Current()), "c");
    EXPECT_THAT(Forward(walk), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(Backward(walk), ElementsAre("d", "c", "b", "a"));
}

TEST_F(EnumerationTest, BehindTheEndNothingMoves) {
    Put(kReadWrite, {"a"});
    auto& walk = Walk();
    walk.First();
    EXPECT_FALSE(walk.Next());
    EXPECT_FALSE(walk.IsValid());
    EXPECT_EQ(walk.Current(), nullptr);
    EXPECT_FALSE(walk.Next());
    EXPECT_FALSE(walk.Previous());
    walk.Last();
    EXPECT_FALSE(walk.Previous());
    EXPECT_FALSE(walk.Next());
}

TEST_F(EnumerationTest, AtBothEndsOfSeveralGroupsThereIsNoWayOut) {
    Put(kReadWrite, {"b"});
    Put(kListed, {"a"});
    Put(kFixed, {"c"});
    auto& walk = Walk();
    EXPECT_EQ(NameOf(walk.First()), "a");
    EXPECT_FALSE(walk.Previous());
    EXPECT_EQ(walk.Current(), nullptr);
    EXPECT_EQ(NameOf(walk.Last()), "c");
    EXPECT_FALSE(walk.Next());
    EXPECT_EQ(walk.Current(), nullptr);
}

TEST_F(EnumerationTest, OneGroupCanBeWalkedToAndFro) {
    Put(kReadWrite, {"a", "b", "c"});
    auto& walk = Walk();
    walk.First();
    walk.Next();
    EXPECT_EQ(NameOf(walk.Current()), "b");
    EXPECT_TRUE(walk.Previous());
    EXPECT_EQ(NameOf(walk.Current()), "a");
    EXPECT_TRUE(walk.Next());
    EXPECT_TRUE(walk.Next());
    EXPECT_EQ(NameOf(walk.Current()), "c");
}

TEST_F(EnumerationTest, TurningRoundMeetsWhatOtherGroupsHaveAhead) {
    Put(kReadWrite, {"b", "d"});
    Put(kListed, {"a"});
    Put(kFixed, {"c"});
    auto& walk = Walk();
    walk.First();
    walk.Next();
    walk.Next();
    EXPECT_EQ(NameOf(walk.Current()), "c");
    EXPECT_TRUE(walk.Previous());
    EXPECT_EQ(NameOf(walk.Current()), "d");
}

TEST_F(EnumerationTest, NamesAreOrderedByTheirSignedBytes) {
    Put(kReadWrite, {"a", "Z"});
    Put(kFixed, {"\xC3\xA4"});
    EXPECT_THAT(Forward(Walk()), ElementsAre("\xC3\xA4", "Z", "a"));
}

TEST_F(EnumerationTest, OfEqualNamesTheLowerGroupComesFirst) {
    Put(kFixed, {"p"});
    Put(kReadWrite, {"p"});
    auto& walk = Walk();
    EXPECT_EQ(walk.First(), table.FindInGroup(0, "p"));
    EXPECT_TRUE(walk.Next());
    EXPECT_EQ(walk.Current(), table.FindInGroup(2, "p"));
    EXPECT_FALSE(walk.Next());
}

TEST_F(EnumerationTest, OfEqualNamesTheLowerGroupComesFirstOnTheWayBackToo) {
    Put(kFixed, {"p"});
    Put(kListed, {"p"});
    Put(kReadWrite, {"p"});
    auto& walk = Walk();
    EXPECT_EQ(walk.Last(), table.FindInGroup(0, "p"));
    EXPECT_TRUE(walk.Previous());
    EXPECT_EQ(walk.Current(), table.FindInGroup(1, "p"));
    EXPECT_TRUE(walk.Previous());
    EXPECT_EQ(walk.Current(), table.FindInGroup(2, "p"));
    EXPECT_FALSE(walk.Previous());
}

TEST_F(EnumerationTest, OfEqualNamesThatOfTheGroupTheWalkStandsInComesFirst) {
    Put(kReadWrite, {"p"});
    Put(kFixed, {"o", "p", "q"});
    auto& walk = Walk();
    EXPECT_EQ(walk.First(), table.FindInGroup(2, "o"));
    walk.Next();
    EXPECT_EQ(walk.Current(), table.FindInGroup(2, "p"));
    walk.Next();
    EXPECT_EQ(walk.Current(), table.FindInGroup(0, "p"));
    EXPECT_EQ(walk.Last(), table.FindInGroup(2, "q"));
    walk.Previous();
    EXPECT_EQ(walk.Current(), table.FindInGroup(2, "p"));
    walk.Previous();
    EXPECT_EQ(walk.Current(), table.FindInGroup(0, "p"));
}

TEST_F(EnumerationTest, OnlyPublicPropertiesPassTheFilter) {
    Put(kReadWrite, {"a", "c", "e"});
    Put(kFixed | kPublic, {"b", "d"});
    EXPECT_THAT(Forward(Walk(true)), ElementsAre("b", "d"));
    EXPECT_THAT(Backward(Walk(true)), ElementsAre("d", "b"));
    EXPECT_THAT(Forward(Walk(false)), ElementsAre("a", "b", "c", "d", "e"));
}

TEST_F(EnumerationTest, WithoutAPublicPropertyNothingPasses) {
    Put(kReadWrite, {"a", "b"});
    auto& walk = Walk(true);
    EXPECT_EQ(walk.First(), nullptr);
    EXPECT_FALSE(walk.IsValid());
    EXPECT_EQ(walk.Last(), nullptr);
    EXPECT_FALSE(walk.IsValid());
    EXPECT_THAT(Forward(walk), IsEmpty());
}

TEST_F(EnumerationTest, AHostHandsTheWalkBack) {
    Put(kReadWrite, {"a"});
    IAssetInstance& instance = *InstanceOf(table);
    const IAssetInstance& fixed = instance;
    IEnumeration<IProperty*>* walk = instance.GetProperties(false);
    IEnumeration<const IProperty*>* const_walk = fixed.GetProperties(false);
    EXPECT_EQ(walk->First(), const_walk->First());
    instance.ReleaseEnumeration(walk);
    fixed.ReleaseEnumeration(const_walk);
    instance.ReleaseEnumeration(static_cast<IEnumeration<IProperty*>*>(nullptr));
    fixed.ReleaseEnumeration(nullptr);
}

}  // namespace
}  // namespace korvanet::platform::assets
