#include <sys/stat.h>

#include <filesystem>

#include "assets/manager/assetlibrary.h"
#include "tests/support/foreignlibrary.h"
#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Reopening : public ManagerTest {
protected:
    assets::IAssetLibrary* Writing(assets::IAssetLibrary*& library) {
        return Manager().ReopenForWriting(&library);
    }
    assets::IAssetLibrary* Reading(assets::IAssetLibrary*& library) {
        return Manager().ReopenForReading(&library);
    }
};

TEST_F(Reopening, WhatIsNoLibraryGivesNullAndIsLeftAlone) {
    EXPECT_EQ(Manager().ReopenForWriting(nullptr), nullptr);
    EXPECT_EQ(Manager().ReopenForReading(nullptr), nullptr);
    ForeignLibrary foreign;
    for (assets::IAssetLibrary* const given : {static_cast<assets::IAssetLibrary*>(nullptr),
                                               static_cast<assets::IAssetLibrary*>(&foreign)}) {
        assets::IAssetLibrary* same = given;
        EXPECT_EQ(Manager().ReopenForWriting(&same), nullptr);
        EXPECT_EQ(Manager().ReopenForReading(&same), nullptr);
        EXPECT_EQ(same, given);
    }
    EXPECT_FALSE(Manager().SaveLibrary(&foreign));
    EXPECT_FALSE(Unload(&foreign));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Reopening, InPlaceBothWays) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* old = Open(path);
    ASSERT_NE(old, nullptr);
    EXPECT_FALSE(Manager().SaveLibrary(old));
    assets::IAssetLibrary* library = Writing(old);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(old, nullptr);
    EXPECT_EQ(Manager().GetLibraryAt(0), library);
    EXPECT_FALSE(Exists(path + ".lck"));
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    old = library;
    library = Reading(old);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(old, nullptr);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Has(*library, "Stored"));
    assets::IAssetDefinition* const stored = DefinitionOf(*library, "Stored");
    ASSERT_NE(stored, nullptr);
    core::UTF8String owner;
    EXPECT_TRUE(stored->GetAssetLibID(owner));
    EXPECT_STREQ(owner.AsUTF8(), kStarterIdentifier);
    stored->Release();
    EXPECT_TRUE(Unload(library));
    ASSERT_NE(library = Open(path), nullptr);
    EXPECT_TRUE(Has(*library, "Stored"));
}

TEST_F(Reopening, OnACopyTheLockComesAndGoes) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenCopy(path);
    ASSERT_NE(library, nullptr);
    EXPECT_FALSE(Exists(path + ".lck"));
    ASSERT_NE(library = Writing(library), nullptr);
    EXPECT_TRUE(Exists(path + ".lck"));
    EXPECT_TRUE(library->IsOnCopy());
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    ASSERT_NE(library = Reading(library), nullptr);
    EXPECT_FALSE(Exists(path + ".lck"));
    EXPECT_TRUE(library->IsOnCopy());
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    ASSERT_NE(library = Open(path), nullptr);
    EXPECT_TRUE(Has(*library, "Stored"));
}

TEST_F(Reopening, ForWritingWhatIsOpenForWritingKeepsWhatIsNotSaved) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenForWriting(path);
    ASSERT_TRUE(AddPreset(*library, "Kept"));
    ASSERT_NE(library = Writing(library), nullptr);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    ASSERT_NE(library = Open(path), nullptr);
    EXPECT_TRUE(Has(*library, "Kept"));
}

TEST_F(Reopening, ALibraryThatWasNeverSavedTurnsBothWaysAndIsThenSaved) {
    assets::IAssetLibrary* const source = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*source, "Generic-001");
    for (const bool copy : {false, true}) {
        const std::string path = Path(copy ? "b.jpk" : "a.jpk");
        const core::UTF8String text(path.c_str());
        const core::UTF8String identifier(copy ? "B" : "A");
        assets::IAssetLibrary* library = copy ? Manager().CreateLibraryCopy(text, identifier, 0)
                                              : Manager().CreateLibrary(text, identifier, 0);
        ASSERT_TRUE(library->CopyDefinition(definition, nullptr));
        ASSERT_NE(library = Reading(library), nullptr);
        EXPECT_TRUE(Has(*library, "Generic-001"));
        EXPECT_FALSE(Manager().SaveLibrary(library));
        ASSERT_NE(library = Writing(library), nullptr);
        EXPECT_TRUE(Manager().SaveLibrary(library));
        EXPECT_TRUE(Unload(library));
        ASSERT_NE(library = Open(path), nullptr);
        assets::IAssetDefinition* const stored = DefinitionOf(*library, "Generic-001");
        ASSERT_NE(stored, nullptr);
        stored->Release();
    }
    definition->Release();
}

