#include <sys/stat.h>

#include <filesystem>

#include "nuo/common/archive/primitives.h"
#include "nuo/common/file_archive.h"
#include "tests/support/managertest.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Copies : public ManagerTest {
protected:
    // What a process that was killed has left.
    void ForgetOtherProcesses() {
        EndManager();
        for (const std::string& folder : PrivateFolders(TempFolder()))
            std::filesystem::remove_all(folder);
    }
    std::string CopyFolder() { return PrivateFolders(TempFolder()).at(0) + "/.copy"; }
};

TEST_F(Copies, AnInPlaceWriterLeavesNoLock) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_FALSE(Exists(path + ".lck"));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_FALSE(Exists(path + ".lck"));
}

TEST_F(Copies, AReaderOnACopyTakesNoLock) {
    const std::string path = CopySample("starter.jpk");
    ASSERT_NE(OpenCopy(path), nullptr);
    EXPECT_FALSE(Exists(path + ".lck"));
}

TEST_F(Copies, AWriterOnACopyWorksOnAFileOfItsOwn) {
    const std::string path = CopySample("starter.jpk");
    const std::string bytes = ReadFile(path);
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(library->IsOnCopy());
    EXPECT_TRUE(Exists(path + ".lck"));
    EXPECT_EQ(ReadFile(path + ".lck"), "");
    ASSERT_EQ(NamesIn(CopyFolder()).size(), 1u);
    const std::string copy = CopyFolder() + "/" + NamesIn(CopyFolder())[0];
    EXPECT_EQ(NamesIn(CopyFolder())[0].rfind("copy", 0), 0u);
    EXPECT_EQ(ReadFile(copy), bytes);
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    EXPECT_EQ(ReadFile(path), bytes);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_NE(ReadFile(path), bytes);
    EXPECT_EQ(ReadFile(path), ReadFile(copy));
    EXPECT_TRUE(Unload(library));
    EXPECT_THAT(NamesIn(CopyFolder()), IsEmpty());
    EXPECT_FALSE(Exists(path + ".lck"));
}

TEST_F(Copies, AStaleLockIsTakenWithoutComplaint) {
    const std::string path = CopySample("starter.jpk");
    WriteFile(path + ".lck", "left by nobody");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(Exists(path + ".lck"));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Copies, ALockHeldByAnotherProcessGivesNullAtOnceAndIsLeftAlone) {
    const std::string path = CopySample("starter.jpk");
    Child holder([&](Child& self) {
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr);
        self.HandOver();
        HALVERN_NEED(Exists(path + ".lck"));
        HALVERN_NEED(Unload(library));
        EndManager();
        return true;
    });
    ASSERT_TRUE(holder.Await());
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    // Others neither take the lock nor delete it when they fail or end.
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    EXPECT_TRUE(Exists(path + ".lck"));
    assets::IAssetLibrary* const reader = OpenCopy(path);
    ASSERT_NE(reader, nullptr);
    EXPECT_TRUE(Unload(reader));
    assets::IAssetLibrary* const in_place = OpenForWriting(path);
    ASSERT_NE(in_place, nullptr);
    EXPECT_TRUE(Unload(in_place));
    EXPECT_TRUE(Exists(path + ".lck"));
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
    holder.Continue();
    EXPECT_TRUE(holder.EndedWell());
    EXPECT_NE(OpenCopyForWriting(path), nullptr);
}

TEST_F(Copies, CreatingOnACopyIsRefusedWhileAnotherProcessHoldsTheLock) {
    const std::string path = Path("new.jpk");
    const auto create = [&] {
        return Manager().CreateLibraryCopy(core::UTF8String(path.c_str()), core::UTF8String("N"),
                                           0);
    };
    Child holder([&](Child& self) {
        HALVERN_NEED(create() != nullptr);
        self.HandOver();
        return true;
    });
    ASSERT_TRUE(holder.Await());
    EXPECT_EQ(create(), nullptr);
    EXPECT_TRUE(Exists(path + ".lck"));
    holder.Kill();
    EXPECT_NE(create(), nullptr);
    ForgetOtherProcesses();
}

