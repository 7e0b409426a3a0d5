#include "assets/property/connection.h"
#include "property/fixture.h"
#include "property/testinstance.h"

namespace korvanet::platform::assets {
namespace {

constexpr std::uint32_t kListed = PropertyFlags::kDefinitionIteratorData;
constexpr std::uint32_t kFixed = PropertyFlags::kReadOnly;
constexpr std::uint32_t kPlaces = PropertyFlags::kAllowConnectedAssets;

class TableCloneTest : public PropertyTest {
protected:
    TableCloneTest() : space(runtime.root().createChild("usr", '.')) {}

    // Connects without the rules for hosts.
    PropertyBase& Connect(PropertyTableImp& table, PropertyTableImp& asset,
                          const char* name = "place", std::uint32_t flags = kPlaces) {
        PropertyBase* place = table.FindProperty(name);
        if (place == nullptr) {
            place = &Add(table, ValueClass::kReferenceValue, name, flags);
        }
        place->AppendConnection(asset);
        return *place;
    }
    static PropertyTableImp& Connected(PropertyTableImp& table, const char* name = "place",
                                       std::uint64_t index = 0) {
        return *table.FindProperty(name)->ConnectedTable(index);
    }
    // A chain of tables, each connected to the next.
    PropertyTableImp& Chain(int links) {
        PropertyTableImp& first = NewTable();
        PropertyTableImp* last = &first;
        for (int i = 0; i < links; ++i) {
            PropertyTableImp& next = NewTable();
            Connect(*last, next);
            last = &next;
        }
        return first;
    }

