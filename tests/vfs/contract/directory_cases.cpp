#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "velmor/vfs/vfs_functions.h"
#include "vfs/contract/file_system_contract.h"
#include "vfs/support.h"

namespace vfs_contract {

namespace {

using namespace vfs_tests;
using testing::ElementsAre;
using testing::IsEmpty;

void StartsEmpty(fs::IVfs& files) {
    EXPECT_THAT(Names(files, ""), IsEmpty());
    EXPECT_EQ(files.state("").state, fs::state_directory);
    EXPECT_EQ(files.state("").size, 0u);
}

void CreateDirMakesOneLevel(fs::IVfs& files) {
    EXPECT_EQ(files.createDir("a"), fs::er_ok);
    EXPECT_EQ(files.createDir("a/b"), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_directory);
    EXPECT_EQ(files.state("a/b").state, fs::state_directory);
    EXPECT_THAT(Names(files, ""), ElementsAre("a"));
    EXPECT_THAT(Names(files, "a"), ElementsAre("b"));
}

void CreateDirNeedsTheParent(fs::IVfs& files) {
    EXPECT_EQ(files.createDir("a/b"), fs::er_not_found);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void CreateDirBelowAFileFails(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.createDir("a/b"), fs::er_not_found);
    EXPECT_EQ(ReadFile(files, "a"), "text");
}

void CreateDirOnWhatExistsFails(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("folder"), fs::er_ok);
    WriteFile(files, "file", "");
    EXPECT_EQ(files.createDir("folder"), fs::er_exist);
    EXPECT_EQ(files.createDir("file"), fs::er_exist);
}

void EmptyPartsOfAPathAreDropped(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("/a//"), fs::er_ok);
    ASSERT_EQ(files.createDir("a//b/"), fs::er_ok);
    WriteFile(files, "a//b///c", "text");
    EXPECT_THAT(Names(files, ""), ElementsAre("a"));
    EXPECT_THAT(Names(files, "/a/b/"), ElementsAre("c"));
    EXPECT_EQ(ReadFile(files, "a/b/c"), "text");
    EXPECT_EQ(files.state("/a//b").state, fs::state_directory);
}

void ChildrenOfAFileAreNone(fs::IVfs& files) {
    WriteFile(files, "file", "text");
    EXPECT_THAT(Names(files, "file"), IsEmpty());
}

void ChildrenOfWhatIsNotThereAreNone(fs::IVfs& files) {
    EXPECT_THAT(Names(files, "absent"), IsEmpty());
}

void ChildrenAreTheDirectEntriesAlone(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    WriteFile(files, "a/x", "");
    WriteFile(files, "b", "");
    EXPECT_THAT(Names(files, ""), ElementsAre("a", "b"));
    EXPECT_THAT(Names(files, "a"), ElementsAre("x"));
}

void AListingCanBeWalkedTwice(fs::IVfs& files) {
    WriteFile(files, "a", "");
    WriteFile(files, "b", "");
    EXPECT_EQ(Names(files, ""), Names(files, ""));
    const auto range = files.children("");
    EXPECT_FALSE(range.empty());
    auto at = range.first;
    ++at;
    ++at;
    EXPECT_TRUE(at == range.last);
}

void RemoveTakesAFile(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.remove("a"), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
    EXPECT_EQ(files.remove("a"), fs::er_not_found);
}

