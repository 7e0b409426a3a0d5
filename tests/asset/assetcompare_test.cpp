#include "assets/asset/assetcompare.h"

#include <korvanet/platform/assets/ivalue.h>

#include "asset/support.h"
#include "assets/property/propertyfactory.h"

namespace korvanet::platform::assets {

class AssetCompareTest : public AssetTest {
protected:
    static bool SetNumber(AssetInstance& instance, const char* name, double number) {
        return As<IScalarValue>(Find(instance, name)).SetValue(number, 0);
    }
    bool Equal(bool deep = false, bool publicOnly = false, bool byVersionOnly = false) {
        return a.IsEqual(&b, deep, publicOnly, byVersionOnly);
    }

    AssetDefinition& definition = NewDefinition(*material, "DEF");
    AssetDefinition& bitmap = NewDefinition(*texture, "TEX");
    AssetInstance& a = NewInstance(definition);
    AssetInstance& b = NewInstance(definition);
};

TEST_F(AssetCompareTest, TwoInstancesOfADefinitionAreEqual) {
    EXPECT_TRUE(Equal());
    EXPECT_TRUE(Equal(true, true));
}

TEST_F(AssetCompareTest, AnInstanceIsEqualToItselfAndNotToNull) {
    EXPECT_TRUE(a.IsEqual(&a, true, false, true));
    EXPECT_FALSE(a.IsEqual(nullptr, false, false, false));
    EXPECT_FALSE(a.IsEqual(nullptr, false, false, true));
}

TEST_F(AssetCompareTest, AValueOfEitherWritableGroupCounts) {
    SetNumber(a, "gloss", 1);
    EXPECT_FALSE(Equal());
    SetNumber(b, "gloss", 1);
    EXPECT_TRUE(Equal());
    SetNumber(a, "listed", 7);
    EXPECT_FALSE(Equal());
}

TEST_F(AssetCompareTest, AMarkCounts) {
    Find(a, "gloss").SetMarked(false);
    EXPECT_FALSE(Equal());
}

TEST_F(AssetCompareTest, WhatTellsCopiesApartDoesNotCount) {
    for (const char* name : {"VersionGUID", "AssetLibID", "thumbnail", "BaseSchema"}) {
        PutText(a, name, "changed");
        EXPECT_TRUE(Equal()) << name;
    }
    PutNumber(a, "version", 17);
    PutNumber(a, "revision", 18);
    EXPECT_TRUE(Equal());
    PutText(a, "UIName", "changed");
    EXPECT_FALSE(Equal());
}

TEST_F(AssetCompareTest, HiddenPropertiesCountUnlessOnlyPublicOnesDo) {
    SetNumber(a, "hidden", 7);
    EXPECT_FALSE(Equal());
    EXPECT_TRUE(Equal(false, true));
}

TEST_F(AssetCompareTest, TheSchemasMustBeOneObject) {
    AssetInstance& other = NewInstance(bitmap);
    EXPECT_FALSE(a.IsEqual(&other, false, false, false));
    SchemaManager own(world.context, library.schema, SchemaScope::kLibrary, &world);
    LoadXml(own, CommonXml());
    KRVTSchemaDefinition* twin = LoadXml(own, DerivedXml("TextureSchema", "CommonSchema", ""));
    AssetInstance& elsewhere = NewInstance(NewDefinition(*twin, "TWIN"));
    EXPECT_FALSE(other.IsEqual(&elsewhere, false, false, false));
}

TEST_F(AssetCompareTest, TheNumberOfPropertiesAndTheirFlagsMustMatch) {
    b.Group(PropertyTableImp::kReadWriteGroup).Remove("hidden");
    EXPECT_FALSE(Equal(false, true));
    a.Group(PropertyTableImp::kReadWriteGroup).Remove("hidden");
    EXPECT_TRUE(Equal());
    a.Group(PropertyTableImp::kReadWriteGroup).Remove("map");
    b.Group(PropertyTableImp::kReadWriteGroup).Remove("single");
    EXPECT_FALSE(Equal());
}

TEST_F(AssetCompareTest, AFlagAloneMakesADifference) {
    const PropertyBase& gloss = Find(a, "gloss");
    const auto replace = [&](std::uint32_t flags) {
        OwnedProperty other =
            MakeProperty(world.context, ValueClass::kScalarValue, "gloss", "", flags);
        As<IScalarValue>(*other).SetValue(NumberOf(gloss), 0);
        b.AddProperty(std::move(other));
    };
    replace(gloss.GetFlags());
    EXPECT_TRUE(Equal());
    replace(gloss.GetFlags() | PropertyFlags::kMetadata);
    EXPECT_TRUE(gloss.IsEqual(&Find(b, "gloss")));
    EXPECT_FALSE(Equal());
    EXPECT_FALSE(Equal(false, true));
}

TEST_F(AssetCompareTest, ByVersionOnlyTheGuidsCount) {
    a.SetVersionGUID(core::UTF8String("one"));
    b.SetVersionGUID(core::UTF8String("one"));
    SetNumber(a, "gloss", 1);
    EXPECT_TRUE(Equal(false, false, true));
    b.SetVersionGUID(core::UTF8String("two"));
    EXPECT_FALSE(Equal(false, false, true));
    PutText(a, "VersionGUID", "");
    PutText(b, "VersionGUID", "");
    EXPECT_FALSE(Equal(false, false, true));
}

TEST_F(AssetCompareTest, ConnectionsCountOnlyInADeepComparison) {
    AssetInstance& first = NewInstance(bitmap);
    AssetInstance& second = NewInstance(bitmap);
    Find(a, "map").ConnectAsset(&first);
    EXPECT_TRUE(Equal());
    EXPECT_FALSE(Equal(true));
    Find(b, "map").ConnectAsset(&second);
    EXPECT_TRUE(Equal(true));
    SetNumber(second, "scale", 2);
    EXPECT_FALSE(Equal(true));
    EXPECT_TRUE(Equal());
}

TEST_F(AssetCompareTest, ConnectedAssetsAreMatchedByTheirType) {
    AssetInstance& texture1 = NewInstance(bitmap);
    AssetInstance& texture2 = NewInstance(bitmap);
    AssetInstance& material1 = NewInstance(definition);
    AssetInstance& material2 = NewInstance(definition);
    Find(a, "map").ConnectAsset(&texture1);
    Find(a, "map").ConnectAsset(&material1);
    Find(b, "map").ConnectAsset(&material2);
    Find(b, "map").ConnectAsset(&texture2);
    EXPECT_TRUE(Equal(true));
}

TEST_F(AssetCompareTest, CirclesEnd) {
    Find(a, "single").ConnectAsset(&b);
    Find(b, "single").ConnectAsset(&a);
    EXPECT_TRUE(Equal(true));
    SetNumber(a, "gloss", 1);
    EXPECT_FALSE(Equal(true));
}

// Read from a file, a property may hold several assets of one type.
TEST_F(AssetCompareTest, WhatRestedOnAPairThatTurnsOutDifferentIsComparedAnew) {
    AssetInstance& p = NewInstance(definition);
    AssetInstance& r = NewInstance(definition);
    AssetInstance& s = NewInstance(definition);
    AssetInstance& c = NewInstance(definition);
    AssetInstance& d = NewInstance(definition);
    // In a circle each, so that c and d are as equal as p and r; these differ behind "map".
    Find(p, "map").ConnectAsset(&c);
    Find(c, "map").ConnectAsset(&p);
    Find(r, "map").ConnectAsset(&d);
    Find(d, "map").ConnectAsset(&r);
    Find(s, "map").ConnectAsset(&d);
    PutText(p, "swatch", "x");
    PutText(s, "swatch", "x");
    for (AssetInstance* connected : {&p, &r})
        Find(a, "map").AppendConnection(*connected);
    for (AssetInstance* connected : {&r, &s})
        Find(b, "map").AppendConnection(*connected);
    EXPECT_FALSE(Equal(true));
}

TEST_F(AssetCompareTest, ManyRoadsToTheSameAssetsAreWalkedOnce) {
    // Two connections on each of 30 levels, both to the next level: 2^30 roads.
    std::vector<AssetInstance*> left{&a};
    std::vector<AssetInstance*> right{&b};
    for (std::size_t i = 0; i < 30; ++i) {
        for (std::vector<AssetInstance*>* side : {&left, &right}) {
            AssetInstance& next = NewInstance(definition);
            Find(*side->back(), "map").ConnectAsset(&next);
            Find(*side->back(), "single").ConnectAsset(&next);
            side->push_back(&next);
        }
    }
    EXPECT_TRUE(Equal(true));
    SetNumber(*left.back(), "gloss", 1);
    EXPECT_FALSE(Equal(true));
}

}  // namespace korvanet::platform::assets
