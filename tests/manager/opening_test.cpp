#include <sys/stat.h>

#include "assets/manager/assetlibrary.h"
#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Opening : public ManagerTest {
protected:
    std::vector<std::string> SearchPaths() {
        std::vector<std::string> paths;
        assets::IPathResolver& resolver = *Manager().GetPathResolver();
        for (std::size_t i = 0; i < resolver.GetSearchPathCount(); ++i) {
            core::UTF8String path;
            resolver.GetSearchPath(i, path);
            paths.emplace_back(path.AsUTF8());
        }
        return paths;
    }
    std::string UINameOf(assets::IAssetLibrary& library, const std::string& identifier,
                         const char* locale) {
        auto* const walk = library.GetDefinitionsById(core::UTF8String(identifier.c_str()));
        core::UTF8String name;
        walk->GetUIName(name, core::UTF8String(locale));
        walk->Release();
        return name.AsUTF8();
    }
};

TEST_F(Opening, AMissingFileGivesNullAndNoReport) {
    EXPECT_EQ(Open(Path("missing.jpk")), nullptr);
    EXPECT_EQ(OpenForWriting(Path("missing.jpk")), nullptr);
    EXPECT_EQ(OpenCopy(Path("missing.jpk")), nullptr);
    EXPECT_EQ(OpenCopyForWriting(Path("missing.jpk")), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("tmp"));
}

TEST_F(Opening, ARelativePathGivesNullAndNoReport) {
    const std::string path = CopySample("starter.jpk");
    ASSERT_EQ(::chdir(Folder().c_str()), 0);
    EXPECT_EQ(Open("starter.jpk"), nullptr);
    EXPECT_EQ(OpenForWriting("./starter.jpk"), nullptr);
    EXPECT_EQ(Open(""), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
    ASSERT_EQ(::chdir("/"), 0);
    EXPECT_NE(Open(path), nullptr);
}

TEST_F(Opening, TwiceIsOneLibraryWithTwoClaims) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* const library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Open(path), library);
    EXPECT_EQ(OpenCopy(path), library);
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_TRUE(Unload(library));
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
}

TEST_F(Opening, ALibraryThatIsFoundByItsIdentifierGetsNoFurtherClaim) {
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk"));
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Manager().FindLibrary(core::UTF8String(kStarterIdentifier)), library);
    EXPECT_EQ(dynamic_cast<assets::AssetLibrary*>(library)->UseCount(), 1);
    EXPECT_TRUE(Unload(library));
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
    EXPECT_EQ(Manager().FindLibrary(core::UTF8String(kStarterIdentifier)), nullptr);
}

TEST_F(Opening, FormsOfOnePathFindOneLibrary) {
    CopySample("starter.jpk", "a.jpk");
    assets::IAssetLibrary* const library = Open(Path("a.jpk"));
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Open(Folder() + "/./x/..//a.jpk"), library);
    std::string backslashed = Folder() + "\\tmp\\..\\a.jpk";
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
    EXPECT_EQ(Open(backslashed), library);
    EXPECT_EQ(OpenForWriting(Folder() + "/tmp/../a.jpk"), library);
    EXPECT_EQ(Open(Folder() + "/../../../../a.jpk"), nullptr);
}

TEST_F(Opening, AReadOnlyFileIsNotOpenedForWriting) {
    const std::string path = CopySample("starter.jpk");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_EQ(OpenForWriting(path), nullptr);
    EXPECT_THAT(Reports(),
                ElementsAre("error: Cannot open a read-only asset library for writing."));
    // The file is looked at before its path.
    ASSERT_EQ(::chdir(Folder().c_str()), 0);
    EXPECT_EQ(OpenForWriting("starter.jpk"), nullptr);
    EXPECT_THAT(Reports(),
                ElementsAre("error: Cannot open a read-only asset library for writing."));
    ASSERT_EQ(::chdir("/"), 0);
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_FALSE(Exists(path + ".lck"));
    assets::IAssetLibrary* const library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(library->IsReadOnly());
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    EXPECT_EQ(OpenForWriting(path), nullptr);
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
}

TEST_F(Opening, ALibraryOpenForReadingComesBackAsItStandsWhenAskedForForWriting) {
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_FALSE(library->IsReadOnly());
    EXPECT_EQ(OpenForWriting(path), library);
    EXPECT_FALSE(Manager().SaveLibrary(library));
    ASSERT_NE(library = Manager().ReopenForWriting(&library), nullptr);
    EXPECT_TRUE(Manager().SaveLibrary(library));
}

