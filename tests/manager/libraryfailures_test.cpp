#include "assets/manager/assetlibrarymanager.h"
#include "assets/manager/markers.h"
#include "tests/support/managertest.h"
#include "tests/support/raised.h"
#include "velmor/runtime.h"

namespace halvern_tests {
namespace {

using assets::LibraryMode;
using testing::ElementsAre;
using testing::IsEmpty;

// What the manager turns into null: the failures by which a library does not come to be.
class LibraryFailures : public ManagerTest {
protected:
    assets::AssetLibraryManager& Host() {
        Manager();
        return assets::AssetLibraryManager::Instance();
    }
    velmor::Namespace Libraries() { return Host().Context().runtime->root().findChild("slib"); }
    void OpenIt(const std::string& path, LibraryMode mode, bool for_writing) {
        const assets::AssetLibrary library(
            Host(), Libraries(),
            assets::AssetLibrary::Opening{nuo::string(path.c_str()), mode, for_writing, true});
    }
    void CreateIt(const std::string& path, LibraryMode mode) {
        const assets::AssetLibrary library(
            Host(), Libraries(),
            assets::AssetLibrary::Creating{nuo::string(path.c_str()), mode, "ID", 0});
    }
};

TEST_F(LibraryFailures, AFileThatCannotBeOpenedInPlaceCarriesNoWords) {
    for (const bool for_writing : {false, true})
        EXPECT_EQ(Raised<assets::FileOpenErr>(
                      [&] { OpenIt(Path("missing.jpk"), LibraryMode::kInPlace, for_writing); }),
                  "");
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("tmp"));
}

TEST_F(LibraryFailures, AFileThatCannotBeCopiedCarriesNoWordsAndGivesTheLockBack) {
    for (const bool for_writing : {false, true})
        EXPECT_EQ(Raised<assets::FileCreateErr>(
                      [&] { OpenIt(Path("missing.jpk"), LibraryMode::kCopy, for_writing); }),
                  "");
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("tmp"));
    EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0) + "/.copy"), IsEmpty());
}

TEST_F(LibraryFailures, ALockThatIsHeldCarriesNoWordsAndNothingIsMade) {
    const std::string path = CopySample("starter.jpk");
    assets::LockFile held;
    ASSERT_EQ(held.Take((path + ".lck").c_str()), assets::LockResult::kTaken);
    EXPECT_EQ(Raised<assets::FileCreateErr>([&] { OpenIt(path, LibraryMode::kCopy, true); }), "");
    EXPECT_EQ(Raised<assets::FileCreateErr>([&] { CreateIt(path, LibraryMode::kCopy); }), "");
    EXPECT_TRUE(Exists(path + ".lck"));
    EXPECT_THAT(NamesIn(TempFolder()), IsEmpty());
}

TEST_F(LibraryFailures, AFileThatCannotBeMadeCarriesNoWords) {
    for (const LibraryMode mode : {LibraryMode::kInPlace, LibraryMode::kCopy})
        EXPECT_EQ(Raised<assets::FileCreateErr>([&] { CreateIt(Path("missing/new.jpk"), mode); }),
                  "");
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("tmp"));
}

TEST_F(LibraryFailures, ADocumentThatDoesNotLoadGivesBackLockCopyAndScratch) {
    const std::string path = CopySample("bad-no-toc.jpk");
    for (const LibraryMode mode : {LibraryMode::kInPlace, LibraryMode::kCopy})
        EXPECT_EQ(Raised<assets::JpkFsErr>([&] { OpenIt(path, mode, true); }), "");
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("bad-no-toc.jpk", "tmp"));
    EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0)), ElementsAre(".copy"));
    EXPECT_THAT(NamesIn(PrivateFolders(TempFolder()).at(0) + "/.copy"), IsEmpty());
}

}  // namespace
}  // namespace halvern_tests
