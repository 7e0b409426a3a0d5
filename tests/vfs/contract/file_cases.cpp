#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vfs/contract/file_system_contract.h"
#include "vfs/support.h"

namespace vfs_contract {

namespace {

using namespace vfs_tests;

void OpenExistingNeedsAFile(fs::IVfs& files) {
    EXPECT_EQ(files.create("a", fs::mode_all, fs::open_existing), nullptr);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void CreateNewRefusesWhatExists(fs::IVfs& files) {
    EXPECT_NE(files.create("a", fs::mode_all, fs::create_new), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_all, fs::create_new), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_read, fs::create_new), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_write, fs::create_new), nullptr);
}

void OpenOrCreateKeepsTheContent(fs::IVfs& files) {
    WriteFile(files, "a", "0123456789");
    {
        const auto archive = files.create("a", fs::mode_all, fs::open_or_create);
        ASSERT_NE(archive, nullptr);
        EXPECT_EQ(archive->query_random()->offset(), 0u);
        EXPECT_EQ(archive->query_random()->size(), 10u);
        WriteAll(*archive, "ab");
    }
    EXPECT_EQ(ReadFile(files, "a"), "ab23456789");
}

void EmptyPartsOfAPathAreNothing(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("/d//"), fs::er_ok);
    WriteFile(files, "d//a/", "text");
    EXPECT_EQ(ReadFile(files, "d/a"), "text");
    EXPECT_EQ(ReadFile(files, "/d/a//"), "text");
    EXPECT_EQ(files.state("d/a/").state, fs::state_file);
    EXPECT_EQ(files.truncate("d/a/", 2), fs::er_ok);
    EXPECT_EQ(files.state("d/a").size, 2u);
    EXPECT_EQ(files.remove("d/a/"), fs::er_ok);
    EXPECT_EQ(files.state("d/a").state, fs::state_not_found);
    EXPECT_EQ(files.remove("//d/"), fs::er_ok);
}