void RemoveTakesAnEmptyDirectoryOnly(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    WriteFile(files, "a/x", "");
    EXPECT_EQ(files.remove("a"), fs::er_not_empty);
    EXPECT_EQ(files.remove("a/x"), fs::er_ok);
    EXPECT_EQ(files.remove("a"), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void RemoveOfTheRootIsInvalid(fs::IVfs& files) {
    EXPECT_EQ(files.remove(""), fs::er_invalid);
    EXPECT_EQ(files.remove("/"), fs::er_invalid);
}

void PathsOfMoreThan256ComponentsAreRefused(fs::IVfs& files) {
    std::string deepest = "d";
    for (int i = 1; i < 256; ++i)
        deepest += "/d";
    const std::string deeper = deepest + "/d";
    ASSERT_EQ(fs::recursiveCreateDir(files, deepest.substr(2).c_str()), fs::er_ok);
    EXPECT_EQ(files.createDir(deepest.c_str()), fs::er_ok);
    EXPECT_EQ(files.createDir(deeper.c_str()), fs::er_invalid);
    EXPECT_EQ(files.create(deeper.c_str(), fs::mode_all, fs::create_new), nullptr);
    EXPECT_EQ(files.create(deeper.c_str(), fs::mode_all, fs::open_or_create), nullptr);
    EXPECT_EQ(files.state(deeper.c_str()).state, fs::state_not_found);
    EXPECT_EQ(fs::recursiveRemove(files, "d"), fs::er_ok);
}

void AFileCanTakeTheNameOfARemovedDirectory(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    WriteFile(files, "a/x", "below");
    ASSERT_EQ(files.remove("a/x"), fs::er_ok);
    ASSERT_EQ(files.remove("a"), fs::er_ok);
    WriteFile(files, "a", "file");
    EXPECT_EQ(ReadFile(files, "a"), "file");
    ASSERT_EQ(files.remove("a"), fs::er_ok);
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    WriteFile(files, "a/x", "again");
    EXPECT_EQ(ReadFile(files, "a/x"), "again");
}

void StateTellsOwnerPathAndSize(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    WriteFile(files, "a/x", "12345");
    const fs::VfsNodeState state = files.state("a/x");
    EXPECT_EQ(state.state, fs::state_file);
    EXPECT_EQ(state.size, 5u);
    EXPECT_EQ(state.node.owner, &files);
    EXPECT_EQ(Text(state.node.path), "a/x");
    EXPECT_EQ(files.state("a").size, 0u);
    EXPECT_EQ(files.state("a/x/y").state, fs::state_not_found);
    EXPECT_EQ(files.state("absent").state, fs::state_not_found);
}

void StartsUnmounted(fs::IVfs& files) {
    EXPECT_EQ(files.root(), nullptr);
    EXPECT_FALSE(files.mounted());
    EXPECT_EQ(Text(files.mountPoint()), "");
}

void UnknownOptionsAreEmpty(fs::IVfs& files) {
    EXPECT_TRUE(files.getopt(77, nuo::any()).empty());
    EXPECT_TRUE(files.setopt(77, nuo::any(true), nuo::any(true)).empty());
}

}  // namespace

std::vector<Case> DirectoryCases() {
    return {
        {"StartsEmpty", StartsEmpty},
        {"StartsUnmounted", StartsUnmounted},
        {"UnknownOptionsAreEmpty", UnknownOptionsAreEmpty},
        {"CreateDirMakesOneLevel", CreateDirMakesOneLevel},
        {"CreateDirNeedsTheParent", CreateDirNeedsTheParent},
        {"CreateDirBelowAFileFails", CreateDirBelowAFileFails},
        {"CreateDirOnWhatExistsFails", CreateDirOnWhatExistsFails},
        {"EmptyPartsOfAPathAreDropped", EmptyPartsOfAPathAreDropped},
        {"ChildrenOfAFileAreNone", ChildrenOfAFileAreNone},
        {"ChildrenOfWhatIsNotThereAreNone", ChildrenOfWhatIsNotThereAreNone},
        {"ChildrenAreTheDirectEntriesAlone", ChildrenAreTheDirectEntriesAlone},
        {"AListingCanBeWalkedTwice", AListingCanBeWalkedTwice},
        {"RemoveTakesAFile", RemoveTakesAFile},
        {"RemoveTakesAnEmptyDirectoryOnly", RemoveTakesAnEmptyDirectoryOnly},
        {"RemoveOfTheRootIsInvalid", RemoveOfTheRootIsInvalid},
        {"PathsOfMoreThan256ComponentsAreRefused", PathsOfMoreThan256ComponentsAreRefused},
        {"AFileCanTakeTheNameOfARemovedDirectory", AFileCanTakeTheNameOfARemovedDirectory},
        {"StateTellsOwnerPathAndSize", StateTellsOwnerPathAndSize},
    };
}

}  // namespace vfs_contract
