// The libraries that streams carry: one is new and written into, the other reads what came.

#include <korvanet/platform/core/jpkuuid.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/library/tabletext.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

// The one folder of the host's temporary file system, without what makes it unique.
std::string ScratchPrefix(TestHost& host) {
    std::string found;
    for (const velmor::fs::VfsNode& node : host.temp->children("")) {
        const std::string name = node.path.data();
        for (const char* prefix : {"library", "serialize", "deserialize"})
            if (name.rfind(prefix, 0) == 0) found += prefix;
    }
    return found;
}

// A library to be written into, with the definitions "Model" and "Red", of which Red tells Model as
// its parent.
std::unique_ptr<TestLibrary> MakeStreamed(TestHost& host) {
    auto library = std::make_unique<TestLibrary>(host, GeneralLibrary::Serializing{});
    LoadGlobal(host, "CommonSchema", kCommonSchemaXml);
    EXPECT_NE((*library)->EnsureSchema(*LoadGlobal(host, "PaintSchema", kPaintSchemaXml)), nullptr);
    AssetDefinition& model = AddPaint(*library, "Model");
    AddPaint(*library, "Red").SetSource(&model);
    return library;
}

TEST(StreamRoles, EachKindOfLibraryHasAScratchFolderOfItsOwnName) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
        EXPECT_EQ(ScratchPrefix(host), "library");
    }
    {
        TestLibrary library(host, GeneralLibrary::Serializing{});
        EXPECT_EQ(ScratchPrefix(host), "serialize");
        bytes = library.SavedBytes();
    }
    {
        TestLibrary library(host, bytes, GeneralLibrary::Deserializing{});
        EXPECT_EQ(ScratchPrefix(host), "deserialize");
    }
    TestLibrary library(host, bytes, false);
    EXPECT_EQ(ScratchPrefix(host), "library");
}

TEST(StreamRoles, TheOneThatIsWrittenIsNewUnderAFreshIdentifier) {
    TestHost host;
    TestLibrary first(host, GeneralLibrary::Serializing{});
    TestLibrary second(host, GeneralLibrary::Serializing{});
    EXPECT_EQ(first->GetRole(), GeneralLibrary::Role::kSerializer);
    EXPECT_TRUE(core::JPKUUID::IsValid(core::UTF8String(first->Identifier().data())));
    EXPECT_FALSE(first->Identifier() == second->Identifier());
    EXPECT_EQ(first->GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_TRUE(first->RecordNames().empty());
}

TEST(StreamRoles, ARecordThatIsWrittenTellsItsParentBehindItsIdentifier) {
    TestHost host;
    auto library = MakeStreamed(host);
    library->SavedBytes();
    const std::string identifier = (*library)->Identifier().data();
    const std::string store = library->Part(identifier + "/AssetData/InstanceProperties.bin");
    // AssetLibID, p_depth, p_file, p_images, p_map and its tail, revision, version.
    const std::string values = std::string("\x24\0\0\0", 4) + identifier +
                               std::string(
                                   "\0\0\0\0\0\0\xE0\x3F\0\0\0\0\x01\0\0\0\0\0\0\0"
                                   "\0\0\0\0\0\0\0\0\0\x01\0\0\0\x01\0\0\0",
                                   8 + 4 + 8 + 8 + 1 + 8);
    const std::string model =
        std::string("\x0b\0\0\0PaintSchema\x05\0\0\0Model\0\0\0\0", 15 + 9 + 4) + values;
    const std::string red =
        std::string("\x0b\0\0\0PaintSchema\x03\0\0\0Red\x05\0\0\0Model", 15 + 7 + 9) + values;
    ASSERT_EQ(store.size(), 16U + 2 * 136U);
    EXPECT_EQ(store.substr(16, 8 + model.size()), std::string("\xFF\xFF\xFF\xFF", 4) +
                                                      static_cast<char>(model.size()) +
                                                      std::string("\0\1\0", 3) + model);
    EXPECT_EQ(store.substr(16 + 136, 8 + red.size()), std::string("\xFF\xFF\xFF\xFF", 4) +
                                                          static_cast<char>(red.size()) +
                                                          std::string("\0\1\0", 3) + red);
}

// Only in an ordinary library would it show up in listings that nobody wants it in.
TEST(StreamRoles, WhatIsConnectedComesAlongAndIsHiddenInAnOrdinaryLibraryAlone) {
    TestHost host;
    auto source = MakePaintLibrary(host, "SOURCE");
    AssetDefinition& wall = AddPaint(*source, "Wall");
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(AddPaint(*source, "Spots"));
    TestLibrary stream(host, GeneralLibrary::Serializing{});
    TestLibrary ordinary(host, GeneralLibrary::Creating{"LIB", 0});
    for (TestLibrary* const target : {&stream, &ordinary}) {
        AssetDefinition* const copy = (*target)->CreatePreset(wall, "Wall", {});
        ASSERT_NE(copy, nullptr);
        PropertyTableImp* const connected =
            copy->FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0);
        ASSERT_NE(connected, nullptr);
        EXPECT_TRUE((*target)->IsRecord(*connected));
        EXPECT_EQ(static_cast<AssetDefinition*>(connected)->IsHidden(), target == &ordinary);
    }
}

TEST(StreamRoles, TheOneThatIsReadStandsBesideItsOriginalAndKeepsTheLibraryThatItsRecordsName) {
    TestHost host;
    auto written = MakeStreamed(host);
    ASSERT_TRUE(SetText(written->Definition("Red"), "AssetLibID", "HOME"));
    ASSERT_TRUE(SetText(written->Definition("Red"), "p_file", "value"));
    TestLibrary read(host, written->SavedBytes(), GeneralLibrary::Deserializing{});
    EXPECT_EQ(read->GetRole(), GeneralLibrary::Role::kDeserializer);
    EXPECT_EQ(read->Identifier(), (*written)->Identifier());
    EXPECT_EQ(read->Namespaces().own.name().size(), 2U * 36U);
    EXPECT_EQ(read->RecordNames(), (std::vector<nuo::string>{"Model", "Red"}));
    EXPECT_TRUE(read.Text("Red", "p_file") == "value");
    EXPECT_TRUE(read.Text("Red", "AssetLibID") == "HOME");
    EXPECT_TRUE(read.Text("Model", "AssetLibID") == read->Identifier());
}

}  // namespace
}  // namespace korvanet::platform::assets
