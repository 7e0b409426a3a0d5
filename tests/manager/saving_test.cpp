#include <korvanet/platform/assets/iassetschema.h>
#include <korvanet/platform/assets/ivalue.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>

#include "assets/manager/assetlibrarymanager.h"
#include "assets/package/packageerrors.h"
#include "nuo/common/file_archive.h"
#include "tests/support/managertest.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"

namespace halvern_tests {
namespace {

using testing::IsEmpty;

class Saving : public ManagerTest {
protected:
    // Stores a file of noise in the library, so that it grows by about as much.
    bool AddNoise(assets::IAssetLibrary& library, std::size_t size) {
        const std::string file = Path("noise.bin");
        WriteFile(file, Noise(size));
        core::UTF8String uri;
        return library.AddResource(uri, core::UTF8String(""), core::UTF8String(file.c_str()),
                                   false);
    }
    bool SavedLibraryIsWhole(const std::string& path, std::size_t noise) {
        assets::IAssetLibrary* const library = Open(path);
        HALVERN_NEED(library != nullptr);
        HALVERN_NEED(Has(*library, "Stored"));
        for (const std::string& name : NamesOf(*library)) {
            assets::IAssetDefinition* const definition = DefinitionOf(*library, name);
            HALVERN_NEED(definition != nullptr);
            definition->Release();
        }
        std::shared_ptr<core::IDataReadStream> stream;
        std::string uri("jpk:?asset=/");
        uri.append(kStarterIdentifier).append("/Resources/noise.bin");
        HALVERN_NEED(library->OpenResource(stream, core::UTF8String(uri.c_str())));
        std::string bytes(noise, '\0');
        HALVERN_NEED(stream->ReadExact(bytes.data(), noise) && bytes == Noise(noise));
        HALVERN_NEED(Unload(library));
        return true;
    }
};

constexpr std::size_t kNoise = 300000;

bool LimitFileSize(rlim_t bytes) {
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    limit.rlim_cur = bytes;
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

TEST_F(Saving, ALibraryOpenForReadingIsNotSaved) {
    const std::string path = CopySample("starter.jpk");
    const std::string bytes = ReadFile(path);
    assets::IAssetLibrary* const library = Open(path);
    EXPECT_TRUE(library->SetVersion(9));
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_EQ(ReadFile(path), bytes);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Saving, ALibraryOfANewerFormatOpensAndIsNotSaved) {
    const std::string path = CopySample("instances-v4.jpk");
    const std::string bytes = ReadFile(path);
    assets::IAssetLibrary* const library = OpenForWriting(path);
    ASSERT_NE(library, nullptr);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_EQ(ReadFile(path), bytes);
}

TEST_F(Saving, TheReadOnlyMarkIsStoredByTheLastSaveThatSucceeds) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = OpenForWriting(path);
    library->SetReadOnly();
    EXPECT_TRUE(library->IsReadOnly());
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(OpenForWriting(path), nullptr);
    ASSERT_NE(library = Open(path), nullptr);
    EXPECT_TRUE(library->IsReadOnly());
}

// Only a folder where the part should be can be in its way.
TEST_F(Saving, ATableOfContentsThatCannotBeWrittenRaises) {
    assets::IAssetLibrary* const library = Create(Path("new.jpk"), "ID");
    ASSERT_NE(library, nullptr);
    WriteFile(Path("a.png"), "one");
    auto& resources = dynamic_cast<assets::AssetLibrary*>(library)->Document().Resources();
    ASSERT_FALSE(
        resources.Add(Path("a.png").c_str(), "", "ID/AssetData/AssetTableOfContents.bin").empty());
    EXPECT_THROW(Manager().SaveLibrary(library), assets::JpkFsErr);
}

TEST_F(Saving, ASchemaThatCannotBeWrittenRaises) {
    assets::IAssetLibrary* const from = Open(CopySample("starter.jpk"));
    assets::IAssetLibrary* const library = Create(Path("new.jpk"), "ID");
    ASSERT_NE(library, nullptr);
    assets::IAssetDefinition* const definition = DefinitionOf(*from, "Bitmap-001");
    ASSERT_TRUE(library->AddSchema(definition->GetSchema()));
    definition->Release();
    WriteFile(Path("a.png"), "one");
    auto& resources = dynamic_cast<assets::AssetLibrary*>(library)->Document().Resources();
    ASSERT_FALSE(
        resources.Add(Path("a.png").c_str(), "", "ID/Schemas/UnifiedBitmapSchema.xml").empty());
    EXPECT_THROW(Manager().SaveLibrary(library), assets::JpkFsErr);
}

TEST_F(Saving, TwiceInARowGivesOneContent) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = OpenForWriting(path);
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    const std::vector<std::string> names = NamesOf(*library);
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    assets::IAssetLibrary* const again = Open(path);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(NamesOf(*again), names);
}

TEST_F(Saving, InPlaceAFileThatCannotGrowFailsAndTheNextSaveRepairsIt) {
    const std::string path = CopySample("starter.jpk");
    EXPECT_TRUE(InChild([&] {
        assets::IAssetLibrary* library = OpenForWriting(path);
        HALVERN_NEED(library != nullptr && AddPreset(*library, "Stored"));
        HALVERN_NEED(AddNoise(*library, kNoise));
        HALVERN_NEED(LimitFileSize(std::filesystem::file_size(path) + 1000));
        HALVERN_NEED(!Manager().SaveLibrary(library));
        HALVERN_NEED(!Manager().SaveLibrary(library));
        // What is in memory counts on what the file does not have yet.
        assets::IAssetLibrary* same = library;
        HALVERN_NEED(Manager().ReopenForReading(&same) == nullptr && same == library);
        HALVERN_NEED(LimitFileSize(RLIM_INFINITY));
        HALVERN_NEED(Manager().SaveLibrary(library));
        library = Manager().ReopenForReading(&same);
        HALVERN_NEED(library != nullptr && Unload(library));
        HALVERN_NEED(SavedLibraryIsWhole(path, kNoise));
        EndManager();
        return true;
    }));
}

TEST_F(Saving, ASaveThatCouldNotBeginLeavesTheLibraryFreeToGiveUpWriting) {
    assets::IAssetLibrary* library = OpenForWriting(CopySample("starter.jpk"));
    ASSERT_TRUE(AddPreset(*library, "Stored"));
    assets::IAssetDefinition* const stored = DefinitionOf(*library, "Stored");
    // No schema file can hold the text.
    assets::IStringValue* const text = stored->GetSchema()->AddStringProperty(
        L"odd", assets::PropertyFlags::kPublic, L"", L"\x01");
    stored->Release();
    ASSERT_NE(text, nullptr);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    library = Manager().ReopenForReading(&library);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(Has(*library, "Stored"));
    ASSERT_TRUE(text->SetValue(L"fine"));
    library = Manager().ReopenForWriting(&library);
    EXPECT_TRUE(Manager().SaveLibrary(library));
}

// A ZIP tells the number of its entries in 16 bits.
TEST_F(Saving, MoreEntriesThanAZipCanTellAreNotSaved) {
    const std::string path = CopySample("starter.jpk");
    {
        nuo::archive::file_read_write_archive file(path.c_str());
        velmor::fs::InMemory cache("test");
        velmor::fs::ZipFs zip(file, cache, "test", false);
        const std::string folder = std::string(kStarterIdentifier) + "/Resources/";
        for (std::uint64_t count = zip.entryCount(); count < 65535; ++count)
            ASSERT_NE(zip.create((folder + std::to_string(count)).c_str(), velmor::fs::mode_all,
                                 velmor::fs::create_new),
                      nullptr);
        zip.commit();
    }
    const std::string bytes = ReadFile(path);
    assets::IAssetLibrary* const library = OpenForWriting(path);
    ASSERT_NE(library, nullptr);
    ASSERT_TRUE(AddNoise(*library, 10));
    EXPECT_FALSE(Manager().SaveLibrary(library));
    EXPECT_EQ(ReadFile(path), bytes);
    // Records stand in blocks that the file does not have.
    assets::IAssetLibrary* same = library;
    EXPECT_EQ(Manager().ReopenForReading(&same), nullptr);
    EXPECT_EQ(same, library);
    EXPECT_TRUE(Unload(library));
    EXPECT_NE(Open(path), nullptr);
}

TEST_F(Saving, OnACopyThatCannotGrowTheSourceStaysWhole) {
    const std::string path = CopySample("starter.jpk");
    const std::string bytes = ReadFile(path);
    EXPECT_TRUE(InChild([&] {
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr && AddPreset(*library, "Stored"));
        HALVERN_NEED(AddNoise(*library, kNoise));
        HALVERN_NEED(LimitFileSize(bytes.size() + 1000));
        HALVERN_NEED(!Manager().SaveLibrary(library));
        HALVERN_NEED(ReadFile(path) == bytes);
        HALVERN_NEED(LimitFileSize(RLIM_INFINITY));
        HALVERN_NEED(Manager().SaveLibrary(library));
        HALVERN_NEED(Unload(library) && SavedLibraryIsWhole(path, kNoise));
        EndManager();
        return true;
    }));
}