TEST_F(Opening, ALibraryThatIsMarkedReadOnlyOpensForReadingAlone) {
    const std::string path = CopySample("starter-read-only.jpk");
    EXPECT_EQ(OpenForWriting(path), nullptr);
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
    EXPECT_FALSE(Exists(path + ".lck"));
    assets::IAssetLibrary* const library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(library->IsReadOnly());
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Opening, ASecondFileOfOneIdentifierOpensAsNullAndLeavesNothing) {
    const std::string first = CopySample("starter.jpk", "a.jpk");
    const std::string second = CopySample("starter.jpk", "b.jpk");
    ASSERT_EQ(::mkdir(Path("b.qmm").c_str(), 0777), 0);
    WriteFile(Path("b-QQQ.xlf"),
              "<xliff><trans-unit id=\"MAT_1\"><target>of b</target></trans-unit></xliff>");
    assets::IAssetLibrary* const library = Open(first);
    ASSERT_NE(library, nullptr);
    const std::vector<std::string> scratch = NamesIn(PrivateFolders(TempFolder()).at(0));
    for (const bool copy : {false, true}) {
        EXPECT_EQ(copy ? OpenCopyForWriting(second) : OpenForWriting(second), nullptr);
        EXPECT_EQ(Manager().GetLibraryCount(), 1u);
        EXPECT_EQ(Manager().FindLibrary(core::UTF8String(kStarterIdentifier)), library);
        EXPECT_THAT(SearchPaths(), IsEmpty());
        EXPECT_EQ(UINameOf(*library, "Generic-001", "QQQ"), "MAT_1");
        EXPECT_FALSE(Exists(second + ".lck"));
        EXPECT_EQ(NamesIn(PrivateFolders(TempFolder()).at(0)), scratch);
        EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0) + "/.copy"), IsEmpty());
    }
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_TRUE(Unload(library));
    EXPECT_NE(Open(second), nullptr);
}

TEST_F(Opening, TheFolderBesideALibraryJoinsTheSearchPathsUntilItIsUnloaded) {
    const std::string path = CopySample("starter.jpk", "a.b.jpk");
    ASSERT_EQ(::mkdir(Path("a.b.qmm").c_str(), 0777), 0);
    ASSERT_TRUE(Manager().GetPathResolver()->AddSearchPath(core::UTF8String("/elsewhere")));
    assets::IAssetLibrary* const library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_THAT(SearchPaths(), ElementsAre("/elsewhere", Path("a.b.qmm")));
    // The first of several equal ones goes.
    Manager().GetPathResolver()->InsertSearchPath(0, core::UTF8String(Path("a.b.qmm").c_str()));
    EXPECT_TRUE(Unload(library));
    EXPECT_THAT(SearchPaths(), ElementsAre("/elsewhere", Path("a.b.qmm")));
}

TEST_F(Opening, AFolderBesideALibraryThatIsGoneWhenItIsUnloadedStaysASearchPath) {
    ASSERT_EQ(::mkdir(Path("a.qmm").c_str(), 0777), 0);
    assets::IAssetLibrary* const library = Open(CopySample("starter.jpk", "a.jpk"));
    ASSERT_NE(library, nullptr);
    ASSERT_EQ(::rmdir(Path("a.qmm").c_str()), 0);
    EXPECT_TRUE(Unload(library));
    EXPECT_THAT(SearchPaths(), ElementsAre(Path("a.qmm")));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Opening, ANameWithoutExtensionGetsOneForTheFolderBesideIt) {
    CopySample("starter.jpk", "plain");
    ASSERT_EQ(::mkdir(Path("plain.qmm").c_str(), 0777), 0);
    ASSERT_NE(Open(Path("plain")), nullptr);
    EXPECT_THAT(SearchPaths(), ElementsAre(Path("plain.qmm")));
}

TEST_F(Opening, AFileInThePlaceOfTheFolderBesideALibraryIsNoSearchPath) {
    CopySample("starter.jpk", "a.jpk");
    WriteFile(Path("a.qmm"), "");
    ASSERT_NE(Open(Path("a.jpk")), nullptr);
    EXPECT_THAT(SearchPaths(), IsEmpty());
}

