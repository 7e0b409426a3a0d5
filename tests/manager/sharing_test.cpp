#include "assets/manager/assetlibrarymanager.h"
#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Sharing : public ManagerTest {
protected:
    assets::IAssetLibrary& Library() {
        if (library_ == nullptr) library_ = OpenForWriting(CopySample("starter.jpk"));
        return *library_;
    }
    bool Enable(const char* tag = "tag") {
        return Library().EnableSharedAsset(true, core::UTF8String(tag));
    }
    bool AddName(const char* name, const char* identifier) {
        return Library().AddSharedAsset(texture_, core::UTF8String(name),
                                        core::UTF8String(identifier));
    }
    std::vector<std::string> ByName(const char* name) {
        return NamesOf(Library().GetSharedDefinitionsByName(texture_, core::UTF8String(name)));
    }
    std::vector<std::string> ByUiName(const char* name) {
        return NamesOf(Library().GetSharedDefinitionsByType(texture_, core::UTF8String(name)));
    }

    const core::UTF8String texture_{"texture"};

private:
    assets::IAssetLibrary* library_ = nullptr;
};

TEST_F(Sharing, IsOffAtFirst) {
    const core::UTF8String name("n");
    assets::IAssetDefinition* const definition = DefinitionOf(Library(), "Bitmap-001");
    EXPECT_FALSE(AddName("n", "Bitmap-001"));
    EXPECT_FALSE(AddName("", "Bitmap-001"));
    EXPECT_FALSE(Library().RemoveSharedAsset(texture_, name));
    EXPECT_FALSE(Library().ShareDefinition(definition));
    EXPECT_FALSE(Library().UnshareDefinition(definition));
    const char* const off = "error: Please call EnableSharedAsset API first.";
    EXPECT_THAT(Reports(), ElementsAre(off, off, off, off, off));
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitions(texture_)), IsEmpty());
    definition->Release();
}

TEST_F(Sharing, AReadOnlyLibraryRefusesBeforeAnythingElse) {
    assets::IAssetLibrary* const library = Open(CopySample("starter-read-only.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Bitmap-001");
    const core::UTF8String name("n");
    EXPECT_FALSE(library->AddSharedAsset(texture_, core::UTF8String(""), name));
    EXPECT_FALSE(library->RemoveSharedAsset(texture_, name));
    EXPECT_FALSE(library->ShareDefinition(definition));
    EXPECT_FALSE(library->UnshareDefinition(definition));
    const char* const report = "error: Cannot edit a read-only AssetLibrary.";
    EXPECT_THAT(Reports(), ElementsAre(report, report, report, report));
    // Listing needs no right to write.
    EXPECT_TRUE(library->EnableSharedAsset(true, core::UTF8String("tag")));
    EXPECT_EQ(NamesOf(library->GetSharedDefinitions(texture_)).size(), 4u);
    definition->Release();
}

TEST_F(Sharing, EnablingBuildsTheIndexFromTheDefinitions) {
    ASSERT_TRUE(Enable());
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitions(texture_)),
                ElementsAre("Bitmap-001", "Bitmap-002", "Bitmap-003", "Bitmap-004"));
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitionsOfType(texture_)),
                ElementsAre("Bitmap-001", "Bitmap-002", "Bitmap-003", "Bitmap-004"));
    EXPECT_THAT(ByName("TEX_2"), ElementsAre("Bitmap-002"));
    EXPECT_THAT(ByUiName("TEX_3"), ElementsAre("Bitmap-003"));
    EXPECT_THAT(ByName("unknown"), IsEmpty());
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitions(core::UTF8String("materialappearance"))),
                IsEmpty());
}