void CreateNeedsTheParent(fs::IVfs& files) {
    EXPECT_EQ(files.create("a/b", fs::mode_all, fs::open_or_create), nullptr);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void CreateBelowAFileFails(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    EXPECT_EQ(files.create("a/b", fs::mode_all, fs::open_or_create), nullptr);
}

void CreateOnADirectoryFails(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    for (const unsigned flag : {fs::open_existing, fs::create_new, fs::open_or_create}) {
        EXPECT_EQ(files.create("a", fs::mode_write, flag), nullptr);
        EXPECT_EQ(files.create("a", fs::mode_read, flag), nullptr);
        EXPECT_EQ(files.create("", fs::mode_all, flag), nullptr);
    }
}

void CreateNeedsReadingOrWriting(fs::IVfs& files) {
    WriteFile(files, "a", "");
    EXPECT_EQ(files.create("a", 0, fs::open_existing), nullptr);
    EXPECT_EQ(files.create("a", fs::mode_random, fs::open_existing), nullptr);
    EXPECT_EQ(files.create("b", fs::mode_random, fs::open_or_create), nullptr);
    EXPECT_EQ(files.state("b").state, fs::state_not_found);
}

void UnknownFlagsAreRefused(fs::IVfs& files) {
    EXPECT_EQ(files.create("a", fs::mode_all, 3), nullptr);
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void ModeDecidesTheCapabilities(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    const auto reading = files.create("a", fs::mode_read, fs::open_existing);
    const auto writing = files.create("a", fs::mode_write, fs::open_existing);
    const auto both = files.create("a", fs::mode_all, fs::open_existing);
    for (const auto* archive : {&reading, &writing, &both}) {
        ASSERT_NE(*archive, nullptr);
        EXPECT_NE((*archive)->query_random(), nullptr);
        EXPECT_NE((*archive)->query_deletor(), nullptr);
    }
    EXPECT_NE(reading->query_reader(), nullptr);
    EXPECT_EQ(reading->query_writer(), nullptr);
    EXPECT_EQ(writing->query_reader(), nullptr);
    EXPECT_NE(writing->query_writer(), nullptr);
    EXPECT_NE(both->query_reader(), nullptr);
    EXPECT_NE(both->query_writer(), nullptr);
}

void ArchivesHavePositionsOfTheirOwn(fs::IVfs& files) {
    WriteFile(files, "a", "0123456789");
    const auto one = files.create("a", fs::mode_read, fs::open_existing);
    const auto other = files.create("a", fs::mode_all, fs::open_existing);
    ASSERT_TRUE(one != nullptr && other != nullptr);
    char bytes[4];
    one->query_random()->seek(6);
    EXPECT_EQ(other->query_random()->offset(), 0u);
    other->query_reader()->read({bytes, 2});
    EXPECT_EQ(std::string(bytes, 2), "01");
    one->query_reader()->read({bytes, 4});
    EXPECT_EQ(std::string(bytes, 4), "6789");
    EXPECT_FALSE(one->query_reader()->readable());
    EXPECT_TRUE(other->query_reader()->readable());
}

void WhatOneArchiveWritesAnotherReads(fs::IVfs& files) {
    const auto writing = files.create("a", fs::mode_write, fs::create_new);
    ASSERT_NE(writing, nullptr);
    WriteAll(*writing, "written");
    EXPECT_EQ(ReadFile(files, "a"), "written");
    EXPECT_EQ(files.state("a").size, 7u);
}

void ArchivesTruncate(fs::IVfs& files) {
    WriteFile(files, "a", "0123456789");
    {
        const auto archive = files.create("a", fs::mode_all, fs::open_existing);
        ASSERT_NE(archive, nullptr);
        archive->query_random()->seek(8);
        EXPECT_EQ(archive->query_writer()->truncate(3), 3u);
        EXPECT_EQ(archive->query_random()->offset(), 3u);
        EXPECT_EQ(archive->query_random()->size(), 3u);
    }
    EXPECT_EQ(ReadFile(files, "a"), "012");
    EXPECT_EQ(files.state("a").size, 3u);
}

void WritingBehindTheEndExtends(fs::IVfs& files) {
    {
        const auto archive = files.create("a", fs::mode_write, fs::create_new);
        ASSERT_NE(archive, nullptr);
        archive->query_random()->seek(100000);
        WriteAll(*archive, "end");
    }
    const std::string content = ReadFile(files, "a");
    ASSERT_EQ(content.size(), 100003u);
    EXPECT_EQ(content.substr(100000), "end");
}

void TruncateByPathCutsAndExtends(fs::IVfs& files) {
    WriteFile(files, "a", "0123456789");
    EXPECT_EQ(files.truncate("a", 4), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "a"), "0123");
    EXPECT_EQ(files.truncate("a", 6), fs::er_ok);
    EXPECT_EQ(ReadFile(files, "a"), std::string("0123\0\0", 6));
    EXPECT_EQ(files.state("a").size, 6u);
}

void TruncateOfWhatIsNotThereFails(fs::IVfs& files) {
    EXPECT_NE(files.truncate("absent", 0), fs::er_ok);
    EXPECT_EQ(files.state("absent").state, fs::state_not_found);
}

void TruncateOfADirectoryFails(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("a"), fs::er_ok);
    EXPECT_NE(files.truncate("a", 0), fs::er_ok);
    EXPECT_EQ(files.state("a").state, fs::state_directory);
}

void ReadingCanMakeTheFile(fs::IVfs& files) {
    const auto archive = files.create("a", fs::mode_read, fs::open_or_create);
    ASSERT_NE(archive, nullptr);
    EXPECT_FALSE(archive->query_reader()->readable());
    EXPECT_EQ(files.state("a").state, fs::state_file);
}

