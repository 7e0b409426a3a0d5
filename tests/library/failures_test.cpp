// What is left when a save, a copy or a reopening stops halfway, and what damaged stores can and
// cannot do to the records beside them.

#include <sys/stat.h>

#include <fstream>

#include "assets/asset/assetinstance.h"
#include "assets/library/tabletext.h"
#include "support.h"
#include "support/filesizelimit.h"
#include "support/raised.h"

namespace korvanet::platform::assets {
namespace {

using halvern_tests::Raised;

void SetFile(AssetDefinition& paint, const std::string& value) {
    ASSERT_TRUE(SetText(paint, "p_file", value.c_str()));
    paint.Holder().state = 1;
}

AssetDefinition& Store(GeneralLibrary& library, const char* identifier) {
    AssetDefinition& model =
        MakeDefinition(*library.Schemas().FindOwn("PaintSchema"), velmor::Namespace(), "model");
    model.AddReference();
    AssetDefinition* const made = library.CreatePreset(model, identifier, {});
    model.Release();
    return *made;
}

TEST(Failures, ARecordThatDidNotFitLeavesItsOldBlocksToOthersForGood) {
    TestHost host;
    const std::string folder = host.Folder() + "/package";
    ASSERT_EQ(::mkdir(folder.c_str(), 0777), 0);
    velmor::fs::LocalFs disk(folder.c_str());
    LoadGlobal(host, "CommonSchema", kCommonSchemaXml);
    KRVTSchemaDefinition& paint = *LoadGlobal(host, "PaintSchema", kPaintSchemaXml);
    {
        JpkFs package(disk, "test");
        GeneralLibrary library(host, package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
        ASSERT_NE(library.EnsureSchema(paint), nullptr);
        Store(library, "A");
        Store(library, "B");
        ASSERT_TRUE(library.Save());
        SetFile(*library.LoadDefinition("A"), std::string(300, 'a'));
        {
            const FileSizeLimit limit(16 + 2 * 136);
            EXPECT_THROW(library.Save(), nuo::exception);
        }
        // It sorts before A, is written before it, and takes the block that A had.
        Store(library, "0");
        ASSERT_TRUE(library.Save());
        package.sync();
    }
    JpkFs package(disk, "test");
    GeneralLibrary again(host, package, host.Slib(), GeneralLibrary::Reading{});
    for (const char* name : {"0", "A", "B"})
        EXPECT_NE(again.LoadDefinition(name), nullptr) << name;
    EXPECT_TRUE(TextOf(*again.LoadDefinition("A"), "p_file") == std::string(300, 'a').c_str());
}

// A package in a folder of the disk, where writing can be made to fail.
class Stored : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string folder = host.Folder() + "/package";
        ASSERT_EQ(::mkdir(folder.c_str(), 0777), 0);
        disk = std::make_unique<velmor::fs::LocalFs>(folder.c_str());
        package = std::make_unique<JpkFs>(*disk, "test");
    }
    bool Has(const char* path) { return package->state(path).state != velmor::fs::state_not_found; }

