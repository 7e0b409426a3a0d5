#include <korvanet/platform/core/jpkuuid.h>
#include <sys/stat.h>

#include "tests/support/managertest.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Creating : public ManagerTest {
protected:
    assets::IAssetLibrary* CreateCopy(const std::string& path, const std::string& identifier) {
        return Manager().CreateLibraryCopy(core::UTF8String(path.c_str()),
                                           core::UTF8String(identifier.c_str()), 0);
    }
};

TEST_F(Creating, InPlaceTheFileIsThereAtOnceAndTheLibraryAfterASave) {
    assets::IAssetLibrary* library = Create(Path("new.jpk"), "NEW");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(IdentifierOf(*library), "NEW");
    EXPECT_FALSE(library->IsReadOnly());
    EXPECT_FALSE(library->IsOnCopy());
    EXPECT_TRUE(Exists(Path("new.jpk")));
    EXPECT_FALSE(Exists(Path("new.jpk.lck")));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Unload(library));
    ASSERT_NE(library = Open(Path("new.jpk")), nullptr);
    EXPECT_EQ(IdentifierOf(*library), "NEW");
    EXPECT_THAT(NamesOf(*library), IsEmpty());
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Creating, OnACopyTheFileComesWithTheFirstSave) {
    assets::IAssetLibrary* library = CreateCopy(Path("new.jpk"), "NEW");
    ASSERT_NE(library, nullptr);
    EXPECT_TRUE(library->IsOnCopy());
    EXPECT_FALSE(Exists(Path("new.jpk")));
    EXPECT_TRUE(Exists(Path("new.jpk.lck")));
    EXPECT_TRUE(Manager().SaveLibrary(library));
    EXPECT_TRUE(Exists(Path("new.jpk")));
    EXPECT_TRUE(Unload(library));
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("new.jpk", "tmp"));
    ASSERT_NE(library = Open(Path("new.jpk")), nullptr);
    EXPECT_EQ(IdentifierOf(*library), "NEW");
}

TEST_F(Creating, ALibraryThatWasNeverSavedIsUnloadedWithoutComplaint) {
    ASSERT_TRUE(Unload(CreateCopy(Path("a.jpk"), "A")));
    ASSERT_TRUE(Unload(Create(Path("b.jpk"), "B")));
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("b.jpk", "tmp"));
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(Creating, AnEmptyIdentifierBecomesAFreshUuid) {
    assets::IAssetLibrary* const first = Create(Path("a.jpk"));
    assets::IAssetLibrary* const second =
        Manager().CreateLibrary(core::UTF8String(Path("b.jpk").c_str()), 0);
    assets::IAssetLibrary* const third = CreateCopy(Path("c.jpk"), "");
    std::vector<std::string> identifiers;
    for (assets::IAssetLibrary* library : {first, second, third}) {
        ASSERT_NE(library, nullptr);
        identifiers.push_back(IdentifierOf(*library));
        EXPECT_TRUE(core::JPKUUID::IsValid(core::UTF8String(identifiers.back().c_str())));
        EXPECT_EQ(Manager().FindLibrary(core::UTF8String(identifiers.back().c_str())), library);
    }
    EXPECT_NE(identifiers[0], identifiers[1]);
    EXPECT_NE(identifiers[1], identifiers[2]);
}

TEST_F(Creating, ARelativePathIsRefused) {
    EXPECT_EQ(Create("new.jpk"), nullptr);
    EXPECT_EQ(Create(""), nullptr);
    const char* const text = "error: The given URI is relative, only absolute paths are accepted";
    EXPECT_THAT(Reports(), ElementsAre(text, text));
}

TEST_F(Creating, ThePathOfAnOpenLibraryIsRefusedAlsoWhenItsFileIsGone) {
    const std::string path = CopySample("starter.jpk");
    ASSERT_NE(Open(path), nullptr);
    EXPECT_EQ(Create(path, "X"), nullptr);
    EXPECT_THAT(Reports(), ElementsAre("error: A library with this path already exists"));
    ASSERT_EQ(::unlink(path.c_str()), 0);
    EXPECT_EQ(Create(Folder() + "/x/../starter.jpk", "X"), nullptr);
    EXPECT_THAT(Reports(), ElementsAre("error: A library with this path already exists"));
    EXPECT_FALSE(Exists(path));
}