void NamesAreBytes(fs::IVfs& files) {
    const std::string name = "\xC3\xA4 \xE2\x82\xAC.txt";
    WriteFile(files, name, "text");
    EXPECT_EQ(ReadFile(files, name), "text");
    EXPECT_THAT(Names(files, ""), testing::ElementsAre(name));
}

void LargeFilesComeBackWhole(fs::IVfs& files) {
    std::string content;
    for (std::uint32_t i = 0; content.size() < 300000; ++i)
        content += std::to_string(i * 2654435761u);
    WriteFile(files, "a", content);
    EXPECT_TRUE(ReadFile(files, "a") == content);
    EXPECT_EQ(files.state("a").size, content.size());
}

void AnArchiveMayOutliveItsFile(fs::IVfs& files) {
    WriteFile(files, "a", "text");
    const auto archive = files.create("a", fs::mode_all, fs::open_existing);
    ASSERT_NE(archive, nullptr);
    ASSERT_EQ(files.remove("a"), fs::er_ok);
    WriteAll(*archive, "more than before");
    archive->query_random()->seek(0);
    EXPECT_EQ(ReadAll(*archive), "more than before");
    EXPECT_EQ(files.state("a").state, fs::state_not_found);
}

void SyncChangesNothing(fs::IVfs& files) {
    ASSERT_EQ(files.createDir("d"), fs::er_ok);
    WriteFile(files, "d/a", "0123456789");
    const auto archive = files.create("d/a", fs::mode_all, fs::open_existing);
    ASSERT_NE(archive, nullptr);
    WriteAll(*archive, "ab");
    files.sync();
    WriteAll(*archive, "cd");
    files.sync();
    EXPECT_EQ(ReadFile(files, "d/a"), "abcd456789");
    EXPECT_EQ(files.state("d/a").state, fs::state_file);
    EXPECT_EQ(files.state("d/a").size, 10u);
    EXPECT_EQ(Names(files, ""), std::vector<std::string>{"d"});
    EXPECT_EQ(Names(files, "d"), std::vector<std::string>{"a"});
}

}  // namespace

std::vector<Case> FileCases() {
    return {
        {"OpenExistingNeedsAFile", OpenExistingNeedsAFile},
        {"CreateNewRefusesWhatExists", CreateNewRefusesWhatExists},
        {"OpenOrCreateKeepsTheContent", OpenOrCreateKeepsTheContent},
        {"EmptyPartsOfAPathAreNothing", EmptyPartsOfAPathAreNothing},
        {"CreateNeedsTheParent", CreateNeedsTheParent},
        {"CreateBelowAFileFails", CreateBelowAFileFails},
        {"CreateOnADirectoryFails", CreateOnADirectoryFails},
        {"CreateNeedsReadingOrWriting", CreateNeedsReadingOrWriting},
        {"UnknownFlagsAreRefused", UnknownFlagsAreRefused},
        {"ModeDecidesTheCapabilities", ModeDecidesTheCapabilities},
        {"ArchivesHavePositionsOfTheirOwn", ArchivesHavePositionsOfTheirOwn},
        {"WhatOneArchiveWritesAnotherReads", WhatOneArchiveWritesAnotherReads},
        {"ArchivesTruncate", ArchivesTruncate},
        {"WritingBehindTheEndExtends", WritingBehindTheEndExtends},
        {"TruncateByPathCutsAndExtends", TruncateByPathCutsAndExtends},
        {"TruncateOfWhatIsNotThereFails", TruncateOfWhatIsNotThereFails},
        {"TruncateOfADirectoryFails", TruncateOfADirectoryFails},
        {"ReadingCanMakeTheFile", ReadingCanMakeTheFile},
        {"NamesAreBytes", NamesAreBytes},
        {"LargeFilesComeBackWhole", LargeFilesComeBackWhole},
        {"AnArchiveMayOutliveItsFile", AnArchiveMayOutliveItsFile},
        {"SyncChangesNothing", SyncChangesNothing},
    };
}

}  // namespace vfs_contract