TEST_F(Sharing, NamesAreAddedAndRemoved) {
    ASSERT_TRUE(Enable());
    EXPECT_FALSE(AddName("", "Bitmap-001"));
    EXPECT_THAT(Reports(), ElementsAre("error: Empty Name is Not Allowed."));
    EXPECT_TRUE(AddName("brick", "Bitmap-002"));
    EXPECT_TRUE(AddName("brick", "Bitmap-001"));
    EXPECT_FALSE(AddName("brick", "Bitmap-001"));
    EXPECT_THAT(ByName("brick"), ElementsAre("Bitmap-001", "Bitmap-002"));
    EXPECT_THAT(ByUiName("brick"), IsEmpty());
    EXPECT_TRUE(Library().RemoveSharedAsset(texture_, core::UTF8String("brick")));
    EXPECT_FALSE(Library().RemoveSharedAsset(texture_, core::UTF8String("brick")));
    EXPECT_THAT(ByName("brick"), IsEmpty());
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Sharing, ADefinitionIsSharedUnderItsTypeAndName) {
    ASSERT_TRUE(Enable());
    assets::IAssetDefinition* const definition = DefinitionOf(Library(), "Bitmap-001");
    EXPECT_FALSE(Library().ShareDefinition(definition));
    EXPECT_TRUE(Library().UnshareDefinition(definition));
    EXPECT_THAT(ByName("TEX_1"), IsEmpty());
    EXPECT_THAT(ByUiName("TEX_1"), ElementsAre("Bitmap-001"));
    EXPECT_FALSE(Library().UnshareDefinition(definition));
    EXPECT_TRUE(Library().ShareDefinition(definition));
    EXPECT_THAT(ByName("TEX_1"), ElementsAre("Bitmap-001"));
    EXPECT_FALSE(Library().ShareDefinition(nullptr));
    EXPECT_FALSE(Library().UnshareDefinition(nullptr));
    definition->Release();
}

TEST_F(Sharing, PresetsComeAndGo) {
    ASSERT_TRUE(Enable());
    ASSERT_TRUE(AddPreset(Library(), "More", "Bitmap-001"));
    EXPECT_THAT(ByName("TEX_1"), ElementsAre("Bitmap-001", "More"));
    assets::IAssetDefinition* const more = DefinitionOf(Library(), "More");
    EXPECT_TRUE(AddName("brick", "More"));
    EXPECT_TRUE(Library().RemovePreset(more));
    EXPECT_THAT(ByName("TEX_1"), ElementsAre("Bitmap-001"));
    EXPECT_THAT(ByName("brick"), IsEmpty());
}

TEST_F(Sharing, TheSameTagKeepsTheIndexAndAnotherBuildsItAnew) {
    ASSERT_TRUE(Enable("a"));
    ASSERT_TRUE(AddName("brick", "Bitmap-001"));
    ASSERT_TRUE(Enable("a"));
    EXPECT_THAT(ByName("brick"), ElementsAre("Bitmap-001"));
    ASSERT_TRUE(Enable("b"));
    EXPECT_THAT(ByName("brick"), IsEmpty());
    EXPECT_THAT(ByName("TEX_1"), ElementsAre("Bitmap-001"));
}

TEST_F(Sharing, SwitchingOffForgetsTheIndexAndTheTag) {
    ASSERT_TRUE(Enable("a"));
    ASSERT_TRUE(Library().EnableSharedAsset(false, core::UTF8String("a")));
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitions(texture_)), IsEmpty());
    EXPECT_FALSE(AddName("brick", "Bitmap-001"));
    EXPECT_THAT(Reports(), ElementsAre("error: Please call EnableSharedAsset API first."));
    ASSERT_TRUE(Enable("a"));
    EXPECT_EQ(NamesOf(Library().GetSharedDefinitions(texture_)).size(), 4u);
}

TEST_F(Sharing, ADefinitionThatCannotBeReadIsFalseAndTheModeIsOff) {
    assets::GeneralLibrary& document = dynamic_cast<assets::AssetLibrary&>(Library()).Document();
    assets::DataRecord record =
        document.InstanceStore()->Open(document.FindRecord("Generic-003")->instanceBlock);
    const std::string zeros(record.Size(), '\0');
    record.Write({zeros.data(), zeros.size()});
    EXPECT_FALSE(Enable());
    EXPECT_THAT(NamesOf(Library().GetSharedDefinitions(texture_)), IsEmpty());
    EXPECT_FALSE(document.Shared().Enabled());
    EXPECT_FALSE(AddName("n", "Bitmap-001"));
    EXPECT_THAT(Reports(), ElementsAre("error: Please call EnableSharedAsset API first."));
    // Nor is it taken for done when it is asked for once more.
    EXPECT_FALSE(Enable());
}

}  // namespace
}  // namespace halvern_tests
