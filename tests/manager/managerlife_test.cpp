#include <korvanet/platform/assets/ipropertytable.h>
#include <korvanet/platform/assets/ischemabatchloader.h>
#include <korvanet/platform/core/registry.h>

#include <stdexcept>

#include "assets/manager/assetlibrarymanager.h"
#include "tests/support/managertest.h"
#include "velmor/runtime.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ManagerLife : public ManagerTest {};

// Each manager connects to the registry once, when it is made.
class ManagerCounter final : public core::IRegistry {
public:
    ManagerCounter() { core::SetRegistry(this); }
    ~ManagerCounter() override { core::SetRegistry(nullptr); }

    int Made() const { return made_; }
    void Forget() { made_ = 0; }

    bool OpenHive() override {
        ++made_;
        return false;
    }
    Key OpenKey(const wchar_t*) override { return 0; }
    bool ReadString(Key, const wchar_t*, core::IString&) override { return false; }
    void CloseKey(Key) override {}
    void CloseHive() override {}

private:
    int made_ = 0;
};

// A registry of the host that fails in its own way.
class RaisingRegistry final : public core::IRegistry {
public:
    RaisingRegistry() { core::SetRegistry(this); }
    ~RaisingRegistry() override { core::SetRegistry(nullptr); }

    bool OpenHive() override { throw std::runtime_error("no registry"); }
    Key OpenKey(const wchar_t*) override { return 0; }
    bool ReadString(Key, const wchar_t*, core::IString&) override { return false; }
    void CloseKey(Key) override {}
    void CloseHive() override {}
};

TEST_F(ManagerLife, AManagerThatCannotBeMadeIsNullAndTheNextCallTriesAgain) {
    {
        const RaisingRegistry registry;
        EXPECT_EQ(assets::GetIAssetLibraryManager(), nullptr);
        EXPECT_EQ(assets::ISchemaBatchLoader::Create(), nullptr);
    }
    EXPECT_EQ(&Manager(), assets::GetIAssetLibraryManager());
}

TEST_F(ManagerLife, TheManagerIsTheSameForEveryCall) {
    EXPECT_EQ(&Manager(), assets::GetIAssetLibraryManager());
    EXPECT_EQ(assets::GetIAssetLibraryManager(), assets::GetIAssetLibraryManager());
}

TEST_F(ManagerLife, TheLastReferenceTakesTheManagerAndTheNextCallMakesAnother) {
    const core::UTF8String marker("/marker");
    Manager().SetCacheFolder(marker);
    EXPECT_TRUE(Manager().AddReference());
    EXPECT_FALSE(Manager().RemoveReference());
    core::UTF8String folder;
    ASSERT_TRUE(Manager().GetCacheFolder(folder));
    EXPECT_EQ(folder, marker);
    EndManager();
    ::setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
    ASSERT_TRUE(Manager().GetCacheFolder(folder));
    EXPECT_FALSE(folder == marker);
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
}

TEST_F(ManagerLife, AManagerThatNobodyCountedLivesOnWithACountOfMinusOne) {
    assets::IAssetLibraryManager* const manager = assets::GetIAssetLibraryManager();
    EXPECT_FALSE(manager->RemoveReference());
    EXPECT_EQ(assets::GetIAssetLibraryManager(), manager);
    // From -1 the first client brings it to 0, the second to 1.
    manager->AddReference();
    manager->AddReference();
    EXPECT_TRUE(manager->RemoveReference());
}

TEST_F(ManagerLife, RemoveReferenceIsRefusedWhileALibraryIsOpenAndKeepsTheCount) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    ASSERT_NE(library, nullptr);
    EXPECT_FALSE(Manager().RemoveReference());
    EXPECT_FALSE(Manager().RemoveReference());
    EXPECT_EQ(assets::GetIAssetLibraryManager(), &Manager());
    EXPECT_TRUE(Unload(library));
    // One client was counted and none was taken away: this is the last.
    EndManager();
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(ManagerLife, GetLibraryAtTheCountReportsAndGivesNull) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_EQ(Manager().GetLibraryAt(0), library);
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_EQ(Manager().GetLibraryAt(1), nullptr);
    EXPECT_THAT(Reports(), ElementsAre("error: Index is out of scope."));
}

TEST_F(ManagerLife, LibrariesAreListedInTheOrderOfOpening) {
    assets::IAssetLibrary* const first = Open(CopySample("starter.jpk", "z.jpk"));
    assets::IAssetLibrary* const second = Open(CopySample("every-kind.jpk", "a.jpk"));
    EXPECT_EQ(Manager().GetLibraryAt(0), first);
    EXPECT_EQ(Manager().GetLibraryAt(1), second);
    EXPECT_EQ(Manager().FindLibrary(core::UTF8String(kStarterIdentifier)), first);
    EXPECT_EQ(Manager().FindLibrary(core::UTF8String("nobody")), nullptr);
}

