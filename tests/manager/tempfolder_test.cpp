#include "assets/manager/tempfolder.h"

#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>

#include "assets/manager/markers.h"
#include "tests/support/managertest.h"
#include "tests/support/raised.h"

namespace halvern_tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TemporaryFolder : public ManagerTest {
protected:
    static std::string Root(assets::TempFolder& folder) {
        return std::string(folder.Fs().resource().c_str());
    }
    static std::string TextOfFailure() {
        return Raised<assets::halvern_temp_dir_error>([] { assets::TempFolder().Fs(); });
    }
};

TEST_F(TemporaryFolder, IsMadeOnFirstNeedAndGoesWithTheManager) {
    Manager();
    EXPECT_THAT(NamesIn(TempFolder()), IsEmpty());
    ASSERT_NE(Open(CopySample("starter.jpk")), nullptr);
    ASSERT_EQ(PrivateFolders(TempFolder()).size(), 1u);
    const std::string folder = PrivateFolders(TempFolder())[0];
    EXPECT_EQ(folder.rfind(TempFolder() + "/halvernrun/mgr40_", 0), 0u);
    WriteFile(folder + "/stray", "text");
    std::filesystem::create_directories(folder + "/deep/er");
    EndManager();
    EXPECT_THAT(NamesIn(TempFolder()), ElementsAre("halvernrun"));
    EXPECT_THAT(NamesIn(TempFolder() + "/halvernrun"), IsEmpty());
}

TEST_F(TemporaryFolder, IsOneForAllCallsAndHasTheFolderOfCopies) {
    assets::TempFolder folder;
    const std::string root = Root(folder);
    EXPECT_EQ(Root(folder), root);
    EXPECT_THAT(NamesIn(root), ElementsAre(".copy"));
    struct stat status {};
    ASSERT_EQ(::stat(root.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    ASSERT_EQ(::stat((TempFolder() + "/halvernrun").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 01777u);
}

TEST_F(TemporaryFolder, TwoOfThemAreApart) {
    assets::TempFolder first;
    assets::TempFolder second;
    EXPECT_NE(Root(first), Root(second));
    EXPECT_EQ(PrivateFolders(TempFolder()).size(), 2u);
}

TEST_F(TemporaryFolder, AFileOfTheSharedNameIsNoFailure) {
    WriteFile(TempFolder() + "/halvernrun", "a file");
    ASSERT_NE(OpenCopy(CopySample("starter.jpk")), nullptr);
    ASSERT_EQ(PrivateFolders(TempFolder()).size(), 1u);
    EXPECT_EQ(PrivateFolders(TempFolder())[0].rfind(TempFolder() + "/mgr40_", 0), 0u);
    EndManager();
    EXPECT_THAT(NamesIn(TempFolder()), ElementsAre("halvernrun"));
}

TEST_F(TemporaryFolder, TmpIsTakenWhereTmpdirIsNotSet) {
    ::unsetenv("TMPDIR");
    ::setenv("TMP", TempFolder().c_str(), 1);
    assets::TempFolder folder;
    EXPECT_EQ(Root(folder).rfind(TempFolder() + "/halvernrun/mgr40_", 0), 0u);
}

TEST_F(TemporaryFolder, BackslashesOfTheEnvironmentAreSlashes) {
    std::string backslashed = TempFolder();
    std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
    ::setenv("TMPDIR", backslashed.c_str(), 1);
    assets::TempFolder folder;
    EXPECT_EQ(Root(folder).rfind(TempFolder() + "/halvernrun/mgr40_", 0), 0u);
}

TEST_F(TemporaryFolder, APlaceThatIsNotThereRaisesAndLibrariesDoNotOpen) {
    ::setenv("TMPDIR", Path("nowhere").c_str(), 1);
    EXPECT_EQ(TextOfFailure(), "failed to create temp dir");
    const std::string path = CopySample("starter.jpk");
    EXPECT_EQ(Open(path), nullptr);
    EXPECT_EQ(OpenCopyForWriting(path), nullptr);
    EXPECT_FALSE(Exists(path + ".lck"));
    EXPECT_EQ(Create(Path("new.jpk"), "N"), nullptr);
    EXPECT_FALSE(Exists(Path("new.jpk")));
    EXPECT_THAT(Reports(), IsEmpty());
    // The next need tries again.
    ::setenv("TMPDIR", TempFolder().c_str(), 1);
    EXPECT_NE(Open(path), nullptr);
}

TEST_F(TemporaryFolder, APlaceThatCannotBeWrittenRaises) {
    std::filesystem::create_directories(Path("closed/halvernrun"));
    ::chmod(Path("closed/halvernrun").c_str(), 0555);
    ::chmod(Path("closed").c_str(), 0555);
    EXPECT_TRUE(InChild([this] {
        HALVERN_NEED(DropToNobody());
        ::setenv("TMPDIR", Path("closed").c_str(), 1);
        HALVERN_NEED(TextOfFailure() == "failed to create temp dir");
        ::setenv("TMPDIR", Path("closed/halvernrun").c_str(), 1);
        HALVERN_NEED(TextOfFailure() == "failed to create temp dir");
        return true;
    }));
    ::chmod(Path("closed").c_str(), 0755);
}

TEST_F(TemporaryFolder, WithoutItsFolderOfCopiesItIsNoneAndLeavesNothing) {
    std::filesystem::create_directory(Path("disk"));
    EXPECT_TRUE(InChild([this] {
        HALVERN_NEED(EnterOwnMounts());
        const std::string place = Path("disk");
        ::setenv("TMPDIR", place.c_str(), 1);
        // Room for the root, the shared folder and the private one.
        HALVERN_NEED(::mount("tmpfs", place.c_str(), "tmpfs", 0, "nr_inodes=3") == 0);
        HALVERN_NEED(TextOfFailure() == "failed to create temp dir");
        HALVERN_NEED(NamesIn(place + "/halvernrun").empty());
        HALVERN_NEED(::mount("tmpfs", place.c_str(), "tmpfs", MS_REMOUNT, "nr_inodes=4") == 0);
        assets::TempFolder folder;
        HALVERN_NEED(NamesIn(Root(folder)) == std::vector<std::string>{".copy"});
        return true;
    }));
}

TEST_F(TemporaryFolder, WithoutAnEnvironmentItLiesBelowTheRootOfTheDisk) {
    CopySample("starter.jpk");
    EXPECT_TRUE(InChild([this] {
        HALVERN_NEED(EnterRoot(Folder()));
        ::unsetenv("TMPDIR");
        ::unsetenv("TMP");
        HALVERN_NEED(OpenCopy("/starter.jpk") != nullptr);
        HALVERN_NEED(PrivateFolders("").size() == 1);
        HALVERN_NEED(PrivateFolders("")[0].rfind("/halvernrun/mgr40_", 0) == 0);
        EndManager();
        HALVERN_NEED(NamesIn("/halvernrun").empty());
        return true;
    }));
    EXPECT_TRUE(Exists(Path("halvernrun")));
}

TEST_F(TemporaryFolder, WithoutAnEnvironmentAFileOfTheSharedNameLeavesNoPlace) {
    CopySample("starter.jpk");
    WriteFile(Path("halvernrun"), "a file");
    EXPECT_TRUE(InChild([this] {
        HALVERN_NEED(EnterRoot(Folder()));
        ::unsetenv("TMPDIR");
        ::unsetenv("TMP");
        HALVERN_NEED(Open("/starter.jpk") == nullptr);
        HALVERN_NEED(TextOfFailure() == "failed to create temp dir");
        return true;
    }));
}

}  // namespace
}  // namespace halvern_tests