TEST_F(Copies, TheLockOfAKilledProcessIsStale) {
    const std::string path = CopySample("starter.jpk");
    Child holder([&](Child& self) {
        HALVERN_NEED(OpenCopyForWriting(path) != nullptr);
        self.HandOver();
        return true;
    });
    ASSERT_TRUE(holder.Await());
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    holder.Kill();
    EXPECT_TRUE(Exists(path + ".lck"));
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(Unload(library));
    EXPECT_FALSE(Exists(path + ".lck"));
    ForgetOtherProcesses();
}

TEST_F(Copies, AnotherProcessSeesWhatWasSaved) {
    const std::string path = CopySample("starter.jpk");
    Child reader([&](Child& self) {
        self.HandOver();
        assets::IAssetLibrary* const library = Open(path);
        HALVERN_NEED(library != nullptr && Has(*library, "Stored"));
        assets::IAssetDefinition* const stored = DefinitionOf(*library, "Stored");
        HALVERN_NEED(stored != nullptr);
        stored->Release();
        EndManager();
        return true;
    });
    ASSERT_TRUE(reader.Await());
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    ASSERT_TRUE(Manager().SaveLibrary(library));
    reader.Continue();
    EXPECT_TRUE(reader.EndedWell());
}

TEST_F(Copies, RefreshingShowsWhatAnotherProcessSaved) {
    const std::string path = CopySample("starter.jpk");
    Child writer([&](Child& self) {
        self.HandOver();
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr);
        HALVERN_NEED(AddPreset(*library, "Stored"));
        HALVERN_NEED(Manager().SaveLibrary(library));
        HALVERN_NEED(Unload(library));
        EndManager();
        return true;
    });
    ASSERT_TRUE(writer.Await());
    assets::IAssetLibrary* const library = OpenCopy(path);
    ASSERT_NE(library, nullptr);
    assets::IAssetDefinition* const held = DefinitionOf(*library, "Generic-001");
    assets::IAssetInstance* const instance = library->CreateInstance(held);
    writer.Continue();
    ASSERT_TRUE(writer.EndedWell());
    EXPECT_FALSE(Has(*library, "Stored"));
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_TRUE(Has(*library, "Stored"));
    EXPECT_EQ(NamesOf(*library).size(), 13u);
    EXPECT_EQ(IdentifierOf(*library), kStarterIdentifier);
    EXPECT_EQ(Manager().GetLibraryAt(0), library);
    EXPECT_EQ(NamesIn(CopyFolder()).size(), 1u);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_FALSE(Exists(path + ".lck"));
    // What is held stays good, and has left the library.
    core::UTF8String name;
    EXPECT_TRUE(held->GetName(name));
    EXPECT_STREQ(name.AsUTF8(), "Generic-001");
    EXPECT_NE(instance->FindProperty(L"generic_diffuse"), nullptr);
    EXPECT_FALSE(library->DeleteInstance(instance));
    EXPECT_TRUE(Unload(library));
    EXPECT_NE(instance->GetSchema(), nullptr);
    instance->Release();
    held->Release();
}

TEST_F(Copies, RefreshingAWriterDropsWhatIsNotSavedAndKeepsTheLock) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_TRUE(AddPreset(*library, "Lost"));
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_FALSE(Has(*library, "Lost"));
    EXPECT_TRUE(Exists(path + ".lck"));
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_TRUE(Has(*library, "Stored"));
}

TEST_F(Copies, RefreshingIsForCopiesAlone) {
    assets::IAssetLibrary* const library = OpenForWriting(CopySample("starter.jpk"));
    ASSERT_TRUE(AddPreset(*library, "Kept"));
    EXPECT_FALSE(library->TakeWriteAccessOnCopy());
    EXPECT_TRUE(Has(*library, "Kept"));
}