    velmor::Namespace space;
};

TEST_F(TableCloneTest, ACloneIsAnInstanceWithOneReference) {
    PropertyTableImp& source = NewTable(TableKind::kDefinition);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_EQ(clone->ReferenceCount(), 1u);
    EXPECT_EQ(clone->Kind(), TableKind::kInstance);
    EXPECT_EQ(clone->Source(), &source);
    EXPECT_FALSE(clone->IsPinned());
    EXPECT_EQ(clone->State(), 0);
    EXPECT_EQ(clone->Base(), source.Base());
    EXPECT_EQ(clone->Name().size(), 36u);
    EXPECT_FALSE(clone->Registry().valid());
    EXPECT_EQ(source.ReferenceCount(), 2u);
}

TEST_F(TableCloneTest, ACloneEntersTheNamespaceUnderAFreshName) {
    PropertyTableImp& source = NewTable();
    source.SetName("source");
    const intrusive_ptr<PropertyTableImp> clone(source.Clone(space));
    clone->Unretain();
    EXPECT_EQ(clone->Registry(), space);
    EXPECT_EQ(space.findObject(clone->Name()).value, clone->HolderObject());
    EXPECT_FALSE(clone->Name() == source.Name());
}

TEST_F(TableCloneTest, TheReadOnlyGroupIsSharedAndTheOthersAreCopied) {
    PropertyTableImp& source = NewTable();
    AddText(source, "plain", L"1", 0);
    AddText(source, "listed", L"2", kListed);
    AddText(source, "fixed", L"3", kFixed);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_NE(clone->FindProperty("plain"), source.FindProperty("plain"));
    EXPECT_NE(clone->FindProperty("listed"), source.FindProperty("listed"));
    EXPECT_EQ(clone->FindProperty("fixed"), source.FindProperty("fixed"));
    EXPECT_EQ(&clone->FindProperty("plain")->Descriptor(),
              &source.FindProperty("plain")->Descriptor());
    As<IStringValue>(*clone->FindProperty("plain")).SetValue(L"x");
    As<IStringValue>(*clone->FindProperty("listed")).SetValue(L"x");
    EXPECT_EQ(TextOf(*source.FindProperty("plain")), "1");
    EXPECT_EQ(TextOf(*source.FindProperty("listed")), "2");
}

TEST_F(TableCloneTest, AReadOnlyValueChangedThroughOneCloneShowsInAll) {
    PropertyTableImp& source = NewTable();
    AddText(source, "fixed", L"3", kFixed);
    const intrusive_ptr<PropertyTableImp> first(source.Clone({}));
    const intrusive_ptr<PropertyTableImp> second(first->Clone({}));
    first->Unretain();
    second->Unretain();
    As<IStringValue>(*first->FindProperty("fixed")).SetValue(L"new");
    EXPECT_EQ(TextOf(*second->FindProperty("fixed")), "new");
    EXPECT_EQ(TextOf(*source.FindProperty("fixed")), "new");
}

TEST_F(TableCloneTest, TheReadOnlyGroupOutlivesItsFirstTable) {
    PropertyTableImp& source = assets::MakeTable(context, TableKind::kDefinition);
    AddText(source, "fixed", L"3", kFixed);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    clone->SetSource(nullptr);
    EXPECT_EQ(tables.living, 1);
    EXPECT_EQ(TextOf(*clone->FindProperty("fixed")), "3");
}

TEST_F(TableCloneTest, AnObserverOfTheSourceDoesNotHearOfTheClone) {
    ChangeLog changes;
    PropertyTableImp& source = NewTable();
    AddText(source, "plain", L"1", PropertyFlags::kPublic);
    source.FindProperty("plain")->SetOwner(&changes);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    As<IStringValue>(*clone->FindProperty("plain")).SetValue(L"x");
    EXPECT_TRUE(changes.lines.empty());
}

TEST_F(TableCloneTest, ConnectedAssetsOfTheReadWriteGroupAreClonedToo) {
    PropertyTableImp& source = NewTable();
    PropertyTableImp& texture = NewAsset("texture");
    AddText(texture, "file", L"a.png", 0);
    texture.SetState(5);
    Connect(source, texture);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone(space));
    clone->Unretain();
    PropertyTableImp& copy = Connected(*clone);
    EXPECT_NE(&copy, &texture);
    EXPECT_EQ(&Connected(source), &texture);
    EXPECT_EQ(copy.ReferenceCount(), 1u);
    EXPECT_EQ(copy.Source(), &texture);
    EXPECT_EQ(copy.State(), 0);
    EXPECT_EQ(copy.Registry(), space);
    EXPECT_EQ(TextOf(*copy.FindProperty("file")), "a.png");
    EXPECT_EQ(clone->FindProperty("place")->ConnectionAt(0).link, copy.GetQualifiedName());
}

TEST_F(TableCloneTest, ConnectionsOfTheIterationGroupKeepTheirTables) {
    PropertyTableImp& source = NewTable();
    PropertyTableImp& texture = NewAsset("texture");
    Connect(source, texture, "listed", kPlaces | kListed);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_EQ(&Connected(*clone, "listed"), &texture);
    EXPECT_EQ(texture.ReferenceCount(), 3u);
}

TEST_F(TableCloneTest, ChainsOfConnectionsAreClonedToTheirEnd) {
    PropertyTableImp& source = Chain(3);
    const int before = tables.living;
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_EQ(tables.living, before + 4);
    EXPECT_EQ(Connected(Connected(Connected(*clone))).Source(),
              &Connected(Connected(Connected(source))));
}

TEST_F(TableCloneTest, ACircleIsClonedAsACircle) {
    PropertyTableImp& a = NewTable();
    PropertyTableImp& b = NewTable();
    Connect(a, b);
    Connect(b, a);
    const intrusive_ptr<PropertyTableImp> clone(a.Clone(space));
    clone->Unretain();
    PropertyTableImp& other = Connected(*clone);
    EXPECT_EQ(&Connected(other), clone.get());
    EXPECT_NE(&other, &b);
    EXPECT_EQ(other.ReferenceCount(), 1u);
    EXPECT_EQ(clone->ReferenceCount(), 2u);
    // Whoever closes a circle opens it.
    clone->ClearConnections();
    a.ClearConnections();
}

TEST_F(TableCloneTest, AnAssetConnectedTwiceIsClonedOnce) {
    PropertyTableImp& source = NewTable();
    PropertyTableImp& texture = NewAsset("texture");
    Connect(source, texture, "one");
    Connect(source, texture, "two");
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_EQ(&Connected(*clone, "one"), &Connected(*clone, "two"));
    EXPECT_EQ(Connected(*clone, "one").ReferenceCount(), 2u);
}

TEST_F(TableCloneTest, ConnectionsAsDeepAsTheLimitAreCloned) {
    PropertyTableImp& source = Chain(PropertyTableImp::kMaxConnectionDepth);
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    ASSERT_TRUE(clone);
    clone->Unretain();
}

TEST_F(TableCloneTest, DeeperConnectionsFailAndLeaveNothingBehind) {
    PropertyTableImp& source = Chain(PropertyTableImp::kMaxConnectionDepth + 1);
    const int living = tables.living;
    const int blocks = heap.blocks;
    EXPECT_EQ(source.Clone(space), nullptr);
    EXPECT_EQ(tables.living, living);
    EXPECT_EQ(heap.blocks, blocks);
    EXPECT_TRUE(space.empty());
}

TEST_F(TableCloneTest, AFailureInsideACircleLeavesNothingBehind) {
    PropertyTableImp& a = NewTable();
    PropertyTableImp& b = NewTable();
    Connect(a, b);
    Connect(b, a);
    Connect(a, Chain(PropertyTableImp::kMaxConnectionDepth));
    const int living = tables.living;
    EXPECT_EQ(a.Clone(space), nullptr);
    EXPECT_EQ(tables.living, living);
    EXPECT_TRUE(space.empty());
    a.ClearConnections();
}

TEST_F(TableCloneTest, AFullHeapInsideACircleLeavesNothingBehind) {
    PropertyTableImp& a = NewTable();
    PropertyTableImp& b = NewTable();
    Connect(a, b);
    Connect(b, a);
    Connect(a, NewTable());  // cloned when the circle is closed
    const int living = tables.living;
    const int blocks = heap.blocks;
    const int needed = [&] {
        const int before = heap.allocations;
        const intrusive_ptr<PropertyTableImp> clone(a.Clone(space));
        clone->Unretain();
        clone->ClearConnections();
        return heap.allocations - before;
    }();
    for (int spared = 0; spared < needed; ++spared) {
        heap.fullAfter = heap.allocations + spared;
        EXPECT_THROW(a.Clone(space), std::bad_alloc) << spared;
        heap.fullAfter = CountingHeap::kNever;
        EXPECT_EQ(tables.living, living) << spared;
        EXPECT_EQ(heap.blocks, blocks) << spared;
    }
    EXPECT_TRUE(space.empty());
    a.ClearConnections();
}

TEST_F(TableCloneTest, AFailureLeavesTheConnectionsOfTheSharedGroup) {
    PropertyTableImp& source = Chain(PropertyTableImp::kMaxConnectionDepth + 1);
    PropertyTableImp& texture = NewAsset("texture");
    const PropertyBase& fixed = Connect(source, texture, "fixed", kPlaces | kFixed);
    EXPECT_EQ(source.Clone({}), nullptr);
    ASSERT_EQ(fixed.GetConnectedAssetCount(), 1u);
    EXPECT_EQ(fixed.ConnectedTable(0), &texture);
}

TEST_F(TableCloneTest, ACopyBesideHasTheSourceOfItsOriginal) {
    PropertyTableImp& definition = NewTable(TableKind::kDefinition);
    AddText(definition, "plain", L"1", 0);
    const intrusive_ptr<PropertyTableImp> original(definition.Clone({}));
    original->Unretain();
    As<IStringValue>(*original->FindProperty("plain")).SetValue(L"edited");
    const intrusive_ptr<PropertyTableImp> copy(original->CloneBeside(space));
    copy->Unretain();
    EXPECT_EQ(copy->ReferenceCount(), 1u);
    EXPECT_EQ(copy->Source(), &definition);
    EXPECT_EQ(copy->State(), 0);
    EXPECT_EQ(copy->Registry(), space);
    EXPECT_EQ(TextOf(*copy->FindProperty("plain")), "edited");
    EXPECT_EQ(dynamic_cast<TestInstance&>(*original).resolved, 1);
}

TEST_F(TableCloneTest, AnInstanceOfATableDoesNotAskForItsSource) {
    PropertyTableImp& source = NewTable();
    const intrusive_ptr<PropertyTableImp> clone(source.Clone({}));
    clone->Unretain();
    EXPECT_EQ(dynamic_cast<TestInstance&>(source).resolved, 0);
}

TEST_F(TableCloneTest, CopiesOfConnectedInstancesAreMarkedAsSuch) {
    PropertyTableImp& definition = NewTable(TableKind::kDefinition);
    PropertyTableImp& texture = NewAsset("texture");
    texture.SetSource(&definition);
    PropertyTableImp& original = NewTable();
    Connect(original, texture);
    const intrusive_ptr<PropertyTableImp> copy(original.CloneBeside({}));
    copy->Unretain();
    PropertyTableImp& nested = Connected(*copy);
    EXPECT_EQ(nested.State(), 1);
    EXPECT_EQ(nested.Source(), &definition);
    EXPECT_EQ(nested.ReferenceCount(), 1u);
    EXPECT_FALSE(nested.Name() == texture.Name());
    EXPECT_EQ(dynamic_cast<TestInstance&>(texture).resolved, 1);
    texture.SetSource(nullptr);
}

TEST_F(TableCloneTest, TakingGroupsKeepsConnectionsToTheSameTables) {
    PropertyTableImp& schema = NewTable(TableKind::kSchema);
    PropertyTableImp& texture = NewAsset("texture");
    Connect(schema, texture);
    AddText(schema, "fixed", L"3", kFixed);
    PropertyTableImp& definition = NewTable(TableKind::kDefinition);
    definition.TakeGroups(schema);
    EXPECT_EQ(&Connected(definition), &texture);
    EXPECT_EQ(definition.FindProperty("fixed"), schema.FindProperty("fixed"));
}

}  // namespace
}  // namespace korvanet::platform::assets
