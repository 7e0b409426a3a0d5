#include "assets/manager/librarylocations.h"

#include <korvanet/platform/core/registry.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

constexpr const wchar_t* kAssets = L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\";
constexpr const wchar_t* kTextures = L"SOFTWARE\\Korvanet\\KRVTTextureLibrary\\";

class Locations : public ManagerTest {
protected:
    ~Locations() override { core::SetRegistry(nullptr); }

    void Set(const wchar_t* root, const wchar_t* key, const wchar_t* value) {
        registry_.SetString((std::wstring(root) + key).c_str(), L"LibraryPaths", value);
    }
    // The registry is read when the manager is made.
    assets::IAssetLibraryManager& ManagerOfRegistry() {
        core::SetRegistry(&registry_);
        return Manager();
    }
    std::string LibraryPath(std::size_t index) {
        core::UTF8String path("unchanged");
        return Manager().GetRegisteredLibraryPath(index, path) ? path.AsUTF8() : "none";
    }
    int Version(std::size_t index) {
        int version = -1;
        return Manager().GetRegisteredLibraryVersion(index, version) ? version : -1;
    }
    std::string TexturePath() {
        core::UTF8String path("unchanged");
        return Manager().GetTextureLibraryPath(path) ? path.AsUTF8() : "none";
    }
    std::string CacheFolder() {
        core::UTF8String path("unchanged");
        return Manager().GetCacheFolder(path) ? path.AsUTF8() : "none";
    }

    core::MemoryRegistry registry_;
};

TEST_F(Locations, WithoutARegistryThereIsNothing) {
    EXPECT_EQ(Manager().GetRegisteredLibraryCount(), 0u);
    EXPECT_EQ(LibraryPath(0), "none");
    EXPECT_EQ(Version(0), -1);
    EXPECT_EQ(TexturePath(), "none");
    EXPECT_FALSE(Manager().IsTextureLibraryInstalled(0));
}

TEST_F(Locations, AHiveThatRefusesTheConnectionIsAnEmptyOne) {
    Set(kAssets, L"2011", L"/a");
    Set(kTextures, L"1", L"/t");
    registry_.SetAvailable(false);
    EXPECT_EQ(ManagerOfRegistry().GetRegisteredLibraryCount(), 0u);
    EXPECT_EQ(TexturePath(), "none");
}

