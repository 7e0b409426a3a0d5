#include "velmor/vfs/rootfs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "velmor/vfs/in_memory_fs.h"
#include "vfs/support.h"

namespace {

using namespace vfs_tests;

class RootFsTest : public testing::Test {
protected:
    RootFsTest() {
        top_.createDir("a");
        top_.createDir("a/b");
        top_.createDir("c");
        WriteFile(top_, "file", "12345");
    }

    fs::InMemory top_{"top"};
    fs::InMemory other_{"other"};
    fs::InMemory third_{"third"};
    fs::RootFs root_{"the root"};
};

// Counts the calls of sync and the order that they come in.
class SyncedFs : public fs::InMemory {
public:
    SyncedFs(std::string name, std::vector<std::string>& log)
        : InMemory(name.c_str()), name_(std::move(name)), log_(log) {}
    void sync() override { log_.push_back(name_); }

private:
    std::string name_;
    std::vector<std::string>& log_;
};

TEST_F(RootFsTest, KeepsItsResource) {
    EXPECT_EQ(Text(root_.resource()), "the root");
}

TEST_F(RootFsTest, FirstMountIsAtTheTop) {
    EXPECT_EQ(root_.mount("/a", other_), fs::er_not_mount_point);
    EXPECT_EQ(other_.root(), nullptr);
    EXPECT_EQ(root_.mount("/", top_), fs::er_ok);
    EXPECT_EQ(top_.root(), &root_);
}

TEST_F(RootFsTest, SecondMountAtTheTopIsRefused) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    EXPECT_EQ(root_.mount("/", other_), fs::er_not_mount_point);
    EXPECT_EQ(other_.root(), nullptr);
    EXPECT_EQ(root_.getFs("/"), &top_);
}

TEST_F(RootFsTest, MountOnAFileIsRefused) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    EXPECT_EQ(root_.mount("/file", other_), fs::er_not_mount_point);
    EXPECT_EQ(root_.mount("/absent", other_), fs::er_not_mount_point);
}

TEST_F(RootFsTest, MountOnATakenPlaceIsRefused) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a", other_), fs::er_ok);
    EXPECT_EQ(root_.mount("/a", third_), fs::er_not_mount_point);
    EXPECT_EQ(third_.root(), nullptr);
}

TEST_F(RootFsTest, AFileSystemIsMountedOnce) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a", other_), fs::er_ok);
    EXPECT_EQ(root_.mount("/c", other_), fs::er_not_mount_point);
    EXPECT_EQ(Text(root_.mountPoint(other_)), "/a");
}

TEST_F(RootFsTest, PathsAreNormalized) {
    ASSERT_EQ(root_.mount("//", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("a//b/", other_), fs::er_ok);
    EXPECT_EQ(Text(root_.mountPoint(other_)), "/a/b");
    EXPECT_EQ(root_.getFs("/a/b"), &other_);
    EXPECT_EQ(root_.getFs("//a/b//"), &other_);
    EXPECT_EQ(root_.getFs("/a"), nullptr);
    EXPECT_EQ(root_.unmount("/a//b"), fs::er_ok);
    EXPECT_EQ(root_.getFs("/a/b"), nullptr);
}

TEST_F(RootFsTest, UnmountRefusesWhileAMountLiesUnderThePath) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/b", other_), fs::er_ok);
    EXPECT_EQ(root_.unmount("/a"), fs::er_busy_mounted);
    EXPECT_EQ(root_.unmount("/"), fs::er_busy_mounted);
    EXPECT_EQ(root_.unmount("/a/b"), fs::er_ok);
    EXPECT_EQ(other_.root(), nullptr);
    EXPECT_EQ(root_.unmount("/"), fs::er_ok);
    EXPECT_EQ(top_.root(), nullptr);
}

TEST_F(RootFsTest, UnmountOfAPathWithoutAMountIsNoError) {
    EXPECT_EQ(root_.unmount("/nothing"), fs::er_ok);
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    EXPECT_EQ(root_.unmount("/nothing"), fs::er_ok);
    EXPECT_EQ(top_.root(), &root_);
}

TEST_F(RootFsTest, ContainMountPointLooksBehindThePathByBytes) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/b", other_), fs::er_ok);
    EXPECT_TRUE(root_.containMountPoint("/"));
    EXPECT_TRUE(root_.containMountPoint("/a"));
    EXPECT_FALSE(root_.containMountPoint("/a/b"));
    EXPECT_FALSE(root_.containMountPoint("/a/b/c"));
    EXPECT_FALSE(root_.containMountPoint("/b"));
    ASSERT_EQ(top_.createDir("cd"), fs::er_ok);
    ASSERT_EQ(root_.mount("/cd", third_), fs::er_ok);
    EXPECT_TRUE(root_.containMountPoint("/c"));
}

