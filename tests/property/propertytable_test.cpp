#include "assets/property/propertytable.h"

#include <korvanet/platform/core/jpkuuid.h>

#include "assets/property/halvernasset.h"
#include "property/fixture.h"
#include "property/testinstance.h"

namespace korvanet::platform::assets {
namespace {

using testing::IsEmpty;

class PropertyTableTest : public PropertyTest {
protected:
    PropertyTableTest() : space(runtime.root().createChild("slib.global.asset", '.')) {}

    // A table that nobody counts.
    PropertyTableImp& Uncounted() { return assets::MakeTable(context, TableKind::kInstance); }
    bool Stands(const char* name) const { return space.findObject(name).value.valid(); }

    velmor::Namespace space;
};

TEST_F(PropertyTableTest, FlagsPickTheGroupAndReadOnlyWins) {
    EXPECT_EQ(PropertyTableImp::GroupOf(0), PropertyTableImp::kReadWriteGroup);
    EXPECT_EQ(PropertyTableImp::GroupOf(0xFF5), PropertyTableImp::kReadWriteGroup);
    EXPECT_EQ(PropertyTableImp::GroupOf(0x8), PropertyTableImp::kIterationGroup);
    EXPECT_EQ(PropertyTableImp::GroupOf(0x2), PropertyTableImp::kReadOnlyGroup);
    EXPECT_EQ(PropertyTableImp::GroupOf(0xA), PropertyTableImp::kReadOnlyGroup);
}

TEST_F(PropertyTableTest, GroupsHaveTheirNames) {
    EXPECT_STREQ(kGroupNames[PropertyTableImp::kReadWriteGroup], "10readwrite");
    EXPECT_STREQ(kGroupNames[PropertyTableImp::kIterationGroup], "20iteration");
    EXPECT_STREQ(kGroupNames[PropertyTableImp::kReadOnlyGroup], "30readonly");
}

TEST_F(PropertyTableTest, ANewTableIsEmptyAndBare) {
    PropertyTableImp& table = Uncounted();
    EXPECT_EQ(table.ReferenceCount(), 0u);
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group) {
        EXPECT_TRUE(table.Group(group).Empty());
    }
    EXPECT_EQ(table.Holder().table, &table);
    EXPECT_EQ(table.HolderObject().type(), context.types.Asset());
    EXPECT_EQ(*static_cast<PropertyTableImp**>(table.HolderObject().data()), &table);
    EXPECT_EQ(table.Base(), nullptr);
    EXPECT_EQ(table.Source(), nullptr);
    EXPECT_TRUE(table.Name().empty());
    EXPECT_FALSE(table.Registry().valid());
    EXPECT_FALSE(table.IsPinned());
    EXPECT_EQ(table.State(), 0);
    EXPECT_EQ(&table.Context(), &context);
    EXPECT_EQ(table.Kind(), TableKind::kInstance);
    DestroyTable(table);
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyTableTest, ARecordStartsWithoutBlocksAndUnloaded) {
    PropertyTableImp& table = NewTable();
    const HalvernAsset& record = table.Holder();
    EXPECT_EQ(record.definitionBlock, 0xFFFFFFFFu);
    EXPECT_EQ(record.instanceBlock, 0xFFFFFFFFu);
    EXPECT_EQ(record.state, 0u);
    EXPECT_FALSE(record.definitionLoaded);
    EXPECT_FALSE(record.instanceLoaded);
}

TEST_F(PropertyTableTest, KindsAreNumbered) {
    EXPECT_EQ(static_cast<int>(NewTable(TableKind::kSchema).Kind()), 0);
    EXPECT_EQ(static_cast<int>(NewTable(TableKind::kDefinition).Kind()), 1);
    EXPECT_EQ(static_cast<int>(NewTable(TableKind::kInstance).Kind()), 2);
}

TEST_F(PropertyTableTest, AddedPropertiesStandInTheirGroup) {
    PropertyTableImp& table = NewTable();
    PropertyBase& plain = Add(table, ValueClass::kScalarValue, "plain", 0);
    PropertyBase& listed = Add(table, ValueClass::kScalarValue, "listed", 0x8);
    PropertyBase& fixed = Add(table, ValueClass::kScalarValue, "fixed", 0x2);
    EXPECT_EQ(table.FindInGroup(0, "plain"), &plain);
    EXPECT_EQ(table.FindInGroup(1, "listed"), &listed);
    EXPECT_EQ(table.FindInGroup(2, "fixed"), &fixed);
    EXPECT_EQ(table.FindInGroup(0, "fixed"), nullptr);
    EXPECT_EQ(table.FindProperty("fixed"), &fixed);
    EXPECT_EQ(table.FindProperty("absent"), nullptr);
    EXPECT_EQ(table.GetObject(1, "listed").data(), &listed);
    EXPECT_EQ(table.GetObject(1, "listed").type(), context.types.Value(ValueClass::kScalarValue));
    EXPECT_FALSE(table.GetObject(0, "listed").valid());
}

TEST_F(PropertyTableTest, TheFirstGroupWinsInADamagedTable) {
    PropertyTableImp& table = NewTable();
    table.AddProperty(MakeProperty(context, ValueClass::kScalarValue, "p", "", 0x2));
    table.AddProperty(MakeProperty(context, ValueClass::kStringValue, "p", "", 0x8));
    EXPECT_EQ(table.FindProperty("p")->GetType(), PropertyType::kString);
    table.AddProperty(MakeProperty(context, ValueClass::kBooleanValue, "p", "", 0));
    EXPECT_EQ(table.FindProperty("p")->GetType(), PropertyType::kBoolean);
}

TEST_F(PropertyTableTest, APropertyOfTheSameNameReplacesTheFirst) {
    PropertyTableImp& table = NewTable();
    Add(table, ValueClass::kScalarValue, "p", 0);
    Add(table, ValueClass::kStringValue, "p", 0);
    EXPECT_EQ(table.Group(0).Size(), 1u);
    EXPECT_EQ(table.FindProperty("p")->GetType(), PropertyType::kString);
}

TEST_F(PropertyTableTest, TextsAndSizesReadAsNothingWhereThereIsNone) {
    PropertyTableImp& table = NewTable();
    PropertyBase& list = Add(table, ValueClass::kStringList, "list", 0);
    EXPECT_EQ(table.GetArraySize("list"), 0u);
    EXPECT_TRUE(table.GetText(0, "list").empty());
    list.GetValue()->SetDimension(2);
    As<IStringValue>(list).SetValue(L"b", 1);
    EXPECT_EQ(table.GetArraySize("list"), 2u);
    EXPECT_EQ(Str(table.GetText(0, "list", 1)), "b");
    EXPECT_TRUE(table.GetText(0, "list", 2).empty());
    AddText(table, "text", L"t", 0x2);
    EXPECT_EQ(Str(table.GetText(2, "text")), "t");
    EXPECT_TRUE(table.GetText(2, "text", 1).empty());
    EXPECT_TRUE(table.GetText(0, "text").empty());
    EXPECT_EQ(table.GetArraySize("text"), 0u);
    EXPECT_EQ(table.GetArraySize("absent"), 0u);
    Add(table, ValueClass::kScalarValue, "number", 0);
    EXPECT_TRUE(table.GetText(0, "number").empty());
}

TEST_F(PropertyTableTest, TheQualifiedNameTellsTheNamespacesBelowTheRoot) {
    PropertyTableImp& table = NewTable();
    table.SetName("own");
    EXPECT_EQ(Str(table.GetQualifiedName()), ".own");
    table.Enter(space, "asset1");
    EXPECT_EQ(Str(table.GetQualifiedName()), ".slib.global.asset.asset1");
    table.Detach();
    table.Enter(runtime.root(), "top");
    EXPECT_EQ(Str(table.GetQualifiedName()), ".top");
}

TEST_F(PropertyTableTest, EnteringPutsTheHolderInTheNamespace) {
    PropertyTableImp& table = NewTable();
    table.Enter(space, "a");
    EXPECT_EQ(space.findObject("a").value, table.HolderObject());
    EXPECT_EQ(table.Registry(), space);
    EXPECT_EQ(table.Holder().registry, space);
    EXPECT_EQ(Str(table.Name()), "a");
}

TEST_F(PropertyTableTest, EnteringNowhereNamesTheTable) {
    PropertyTableImp& table = NewTable();
    table.Enter({}, "a");
    EXPECT_EQ(Str(table.Name()), "a");
    EXPECT_FALSE(table.Registry().valid());
    EXPECT_TRUE(space.empty());
}

TEST_F(PropertyTableTest, TheLastReleaseTakesTheTableOutAndDestroysIt) {
    const int blocks = heap.blocks;
    PropertyTableImp& table = Uncounted();
    table.Enter(space, "a");
    table.Retain();
    table.Retain();
    table.Unretain();
    EXPECT_TRUE(Stands("a"));
    table.Unretain();
    EXPECT_FALSE(Stands("a"));
    EXPECT_EQ(tables.living, 0);
    EXPECT_EQ(heap.blocks, blocks);
}

TEST_F(PropertyTableTest, ATableWithoutANamespaceDiesTheSameWay) {
    PropertyTableImp& table = Uncounted();
    table.Retain();
    table.Unretain();
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyTableTest, AReleaseAtCountZeroDoesNothing) {
    PropertyTableImp& table = Uncounted();
    table.Enter(space, "a");
    table.Unretain();
    EXPECT_EQ(table.ReferenceCount(), 0u);
    EXPECT_TRUE(Stands("a"));
    EXPECT_EQ(tables.living, 1);
}

TEST_F(PropertyTableTest, APinnedTableOfCountZeroIsStillFoundByName) {
    PropertyTableImp& table = Uncounted();
    const velmor::Object holder = table.HolderObject();
    table.Enter(space, "a");
    table.SetPinned(true);
    table.Retain();
    table.Unretain();
    EXPECT_EQ(space.findObject("a").value, holder);
    EXPECT_EQ(tables.living, 1);
    EXPECT_TRUE(runtime.removeObject(space, "a"));
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyTableTest, ReleasingLeavesAnotherTableUnderTheNameAlone) {
    PropertyTableImp& first = Uncounted();
    first.Retain();
    first.Enter(space, "a");
    EXPECT_TRUE(runtime.detachObject(space, "a").valid());
    PropertyTableImp& second = NewTable();
    second.Enter(space, "a");
    first.Unretain();
    EXPECT_EQ(space.findObject("a").value, second.HolderObject());
    EXPECT_EQ(tables.living, 1);
}

TEST_F(PropertyTableTest, ADetachedTableLivesByItsCountAlone) {
    PropertyTableImp& table = Uncounted();
    table.Retain();
    table.Enter(space, "a");
    table.SetPinned(true);
    table.Detach();
    EXPECT_FALSE(Stands("a"));
    EXPECT_FALSE(table.IsPinned());
    EXPECT_FALSE(table.Registry().valid());
    EXPECT_EQ(tables.living, 1);
    table.Unretain();
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyTableTest, ASourceLivesAsLongAsWhatWasMadeFromIt) {
    PropertyTableImp& source = Uncounted();
    PropertyTableImp& table = NewTable();
    table.SetSource(&source);
    EXPECT_EQ(source.ReferenceCount(), 1u);
    EXPECT_EQ(table.Source(), &source);
    EXPECT_EQ(tables.living, 2);
    table.SetSource(nullptr);
    EXPECT_EQ(tables.living, 1);
}

TEST_F(PropertyTableTest, ClearingConnectionsReachesAllGroups) {
    PropertyTableImp& table = NewTable();
    PropertyTableImp& asset = NewAsset("texture");
    for (const std::uint32_t group : {0x0u, 0x8u, 0x2u}) {
        const std::string name = "p" + std::to_string(group);
        Add(table, ValueClass::kReferenceValue, name.c_str(), group | 0x40).AppendConnection(asset);
    }
    EXPECT_EQ(asset.ReferenceCount(), 4u);
    table.ClearConnections();
    EXPECT_EQ(asset.ReferenceCount(), 1u);
}

TEST_F(PropertyTableTest, DestroyingTheRuntimeDestroysTheTablesOfItsNamespaces) {
    int living = 0;
    {
        velmor::Runtime other("other", &heap, &nuo::get_extern_heap());
        ModuleContext away = context;
        away.runtime = &other;
        PropertyTableImp& table = assets::MakeTable(away, TableKind::kInstance);
        table.Enter(other.root(), "a");
        living = tables.living;
    }
    EXPECT_EQ(living, 1);
    EXPECT_EQ(tables.living, 0);
}

TEST_F(PropertyTableTest, AHostFindsPropertiesByWideName) {
    PropertyTableImp& table = NewTable();
    PropertyBase& property = Add(table, ValueClass::kScalarValue, "gl\xC3\xB6ss");
    IAssetInstance& instance = *InstanceOf(table);
    EXPECT_EQ(instance.FindProperty(L"gl\u00F6ss"), &property);
    EXPECT_EQ(static_cast<const IAssetInstance&>(instance).FindProperty(L"gl\u00F6ss"), &property);
    EXPECT_EQ(instance.FindProperty(L"gloss"), nullptr);
    EXPECT_EQ(instance.FindProperty(nullptr), nullptr);
    const std::wstring longName(1000, L'x');
    EXPECT_EQ(instance.FindProperty(longName.c_str()), nullptr);
    EXPECT_THAT(reports.lines, IsEmpty());
}

TEST_F(PropertyTableTest, IdentifiersAreFreshUuids) {
    const nuo::string identifier = MakeIdentifier();
    EXPECT_EQ(identifier.size(), 36u);
    EXPECT_TRUE(core::JPKUUID::IsValid(core::UTF8String(identifier.c_str())));
    EXPECT_FALSE(identifier == MakeIdentifier());
}

}  // namespace
}  // namespace korvanet::platform::assets