TEST_F(Locations, LibrariesComeInTheOrderOfTheirYears) {
    Set(kAssets, L"2014", L"C:\\libs\\2014");
    Set(kAssets, L"2011", L"/libs/\x00E9t\x00E9");
    Set(kAssets, L"2013", L"");
    Set(kAssets, L"2012", L"/libs/second");
    Set(kAssets, L"2010", L"/too/old");
    Set(kAssets, L"2015", L"/too/new");
    EXPECT_EQ(ManagerOfRegistry().GetRegisteredLibraryCount(), 4u);
    EXPECT_EQ(LibraryPath(0), "/libs/\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(LibraryPath(1), "/libs/second");
    EXPECT_EQ(LibraryPath(2), "");
    EXPECT_EQ(LibraryPath(3), "C:/libs/2014");
    EXPECT_EQ(LibraryPath(4), "none");
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(Version(static_cast<std::size_t>(index)), index + 1);
    EXPECT_EQ(Version(4), -1);
    EXPECT_EQ(registry_.GetOpenKeyCount(), 0u);
}

TEST_F(Locations, AKeyWithoutTheValueIsPassedOver) {
    registry_.SetString(L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\2012", L"Other", L"/a");
    Set(kAssets, L"2013", L"/b");
    EXPECT_EQ(ManagerOfRegistry().GetRegisteredLibraryCount(), 1u);
    EXPECT_EQ(LibraryPath(0), "/b");
    EXPECT_EQ(Version(0), 3);
    EXPECT_EQ(registry_.GetOpenKeyCount(), 0u);
}

TEST_F(Locations, TheRegistryIsReadOnceWhenTheManagerIsMade) {
    EXPECT_EQ(ManagerOfRegistry().GetRegisteredLibraryCount(), 0u);
    Set(kAssets, L"2011", L"/a");
    EXPECT_EQ(Manager().GetRegisteredLibraryCount(), 0u);
    EndManager();
    EXPECT_EQ(Manager().GetRegisteredLibraryCount(), 1u);
}

TEST_F(Locations, ALongPathIsCutAtAThousandAndTwentyFourCharacters) {
    Set(kAssets, L"2011", (L"/" + std::wstring(2000, L'\x00E9')).c_str());
    ManagerOfRegistry();
    EXPECT_EQ(LibraryPath(0).size(), 1 + 2 * 1023u);
}

TEST_F(Locations, TheTextureLibraryOfTheHighestLevelCounts) {
    Set(kTextures, L"1", L"D:\\low");
    Set(kTextures, L"2", L"/middle");
    Set(kTextures, L"3", L"");
    ManagerOfRegistry();
    EXPECT_EQ(TexturePath(), "/middle");
    EXPECT_TRUE(Manager().IsTextureLibraryInstalled(0));
    EXPECT_TRUE(Manager().IsTextureLibraryInstalled(1));
    EXPECT_FALSE(Manager().IsTextureLibraryInstalled(2));
    EXPECT_FALSE(Manager().IsTextureLibraryInstalled(3));
    EXPECT_FALSE(Manager().IsTextureLibraryInstalled(-1));
}

TEST_F(Locations, EachOfTheThreeLevelsCanBeInstalledAlone) {
    const wchar_t* const keys[] = {L"1", L"2", L"3"};
    for (int level = 0; level < 3; ++level) {
        core::MemoryRegistry registry;
        registry.SetString((std::wstring(kTextures) + keys[level]).c_str(), L"LibraryPaths",
                           L"/textures");
        core::SetRegistry(&registry);
        EXPECT_EQ(TexturePath(), "/textures");
        for (int asked = 0; asked < 3; ++asked)
            EXPECT_EQ(Manager().IsTextureLibraryInstalled(asked), asked == level) << level << asked;
        EndManager();
        core::SetRegistry(nullptr);
    }
}

TEST_F(Locations, OpeningALibraryAddsTheTextureLibraryToTheSearchPaths) {
    Set(kTextures, L"2", L"/textures/");
    ManagerOfRegistry();
    ASSERT_NE(Open(CopySample("starter.jpk")), nullptr);
    core::UTF8String path;
    ASSERT_EQ(Manager().GetPathResolver()->GetSearchPathCount(), 1u);
    EXPECT_TRUE(Manager().GetPathResolver()->GetSearchPath(0, path));
    EXPECT_STREQ(path.AsUTF8(), "/textures");
}

TEST_F(Locations, ATextureGetsTheResolutionsThatTheTextureLibraryHas) {
    for (const char* level : {"1", "3"}) {
        const std::string folder = Path("textures/") + level + "/Mats/";
        std::filesystem::create_directories(folder);
        WriteFile(folder + "brick.png", "");
    }
    const std::string root = Path("textures");
    Set(kTextures, L"1", core::UTF8String(root.c_str()).AsWide());
    ManagerOfRegistry();
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    assets::IAssetDefinition* const definition = DefinitionOf(*library, "Bitmap-001");
    assets::IAssetInstance* const instance = library->CreateInstance(definition);
    auto* const value = dynamic_cast<assets::ITextureURIValue*>(
        instance->FindProperty(L"unifiedbitmap_Bitmap")->GetValue());
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(value->SetBaseUri(L"brick.png"));
    EXPECT_EQ(value->GetDimension(), 2u);
    EXPECT_TRUE(value->IsResolutionSet());
    core::UTF8String uri;
    EXPECT_TRUE(value->GetValue(uri, 1));
    EXPECT_EQ(uri.AsUTF8(), root + "/3/Mats/brick.png");
    EXPECT_TRUE(value->SetBaseUri(L"unknown.png"));
    EXPECT_FALSE(value->IsResolutionSet());
    instance->Release();
    definition->Release();
}

TEST_F(Locations, TheCacheFolderIsMadeOnTheFirstCall) {
    ::setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
    const std::string expected = Path("data/Korvanet/AssetLibrary/\"2011\"/Cache/");
    EXPECT_FALSE(Exists(expected));
    EXPECT_EQ(CacheFolder(), expected);
    EXPECT_TRUE(std::filesystem::is_directory(expected));
    std::filesystem::remove_all(Path("data"));
    EXPECT_EQ(CacheFolder(), expected);
    EXPECT_FALSE(Exists(expected));
}

TEST_F(Locations, WithoutADataFolderOfItsOwnTheUserHasOneInTheHome) {
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("HOME", Path("home").c_str(), 1);
    EXPECT_EQ(CacheFolder(), Path("home/.local/share/Korvanet/AssetLibrary/\"2011\"/Cache/"));
}

TEST_F(Locations, ACacheFolderThatIsThereAlreadyIsTaken) {
    ::setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
    const std::string expected = Path("data/Korvanet/AssetLibrary/\"2011\"/Cache/");
    std::filesystem::create_directories(expected);
    EXPECT_EQ(CacheFolder(), expected);
}

TEST_F(Locations, ACacheFolderThatWasSetIsKeptAsItStands) {
    Manager().SetCacheFolder(core::UTF8String("not\\even/absolute/"));
    EXPECT_EQ(CacheFolder(), "not\\even/absolute/");
    EXPECT_FALSE(Exists("not"));
}

TEST_F(Locations, ACacheFolderThatCannotBeMadeIsFalseAndTriedAgain) {
    WriteFile(Path("data"), "a file");
    ::setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
    EXPECT_EQ(CacheFolder(), "none");
    ::unsetenv("XDG_DATA_HOME");
    ::unsetenv("HOME");
    EXPECT_EQ(CacheFolder(), "none");
    std::filesystem::remove(Path("data"));
    ::setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
    EXPECT_NE(CacheFolder(), "none");
}

}  // namespace
}  // namespace halvern_tests
