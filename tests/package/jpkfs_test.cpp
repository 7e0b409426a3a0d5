#include "assets/package/jpkfs.h"

#include "package/package_files.h"
#include "velmor/vfs/rootfs.h"
#include "velmor/vfs/vfs_functions.h"

namespace {

using namespace package_tests;
using korvanet::platform::assets::IsUserPath;
using korvanet::platform::assets::kPackageOption;
using korvanet::platform::assets::kPartOption;
using korvanet::platform::assets::option_key;
using korvanet::platform::assets::option_value;
using testing::ElementsAre;
using testing::IsEmpty;
using vfs_tests::Names;
using vfs_tests::ReadFile;
using vfs_tests::WriteFile;

const char* const kReserved[] = {"core.xml", "cnx.xml", "[Content_Types].xml",
                                 "korvanet-design-package.xml"};

class JpkFsTest : public testing::Test {
protected:
    fs::InMemory inner{"inner"};
    JpkFs package{inner, "a.jpk"};
};

TEST_F(JpkFsTest, HidesItsManifestsFromListings) {
    WriteFile(package, "a.png", "a");
    package.sync();
    EXPECT_EQ(Names(inner, "").size(), 5U);
    EXPECT_THAT(Names(package, ""), ElementsAre("a.png"));
}

// Callers hold the numbers as plain integers.
TEST_F(JpkFsTest, ItsOptionsAreKnownByTheirNumbers) {
    EXPECT_EQ(kPackageOption, 4096u);
    EXPECT_EQ(kPartOption, 4097u);
}

TEST_F(JpkFsTest, ListsNodesAsItsOwn) {
    WriteFile(package, "a", "a");
    const auto entries = package.children("");
    EXPECT_EQ((*entries.first).owner, &package);
    EXPECT_TRUE(++fs::VfsNodeRange(entries).first == entries.last);
}

TEST_F(JpkFsTest, WalksAListingBackOverItsManifests) {
    WriteFile(package, "a", "");
    WriteFile(package, "zz", "");
    package.sync();
    auto at = package.children("").last;
    --at;
    EXPECT_STREQ((*at).path.data(), "zz");
    --at;
    EXPECT_STREQ((*at).path.data(), "a");
}

TEST_F(JpkFsTest, FindsNoManifestThoughTheFileIsThere) {
    package.sync();
    for (const char* name : kReserved) {
        EXPECT_EQ(inner.state(name).state, fs::state_file);
        const fs::VfsNodeState state = package.state(name);
        EXPECT_EQ(state.state, fs::state_not_found);
        EXPECT_EQ(state.node.owner, &package);
        EXPECT_STREQ(state.node.path.data(), name);
    }
}

TEST_F(JpkFsTest, TellsTheStateOfFilesAsItsOwn) {
    WriteFile(package, "a", "abc");
    const fs::VfsNodeState state = package.state("a");
    EXPECT_EQ(state.state, fs::state_file);
    EXPECT_EQ(state.size, 3U);
    EXPECT_EQ(state.node.owner, &package);
}

TEST_F(JpkFsTest, DoesNotRemoveItsManifests) {
    package.sync();
    for (const char* name : kReserved) {
        EXPECT_EQ(package.remove(name), fs::er_not_found);
        EXPECT_EQ(inner.state(name).state, fs::state_file);
    }
}

TEST_F(JpkFsTest, RefusesReservedNamesInEveryFolder) {
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    WriteFile(package, "a", "a");
    for (const char* name : kReserved) {
        const std::string deep = std::string("R/") + name;
        EXPECT_EQ(package.createDir(deep.c_str()), fs::er_invalid);
        EXPECT_EQ(package.create(deep.c_str(), fs::mode_all, fs::open_or_create), nullptr);
        EXPECT_EQ(package.copy("a", deep.c_str()), fs::er_invalid);
        EXPECT_EQ(package.truncate(deep.c_str(), 0), fs::er_invalid);
        EXPECT_FALSE(IsUserPath(deep.c_str()));
    }
    EXPECT_THAT(Names(inner, "R"), IsEmpty());
}

TEST_F(JpkFsTest, CopiesNoManifest) {
    package.sync();
    EXPECT_EQ(package.copy("core.xml", "b"), fs::er_open_failed);
    EXPECT_EQ(package.state("b").state, fs::state_not_found);
}

TEST_F(JpkFsTest, RefusesToRemoveAFolderOfTheUser) {
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    WriteFile(package, "R/a", "a");
    package.sync();
    EXPECT_EQ(package.remove("R"), fs::er_not_empty);
    EXPECT_EQ(inner.state("R/core.xml").state, fs::state_file);
    ASSERT_EQ(package.remove("R/a"), fs::er_ok);
    EXPECT_EQ(package.remove("R"), fs::er_ok);
    EXPECT_EQ(inner.state("R").state, fs::state_not_found);
}

TEST_F(JpkFsTest, DoesNotRemoveItsRoot) {
    package.sync();
    EXPECT_EQ(package.remove(""), fs::er_invalid);
    EXPECT_EQ(package.remove("/"), fs::er_invalid);
    EXPECT_EQ(inner.state("core.xml").state, fs::state_file);
}

TEST_F(JpkFsTest, ForgetsWhatItSaidOfARemovedFolder) {
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    SetOption(package, kPackageOption, "R", "mark", "string", "1");
    SetOption(package, kPartOption, "R", "mark", "string", "1");
    ASSERT_EQ(package.remove("R"), fs::er_ok);
    EXPECT_EQ(Option(package, kPackageOption, "R", "mark"), "none");
    EXPECT_EQ(Option(package, kPartOption, "R", "mark"), "none");
}

TEST_F(JpkFsTest, KeepsWhatItSaysOfAFileThatCouldNotBeRemoved) {
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    WriteFile(package, "R/a", "a");
    EXPECT_EQ(package.remove("R"), fs::er_not_empty);
    EXPECT_EQ(Option(package, kPartOption, "R/a", "name"), "string:a");
    EXPECT_EQ(package.remove("R/none"), fs::er_not_found);
}

TEST_F(JpkFsTest, DescribesAFileWhenItIsCreated) {
    WriteFile(package, "a.jpg", "a");
    EXPECT_EQ(Option(package, kPartOption, "a.jpg", "name"), "string:a.jpg");
    EXPECT_EQ(Option(package, kPartOption, "a.jpg", "type"), "string:image/png");
    EXPECT_EQ(Option(package, kPartOption, "a.jpg", "interop content"), "bool:0");
    EXPECT_EQ(Masked(Option(package, kPartOption, "a.jpg", "created")), "time:NOW");
    EXPECT_EQ(Option(package, kPackageOption, "a.jpg", "name"), "none");
}

TEST_F(JpkFsTest, DescribesAFolderWhenItIsCreated) {
    ASSERT_EQ(package.createDir("R.x"), fs::er_ok);
    EXPECT_EQ(Option(package, kPartOption, "R.x", "type"), "string:application/octet-stream");
    EXPECT_EQ(Option(package, kPackageOption, "R.x", "name"), "string:R.x");
    EXPECT_EQ(Option(package, kPackageOption, "R.x", "updates"), "uint32:1");
    EXPECT_EQ(Masked(Option(package, kPackageOption, "R.x", "identifier")), "uuid:UUID");
    EXPECT_EQ(Masked(Option(package, kPackageOption, "R.x", "updated")), "time:NOW");
}

TEST_F(JpkFsTest, DescribesEachLevelOfFoldersMadeAtOnce) {
    EXPECT_EQ(fs::recursiveCreateDir(package, "a/b"), fs::er_ok);
    EXPECT_EQ(Option(package, kPackageOption, "a", "name"), "string:a");
    EXPECT_EQ(Option(package, kPackageOption, "a/b", "name"), "string:b");
    EXPECT_EQ(Option(package, kPartOption, "a/b", "name"), "string:b");
}

TEST_F(JpkFsTest, DescribesNothingThatCouldNotBeCreated) {
    EXPECT_EQ(package.create("none", fs::mode_read, fs::open_existing), nullptr);
    EXPECT_EQ(package.createDir("no/folder"), fs::er_not_found);
    EXPECT_EQ(Option(package, kPartOption, "none", "name"), "none");
    EXPECT_EQ(Option(package, kPartOption, "no/folder", "name"), "none");
}

TEST_F(JpkFsTest, DescribesTheTargetOfACopyThatWasNotThere) {
    WriteFile(inner, "b.xml", "old");
    WriteFile(package, "a.png", "new");
    EXPECT_EQ(package.copy("a.png", "c.png"), fs::er_ok);
    EXPECT_EQ(package.copy("a.png", "b.xml"), fs::er_ok);
    EXPECT_EQ(package.copy("none", "d.png"), fs::er_open_failed);
    EXPECT_EQ(ReadFile(inner, "b.xml"), "new");
    EXPECT_EQ(Option(package, kPartOption, "c.png", "type"), "string:image/png");
    EXPECT_EQ(Option(package, kPartOption, "b.xml", "type"), "none");
    EXPECT_EQ(Option(package, kPartOption, "d.png", "type"), "none");
}

TEST_F(JpkFsTest, CopiesFromAnotherFileSystemOfItsRoot) {
    fs::InMemory other("other");
    WriteFile(other, "from.png", "bytes");
    ASSERT_EQ(other.createDir("package"), fs::er_ok);
    fs::RootFs root;
    ASSERT_EQ(root.mount("/", other), fs::er_ok);
    EXPECT_EQ(package.copy("/from.png", "to.png"), fs::er_not_found);
    ASSERT_EQ(root.mount("/package", package), fs::er_ok);
    EXPECT_EQ(package.copy("/from.png", "to.png"), fs::er_ok);
    EXPECT_EQ(package.copy("/none", "to2.png"), fs::er_open_failed);
    EXPECT_EQ(ReadFile(inner, "to.png"), "bytes");
    EXPECT_EQ(Option(package, kPartOption, "to.png", "type"), "string:image/png");
    EXPECT_EQ(root.unmount("/package"), fs::er_ok);
    EXPECT_EQ(root.unmount("/"), fs::er_ok);
}

TEST_F(JpkFsTest, IsBusyWhereSomethingIsMountedOnIt) {
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    fs::InMemory other("other");
    fs::RootFs root;
    ASSERT_EQ(root.mount("/", package), fs::er_ok);
    EXPECT_TRUE(package.mounted());
    EXPECT_EQ(package.root(), &root);
    EXPECT_STREQ(package.mountPoint().data(), "/");
    ASSERT_EQ(root.mount("/R", other), fs::er_ok);
    EXPECT_EQ(package.remove(""), fs::er_busy_mounted);
    EXPECT_EQ(root.unmount("/R"), fs::er_ok);
    EXPECT_EQ(package.remove("R"), fs::er_ok);
    EXPECT_EQ(root.unmount("/"), fs::er_ok);
    EXPECT_FALSE(package.mounted());
    EXPECT_TRUE(package.mountPoint().empty());
}

TEST_F(JpkFsTest, NamesItsResource) {
    EXPECT_STREQ(package.resource().data(), "a.jpk");
}

TEST_F(JpkFsTest, SetsAndGetsPackageOptionsOfTheRootAndOfFolders) {
    EXPECT_EQ(Option(package, kPackageOption, "", "read only"), "bool:0");
    SetOption(package, kPackageOption, "", "read only", "bool", "1");
    EXPECT_EQ(Option(package, kPackageOption, "/", "read only"), "bool:1");
    SetOption(package, kPackageOption, "id", "embed option", "uint32", "12");
    EXPECT_EQ(Option(package, kPackageOption, "id/", "embed option"), "uint32:12");
}

TEST_F(JpkFsTest, ReplacesAnOptionOfAnotherType) {
    SetOption(package, kPackageOption, "id", "x", "bool", "1");
    SetOption(package, kPackageOption, "id", "x", "string", "s");
    EXPECT_EQ(Option(package, kPackageOption, "id", "x"), "string:s");
}

TEST_F(JpkFsTest, StoresAnOptionOfTheEmptyTypeAsAName) {
    SetOption(package, kPartOption, "qmx/id/objects.xml", "", "", "QMX objects");
    EXPECT_EQ(Option(package, kPartOption, "qmx/id/objects.xml", ""), "name:QMX objects");
}

TEST_F(JpkFsTest, AddsToADescriptionThatAnOptionBegan) {
    SetOption(package, kPackageOption, "id", "identifier", "uuid", "MINE");
    SetOption(package, kPartOption, "id", "interop content", "bool", "1");
    ASSERT_EQ(package.createDir("id"), fs::er_ok);
    EXPECT_EQ(Option(package, kPackageOption, "id", "identifier"), "uuid:MINE");
    EXPECT_EQ(Option(package, kPackageOption, "id", "updates"), "uint32:1");
    EXPECT_EQ(Option(package, kPartOption, "id", "interop content"), "bool:1");
    EXPECT_EQ(Option(package, kPartOption, "id", "name"), "string:id");
}

TEST_F(JpkFsTest, AnswersNothingForForeignOptionsAndData) {
    EXPECT_TRUE(package.getopt(kPackageOption, nuo::any()).empty());
    EXPECT_TRUE(package.getopt(kPackageOption, nuo::any(1)).empty());
    EXPECT_TRUE(package.getopt(4098, nuo::any(option_key{"", "read only"})).empty());
    EXPECT_TRUE(package.getopt(fs::option_read_only, nuo::any()).empty());
    EXPECT_EQ(Option(package, kPackageOption, "", "unknown"), "none");
    EXPECT_EQ(Option(package, kPackageOption, "unknown", "read only"), "none");
    EXPECT_EQ(Option(package, kPartOption, "unknown", "name"), "none");
}

TEST_F(JpkFsTest, SetsNothingForForeignOptionsAndData) {
    const nuo::any key(option_key{"", "x"});
    const nuo::any value(option_value{"bool", "1"});
    EXPECT_TRUE(package.setopt(4098, key, value).empty());
    EXPECT_TRUE(package.setopt(kPackageOption, nuo::any(1), value).empty());
    EXPECT_TRUE(package.setopt(kPackageOption, key, nuo::any(true)).empty());
    EXPECT_EQ(Option(package, kPackageOption, "", "x"), "none");
    EXPECT_TRUE(package.setopt(kPackageOption, key, value).empty());
    EXPECT_EQ(Option(package, kPackageOption, "", "x"), "bool:1");
}

TEST_F(JpkFsTest, GoesOnOverAnotherFileSystemWithWhatItKnows) {
    SetOption(package, kPackageOption, "", "mark", "string", "kept");
    fs::InMemory other("other");
    WriteFile(other, "b", "b");
    package.setInner(other);
    EXPECT_THAT(Names(package, ""), ElementsAre("b"));
    EXPECT_EQ(Option(package, kPackageOption, "", "mark"), "string:kept");
    package.sync();
    EXPECT_EQ(other.state("core.xml").state, fs::state_file);
    EXPECT_EQ(inner.state("core.xml").state, fs::state_not_found);
}

TEST_F(JpkFsTest, WritesNothingWhenItIsDestroyed) {
    {
        JpkFs another(inner, "b.jpk");
        WriteFile(another, "a", "a");
    }
    EXPECT_THAT(Names(inner, ""), ElementsAre("a"));
}

}  // namespace