TEST_F(Copies, RefreshingLooksAgainWhetherTheFileMayBeWritten) {
    for (const bool on_copy : {true, false}) {
        const std::string path = CopySample("starter.jpk");
        assets::IAssetLibrary* const library = on_copy ? OpenCopy(path) : Open(path);
        ASSERT_NE(library, nullptr);
        EXPECT_FALSE(library->IsReadOnly());
        ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
        EXPECT_FALSE(library->IsReadOnly());
        EXPECT_EQ(library->TakeWriteAccessOnCopy(), on_copy);
        EXPECT_TRUE(library->IsReadOnly());
        ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
        EXPECT_EQ(library->TakeWriteAccessOnCopy(), on_copy);
        EXPECT_FALSE(library->IsReadOnly());
        EXPECT_TRUE(Unload(library));
    }
}

TEST_F(Copies, RefreshingFromAFileThatIsGoneBrokenOrAnotherChangesNothing) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_TRUE(AddPreset(*library, "Kept"));
    const auto refuses = [&](const char* why) {
        EXPECT_FALSE(library->TakeWriteAccessOnCopy()) << why;
        EXPECT_TRUE(Has(*library, "Kept")) << why;
        EXPECT_EQ(NamesIn(CopyFolder()).size(), 1u) << why;
        assets::IAssetDefinition* const definition = DefinitionOf(*library, "Generic-002");
        EXPECT_NE(definition, nullptr) << why;
        if (definition != nullptr) definition->Release();
    };
    std::filesystem::remove(path);
    refuses("gone");
    std::filesystem::rename(CopySample("bad-cut-half.jpk"), path);
    refuses("broken");
    std::filesystem::rename(CopySample("every-kind.jpk"), path);
    refuses("another library");
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    assets::IAssetLibrary* const saved = Open(path);
    ASSERT_NE(saved, nullptr);
    EXPECT_TRUE(Has(*saved, "Kept"));
}

// The definitions of one schema cannot be read; the content is that of the file all the same.
TEST_F(Copies, RefreshingFromAFileThatCannotBeIndexedEndsSharing) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    ASSERT_TRUE(library->EnableSharedAsset(true, core::UTF8String("tag")));
    ASSERT_TRUE(AddPreset(*library, "Lost"));
    {
        nuo::archive::file_read_write_archive file(path.c_str());
        velmor::fs::InMemory cache("test");
        velmor::fs::ZipFs zip(file, cache, "test", false);
        const std::string part =
            std::string(kStarterIdentifier) + "/AssetData/InstanceProperties.bin";
        auto store = zip.create(part.c_str(), velmor::fs::mode_all, velmor::fs::open_existing);
        const std::string zeros(64, 0);
        // The first record behind the head of the store and the head of its block.
        store->query_random()->seek(24);
        nuo::archive::write_all(*store->query_writer(), {zeros.data(), zeros.size()});
        store.reset();
        zip.commit();
    }
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_FALSE(Has(*library, "Lost"));
    EXPECT_FALSE(library->AddSharedAsset(core::UTF8String("texture"), core::UTF8String("n"),
                                         core::UTF8String("Bitmap-001")));
    EXPECT_THAT(Reports(), ElementsAre("error: Please call EnableSharedAsset API first."));
}

TEST_F(Copies, RefreshingBuildsTheIndexOfSharedAssetsAnew) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenCopyForWriting(path);
    const core::UTF8String texture("texture");
    ASSERT_TRUE(library->EnableSharedAsset(true, core::UTF8String("tag")));
    const std::size_t shared = NamesOf(library->GetSharedDefinitions(texture)).size();
    EXPECT_EQ(shared, 4u);
    EXPECT_TRUE(library->AddSharedAsset(texture, core::UTF8String("other name"),
                                        core::UTF8String("Bitmap-001")));
    EXPECT_TRUE(library->TakeWriteAccessOnCopy());
    EXPECT_EQ(NamesOf(library->GetSharedDefinitions(texture)).size(), shared);
    EXPECT_THAT(
        NamesOf(library->GetSharedDefinitionsByName(texture, core::UTF8String("other name"))),
        IsEmpty());
    EXPECT_THAT(NamesOf(library->GetSharedDefinitionsByName(texture, core::UTF8String("TEX_1"))),
                ElementsAre("Bitmap-001"));
}

}  // namespace
}  // namespace halvern_tests