TEST_F(Reopening, FilesThatWaitForASaveAreThereBothWays) {
    const std::string path = CopySample("starter.jpk");
    WriteFile(Path("new.png"), "picture");
    assets::IAssetLibrary* library = OpenForWriting(path);
    core::UTF8String uri;
    const core::UTF8String file(Path("new.png").c_str());
    ASSERT_TRUE(library->AddResource(uri, core::UTF8String(""), file, false));
    const core::UTF8String name(
        (std::string("jpk:?asset=/") + kStarterIdentifier + "/Resources/new.png").c_str());
    ASSERT_NE(library = Reading(library), nullptr);
    std::shared_ptr<core::IDataReadStream> stream;
    EXPECT_TRUE(library->OpenResource(stream, name));
    core::UTF8String again;
    EXPECT_TRUE(library->AddResource(again, core::UTF8String(""), file, false));
    EXPECT_TRUE(again == uri);
    ASSERT_NE(library = Writing(library), nullptr);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    ASSERT_NE(library = Open(path), nullptr);
    ASSERT_TRUE(library->OpenResource(stream, name));
    std::string text(7, '\0');
    EXPECT_TRUE(stream->ReadExact(text.data(), text.size()));
    EXPECT_EQ(text, "picture");
}

TEST_F(Reopening, WhatWasRemovedBeforeGivesItsBlocksToTheNextSave) {
    const std::string path = CopySample("starter.jpk");
    for (const bool for_writing : {false, true}) {
        assets::IAssetLibrary* library = for_writing ? OpenForWriting(path) : Open(path);
        auto& own = dynamic_cast<assets::AssetLibrary&>(*library);
        const char* const name = for_writing ? "Bitmap-002" : "Bitmap-001";
        ASSERT_NE(own.Document().FindRecord(name), nullptr) << name;
        const std::uint32_t listing = own.Document().FindRecord(name)->definitionBlock;
        const std::uint32_t instance = own.Document().FindRecord(name)->instanceBlock;
        assets::IAssetDefinition* const removed = DefinitionOf(*library, name);
        ASSERT_TRUE(library->RemovePreset(removed));  // takes the reference with it
        if (for_writing) {
            ASSERT_NE(library = Reading(library), nullptr);
        }
        ASSERT_NE(library = Writing(library), nullptr);
        ASSERT_NE(own.Document().DefinitionStore(), nullptr);
        EXPECT_TRUE(own.Document().DefinitionStore()->IsFree(listing));
        EXPECT_TRUE(own.Document().InstanceStore()->IsFree(instance));
        ASSERT_TRUE(Manager().SaveLibrary(library));
        EXPECT_TRUE(Unload(library));
    }
}

TEST_F(Reopening, ALibraryThatWasUnloadedGivesNull) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    assets::IAssetLibrary* const gone = library;
    ASSERT_TRUE(Unload(library));
    library = gone;
    EXPECT_EQ(Manager().ReopenForWriting(&library), nullptr);
    EXPECT_EQ(Manager().ReopenForReading(&library), nullptr);
    EXPECT_EQ(library, gone);
}

TEST_F(Reopening, AReadOnlyFileIsRefused) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Writing(same), nullptr);
    EXPECT_EQ(same, library);
    EXPECT_THAT(Reports(),
                ElementsAre("error: Cannot reopen a read-only asset library for writing."));
    EXPECT_EQ(NamesOf(*library).size(), 12u);
}

TEST_F(Reopening, ALibraryThatIsMarkedReadOnlyIsRefused) {
    assets::IAssetLibrary* library = Open(CopySample("starter-read-only.jpk"));
    ASSERT_NE(library, nullptr);
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Writing(same), nullptr);
    EXPECT_EQ(same, library);
    EXPECT_THAT(Reports(),
                ElementsAre("error: Cannot reopen a read-only asset library for writing."));
}

TEST_F(Reopening, AFileThatIsGoneLeavesTheLibraryForReading) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    ASSERT_EQ(::rename(path.c_str(), Path("away").c_str()), 0);
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Writing(same), nullptr);
    EXPECT_EQ(same, library);
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
    ASSERT_NE(definition, nullptr);
    definition->Release();
    ASSERT_EQ(::rename(Path("away").c_str(), path.c_str()), 0);
    ASSERT_NE(library = Writing(same), nullptr);
    EXPECT_TRUE(Manager().SaveLibrary(library));
}

