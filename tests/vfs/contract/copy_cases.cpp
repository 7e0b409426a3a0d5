#include <gtest/gtest.h>

#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/rootfs.h"
#include "velmor/vfs/vfs_functions.h"
#include "vfs/contract/file_system_contract.h"
#include "vfs/support.h"

namespace vfs_contract {

namespace {

using namespace vfs_tests;

void CopyMakesTheTarget(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.copy("a", "b"), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "b"), "text");
    EXPECT_EQ(ReadFile(files, "a"), "text");
}

void CopyOntoALongerFileCutsIt(fs::IVfs& files) {
    WriteFile(files, "a", "short");
    WriteFile(files, "b", "much longer than that");
    EXPECT_EQ(files.copy("a", "b"), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "b"), "short");
    EXPECT_EQ(files.state("b").size, 5u);
}

void CopyOfAnEmptyFileEmptiesTheTarget(fs::IVfs& files) {
    WriteFile(files, "a", "");
    WriteFile(files, "b", "text");
    EXPECT_EQ(files.copy("a", "b"), fs::er_ok);
    EXPECT_EQ(files.state("b").size, 0u);
}

void CopyOntoItselfKeepsTheFile(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.copy("a", "a"), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "a"), "text");
}

void CopyNeedsBothEnds(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    ASSERT_EQ(files.createDir("folder"), fs::er_ok);
    EXPECT_EQ(files.copy("absent", "b"), fs::er_open_failed);
    EXPECT_EQ(files.copy("folder", "b"), fs::er_open_failed);
    EXPECT_EQ(files.copy("a", "absent/b"), fs::er_open_failed);
    EXPECT_EQ(files.copy("a", "folder"), fs::er_open_failed);
    EXPECT_EQ(files.state("b").state, fs::state_not_found);
}

void CopyFromTheRootNeedsAMount(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.copy("/a", "b"), fs::er_not_found);
    EXPECT_EQ(files.state("b").state, fs::state_not_found);
}

void CopyFromTheRootCrossesFileSystems(fs::IVfs& files) {
    fs::InMemory top("top");
    ASSERT_EQ(top.createDir("mnt"), fs::er_ok);
    WriteFile(top, "source", "from the other one");
    fs::RootFs root;
    ASSERT_EQ(root.mount("/", top), fs::er_ok);
    ASSERT_EQ(root.mount("/mnt", files), fs::er_ok);
    EXPECT_EQ(files.copy("/source", "copied"), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "copied"), "from the other one");
    EXPECT_EQ(files.copy("/mnt/copied", "again"), fs::er_ok);
    EXPECT_EQ(top.copy("/mnt/copied", "back"), fs::er_ok);
    EXPECT_EQ(ReadFile(top, "back"), "from the other one");
    EXPECT_EQ(files.copy("/absent", "b"), fs::er_open_failed);
    EXPECT_EQ(files.copy("/mnt", "b"), fs::er_open_failed);
    ASSERT_EQ(top.createDir("deep"), fs::er_ok);
    ASSERT_EQ(top.createDir("deep/er"), fs::er_ok);
    fs::InMemory below("below");
    WriteFile(below, "er", "not this");
    ASSERT_EQ(root.mount("/deep/er", below), fs::er_ok);
    EXPECT_EQ(files.copy("/deep", "b"), fs::er_not_found);
    EXPECT_EQ(files.state("b").state, fs::state_not_found);
    EXPECT_EQ(root.unmount("/deep/er"), fs::er_ok);
    EXPECT_EQ(root.unmount("/mnt"), fs::er_ok);
    EXPECT_EQ(root.unmount("/"), fs::er_ok);
}

void RemoveOfAMountPointIsRefused(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    ASSERT_EQ(files.createDir("a/b"), fs::er_ok);
    ASSERT_EQ(files.createDir("other"), fs::er_ok);
    fs::InMemory below("below");
    fs::RootFs root;
    ASSERT_EQ(root.mount("/", files), fs::er_ok);
    ASSERT_EQ(root.mount("/a/b", below), fs::er_ok);
    EXPECT_EQ(files.remove("a/b"), fs::er_busy_mounted);
    EXPECT_EQ(files.remove("a"), fs::er_busy_mounted);
    EXPECT_EQ(fs::recursiveRemove(files, "a"), fs::er_busy_mounted);
    EXPECT_EQ(files.remove("other"), fs::er_ok);
    EXPECT_EQ(root.unmount("/a/b"), fs::er_ok);
    EXPECT_EQ(files.remove("a/b"), fs::er_ok);
    EXPECT_EQ(root.unmount("/"), fs::er_ok);
}

void MountedFileSystemsKnowTheirPlace(fs::IVfs& files) {
    fs::RootFs root;
    ASSERT_EQ(root.mount("/", files), fs::er_ok);
    EXPECT_EQ(files.root(), &root);
    EXPECT_TRUE(files.mounted());
    EXPECT_EQ(Text(files.mountPoint()), "/");
    EXPECT_EQ(files.remove(""), fs::er_invalid);
    EXPECT_EQ(root.unmount("/"), fs::er_ok);
    EXPECT_EQ(files.root(), nullptr);
    EXPECT_EQ(Text(files.mountPoint()), "");
}

}  // namespace

std::vector<Case> CopyCases() {
    return {
        {"CopyMakesTheTarget", CopyMakesTheTarget},
        {"CopyOntoALongerFileCutsIt", CopyOntoALongerFileCutsIt},
        {"CopyOfAnEmptyFileEmptiesTheTarget", CopyOfAnEmptyFileEmptiesTheTarget},
        {"CopyOntoItselfKeepsTheFile", CopyOntoItselfKeepsTheFile},
        {"CopyNeedsBothEnds", CopyNeedsBothEnds},
        {"CopyFromTheRootNeedsAMount", CopyFromTheRootNeedsAMount},
        {"CopyFromTheRootCrossesFileSystems", CopyFromTheRootCrossesFileSystems},
        {"RemoveOfAMountPointIsRefused", RemoveOfAMountPointIsRefused},
        {"MountedFileSystemsKnowTheirPlace", MountedFileSystemsKnowTheirPlace},
    };
}

}  // namespace vfs_contract