TEST_F(ManagerLife, TheSystemIdentifiersArePlainTexts) {
    EXPECT_STREQ(assets::IAssetLibraryManager::kSystemLibraryIdentifier,
                 L"314DE259-5443-4621-BFBD-1730C6CC9AE9");
    EXPECT_STREQ(assets::IAssetLibraryManager::kSystemPhysicalLibraryIdentifier,
                 L"AD121259-C03E-4A1D-92D8-59A22B4807AD");
}

TEST_F(ManagerLife, EveryExportMakesTheManagerWhenThereIsNone) {
    ManagerCounter managers;
    const auto expect_made_by = [&](const char* who) {
        EXPECT_EQ(managers.Made(), 1) << who;
        Manager();
        EXPECT_EQ(managers.Made(), 1) << who;
        EndManager();
        managers.Forget();
    };
    assets::GetIAssetLibraryManager();
    expect_made_by("GetIAssetLibraryManager");

    assets::IBounds* const bounds =
        assets::IBounds::Create(true, 0, true, true, 1, true, 0.5, false);
    ASSERT_NE(bounds, nullptr);
    EXPECT_EQ(bounds->GetMaximum(), 1);
    delete bounds;
    expect_made_by("IBounds");

    assets::IChoice* const choice =
        assets::IChoice::Create(core::UTF8String("Red"), 3, core::UTF8String("red"));
    ASSERT_NE(choice, nullptr);
    EXPECT_EQ(choice->GetValue(), 3);
    expect_made_by("IChoice");

    assets::IChoiceList* const list = assets::IChoiceList::Create();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->AddChoice(choice));
    EXPECT_EQ(list->GetCount(), 1u);
    delete list;
    expect_made_by("IChoiceList");

    assets::ISchemaBatchLoader* const loader = assets::ISchemaBatchLoader::Create();
    ASSERT_NE(loader, nullptr);
    EXPECT_TRUE(loader->Commit());
    loader->Release();
    expect_made_by("ISchemaBatchLoader");
}

TEST_F(ManagerLife, AManagerThatIsNotTheOneOfTheProcessCountsNobody) {
    Manager();
    {
        assets::AssetLibraryManager other;
        EXPECT_TRUE(other.AddReference());
        EXPECT_TRUE(other.RemoveReference());
        EXPECT_TRUE(other.RemoveReference());
        EXPECT_EQ(assets::GetIAssetLibraryManager(), &Manager());
    }
    // The one client is still counted, and once.
    EndManager();
}

TEST_F(ManagerLife, TheNamespacesStandFromTheStartAndEachLibraryHasItsOwn) {
    Manager();
    assets::AssetLibraryManager& manager = assets::AssetLibraryManager::Instance();
    const velmor::Namespace root = manager.Context().runtime->root();
    EXPECT_EQ(manager.UserNamespace(), root.findChild("usr"));
    const velmor::Namespace slib = root.findChild("slib");
    ASSERT_TRUE(slib.valid());
    EXPECT_TRUE(slib.findChild("tmpSchema").valid());
    const auto is_group = [&](const char* name) {
        const velmor::Namespace group = slib.findChild(name);
        return group.valid() && group.findChild("schema").valid() &&
               group.findChild("asset").valid() && group.findChild("tmpAsset").valid();
    };
    EXPECT_TRUE(is_group("global"));
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    EXPECT_TRUE(is_group(kStarterIdentifier));
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(slib.findChild(kStarterIdentifier).valid());
}

TEST_F(ManagerLife, MessagesAreReachedThroughAHandleOnTheStore) {
    assets::ILocalizationManager messages;
    EXPECT_FALSE(messages.IsValid());
    EXPECT_EQ(&Manager().GetLocalizationManager(messages), &messages);
    EXPECT_TRUE(messages.IsValid());
    assets::ILocalization table =
        messages.CreateILocalization(core::UTF8String("deu"), core::UTF8String("host"));
    EXPECT_TRUE(table.AddLocalizedMessage(core::UTF8String("Rot"), core::UTF8String("RED")));
    core::UTF8String text;
    EXPECT_TRUE(
        messages.GetLocalizedMessage(text, core::UTF8String("RED"), core::UTF8String("DEU")));
    EXPECT_STREQ(text.AsUTF8(), "Rot");
}

TEST_F(ManagerLife, InstancesThatWereNeverReleasedEndWithTheManager) {
    assets::IAssetSchema* const schema = Manager().LoadSchemaFromFolder(
        core::UTF8String("GenericSchema"), core::UTF8String(DataFile("schemas").c_str()));
    ASSERT_NE(schema, nullptr);
    assets::IAssetInstance* const outer =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    assets::IAssetInstance* const inner =
        Manager().CreateInstanceFromSchema(schema, nullptr, nullptr);
    ASSERT_NE(outer, nullptr);
    ASSERT_NE(inner, nullptr);
    EXPECT_TRUE(outer->FindProperty(L"generic_diffuse")->ConnectAsset(inner));
    EXPECT_TRUE(inner->FindProperty(L"generic_diffuse")->ConnectAsset(outer));
    EndManager();
}

}  // namespace
}  // namespace halvern_tests