TEST_F(Reopening, ACopyThatIsGoneGivesTheLockBackAndStaysForReading) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenCopy(path);
    ASSERT_NE(library, nullptr);
    const std::string copies = PrivateFolders(TempFolder()).at(0) + "/.copy";
    const std::string copy = copies + "/" + NamesIn(copies).at(0);
    ASSERT_EQ(::rename(copy.c_str(), Path("away").c_str()), 0);
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Writing(same), nullptr);
    EXPECT_EQ(same, library);
    EXPECT_FALSE(Exists(path + ".lck"));
    EXPECT_FALSE(dynamic_cast<assets::AssetLibrary*>(library)->IsForWriting());
    EXPECT_EQ(NamesOf(*library).size(), 12u);
    ASSERT_EQ(::rename(Path("away").c_str(), copy.c_str()), 0);
    ASSERT_NE(library = Writing(same), nullptr);
    EXPECT_TRUE(Exists(path + ".lck"));
}

TEST_F(Reopening, AFileThatIsGoneLeavesTheLibraryForWritingAndLocked) {
    for (const bool copy : {false, true}) {
        const std::string path = CopySample("starter.jpk", copy ? "b.jpk" : "a.jpk");
        assets::IAssetLibrary* library = copy ? OpenCopyForWriting(path) : OpenForWriting(path);
        ASSERT_NE(library, nullptr);
        ASSERT_TRUE(AddPreset(*library, "Stored"));
        const std::string copies = PrivateFolders(TempFolder()).at(0) + "/.copy";
        const std::string used = copy ? copies + "/" + NamesIn(copies).at(0) : path;
        ASSERT_EQ(::rename(used.c_str(), Path("away").c_str()), 0);
        assets::IAssetLibrary* same = library;
        EXPECT_EQ(Reading(same), nullptr);
        EXPECT_EQ(same, library);
        EXPECT_TRUE(dynamic_cast<assets::AssetLibrary*>(library)->IsForWriting());
        EXPECT_EQ(Exists(path + ".lck"), copy);
        ASSERT_EQ(::rename(Path("away").c_str(), used.c_str()), 0);
        EXPECT_TRUE(Manager().SaveLibrary(library));
        EXPECT_TRUE(Unload(library));
        ASSERT_NE(library = Open(path), nullptr);
        EXPECT_TRUE(Has(*library, "Stored"));
        EXPECT_TRUE(Unload(library));
    }
}

TEST_F(Reopening, AFileThatBecameNoLibraryLeavesTheLibraryForReading) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    for (const char* bad : {"bad-text.jpk", "bad-empty.jpk", "bad-no-store.jpk"}) {
        ASSERT_EQ(::rename(CopySample(bad).c_str(), path.c_str()), 0);
        assets::IAssetLibrary* same = library;
        EXPECT_EQ(Writing(same), nullptr) << bad;
        EXPECT_EQ(same, library);
        assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-003");
        ASSERT_NE(definition, nullptr);
        definition->Release();
    }
    EXPECT_FALSE(Manager().SaveLibrary(library));
}

TEST_F(Reopening, ALockHeldElsewhereLeavesTheCopyForReading) {
    const std::string path = CopySample("starter.jpk");
    Child holder([&](Child& self) {
        HALVERN_NEED(OpenCopyForWriting(path) != nullptr);
        self.HandOver();
        return true;
    });
    ASSERT_TRUE(holder.Await());
    assets::IAssetLibrary* library = OpenCopy(path);
    ASSERT_NE(library, nullptr);
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Writing(same), nullptr);
    EXPECT_EQ(same, library);
    EXPECT_TRUE(Exists(path + ".lck"));
    EXPECT_EQ(NamesOf(*library).size(), 12u);
    holder.Kill();
    ASSERT_NE(library = Writing(same), nullptr);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(Exists(path + ".lck"));
    // What the killed process left is nobody's.
    EndManager();
    for (const std::string& folder : PrivateFolders(TempFolder()))
        std::filesystem::remove_all(folder);
}

TEST_F(Reopening, ForReadingInstancesAndDefinitionsStayGood) {
    assets::IAssetLibrary* library = OpenForWriting(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-001");
    ASSERT_NE(library = Reading(library), nullptr);
    assets::IAssetInstance* const instance = library->CreateInstance(definition);
    ASSERT_NE(instance, nullptr);
    EXPECT_NE(instance->FindProperty(L"generic_diffuse"), nullptr);
    instance->Release();
    definition->Release();
}

}  // namespace
}  // namespace halvern_tests
