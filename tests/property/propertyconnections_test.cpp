#include "assets/property/connection.h"
#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kSingle = PropertyFlags::kAllowConnectedAsset;
constexpr std::uint32_t kMultiple = PropertyFlags::kAllowConnectedAssets;

class PropertyConnectionsTest : public PropertyTest {
protected:
    PropertyBase& Place(std::uint32_t flags) {
        PropertyBase& property = Make(ValueClass::kReferenceValue, "place", flags);
        property.SetOwner(&changes);
        return property;
    }

    ChangeLog changes;
};

TEST_F(PropertyConnectionsTest, AConnectionIsCountedNamedAndTold) {
    PropertyTableImp& asset = NewAsset("texture");
    asset.SetName("name");
    PropertyBase& place = Place(kSingle);
    EXPECT_TRUE(place.ConnectAsset(InstanceOf(asset)));
    EXPECT_EQ(place.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(place.GetConnectedAsset(std::uint64_t{0}), InstanceOf(asset));
    EXPECT_EQ(place.GetConnectedAsset(L"texture"), InstanceOf(asset));
    EXPECT_EQ(asset.ReferenceCount(), 2u);
    EXPECT_EQ(Str(place.ConnectionAt(0).link), ".name");
    EXPECT_EQ(place.ConnectionAt(0).reserved, 0u);
    EXPECT_THAT(changes.lines, ElementsAre("connection place"));
}

TEST_F(PropertyConnectionsTest, AConnectionThatFindsNoMemoryLeavesTheFormerOne) {
    PropertyTableImp& first = NewAsset("texture");
    PropertyTableImp& second = NewAsset("texture");
    PropertyBase& place = Place(kMultiple);
    ASSERT_TRUE(place.ConnectAsset(InstanceOf(first)));
    heap.full = true;
    EXPECT_FALSE(place.ConnectAsset(InstanceOf(second)));
    heap.full = false;
    EXPECT_EQ(place.GetConnectedAsset(L"texture"), InstanceOf(first));
    EXPECT_THAT(changes.lines, ElementsAre("connection place"));
}

TEST_F(PropertyConnectionsTest, APropertyWithoutTheFlagsTakesNothing) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& place = Place(PropertyFlags::kPublic);
    EXPECT_FALSE(place.ConnectAsset(InstanceOf(asset)));
    EXPECT_FALSE(place.ConnectAsset(nullptr));
    EXPECT_EQ(place.GetConnectedAsset(L"texture"), nullptr);
    EXPECT_EQ(place.GetConnectedAsset(std::uint64_t{0}), nullptr);
    EXPECT_FALSE(place.RemoveConnectedAsset(L"texture"));
    EXPECT_FALSE(place.RemoveConnectedAsset(InstanceOf(asset)));
    EXPECT_THAT(changes.lines, IsEmpty());
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(PropertyConnectionsTest, LookupsFindNothingPastTheEndOrByOtherTypes) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& place = Place(kMultiple);
    place.ConnectAsset(InstanceOf(asset));
    EXPECT_EQ(place.GetConnectedAsset(1), nullptr);
    EXPECT_EQ(place.GetConnectedAsset(L"material"), nullptr);
    EXPECT_EQ(place.GetConnectedAsset(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_FALSE(place.RemoveConnectedAsset(L"material"));
    EXPECT_FALSE(place.RemoveConnectedAsset(static_cast<const wchar_t*>(nullptr)));
    EXPECT_FALSE(place.RemoveConnectedAsset(static_cast<IAssetInstance*>(nullptr)));
    EXPECT_FALSE(place.RemoveConnectedAsset(InstanceOf(NewAsset("texture"))));
    EXPECT_EQ(place.GetConnectedAssetCount(), 1u);
}

TEST_F(PropertyConnectionsTest, NullClearsAndTellsOnlyWhenThereWasSomething) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& place = Place(kMultiple);
    EXPECT_TRUE(place.ConnectAsset(nullptr));
    EXPECT_THAT(changes.lines, IsEmpty());
    place.ConnectAsset(InstanceOf(asset));
    EXPECT_TRUE(place.ConnectAsset(nullptr));
    EXPECT_EQ(place.GetConnectedAssetCount(), 0u);
    EXPECT_EQ(asset.ReferenceCount(), 1u);
    EXPECT_THAT(changes.lines, ElementsAre("connection place", "connection place"));
}

TEST_F(PropertyConnectionsTest, ASecondAssetOfATypeReplacesTheFirst) {
    PropertyTableImp& first = NewAsset("texture");
    PropertyTableImp& other = NewAsset("material");
    PropertyTableImp& second = NewAsset("texture");
    PropertyBase& place = Place(kMultiple);
    place.ConnectAsset(InstanceOf(first));
    place.ConnectAsset(InstanceOf(other));
    EXPECT_EQ(place.GetConnectedAssetCount(), 2u);
    place.ConnectAsset(InstanceOf(second));
    EXPECT_EQ(place.GetConnectedAssetCount(), 2u);
    EXPECT_EQ(place.GetConnectedAsset(std::uint64_t{0}), InstanceOf(other));
    EXPECT_EQ(place.GetConnectedAsset(1), InstanceOf(second));
    EXPECT_EQ(first.ReferenceCount(), 1u);
}

TEST_F(PropertyConnectionsTest, AssetsWithoutATypeCountAsOneType) {
    PropertyTableImp& first = NewTable();
    PropertyTableImp& second = NewTable();
    PropertyBase& place = Place(kMultiple);
    place.ConnectAsset(InstanceOf(first));
    place.ConnectAsset(InstanceOf(second));
    EXPECT_EQ(place.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(place.GetConnectedAsset(L""), InstanceOf(second));
}

TEST_F(PropertyConnectionsTest, ASinglePropertyHoldsOneAsset) {
    PropertyTableImp& first = NewAsset("texture");
    PropertyTableImp& second = NewAsset("material");
    PropertyBase& place = Place(kSingle);
    place.ConnectAsset(InstanceOf(first));
    place.ConnectAsset(InstanceOf(second));
    EXPECT_EQ(place.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(place.GetConnectedAsset(std::uint64_t{0}), InstanceOf(second));
    EXPECT_THAT(changes.lines, ElementsAre("connection place", "connection place"));
}

TEST_F(PropertyConnectionsTest, AnAssetIsNotConnectedToItsOwnProperty) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& place = Add(asset, ValueClass::kReferenceValue, "place", kMultiple);
    EXPECT_FALSE(place.ConnectAsset(InstanceOf(asset)));
    EXPECT_EQ(place.GetConnectedAssetCount(), 0u);
    EXPECT_THAT(reports.lines, ElementsAre("error: Cannot set a instance to its own property."));
}

TEST_F(PropertyConnectionsTest, APropertyOfAnyGroupIsTheAssetsOwn) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyBase& iteration = Add(asset, ValueClass::kReferenceValue, "iteration",
                                  kMultiple | PropertyFlags::kDefinitionIteratorData);
    PropertyBase& fixed =
        Add(asset, ValueClass::kReferenceValue, "fixed", kMultiple | PropertyFlags::kReadOnly);
    EXPECT_FALSE(iteration.ConnectAsset(InstanceOf(asset)));
    EXPECT_FALSE(fixed.ConnectAsset(InstanceOf(asset)));
    EXPECT_EQ(reports.lines,
              std::vector<std::string>(2, "error: Cannot set a instance to its own property."));
}

TEST_F(PropertyConnectionsTest, ASinglePropertyDropsItsConnectionBeforeARefusal) {
    PropertyTableImp& asset = NewAsset("texture");
    PropertyTableImp& former = NewAsset("material");
    PropertyBase& place = Add(asset, ValueClass::kReferenceValue, "place", kSingle);
    place.ConnectAsset(InstanceOf(former));
    place.SetOwner(&changes);
    EXPECT_FALSE(place.ConnectAsset(InstanceOf(asset)));
    EXPECT_EQ(place.GetConnectedAssetCount(), 0u);
    EXPECT_THAT(changes.lines, IsEmpty());
}

TEST_F(PropertyConnectionsTest, AnAssetSurvivesBeingConnectedAnewByItsLastHolder) {
    for (const std::uint32_t flags : {kSingle, kMultiple}) {
        PropertyTableImp& table = assets::MakeTable(context, TableKind::kInstance);
        PropertyBase& place = Place(flags);
        EXPECT_TRUE(place.ConnectAsset(InstanceOf(table)));
        EXPECT_EQ(table.ReferenceCount(), 1u);
        EXPECT_TRUE(place.ConnectAsset(InstanceOf(table)));
        EXPECT_EQ(place.GetConnectedAssetCount(), 1u);
        EXPECT_EQ(table.ReferenceCount(), 1u);
        place.ClearConnections();
        EXPECT_EQ(tables.living, 0);
    }
}

TEST_F(PropertyConnectionsTest, RemovalByTypeAndByAssetIsTold) {
    PropertyTableImp& first = NewAsset("texture");
    PropertyTableImp& second = NewAsset("material");
    PropertyBase& place = Place(kMultiple);
    place.ConnectAsset(InstanceOf(first));
    place.ConnectAsset(InstanceOf(second));
    changes.lines.clear();
    EXPECT_TRUE(place.RemoveConnectedAsset(L"texture"));
    EXPECT_EQ(place.GetConnectedAsset(std::uint64_t{0}), InstanceOf(second));
    EXPECT_TRUE(place.RemoveConnectedAsset(InstanceOf(second)));
    EXPECT_EQ(place.GetConnectedAssetCount(), 0u);
    EXPECT_EQ(first.ReferenceCount(), 1u);
    EXPECT_EQ(second.ReferenceCount(), 1u);
    EXPECT_THAT(changes.lines, ElementsAre("connection place", "connection place"));
}

TEST_F(PropertyConnectionsTest, AConnectionAloneKeepsAnAssetAlive) {
    PropertyBase& place = Place(kSingle);
    PropertyTableImp& table = assets::MakeTable(context, TableKind::kInstance);
    place.ConnectAsset(InstanceOf(table));
    EXPECT_EQ(tables.living, 1);
    place.RemoveConnectedAsset(InstanceOf(table));
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyConnectionsTest, ReferencesAreEqualWhateverTheyHold) {
    PropertyBase& a = Place(kSingle);
    PropertyBase& b = Place(kSingle);
    a.ConnectAsset(InstanceOf(NewAsset("texture")));
    EXPECT_TRUE(a.IsEqual(&b));
}

}  // namespace
}  // namespace korvanet::platform::assets
