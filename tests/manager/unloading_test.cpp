#include "assets/manager/assetlibrarymanager.h"
#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Unloading : public ManagerTest {};

TEST_F(Unloading, ALibraryWithoutAClaimWarnsAndStays) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    ASSERT_NE(library, nullptr);
    dynamic_cast<assets::AssetLibrary*>(library)->DropUse();
    EXPECT_TRUE(Unload(library));
    EXPECT_THAT(Reports(), ElementsAre("warning: A lifetime management error occured while "
                                       "unloading the library document"));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_EQ(NamesOf(*library).size(), 12u);
    library->AddUse();
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
}

TEST_F(Unloading, IsRefusedWhileADefinitionIsHeld) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    ASSERT_NE(library, nullptr);
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
    ASSERT_NE(definition, nullptr);
    EXPECT_FALSE(Unload(library));
    EXPECT_FALSE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_THAT(Reports(), IsEmpty());
    definition->Release();
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
}

TEST_F(Unloading, IsRefusedWhileAnInstanceIsHeld) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Bitmap-001");
    assets::IAssetInstance* const instance = library->CreateInstance(definition);
    ASSERT_NE(instance, nullptr);
    definition->Release();
    EXPECT_FALSE(Unload(library));
    instance->Release();
    EXPECT_TRUE(Unload(library));
}

TEST_F(Unloading, AHeldDefinitionCountsAtTheLastClaimAlone) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = Open(path);
    EXPECT_EQ(library->AddUse(), library);
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(Unload(library));
    definition->Release();
    EXPECT_TRUE(Unload(library));
}

TEST_F(Unloading, AWalkDoesNotHoldItsLibraryAndIsThenAtItsEnd) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition::IIterator* const walk = library->GetDefinitions();
    EXPECT_FALSE(walk->IsAtEnd());
    EXPECT_TRUE(Unload(library));
    EXPECT_TRUE(walk->IsAtEnd());
    EXPECT_EQ(walk->GetDefinition(), nullptr);
    EXPECT_FALSE(walk->Next());
    core::UTF8String name("kept");
    EXPECT_FALSE(walk->GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "kept");
    walk->Release();
}

TEST_F(Unloading, WhatIsNoOpenLibraryIsRefused) {
    EXPECT_FALSE(Unload(nullptr));
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(Unload(library));
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_FALSE(Manager().SaveLibrary(nullptr));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Unloading, NothingIsSaved) {
    const std::string path = CopySample("starter.jpk");
    const std::string bytes = ReadFile(path);
    assets::IAssetLibrary* const library = OpenForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(AddPreset(*library, "Lost"));
    EXPECT_TRUE(library->SetVersion(77));
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(ReadFile(path), bytes);
}

TEST_F(Unloading, TakesTheScratchFilesOfTheLibrary) {
    assets::IAssetLibrary* const first = Open(CopySample("starter.jpk"));
    assets::IAssetLibrary* const second = OpenCopy(CopySample("every-kind.jpk"));
    const std::string temp = PrivateFolders(TempFolder()).at(0);
    EXPECT_EQ(NamesIn(temp).size(), 3u);
    EXPECT_EQ(NamesIn(temp + "/.copy").size(), 1u);
    EXPECT_TRUE(Unload(second));
    EXPECT_TRUE(Unload(first));
    EXPECT_THAT(NamesIn(temp), ElementsAre(".copy"));
    EXPECT_THAT(NamesIn(temp + "/.copy"), IsEmpty());
}

}  // namespace
}  // namespace halvern_tests