TEST_F(Saving, ACopyBackToAFullDiskFailsAndCanBeRepeated) {
    std::filesystem::create_directory(Path("disk"));
    EXPECT_TRUE(InChild([&] {
        HALVERN_NEED(EnterOwnMounts());
        HALVERN_NEED(::mount("tmpfs", Path("disk").c_str(), "tmpfs", 0, "size=128k") == 0);
        const std::string path = CopySample("starter.jpk", "disk/a.jpk");
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr && AddPreset(*library, "Stored"));
        HALVERN_NEED(AddNoise(*library, kNoise));
        HALVERN_NEED(!Manager().SaveLibrary(library));
        HALVERN_NEED(Exists(path + ".lck"));
        HALVERN_NEED(::mount("tmpfs", Path("disk").c_str(), "tmpfs", MS_REMOUNT, "size=2m") == 0);
        HALVERN_NEED(Manager().SaveLibrary(library));
        HALVERN_NEED(Unload(library) && SavedLibraryIsWhole(path, kNoise));
        EndManager();
        return true;
    }));
}

TEST_F(Saving, ACopyBackToAPlaceThatCannotBeWrittenFails) {
    std::filesystem::create_directory(Path("closed"));
    const std::string path = CopySample("starter.jpk", "closed/a.jpk");
    ::chmod(path.c_str(), 0666);
    ::chmod(Path("closed").c_str(), 0777);
    EXPECT_TRUE(InChild([&] {
        HALVERN_NEED(DropToNobody());
        assets::IAssetLibrary* const library = OpenCopyForWriting(path);
        HALVERN_NEED(library != nullptr && AddPreset(*library, "Stored"));
        std::filesystem::remove(path);
        std::filesystem::create_directory(path);
        HALVERN_NEED(!Manager().SaveLibrary(library));
        std::filesystem::remove(path);
        HALVERN_NEED(Manager().SaveLibrary(library));
        HALVERN_NEED(Unload(library));
        assets::IAssetLibrary* const saved = Open(path);
        HALVERN_NEED(saved != nullptr && Has(*saved, "Stored"));
        EndManager();
        return true;
    }));
}

TEST_F(Saving, EverySampleThatCanBeWrittenReadsBackTheSame) {
    for (const std::string& name : NamesIn(DataFile("."))) {
        if (name.rfind("bad-", 0) == 0 || !name.ends_with(".jpk")) continue;
        if (name == "starter-read-only.jpk" || name == "instances-v4.jpk") continue;
        const std::string path = CopySample(name);
        assets::IAssetLibrary* library = OpenForWriting(path);
        ASSERT_NE(library, nullptr) << name;
        const std::vector<std::string> names = NamesOf(*library);
        const std::uint32_t version = library->GetVersion();
        EXPECT_TRUE(Manager().SaveLibrary(library)) << name;
        EXPECT_TRUE(Unload(library));
        ASSERT_NE(library = Open(path), nullptr) << name;
        EXPECT_EQ(NamesOf(*library), names) << name;
        EXPECT_EQ(library->GetVersion(), version) << name;
        EXPECT_TRUE(Unload(library));
    }
}

}  // namespace
}  // namespace halvern_tests