TEST_F(Opening, MessageFilesBesideALibraryServeItUntilItIsUnloaded) {
    CopySample("Starter-fra.xlf");
    CopySample("starter-ENG.XLF");
    const std::string path = CopySample("starter.jpk");
    assets::IAssetLibrary* library = Open(path);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(UINameOf(*library, "Generic-002", "ENG"), "Material 2");
    EXPECT_EQ(UINameOf(*library, "Generic-002", "deu"), "Material 2");
    EXPECT_EQ(UINameOf(*library, "Generic-001", "FRA"), "Mat\u00E9riau 1");
    EXPECT_TRUE(Unload(library));
    assets::ILocalizationManager messages;
    core::UTF8String text;
    EXPECT_FALSE(Manager().GetLocalizationManager(messages).GetLocalizedMessage(
        text, core::UTF8String("MAT_2"), core::UTF8String("ENG")));
    ASSERT_NE(library = Open(path), nullptr);
    EXPECT_EQ(UINameOf(*library, "Generic-002", "ENG"), "Material 2");
}

TEST_F(Opening, AFolderOpensAsNull) {
    EXPECT_EQ(Open(Folder()), nullptr);
    EXPECT_EQ(OpenForWriting(Folder()), nullptr);
    EXPECT_EQ(OpenCopy(Folder()), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Opening, EveryBrokenFileOpensAsNullInEveryWayAndLeavesNothing) {
    for (const std::string& name : NamesIn(DataFile("."))) {
        if (name.rfind("bad-", 0) != 0 || !name.ends_with(".jpk")) continue;
        const std::string path = CopySample(name);
        const std::string bytes = ReadFile(path);
        EXPECT_EQ(Open(path), nullptr) << name;
        EXPECT_EQ(OpenForWriting(path), nullptr) << name;
        EXPECT_EQ(OpenCopy(path), nullptr) << name;
        EXPECT_EQ(OpenCopyForWriting(path), nullptr) << name;
        EXPECT_EQ(ReadFile(path), bytes) << name;
        EXPECT_FALSE(Exists(path + ".lck")) << name;
    }
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
    EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0)), ElementsAre(".copy"));
    EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0) + "/.copy"), IsEmpty());
}

TEST_F(Opening, EverySampleOpensInEveryWayAndKeepsItsBytes) {
    for (const std::string& name : NamesIn(DataFile("."))) {
        if (name.rfind("bad-", 0) == 0 || !name.ends_with(".jpk")) continue;
        const std::string path = CopySample(name);
        const std::string bytes = ReadFile(path);
        const bool writable = name != "starter-read-only.jpk";
        for (const int way : {0, 1, 2, 3}) {
            assets::IAssetLibrary* const library = way == 0   ? Open(path)
                                                   : way == 1 ? OpenCopy(path)
                                                   : way == 2 ? OpenForWriting(path)
                                                              : OpenCopyForWriting(path);
            EXPECT_EQ(library != nullptr, way < 2 || writable) << name << " " << way;
            if (library == nullptr) continue;
            EXPECT_EQ(library->IsOnCopy(), way % 2 == 1);
            EXPECT_TRUE(Unload(library)) << name;
        }
        EXPECT_EQ(ReadFile(path), bytes) << name;
    }
}

TEST_F(Opening, OnlyTheOlderLayoutWantsAnUpgrade) {
    EXPECT_FALSE(
        Manager().IsLibraryUpgradeRequired(core::UTF8String(CopySample("starter.jpk").c_str())));
    // Also beside the open library itself.
    ASSERT_NE(Open(Path("starter.jpk")), nullptr);
    EXPECT_FALSE(Manager().IsLibraryUpgradeRequired(core::UTF8String(Path("starter.jpk").c_str())));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
}

TEST_F(Opening, ASecondFileOfOneIdentifierDoesNotOpenButIsAskedForItsUpgrade) {
    ASSERT_NE(Open(CopySample("starter.jpk")), nullptr);
    const std::string second = CopySample("starter.jpk", "second.jpk");
    EXPECT_EQ(Open(second), nullptr);
    EXPECT_FALSE(Manager().IsLibraryUpgradeRequired(core::UTF8String(second.c_str())));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
}

TEST_F(Opening, AskingAFileThatIsNoLibraryForItsUpgradeRaises) {
    EXPECT_THROW(
        Manager().IsLibraryUpgradeRequired(core::UTF8String(CopySample("bad-text.jpk").c_str())),
        std::exception);
    EXPECT_THROW(
        Manager().IsLibraryUpgradeRequired(core::UTF8String(CopySample("bad-no-toc.jpk").c_str())),
        assets::JpkFsErr);
    EXPECT_THROW(Manager().IsLibraryUpgradeRequired(core::UTF8String(Path("missing.jpk").c_str())),
                 std::exception);
}

}  // namespace
}  // namespace halvern_tests
