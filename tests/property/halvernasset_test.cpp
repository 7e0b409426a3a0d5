#include "assets/property/halvernasset.h"

#include "property/fixture.h"

namespace korvanet::platform::assets {
namespace {

class HalvernAssetTest : public PropertyTest {};

TEST_F(HalvernAssetTest, TheTableIsTheFirstWord) {
    EXPECT_EQ(offsetof(HalvernAsset, table), 0u);
    PropertyTableImp& table = NewTable();
    EXPECT_EQ(*static_cast<PropertyTableImp**>(table.HolderObject().data()), &table);
}

TEST_F(HalvernAssetTest, TheReflectedTypeIsTheNativeClass) {
    const velmor::Type type = context.types.Asset();
    EXPECT_EQ(type.payload(), sizeof(HalvernAsset));
    EXPECT_EQ(type.alignment(), alignof(HalvernAsset));
    EXPECT_FALSE(type.isPod());
    EXPECT_TRUE(velmor::isNative<HalvernAsset>(type));
}

TEST_F(HalvernAssetTest, RecordsAreOrderedByIdentifierBaseSchemaAndContent) {
    const velmor::Type type = context.types.Asset();
    const auto order = [type](const HalvernAsset& left, const HalvernAsset& right) {
        return velmor::compare({type, &left}, {type, &right});
    };
    HalvernAsset a;
    HalvernAsset b;
    EXPECT_EQ(order(a, b), 0);
    a.baseSchema = "B";
    b.baseSchema = "A";
    EXPECT_EQ(order(a, b), 1);
    b.identifier = "b";
    EXPECT_EQ(order(a, b), -1);
    PropertyTableImp& with = NewTable();
    PropertyTableImp& other = NewTable();
    EXPECT_EQ(order(with.Holder(), other.Holder()), 0);
    with.Group(PropertyTableImp::kIterationGroup)
        .Insert(MakeProperty(context, ValueClass::kStringValue, "name", "", 0));
    EXPECT_EQ(order(with.Holder(), other.Holder()), 1);
    EXPECT_EQ(order(HalvernAsset(), with.Holder()), -1);
}

TEST_F(HalvernAssetTest, DestroyingTheValueDestroysTheTable) {
    PropertyTableImp& table = assets::MakeTable(context, TableKind::kDefinition);
    EXPECT_EQ(tables.living, 1);
    DestroyTable(table);
    EXPECT_EQ(tables.living, 0);
}

TEST_F(HalvernAssetTest, AValueWithoutATableIsDestroyedToo) {
    const velmor::Type type = context.types.Asset();
    alignas(HalvernAsset) std::byte memory[sizeof(HalvernAsset)];
    const velmor::Object object(type, memory);
    type.methods().construct(object, &heap, nullptr);
    const auto& record = *velmor::bind<HalvernAsset>(object);
    EXPECT_EQ(record.table, nullptr);
    EXPECT_EQ(record.definitionBlock, HalvernAsset::kNoBlock);
    type.methods().destruct(object);
}

}  // namespace
}  // namespace korvanet::platform::assets
