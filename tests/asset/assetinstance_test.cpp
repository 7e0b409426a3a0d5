#include "assets/asset/assetinstance.h"

#include <korvanet/platform/assets/ivalue.h>
#include <korvanet/platform/core/jpkuuid.h>

#include "asset/support.h"
#include "assets/asset/igenericconverter.h"

namespace korvanet::platform::assets {

class AssetInstanceTest : public AssetTest {
protected:
    static double Number(AssetInstance& instance, const char* name) {
        return NumberOf(Find(instance, name));
    }
    static bool SetNumber(AssetInstance& instance, const char* name, double number) {
        return As<IScalarValue>(Find(instance, name)).SetValue(number, 0);
    }
    bool Equal(const AssetInstance& a, const AssetInstance& b, bool deep = false,
               bool publicOnly = false) {
        return a.IsEqual(&b, deep, publicOnly, false);
    }

    AssetDefinition& definition = NewDefinition(*material, "DEF");
    AssetDefinition& bitmap = NewDefinition(*texture, "TEX");
    AssetInstance& instance = NewInstance(definition);
};

TEST_F(AssetInstanceTest, StartsWithOneReferenceAndItsDefinition) {
    EXPECT_EQ(instance.GetReferenceCount(), 1u);
    EXPECT_EQ(instance.Kind(), TableKind::kInstance);
    EXPECT_FALSE(instance.IsPinned());
    EXPECT_EQ(instance.GetSchema(), definition.GetSchema());
    IAssetDefinition* found = instance.GetDefinition();
    EXPECT_EQ(found, static_cast<IAssetDefinition*>(&definition));
    // The instance's own and the one just given.
    EXPECT_EQ(definition.GetReferenceCount(), 2u);
    found->Release();
}

TEST_F(AssetInstanceTest, ItsIdentifierIsAFreshGuid) {
    EXPECT_TRUE(core::JPKUUID::IsValid(core::UTF8String(instance.Name().c_str())));
    EXPECT_NE(Str(instance.Name()), Str(NewInstance(definition).Name()));
}

TEST_F(AssetInstanceTest, AChangeReachesNeitherTheDefinitionNorOtherInstances) {
    AssetInstance& other = NewInstance(definition);
    EXPECT_TRUE(SetNumber(instance, "gloss", 0.75));
    EXPECT_TRUE(SetNumber(instance, "listed", 9));
    EXPECT_EQ(Number(instance, "gloss"), 0.75);
    EXPECT_EQ(Number(other, "gloss"), 0.5);
    EXPECT_EQ(Number(other, "listed"), 2);
    EXPECT_EQ(NumberOf(Find(definition, "gloss")), 0.5);
    EXPECT_EQ(NumberOf(Find(definition, "listed")), 2);
}

TEST_F(AssetInstanceTest, AChangeOfTheDefinitionDoesNotReachItsInstances) {
    As<IScalarValue>(Find(definition, "gloss")).SetValue(0.1, 0);
    EXPECT_EQ(Number(instance, "gloss"), 0.5);
}

TEST_F(AssetInstanceTest, TheReadOnlyGroupIsSharedWithSchemaDefinitionAndInstances) {
    EXPECT_EQ(&Find(instance, "fixed"), &Find(definition, "fixed"));
    EXPECT_EQ(&Find(instance, "fixed"), &Find(*material, "fixed"));
}

TEST_F(AssetInstanceTest, FindsPropertiesByNameAndByAlias) {
    EXPECT_EQ(instance.FindProperty(L"shine"), &Find(instance, "gloss"));
    EXPECT_EQ(std::as_const(instance).FindProperty(L"gloss"), &Find(instance, "gloss"));
    EXPECT_EQ(instance.FindProperty(L"nothing"), nullptr);
    EXPECT_EQ(instance.FindProperty(static_cast<const wchar_t*>(nullptr)), nullptr);
}

TEST_F(AssetInstanceTest, ConnectedAssetsOfTheDefinitionBecomeInstancesOfTheirOwn) {
    AssetInstance& connected = NewInstance(bitmap);
    ASSERT_TRUE(Find(definition, "map").ConnectAsset(&connected));
    AssetInstance& made = NewInstance(definition);
    ASSERT_EQ(Find(made, "map").GetConnectedAssetCount(), 1u);
    auto& own =
        dynamic_cast<AssetInstance&>(*Find(made, "map").GetConnectedAsset(std::uint64_t{0}));
    EXPECT_NE(&own, &connected);
    EXPECT_EQ(own.State(), 0);
    EXPECT_EQ(own.GetReferenceCount(), 1u);
    Find(definition, "map").ConnectAsset(nullptr);
}

TEST_F(AssetInstanceTest, AChainOfConnectionsThatIsTooDeepMakesNoInstance) {
    std::vector<AssetInstance*> chain;
    for (int i = 0; i < 70; ++i) {
        chain.push_back(&NewInstance(bitmap));
        if (i > 0) Find(*chain[i - 1], "inner").ConnectAsset(chain[i]);
    }
    EXPECT_EQ(chain.front()->Clone(), nullptr);
    IAssetInstance* shorter = chain[10]->Clone();
    ASSERT_NE(shorter, nullptr);
    Keep(shorter);
    EXPECT_FALSE(Equal(*chain.front(), Keep(chain[1]->AddReference()), true));
}

TEST_F(AssetInstanceTest, ACloneHasTheValuesOfItsSourceAndTheSameDefinition) {
    SetNumber(instance, "gloss", 0.25);
    AssetInstance& clone = Keep(instance.Clone());
    EXPECT_EQ(clone.GetReferenceCount(), 1u);
    EXPECT_NE(Str(clone.Name()), Str(instance.Name()));
    EXPECT_EQ(clone.Registry(), instance.Registry());
    EXPECT_EQ(Number(clone, "gloss"), 0.25);
    IAssetDefinition* found = clone.GetDefinition();
    EXPECT_EQ(found, static_cast<IAssetDefinition*>(&definition));
    found->Release();
    SetNumber(clone, "gloss", 1);
    EXPECT_EQ(Number(instance, "gloss"), 0.25);
}

TEST_F(AssetInstanceTest, ACloneConnectsAClonedTextureWithTheSameValues) {
    AssetInstance& connected = NewInstance(bitmap);
    SetNumber(connected, "scale", 3);
    Find(instance, "map").ConnectAsset(&connected);
    AssetInstance& clone = Keep(instance.Clone());
    auto& own =
        dynamic_cast<AssetInstance&>(*Find(clone, "map").GetConnectedAsset(std::uint64_t{0}));
    EXPECT_NE(Str(own.Name()), Str(connected.Name()));
    EXPECT_EQ(Number(own, "scale"), 3);
    EXPECT_EQ(own.State(), 1);
    EXPECT_EQ(own.GetReferenceCount(), 1u);
    EXPECT_EQ(own.Definition(), &bitmap);
    instance.SetVersionGUID(core::UTF8String("other"));
    EXPECT_TRUE(Equal(instance, clone, true));
}

TEST_F(AssetInstanceTest, ACircleOfConnectionsIsClonedAsACircle) {
    AssetInstance& a = NewInstance(bitmap);
    AssetInstance& b = NewInstance(bitmap);
    Find(a, "inner").ConnectAsset(&b);
    Find(b, "inner").ConnectAsset(&a);
    AssetInstance& clone = Keep(a.Clone());
    auto& second =
        dynamic_cast<AssetInstance&>(*Find(clone, "inner").GetConnectedAsset(std::uint64_t{0}));
    EXPECT_EQ(Find(second, "inner").GetConnectedAsset(std::uint64_t{0}),
              static_cast<IAssetInstance*>(&clone));
    EXPECT_TRUE(Equal(a, clone, true));
    SetNumber(second, "scale", 8);
    EXPECT_FALSE(Equal(a, clone, true));
}

TEST_F(AssetInstanceTest, ALateDefinitionIsFoundOnceAndWhenItIsAskedFor) {
    AssetDefinition& late = NewDefinition(*material, "LATE");
    int calls = 0;
    instance.SetDefinitionGetter([&] {
        ++calls;
        return &late;
    });
    EXPECT_EQ(calls, 0);
    IAssetDefinition* found = instance.GetDefinition();
    EXPECT_EQ(found, static_cast<IAssetDefinition*>(&late));
    found->Release();
    instance.GetDefinition()->Release();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(instance.Source(), &late);
}

TEST_F(AssetInstanceTest, CloningFindsALateDefinitionFirst) {
    AssetDefinition& late = NewDefinition(*material, "LATE");
    instance.SetDefinitionGetter([&] { return &late; });
    EXPECT_EQ(Keep(instance.Clone()).Definition(), &late);
}

TEST_F(AssetInstanceTest, AGetterThatRaisesGivesNoDefinition) {
    instance.SetDefinitionGetter([]() -> AssetDefinition* { throw std::runtime_error("broken"); });
    EXPECT_EQ(instance.GetDefinition(), nullptr);
}

TEST_F(AssetInstanceTest, ItKeepsItsDefinitionAlive) {
    AssetDefinition& loose = MakeDefinition(*material, library.asset, "LOOSE");
    loose.AddReference();
    AssetInstance& made = NewInstance(loose);
    loose.Release();
    EXPECT_TRUE(library.asset.findObject("LOOSE").value.valid());
    EXPECT_EQ(made.Definition(), &loose);
}

TEST_F(AssetInstanceTest, ItLeavesItsRegistryWithItsLastReference) {
    IAssetInstance* loose = definition.CreateInstance();
    const nuo::string name = dynamic_cast<AssetInstance&>(*loose).Name();
    EXPECT_EQ(loose->AddReference(), loose);
    loose->Release();
    EXPECT_TRUE(library.tmpAsset.findObject(name).value.valid());
    loose->Release();
    EXPECT_FALSE(library.tmpAsset.findObject(name).value.valid());
}

TEST_F(AssetInstanceTest, IsDerivedFromItsSchemaAndThatOnesBases) {
    EXPECT_TRUE(instance.IsDerivedFromSchema(core::UTF8String("MaterialSchema")));
    EXPECT_TRUE(instance.IsDerivedFromSchema(core::UTF8String("CommonSchema")));
    EXPECT_FALSE(instance.IsDerivedFromSchema(core::UTF8String("TextureSchema")));
    EXPECT_FALSE(instance.IsDerivedFromSchema(core::UTF8String("")));
}

TEST_F(AssetInstanceTest, IsRevisionComparesTheStoredNumber) {
    PutNumber(instance, "revision", 5);
    EXPECT_TRUE(instance.IsRevision(5));
    EXPECT_FALSE(instance.IsRevision(4));
}

TEST_F(AssetInstanceTest, BeginAndEndOfAChangeDoNothing) {
    ObserverLog log;
    instance.AddObserver(&log);
    instance.BeginChange();
    SetNumber(instance, "gloss", 1);
    instance.CancelChange();
    instance.EndChange();
    EXPECT_EQ(Number(instance, "gloss"), 1);
    EXPECT_EQ(log.Take(), Lines{"value gloss"});
    instance.RemoveObserver(&log);
}

TEST_F(AssetInstanceTest, ObserversHearOfPublicChangesInTheirOrder) {
    Lines lines;
    ObserverLog first("1 ");
    ObserverLog second("2 ");
    EXPECT_TRUE(instance.AddObserver(&first));
    EXPECT_TRUE(instance.AddObserver(&second));
    SetNumber(instance, "gloss", 1);
    SetNumber(instance, "listed", 1);
    SetNumber(instance, "hidden", 3);
    EXPECT_EQ(first.Take(), (Lines{"1 value gloss", "1 value listed"}));
    EXPECT_EQ(second.Take(), (Lines{"2 value gloss", "2 value listed"}));
    EXPECT_TRUE(instance.RemoveObserver(&first));
    SetNumber(instance, "gloss", 0);
    EXPECT_EQ(first.Take(), Lines{});
    EXPECT_EQ(second.Take(), Lines{"2 value gloss"});
}

TEST_F(AssetInstanceTest, ObserversHearOfConnections) {
    ObserverLog log;
    instance.AddObserver(&log);
    AssetInstance& connected = NewInstance(bitmap);
    Find(instance, "map").ConnectAsset(&connected);
    Find(instance, "map").RemoveConnectedAsset(&connected);
    EXPECT_EQ(log.Take(), (Lines{"connection map", "connection map"}));
}

TEST_F(AssetInstanceTest, APropertyLearnsItsOwnerFromTheFirstObserver) {
    EXPECT_EQ(Find(instance, "gloss").Owner(), nullptr);
    ObserverLog log;
    instance.AddObserver(&log);
    EXPECT_EQ(Find(instance, "gloss").Owner(), static_cast<IPropertyOwner*>(&instance));
    EXPECT_EQ(Find(instance, "listed").Owner(), static_cast<IPropertyOwner*>(&instance));
    // Shared by all: it has no owner.
    EXPECT_EQ(Find(instance, "fixed").Owner(), nullptr);
    instance.RemoveObserver(&log);
    EXPECT_EQ(Find(instance, "gloss").Owner(), static_cast<IPropertyOwner*>(&instance));
}

// Breaks the rule that an observer stays while it is told something.
class LeavingObserver final : public IAssetObserver {
public:
    explicit LeavingObserver(IAssetInstance& instance) : instance_(instance) {}