    TestHost host;
    std::unique_ptr<velmor::fs::LocalFs> disk;
    std::unique_ptr<JpkFs> package;
};

TEST_F(Stored, AFileInTheWayOfTheFoldersOfALibraryCarriesNoWords) {
    std::ofstream(host.Folder() + "/package/LIB") << "mine";
    EXPECT_EQ(Raised<JpkFsErr>([&] {
                  GeneralLibrary(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
              }),
              "");
    EXPECT_EQ(package->state("LIB").size, 4U);
}

TEST_F(Stored, AFileThatDoesNotFitLeavesNothingBehindAndCanBeAddedAgain) {
    GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
    const std::string file = host.MakeFile("a.png", std::string(0x20000, 'a'));
    const nuo::string folder = library.Resources().FolderOf("Red", "p_file", 0);
    {
        const FileSizeLimit limit(0x18000);
        EXPECT_THROW(library.Resources().Add(file.c_str(), "", folder), nuo::exception);
    }
    EXPECT_FALSE(Has("LIB/Resources/Red"));
    EXPECT_TRUE(library.Resources().Add(file.c_str(), "", folder) ==
                "LIB/Resources/Red/p_file/0/a.png");
}

// Files of others may have any name.
TEST_F(Stored, AFileInTheWayOfAFolderStaysAsItIs) {
    GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
    LibraryResources& resources = library.Resources();
    ASSERT_TRUE(resources.Add(host.MakeFile("Red", "mine").c_str(), "", "LIB/Resources") ==
                "LIB/Resources/Red");
    const std::string file = host.MakeFile("a.png", "one");
    EXPECT_THROW(resources.Add(file.c_str(), "", resources.FolderOf("Red", "p_file", 0)), JpkFsErr);
    EXPECT_EQ(package->state("LIB/Resources/Red").size, 4U);
}

TEST_F(Stored, AnEmptyFolderThatStoodThereBeforeStays) {
    GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
    ASSERT_EQ(velmor::fs::recursiveCreateDir(*package, "LIB/Resources/Red"), velmor::fs::er_ok);
    const std::string file = host.MakeFile("a.png", std::string(0x20000, 'a'));
    const FileSizeLimit limit(0x18000);
    EXPECT_THROW(library.Resources().Add(file.c_str(), "", "LIB/Resources/Red/p_file/0"),
                 nuo::exception);
    EXPECT_TRUE(Has("LIB/Resources/Red"));
    EXPECT_FALSE(Has("LIB/Resources/Red/p_file"));
}

TEST_F(Stored, AFolderThatCannotBeMadeLeavesNoneOfThoseAboveIt) {
    GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
    const std::string file = host.MakeFile("a.png", "one");
    const std::string longest(300, 'n');
    EXPECT_THROW(library.Resources().Add(file.c_str(), "",
                                         library.Resources().FolderOf("Red", longest.c_str(), 0)),
                 JpkFsErr);
    EXPECT_FALSE(Has("LIB/Resources/Red"));
}

// The second of its two parts would otherwise be the one that the next reader takes.
TEST_F(Stored, ASchemaPartThatCouldNotBeRemovedIsRemovedByTheNextSave) {
    LoadGlobal(host, "CommonSchema", kCommonSchemaXml);
    KRVTSchemaDefinition& paint = *LoadGlobal(host, "PaintSchema", kPaintSchemaXml);
    {
        GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Creating{"LIB", 0});
        ASSERT_NE(library.EnsureSchema(paint), nullptr);
        ASSERT_TRUE(library.Save());
        package->sync();
    }
    const std::string folder = host.Folder() + "/package/LIB/Schemas/";
    const std::string named = folder + "PaintSchema.xml";
    const std::string other = folder + "Other.xml";
    ASSERT_EQ(::rename(named.c_str(), other.c_str()), 0);
    GeneralLibrary library(host, *package, host.Slib(), GeneralLibrary::Reading{});
    ASSERT_EQ(::unlink(other.c_str()), 0);
    // A folder that holds something is not removed.
    ASSERT_EQ(::mkdir(other.c_str(), 0777), 0);
    ASSERT_EQ(::mkdir((other + "/inside").c_str(), 0777), 0);
    EXPECT_THROW(library.Save(), JpkFsErr);
    EXPECT_TRUE(Has("LIB/Schemas/PaintSchema.xml"));
    ASSERT_EQ(::rmdir((other + "/inside").c_str()), 0);
    EXPECT_TRUE(library.Save());
    EXPECT_FALSE(Has("LIB/Schemas/Other.xml"));
}

TEST(Failures, APackageThatLacksAPartCarriesNoWords) {
    TestHost host;
    for (const char* sample : {"bad-empty.jpk", "bad-no-toc.jpk", "bad-no-store.jpk"})
        EXPECT_EQ(Raised<JpkFsErr>([&] { TestLibrary(host, sample, false); }), "") << sample;
    EXPECT_EQ(Raised<JpkVersionErr>([&] { TestLibrary(host, "bad-toc-v4.jpk", false); }), "");
}

TEST(Failures, APartThatIsNoSchemaIsNamed) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    library->SavedBytes();
    library->Write("LIB/Schemas/Odd.xml", "<AssetSchema>");
    const nuo::buffer<nuo::byte> bytes = library->CommittedBytes();
    EXPECT_EQ(Raised<JpkFsErr>([&] { TestLibrary(host, bytes, false); }), "LIB/Schemas/Odd.xml");
}

TEST(Failures, RecordsThatShareBlocksArePartedByTheNextSave) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetFile(AddPaint(*library, "A"), "first");
        AddPaint(*library, "B");
        library->SavedBytes();
        (*library)->FindRecord("B")->instanceBlock = (*library)->FindRecord("A")->instanceBlock;
        bytes = library->SavedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        EXPECT_TRUE(library.Text("B", "p_file") == "first");
        SetFile(library.Definition("A"), "second");
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("A", "p_file") == "second");
    EXPECT_TRUE(again.Text("B", "p_file") == "first");
}

TEST(Failures, ARemovedPresetThatSharedItsBlocksLeavesTheOtherReadable) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetFile(AddPaint(*library, "A"), "first");
        AddPaint(*library, "B");
        library->SavedBytes();
        (*library)->FindRecord("B")->instanceBlock = (*library)->FindRecord("A")->instanceBlock;
        bytes = library->SavedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        AssetDefinition& a = library.Definition("A");
        a.AddReference();
        ASSERT_TRUE(library->RemovePreset(a));
        a.Release();
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("B", "p_file") == "first");
}

TEST(Failures, ARecordInTheChainOfFreeBlocksIsNotOverwritten) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetFile(AddPaint(*library, "A"), "kept");
        library->SavedBytes();
        std::string store = library->Part("LIB/AssetData/InstanceProperties.bin");
        store.replace(4, 8, std::string(8, '\0'));  // first and last free block: 0
        (*library)->CloseStores();
        library->Write("LIB/AssetData/InstanceProperties.bin", store);
        bytes = library->CommittedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        AddPaint(library, "0");
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("A", "p_file") == "kept");
    EXPECT_NE(again->LoadDefinition("0"), nullptr);
}