TEST_F(RootFsTest, LocateInAnEmptyTableFindsNothing) {
    EXPECT_EQ(root_.locate("/").state, fs::state_not_found);
    EXPECT_EQ(root_.locate("/a").node.owner, nullptr);
}

TEST_F(RootFsTest, LocateGivesTheRestOfThePathToItsFileSystem) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/b", other_), fs::er_ok);
    WriteFile(other_, "x", "123");
    const fs::VfsNodeState inOther = root_.locate("/a//b/x/");
    EXPECT_EQ(inOther.state, fs::state_file);
    EXPECT_EQ(inOther.size, 3u);
    EXPECT_EQ(inOther.node.owner, &other_);
    EXPECT_EQ(Text(inOther.node.path), "x");
    const fs::VfsNodeState inTop = root_.locate("/file");
    EXPECT_EQ(inTop.state, fs::state_file);
    EXPECT_EQ(inTop.size, 5u);
    EXPECT_EQ(inTop.node.owner, &top_);
    EXPECT_EQ(Text(inTop.node.path), "file");
}

TEST_F(RootFsTest, LocateOfAMountPointIsTheTopOfWhatIsMounted) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/b", other_), fs::er_ok);
    const fs::VfsNodeState found = root_.locate("/a/b");
    EXPECT_EQ(found.state, fs::state_directory);
    EXPECT_EQ(found.node.owner, &other_);
    EXPECT_EQ(Text(found.node.path), "");
}

TEST_F(RootFsTest, LocateAboveAMountTellsAMountPoint) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/b", other_), fs::er_ok);
    const fs::VfsNodeState found = root_.locate("/a");
    EXPECT_EQ(found.state, fs::state_mount_point);
    EXPECT_EQ(found.size, 0u);
    EXPECT_EQ(found.node.owner, &other_);
    EXPECT_EQ(Text(found.node.path), "b");
}

TEST_F(RootFsTest, LocateStopsAtComponentsWhenItLooksBackward) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/c", other_), fs::er_ok);
    ASSERT_EQ(top_.createDir("cat"), fs::er_ok);
    const fs::VfsNodeState found = root_.locate("/cat");
    EXPECT_EQ(found.node.owner, &top_);
    EXPECT_EQ(found.state, fs::state_directory);
}

TEST_F(RootFsTest, LocateLooksPastNeighboursThatDoNotHoldThePath) {
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a", other_), fs::er_ok);
    ASSERT_EQ(other_.createDir("m"), fs::er_ok);
    ASSERT_EQ(root_.mount("/a/m", third_), fs::er_ok);
    WriteFile(other_, "z", "1");
    const fs::VfsNodeState found = root_.locate("/a/z");
    EXPECT_EQ(found.node.owner, &other_);
    EXPECT_EQ(found.state, fs::state_file);
}

TEST_F(RootFsTest, MountsAreListedInTheOrderOfTheirPaths) {
    const char* umlaut = "\xC3\xA4";
    top_.createDir(umlaut);
    ASSERT_EQ(root_.mount("/", top_), fs::er_ok);
    ASSERT_EQ(root_.mount("/a", other_), fs::er_ok);
    ASSERT_EQ(root_.mount(umlaut, third_), fs::er_ok);
    std::vector<std::string> paths;
    for (const fs::MountInfo& mount : root_.mounts())
        paths.push_back(Text(mount.path));
    // Bytes above 127 sort first.
    EXPECT_THAT(paths, testing::ElementsAre("/", std::string("/") + umlaut, "/a"));
    EXPECT_EQ(root_.mounts().begin()->fs, &top_);
}

TEST_F(RootFsTest, SyncReachesEveryMountInPathOrder) {
    std::vector<std::string> log;
    SyncedFs top("top", log), b("b", log), a("a", log);
    top.createDir("a");
    top.createDir("b");
    ASSERT_EQ(root_.mount("/", top), fs::er_ok);
    ASSERT_EQ(root_.mount("/b", b), fs::er_ok);
    ASSERT_EQ(root_.mount("/a", a), fs::er_ok);
    root_.sync();
    EXPECT_THAT(log, testing::ElementsAre("top", "a", "b"));
    EXPECT_EQ(root_.unmount("/a"), fs::er_ok);
    EXPECT_EQ(root_.unmount("/b"), fs::er_ok);
    EXPECT_EQ(root_.unmount("/"), fs::er_ok);
}

TEST_F(RootFsTest, MountPointOfAStrangerIsEmpty) {
    EXPECT_EQ(Text(root_.mountPoint(other_)), "");
}

}  // namespace