TEST_F(Creating, APathWhereSomethingIsIsRefused) {
    WriteFile(Path("a.jpk"), "mine");
    ASSERT_EQ(::mkdir(Path("b.jpk").c_str(), 0777), 0);
    EXPECT_EQ(Create(Path("a.jpk")), nullptr);
    EXPECT_EQ(CreateCopy(Path("b.jpk"), ""), nullptr);
    const char* const text = "error: A file with this path already exists";
    EXPECT_THAT(Reports(), ElementsAre(text, text));
    EXPECT_EQ(ReadFile(Path("a.jpk")), "mine");
}

TEST_F(Creating, AMissingFolderIsRefused) {
    WriteFile(Path("file"), "");
    EXPECT_EQ(Create(Path("missing/a.jpk")), nullptr);
    EXPECT_EQ(Create(Path("file/a.jpk")), nullptr);
    EXPECT_EQ(Create("/../../a.jpk"), nullptr);
    const char* const text = "error: Folder/directory does not already exist";
    EXPECT_THAT(Reports(), ElementsAre(text, text, text));
}

TEST_F(Creating, AFolderThatCannotBeWrittenIsRefused) {
    ASSERT_EQ(::mkdir(Path("closed").c_str(), 0777), 0);
    ASSERT_EQ(::chmod(Path("closed").c_str(), 0555), 0);
    EXPECT_TRUE(InChild([this] {
        HALVERN_NEED(DropToNobody());
        HALVERN_NEED(Create(Path("closed/a.jpk"), "A") == nullptr);
        HALVERN_NEED(Reports() == std::vector<std::string>{"error: Folder/directory is read-only"});
        HALVERN_NEED(Manager().GetLibraryCount() == 0);
        return true;
    }));
    EXPECT_THAT(NamesIn(Path("closed")), IsEmpty());
}

TEST_F(Creating, TheTestOfTheFolderLeavesNoFile) {
    ASSERT_NE(CreateCopy(Path("a.jpk"), "A"), nullptr);
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("a.jpk.lck", "tmp"));
}

TEST_F(Creating, AnIdentifierThatCannotNameAFolderLeavesNothing) {
    for (const char* identifier : {"a/b", "a\\b", "..", ".", "qmx", "a<b", "a\"b", "a&b", "a'b",
                                   "a\nb", "[Content_Types].xml", "core.xml"}) {
        EXPECT_EQ(Create(Path("a.jpk"), identifier), nullptr) << identifier;
        EXPECT_EQ(CreateCopy(Path("a.jpk"), identifier), nullptr) << identifier;
        EXPECT_THAT(NamesIn(Folder()), ElementsAre("tmp")) << identifier;
    }
    EXPECT_EQ(Manager().GetLibraryCount(), 0u);
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_NE(Create(Path("a.jpk"), "a.b c"), nullptr);
}

TEST_F(Creating, TheIdentifierOfAnOpenLibraryIsRefusedAndLeavesNothing) {
    assets::IAssetLibrary* const library = Create(Path("a.jpk"), "ONE");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(Create(Path("b.jpk"), "ONE"), nullptr);
    EXPECT_EQ(CreateCopy(Path("b.jpk"), "ONE"), nullptr);
    EXPECT_THAT(Reports(), IsEmpty());
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("a.jpk", "tmp"));
    EXPECT_EQ(Manager().GetLibraryCount(), 1u);
    EXPECT_EQ(Manager().FindLibrary(core::UTF8String("ONE")), library);
    EXPECT_TRUE(Unload(library));
    EXPECT_NE(Create(Path("b.jpk"), "ONE"), nullptr);
}

TEST_F(Creating, NoSearchPathAndNoMessagesAreAttached) {
    ASSERT_EQ(::mkdir(Path("a.qmm").c_str(), 0777), 0);
    ASSERT_NE(Create(Path("a.jpk"), "A"), nullptr);
    EXPECT_EQ(Manager().GetPathResolver()->GetSearchPathCount(), 0u);
}

TEST_F(Creating, TheOptionsAreStoredWithTheLibrary) {
    const auto create = [this](const char* name, unsigned options) {
        return Manager().CreateLibrary(core::UTF8String(Path(name).c_str()), core::UTF8String(name),
                                       options);
    };
    assets::IAssetLibrary* library = create("a.jpk", 4);
    ASSERT_NE(library, nullptr);
    ASSERT_TRUE(Manager().SaveLibrary(library));
    ASSERT_TRUE(Unload(library));
    EXPECT_NE(Open(Path("a.jpk")), nullptr);
}

}  // namespace
}  // namespace halvern_tests
