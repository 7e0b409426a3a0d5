#include <filesystem>

#include "tests/support/managertest.h"

// Private copies as a host meets them, through the built library alone.

namespace halvern_tests {
namespace {

using testing::Contains;
using testing::Not;

class HostCopies : public ManagerTest {};

TEST_F(HostCopies, ACopyIsRefreshedAfterAnotherProcessSaved) {
    const std::string path = CopySample("starter.jpk");
    Child writer([&](Child& self) {
        self.HandOver();
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr && AddPreset(*library, "Theirs"));
        HALVERN_NEED(Manager().SaveLibrary(library) && Unload(library));
        EndManager();
        return true;
    });
    ASSERT_TRUE(writer.Await());
    assets::IAssetLibrary* const reader = OpenCopy(path);
    ASSERT_NE(reader, nullptr);
    assets::IAssetDefinition* const held = DefinitionOf(*reader, "Generic-001");
    writer.Continue();
    ASSERT_TRUE(writer.EndedWell());
    EXPECT_THAT(NamesOf(*reader), Not(Contains("Theirs")));
    EXPECT_TRUE(reader->TakeWriteAccessOnCopy());
    EXPECT_THAT(NamesOf(*reader), Contains("Theirs"));
    core::UTF8String name;
    EXPECT_TRUE(held->GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "Generic-001");
    held->Release();
    EXPECT_TRUE(Unload(reader));
}

TEST_F(HostCopies, ASaveWhoseCopyBackFailsIsRepeated) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_NE(library, nullptr);
    ASSERT_TRUE(AddPreset(*library, "Ours"));
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_THAT(NamesOf(*library), Contains("Ours"));
    std::filesystem::remove(path);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    assets::IAssetLibrary* const again = Open(path);
    ASSERT_NE(again, nullptr);
    EXPECT_THAT(NamesOf(*again), Contains("Ours"));
    EXPECT_TRUE(Unload(again));
}

TEST_F(HostCopies, EveryWayToOpenAndToCreateGivesALibraryThatIsSavedAndFound) {
    const core::UTF8String identifier("HOST");
    for (const bool on_copy : {false, true}) {
        const std::string path = Path(on_copy ? "copy.jpk" : "place.jpk");
        const core::UTF8String at(path.c_str());
        assets::IAssetLibrary* library = on_copy ? Manager().CreateLibraryCopy(at, identifier, 0)
                                                 : Manager().CreateLibrary(at, identifier, 0);
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(library->IsOnCopy(), on_copy);
        EXPECT_TRUE(library->SetVersion(7));
        EXPECT_TRUE(Manager().SaveLibrary(library));
        EXPECT_TRUE(Unload(library));
        library = on_copy ? OpenCopyForWriting(path) : OpenForWriting(path);
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(library->GetVersion(), 7u);
        ASSERT_NE(library = Manager().ReopenForReading(&library), nullptr);
        ASSERT_NE(library = Manager().ReopenForWriting(&library), nullptr);
        EXPECT_TRUE(library->SetVersion(8));
        EXPECT_TRUE(Manager().SaveLibrary(library));
        EXPECT_TRUE(Unload(library));
        library = on_copy ? OpenCopy(path) : Open(path);
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(library->GetVersion(), 8u);
        EXPECT_EQ(IdentifierOf(*library), "HOST");
        EXPECT_TRUE(Unload(library));
    }
    assets::IAssetLibrary* const fresh =
        Manager().CreateLibrary(core::UTF8String(Path("fresh.jpk").c_str()), 0);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(IdentifierOf(*fresh).size(), 36u);
    EXPECT_TRUE(Unload(fresh));
}

}  // namespace
}  // namespace halvern_tests