    void OnValueChanged(IProperty*) override { instance_.RemoveObserver(this); }
    void OnConnectionChanged(IProperty*) override {}
    void OnAssetChanged() override {}

private:
    IAssetInstance& instance_;
};

TEST_F(AssetInstanceTest, WhenAnObserverLeavesInsideACallNobodyIsToldTwice) {
    LeavingObserver leaving(instance);
    ObserverLog second("2 ");
    ObserverLog third("3 ");
    instance.AddObserver(&leaving);
    instance.AddObserver(&second);
    instance.AddObserver(&third);
    instance.ValueChanged(Find(instance, "UIName"));
    EXPECT_EQ(third.Take(), Lines{"3 value UIName"});
    instance.ValueChanged(Find(instance, "UIName"));
    EXPECT_EQ(second.Take(), Lines{"2 value UIName"});
    EXPECT_EQ(third.Take(), Lines{"3 value UIName"});
}

// The first to hear of a change lets go of the last reference; the second is told all the same.
TEST_F(AssetInstanceTest, AnInstanceThatAnObserverReleasesLastsUntilAllAreTold) {
    class Releasing final : public IAssetObserver {
    public:
        explicit Releasing(IAssetInstance* watched) : watched_(watched) {}
        void OnValueChanged(IProperty*) override { watched_->Release(); }
        void OnConnectionChanged(IProperty*) override {}
        void OnAssetChanged() override {}

    private:
        IAssetInstance* watched_;
    };
    IAssetInstance* const single = definition.CreateInstance();
    Releasing first(single);
    ObserverLog second;
    ASSERT_TRUE(single->AddObserver(&first));
    ASSERT_TRUE(single->AddObserver(&second));
    EXPECT_TRUE(SetNumber(dynamic_cast<AssetInstance&>(*single), "gloss", 0.75));
    EXPECT_EQ(second.Take(), Lines{"value gloss"});
    EXPECT_EQ(definition.GetReferenceCount(), 1u);
}

TEST_F(AssetInstanceTest, AnObserverIsAddedOnceAndRemovedOnce) {
    ObserverLog log;
    EXPECT_TRUE(instance.AddObserver(&log));
    EXPECT_FALSE(instance.AddObserver(&log));
    EXPECT_EQ(reports.Take(), Lines{"error: Observer already exists."});
    SetNumber(instance, "gloss", 1);
    EXPECT_EQ(log.Take(), Lines{"value gloss"});
    EXPECT_TRUE(instance.RemoveObserver(&log));
    EXPECT_FALSE(instance.RemoveObserver(&log));
    EXPECT_EQ(reports.Take(), Lines{"error: Observer does not exist."});
    EXPECT_FALSE(instance.AddObserver(nullptr));
}

TEST_F(AssetInstanceTest, WithoutAConverterThereIsNoGenericInstance) {
    EXPECT_EQ(instance.CreateGenericInstance(), nullptr);
}

TEST_F(AssetInstanceTest, AConverterMakesTheGenericInstance) {
    class Converter final : public IGenericConverter {
    public:
        IAssetInstance* Convert(AssetInstance& asset) override {
            if (raise) throw std::runtime_error("broken");
            return asset.AddReference();
        }
        bool raise = false;
    } converter;
    tables.services.converter = &converter;
    EXPECT_EQ(&Keep(instance.CreateGenericInstance()), &instance);
    converter.raise = true;
    EXPECT_EQ(instance.CreateGenericInstance(), nullptr);
}

}  // namespace korvanet::platform::assets