// A wall with a file, to be copied under a name that no path in a ZIP has room for.
class FailingCopy : public testing::Test {
protected:
    FailingCopy() { SetFile(wall, host.MakeFile("a.png", "one")); }

    void ConnectSpots() {
        wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(AddPaint(*source, "Spots"));
    }
    void Copy() { EXPECT_THROW((*target)->CopyDefinition(wall, endless.c_str()), JpkFsErr); }

    TestHost host;
    std::unique_ptr<TestLibrary> source = MakePaintLibrary(host, "SOURCE");
    std::unique_ptr<TestLibrary> target = MakePaintLibrary(host, "TARGET");
    AssetDefinition& wall = AddPaint(*source, "Wall");
    const std::string endless = std::string(65530, 'x');
};

TEST_F(FailingCopy, IsNotThere) {
    ConnectSpots();
    Copy();
    EXPECT_TRUE((*target)->RecordNames().empty());
    EXPECT_TRUE((*target)->Save());
}

TEST_F(FailingCopy, LeavesARecordThatWasThereConnectedToRecords) {
    ConnectSpots();
    AssetDefinition& present = AddPaint(*target, endless.c_str());
    Copy();
    const PropertyBase& map = *present.FindProperty(nuo::string_ref("p_map"));
    ASSERT_EQ(map.GetConnectedAssetCount(), 1U);
    EXPECT_TRUE((*target)->IsRecord(*map.ConnectedTable(0)));
}

TEST_F(FailingCopy, LeavesTheConnectionsThatItsSchemaShares) {
    KRVTSchemaDefinition& schema = *(*target)->Schemas().FindOwn("PaintSchema");
    schema.AddReferenceProperty(
        L"fixed", PropertyFlags::kReadOnly | PropertyFlags::kAllowConnectedAssets, L"", false);
    PropertyBase& fixed = *schema.FindProperty(nuo::string_ref("fixed"));
    fixed.AppendConnection(AddPaint(*target, "Spots"));
    Copy();
    EXPECT_EQ(fixed.GetConnectedAssetCount(), 1U);
}

TEST(Failures, WithItsStoresClosedALibraryRaisesInsteadOfReading) {
    TestHost host;
    TestLibrary library(host, "starter.jpk", true);
    AssetDefinition& loaded = library.Definition("Generic-001");
    library->CloseStores();
    EXPECT_THROW(library->LoadDefinition("Bitmap-001"), JpkFsErr);
    EXPECT_THROW(library->RemovePreset(loaded), JpkFsErr);
    EXPECT_TRUE(library->Contains("Generic-001"));
    EXPECT_THROW(library->Save(), JpkFsErr);
    library->ReopenStores(true);
    EXPECT_TRUE(library->Save());
}

TEST(Failures, ARemovedPresetAndItsInstancesOutliveTheDocument) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& wall = AddPaint(*library, "Wall");
    AssetDefinition& spots = AddPaint(*library, "Spots");
    wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(spots);
    wall.AddReference();
    AssetInstance* instance = wall.CreateInstanceIn((*library)->Namespaces().tmpAsset);
    ASSERT_TRUE((*library)->RemovePreset(wall));
    library.reset();
    EXPECT_EQ(wall.GetSchema(), host.global->FindOwn("PaintSchema"));
    EXPECT_EQ(instance->GetSchema(), host.global->FindOwn("PaintSchema"));
    EXPECT_EQ(wall.FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0), &spots);
    EXPECT_TRUE(spots.Name() == "Spots");
    wall.Release();
    instance->Release();
}

TEST(Failures, TheSchemaOfARecordStandsInForATableOfContentsThatDoesNotTellIt) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        // The common schema names a base: no record holds "BaseSchema" then.
        ASSERT_TRUE(SetText(*(*library)->Schemas().FindOwn("CommonSchema"), "BaseSchema", "Root"));
        AddPaint(*library, "Red");
        library->SavedBytes();
        const std::string contents = library->Part("LIB/AssetData/AssetTableOfContents.bin");
        library->Write("LIB/AssetData/AssetTableOfContents.bin",
                       contents.substr(0, contents.size() - 15));
        library->Write("LIB/AssetData/StreamVersionTable.inf",
                       "AssetTableOfContents:3.0,\nDefinitionIteratorProperties:3.2,\n"
                       "InstanceProperties:3.1,\nAssetLibVersion:1.0\n");
        bytes = library->CommittedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, true);
    EXPECT_TRUE(again.Text("Red", "BaseSchema") == "PaintSchema");
    again.SavedBytes();
    const std::string contents = again.Part("LIB/AssetData/AssetTableOfContents.bin");
    EXPECT_EQ(contents.substr(contents.size() - 15), std::string("\x0b\0\0\0PaintSchema", 15));
}

}  // namespace
}  // namespace korvanet::platform::assets
