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
using testing::StartsWith;

void RecursiveCreateDirMakesParents(fs::IVfs& files) {
    EXPECT_EQ(fs::recursiveCreateDir(files, "a/b/c"), fs::er_ok);
    EXPECT_EQ(files.state("a/b/c").state, fs::state_directory);
    EXPECT_EQ(fs::recursiveCreateDir(files, "/a//b/d/"), fs::er_ok);
    EXPECT_THAT(Names(files, "a/b"), ElementsAre("c", "d"));
    EXPECT_EQ(fs::recursiveCreateDir(files, ""), fs::er_ok);
}

void RecursiveCreateDirStopsAtAFile(fs::IVfs& files) {
    WriteFile(files, "a", "");
    EXPECT_EQ(fs::recursiveCreateDir(files, "a/b"), fs::er_invalid);
    EXPECT_EQ(fs::recursiveCreateDir(files, "a"), fs::er_invalid);
}

void RecursiveCreateMakesParents(fs::IVfs& files) {
    const auto archive = fs::recursiveCreate(files, "a/b/file", fs::mode_all, fs::create_new);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(files.state("a/b/file").state, fs::state_file);
    EXPECT_EQ(fs::recursiveCreate(files, "a/b/file/x", fs::mode_all, fs::create_new), nullptr);
}

void RecursiveRemoveTakesATree(fs::IVfs& files) {
    ASSERT_EQ(fs::recursiveCreateDir(files, "a/b/c"), fs::er_ok);
    WriteFile(files, "a/x", "1");
    WriteFile(files, "a/b/y", "2");
    WriteFile(files, "keep", "3");
    EXPECT_EQ(fs::recursiveRemove(files, "a"), fs::er_ok);
    EXPECT_THAT(Names(files, ""), ElementsAre("keep"));
    EXPECT_EQ(fs::recursiveRemove(files, "keep"), fs::er_ok);
    EXPECT_THAT(Names(files, ""), IsEmpty());
    EXPECT_EQ(fs::recursiveRemove(files, "absent"), fs::er_not_found);
}

void RecursiveRemoveOfTheTopEmptiesIt(fs::IVfs& files) {
    ASSERT_EQ(fs::recursiveCreateDir(files, "a/b"), fs::er_ok);
    WriteFile(files, "x", "1");
    EXPECT_EQ(fs::recursiveRemove(files, ""), fs::er_invalid);
    EXPECT_THAT(Names(files, ""), IsEmpty());
}

void TempFilesHaveNamesOfTheirOwn(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("tmp"), fs::er_ok);
    const fs::TempFile one = fs::createTempFile(files, "tmp", "pre");
    const fs::TempFile other = fs::createTempFile(files, "tmp", "pre");
    ASSERT_TRUE(one.archive != nullptr && other.archive != nullptr);
    EXPECT_THAT(Text(one.path), StartsWith("tmp/pre"));
    EXPECT_NE(Text(one.path), Text(other.path));
    WriteAll(*one.archive, "text");
    EXPECT_EQ(ReadFile(files, Text(one.path)), "text");
    EXPECT_EQ(Names(files, "tmp").size(), 2u);
}

void TempFilesGoToTheTopByDefault(fs::IVfs& files) {
    const fs::TempFile file = fs::createTempFile(files, "", "TMP");
    EXPECT_THAT(Text(file.path), StartsWith("TMP"));
    EXPECT_EQ(Names(files, "").size(), 1u);
}

void TempDirsAreEmptyDirectories(fs::IVfs& files) {
    const std::string one = Text(fs::createTempDir(files, "", "dir"));
    const std::string other = Text(fs::createTempDir(files, one.c_str(), "dir"));
    EXPECT_THAT(other, StartsWith(one + "/dir"));
    EXPECT_EQ(files.state(other.c_str()).state, fs::state_directory);
    EXPECT_THAT(Names(files, other), IsEmpty());
}

void TempNamesNeedADirectory(fs::IVfs& files) {
    WriteFile(files, "file", "");
    for (const char* folder : {"absent", "file"}) {
        const std::string text = std::string("failed to locate the temp directory:") + folder;
        EXPECT_EQ(RaisedText<nuo::archive::create_failed>(
                      [&] { fs::createTempFile(files, folder, "pre"); }),
                  text);
        EXPECT_EQ(RaisedText<nuo::archive::create_failed>(
                      [&] { fs::createTempDir(files, folder, "pre"); }),
                  text);
    }
}

void TempNamesThatCannotBeMadeRaise(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("tmp"), fs::er_ok);
    // A prefix with a folder that is not there refuses every name.
    EXPECT_EQ(RaisedText<nuo::archive::create_failed>(
                  [&] { fs::createTempFile(files, "tmp", "absent/pre"); }),
              "failed to create temp file in directory:tmp");
    EXPECT_EQ(RaisedText<nuo::archive::create_failed>(
                  [&] { fs::createTempDir(files, "tmp", "absent/pre"); }),
              "failed to create temp file in directory:tmp");
    EXPECT_THAT(Names(files, "tmp"), IsEmpty());
}

}  // namespace

std::vector<Case> FunctionCases() {
    return {
        {"RecursiveCreateDirMakesParents", RecursiveCreateDirMakesParents},
        {"RecursiveCreateDirStopsAtAFile", RecursiveCreateDirStopsAtAFile},
        {"RecursiveCreateMakesParents", RecursiveCreateMakesParents},
        {"RecursiveRemoveTakesATree", RecursiveRemoveTakesATree},
        {"RecursiveRemoveOfTheTopEmptiesIt", RecursiveRemoveOfTheTopEmptiesIt},
        {"TempFilesHaveNamesOfTheirOwn", TempFilesHaveNamesOfTheirOwn},
        {"TempFilesGoToTheTopByDefault", TempFilesGoToTheTopByDefault},
        {"TempDirsAreEmptyDirectories", TempDirsAreEmptyDirectories},
        {"TempNamesNeedADirectory", TempNamesNeedADirectory},
        {"TempNamesThatCannotBeMadeRaise", TempNamesThatCannotBeMadeRaise},
    };
}

}  // namespace vfs_contract
