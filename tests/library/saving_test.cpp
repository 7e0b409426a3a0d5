#include "assets/library/connectiongraph.h"
#include "assets/library/librarymarkers.h"
#include "assets/library/tabletext.h"
#include "assets/package/packageoptions.h"
#include "package/package_files.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

using package_tests::Option;
using package_tests::SetOption;

constexpr char kVersionTable[] =
    "AssetTableOfContents:3.1,\nDefinitionIteratorProperties:3.2,\nInstanceProperties:3.1,\n"
    "AssetLibVersion:1.0\n";

std::string Folder(TestLibrary& library) {
    return library->Identifier().data();
}

void SetDepth(AssetDefinition& paint, double depth) {
    auto* value =
        dynamic_cast<IScalarValue*>(paint.FindProperty(nuo::string_ref("p_depth"))->GetValue());
    ASSERT_TRUE(value->SetValue(depth));
}

double Depth(AssetDefinition& paint) {
    return dynamic_cast<IScalarValue*>(paint.FindProperty(nuo::string_ref("p_depth"))->GetValue())
        ->GetValue();
}

void Connect(AssetDefinition& from, AssetDefinition& to) {
    from.FindProperty(nuo::string_ref("p_map"))->AppendConnection(to);
}

TEST(Saving, ANewLibraryHasItsPartsAndReadsBackEmpty) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, GeneralLibrary::Creating{"LIB-1", 0});
        EXPECT_TRUE(library->Shared().Tag().empty());
        bytes = library.SavedBytes();
        EXPECT_EQ(library.Part("LIB-1/AssetData/AssetTableOfContents.bin"), "");
        EXPECT_EQ(library.Part("LIB-1/AssetData/StreamVersionTable.inf"), kVersionTable);
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again->Identifier() == "LIB-1");
    EXPECT_TRUE(again->RecordNames().empty());
}

TEST(Saving, TheSecondLibraryOfOneIdentifierHasANamespaceOfIdentifierAndUuid) {
    TestHost host;
    TestLibrary first(host, GeneralLibrary::Creating{"LIB", 0});
    TestLibrary second(host, GeneralLibrary::Creating{"LIB", 0});
    EXPECT_TRUE(first->Namespaces().own.name() == "LIB");
    const nuo::string name = second->Namespaces().own.name();
    EXPECT_TRUE(name.ref().starts_with("LIB"));
    EXPECT_EQ(name.size(), 3 + 36U);
}

TEST(Saving, AFolderWithoutAnEntryOfItsOwnIsMade) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
    library.SavedBytes();
    ASSERT_EQ(library.package->remove("LIB/Schemas"), velmor::fs::er_ok);
    LoadGlobal(host, "CommonSchema", kCommonSchemaXml);
    ASSERT_NE(library->EnsureSchema(*LoadGlobal(host, "PaintSchema", kPaintSchemaXml)), nullptr);
    EXPECT_TRUE(library->Save());
    EXPECT_NE(library.Part("LIB/Schemas/PaintSchema.xml"), "");
}

TEST(Saving, AFolderWithoutAnIdentifierGetsThatOfTheLibrary) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
    library.SavedBytes();
    ASSERT_TRUE(library.zip->remove("LIB/core.xml") == velmor::fs::er_ok);
    library.zip->commit();
    const nuo::buffer<nuo::byte> bytes = library.archive.get_buffer();
    TestLibrary again(host, bytes, true);
    ASSERT_EQ(Option(*again.package, kPackageOption, "LIB", "identifier"), "none");
    again.SavedBytes();
    EXPECT_EQ(Option(*again.package, kPackageOption, "LIB", "identifier"), "uuid:LIB");
}

TEST(Saving, AConnectionDepthFoundInACircleServesNoOtherStart) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    std::vector<AssetDefinition*> circle;
    for (int i = 0; i < 60; ++i)
        circle.push_back(&AddPaint(*library, ("C" + std::to_string(i)).c_str()));
    for (std::size_t i = 0; i < circle.size(); ++i)
        Connect(*circle[i], *circle[(i + 1) % circle.size()]);
    AssetDefinition* last = circle.back();
    for (int i = 0; i < 20; ++i) {
        AssetDefinition& next = AddPaint(*library, ("D" + std::to_string(i)).c_str());
        Connect(next, *last);
        last = &next;
    }
    EXPECT_THROW((*library)->Save(), JpkFsErr);
}

TEST(Saving, TheDepthsOfWhatLeadsToNoCircleAreFoundInOnePass) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& first = AddPaint(*library, "First");
    AssetDefinition& last = AddPaint(*library, "Last");
    AssetDefinition& middle = AddPaint(*library, "Middle");
    AssetDefinition& own = AddPaint(*library, "Own");
    AssetDefinition& above = AddPaint(*library, "Above");
    Connect(first, last);
    Connect(first, middle);
    Connect(first, middle);
    Connect(middle, last);
    Connect(own, own);
    Connect(own, first);
    Connect(above, own);
    ConnectionGraph graph({&above, &first, &own});
    EXPECT_EQ(graph.DepthOf(first), 2);
    EXPECT_EQ(graph.DepthOf(middle), 1);
    EXPECT_EQ(graph.DepthOf(last), 0);
    EXPECT_FALSE(graph.LeadsToCircle(first));
    EXPECT_EQ(graph.Steps(), 0U);
    EXPECT_TRUE(graph.LeadsToCircle(own));
    EXPECT_TRUE(graph.LeadsToCircle(above));
    EXPECT_EQ(graph.DepthOf(above), 4);
    EXPECT_EQ(graph.Steps(), 3U);
    EXPECT_EQ(graph.LeadingTo({&middle}),
              (std::vector<const PropertyTableImp*>{&first, &own, &above}));
}

// Records that are connected to the next one by a listing property and by another one, in a ring.
bool SavesRing(TestHost& host, int count, nuo::buffer<nuo::byte>& bytes) {
    auto library = MakePaintLibrary(host);
    KRVTSchemaDefinition* const schema = (*library)->EnsureSchema(*LoadGlobal(
        host, "RingSchema", R"(<AssetSchema><UID val="RingSchema"/><Base val="CommonSchema"/>
<type val="ring"/><Float id="listed" definitionIteratorData="true" allowconnectedassets="single"/>
<Float id="other" allowconnectedassets="single"/></AssetSchema>)"));
    AssetDefinition& model = MakeDefinition(*schema, velmor::Namespace(), "model");
    model.AddReference();
    std::vector<AssetDefinition*> ring;
    for (int i = 0; i < count; ++i)
        ring.push_back((*library)->CreatePreset(model, ("R" + std::to_string(i)).c_str(), {}));
    model.Release();
    for (std::size_t i = 0; i < ring.size(); ++i)
        for (const char* property : {"listed", "other"})
            ring[i]
                ->FindProperty(nuo::string_ref(property))
                ->AppendConnection(*ring[(i + 1) % ring.size()]);
    try {
        bytes = library->SavedBytes();
        return true;
    } catch (const nuo::context_exception<JpkFsErr>&) {
        return false;
    }
}

// A reader comes to the second group of each while it still reads the first one of all.
TEST(Saving, ARingThroughTwoGroupsIsRefusedWhereAReaderWouldComeTooDeep) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    EXPECT_FALSE(SavesRing(host, 33, bytes));
    ASSERT_TRUE(SavesRing(host, 32, bytes));
    TestLibrary again(host, bytes, false);
    for (const nuo::string& name : again->RecordNames())
        EXPECT_NE(again->LoadDefinition(name), nullptr) << name.data();
}

// As a file of others may be: each of its records is loaded before the one that leads to it.
TEST(Saving, AnUnchangedChainThatLeadsToNothingChangedIsLeftAlone) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition* last = &AddPaint(*library, "Last");
    for (int i = 0; i < GeneralLibrary::kMaxConnectionDepth + 2; ++i) {
        AssetDefinition& next = AddPaint(*library, ("D" + std::to_string(i)).c_str());
        Connect(next, *last);
        last = &next;
    }
    for (const nuo::string& name : (*library)->RecordNames())
        (*library)->FindRecord(name)->state = 0;
    AddPaint(*library, "Changed");
    EXPECT_TRUE((*library)->Save());
}

TEST(Saving, AnUnchangedRecordThatAChangedOneMakesTooDeepIsRefused) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& outer = AddPaint(*library, "Outer");
    AssetDefinition* last = &AddPaint(*library, "Inner");
    Connect(outer, *last);
    ASSERT_TRUE((*library)->Save());
    for (int i = 0; i < GeneralLibrary::kMaxConnectionDepth; ++i) {
        AssetDefinition& next = AddPaint(*library, ("D" + std::to_string(i)).c_str());
        Connect(*last, next);
        last = &next;
    }
    (*library)->FindRecord("Inner")->state = HalvernAsset::kChanged;
    ASSERT_EQ((*library)->FindRecord("Outer")->state, 0U);
    EXPECT_THROW((*library)->Save(), JpkFsErr);
}

// Both lead to a circle through the hub, which takes walks; the chain takes none.
TEST(Saving, WhatWouldTakeTooManyWalksIsRefusedAmongTheChangedAndTakenAmongTheOthers) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& hub = AddPaint(*library, "Hub");
    AssetDefinition& spoke = AddPaint(*library, "Spoke");
    AssetDefinition& top = AddPaint(*library, "Top");
    AssetDefinition& last = AddPaint(*library, "Last");
    Connect(hub, spoke);
    Connect(spoke, hub);
    Connect(top, last);
    const std::vector<const PropertyTableImp*> tables = {&hub, &spoke, &top, &last};
    EXPECT_FALSE(ReachTooDeep(tables, {&hub, &spoke, &top}, 2, 4));
    EXPECT_TRUE(ReachTooDeep(tables, {&hub, &spoke, &top}, 1, 4));
    EXPECT_TRUE(ReachTooDeep(tables, {&hub, &spoke}, 2, 1));
    EXPECT_FALSE(ReachTooDeep(tables, {&hub}, 2, 1));
    EXPECT_FALSE(ReachTooDeep(tables, {&top, &hub}, 2, 1));
    EXPECT_FALSE(ReachTooDeep(tables, {&hub, &top}, 2, 1));
    EXPECT_TRUE(ReachTooDeep(tables, {&last}, 0, 0));
}

TEST(Saving, FourThousandRecordsInCirclesThroughOneAreMeasuredAndSaved) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& hub = AddPaint(*library, "Hub");
    for (int i = 0; i < 4000; ++i) {
        AssetDefinition& spoke = AddPaint(*library, ("S" + std::to_string(i)).c_str());
        Connect(hub, spoke);
        Connect(spoke, hub);
    }
    EXPECT_TRUE((*library)->Save());
}

TEST(Saving, AnIdentifierThatWouldBreakThePackageIsRefused) {
    TestHost host;
    for (const char* identifier :
         {"", ".", "..", "qmx", "core.xml", "cnx.xml", "a/b", "a\\b", "a&b", "a<b", "a>b", "a\"b",
          "a'b", "a\nb", "[Content_Types].xml", "korvanet-design-package.xml"})
        EXPECT_THROW(TestLibrary(host, GeneralLibrary::Creating{identifier, 0}), JpkFsErr)
            << identifier;
}

TEST(Saving, AnIdentifierIsAtMostAsLongAsLeavesRoomForThePartsOfTheLibrary) {
    TestHost host;
    const std::string longest(16383, 'i');
    EXPECT_THROW(TestLibrary(host, GeneralLibrary::Creating{(longest + "i").c_str(), 0}), JpkFsErr);
    auto library = MakePaintLibrary(host, longest.c_str());
    TestLibrary again(host, library->SavedBytes(), false);
    EXPECT_EQ(again->Identifier().size(), 16383U);
}

TEST(Saving, AFolderThatMeansAnotherIsNoIdentifier) {
    TestHost host;
    for (const char* name : {".", ".."}) {
        nuo::archive::mem_read_write_archive archive;
        velmor::fs::InMemory scratch("test");
        velmor::fs::ZipFs zip(archive, scratch, "test", false);
        ASSERT_EQ(zip.createDir(name), velmor::fs::er_ok);
        JpkFs package(zip, "test");
        EXPECT_THROW(GeneralLibrary(host, package, host.Slib(), GeneralLibrary::Reading{}),
                     JpkFsErr);
    }
}

TEST(Saving, APresetIsReadBackWithItsValuesFromHandWrittenForms) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetDepth(AddPaint(*library, "Red"), 2.5);
        bytes = library->SavedBytes();
        // identifier, asset type, blocks 0 and 0, base schema
        EXPECT_EQ(library->Part("LIB/AssetData/AssetTableOfContents.bin"),
                  std::string("\x03\0\0\0Red\x12\0\0\0materialappearance\0\0\0\0\0\0\0\0\x0b\0\0\0"
                              "PaintSchema",
                              52));
        const std::string store = library->Part("LIB/AssetData/InstanceProperties.bin");
        ASSERT_EQ(store.size(), 16U + 136U);
        // One record in block 0: schema, identifier, AssetLibID, p_depth, p_file, p_images, p_map
        // and its tail, revision, version.
        const std::string record(
            "\x0b\0\0\0PaintSchema\x03\0\0\0Red\x03\0\0\0LIB"
            "\0\0\0\0\0\0\x04\x40\0\0\0\0\x01\0\0\0\0\0\0\0"
            "\0\0\0\0\0\0\0\0\0\x01\0\0\0\x01\0\0\0",
            15 + 7 + 7 + 8 + 4 + 8 + 8 + 1 + 8);
        EXPECT_EQ(store.substr(16, 8), std::string("\xFF\xFF\xFF\xFF", 4) +
                                           static_cast<char>(record.size()) +
                                           std::string("\0\1\0", 3));
        EXPECT_EQ(store.substr(24, record.size()), record);
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(Depth(again.Definition("Red")), 2.5);
    EXPECT_TRUE(again.Text("Red", "BaseSchema") == "PaintSchema");
    EXPECT_TRUE(again.Text("Red", "AssetLibID") == "LIB");
}

TEST(Saving, AChangedRecordGetsNewBlocksAndItsOldChainServesTheNextRecordOfTheSameSave) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AddPaint(*library, "A");
    AddPaint(*library, "B");
    library->SavedBytes();
    const std::uint32_t first = (*library)->FindRecord("A")->instanceBlock;
    const std::uint32_t second = (*library)->FindRecord("B")->instanceBlock;
    (*library)->FindRecord("A")->state = 1;
    (*library)->FindRecord("B")->state = 1;
    library->SavedBytes();
    // A's own chain is free before its new one is taken, so it comes back; B takes its own
    // likewise.
    EXPECT_EQ((*library)->FindRecord("A")->instanceBlock, first);
    EXPECT_EQ((*library)->FindRecord("B")->instanceBlock, second);
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), 2U);
}

TEST(Saving, ARecordThatShrinksLeavesItsBlocksToTheNextOneOfTheSameSave) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AssetDefinition& a = AddPaint(*library, "A");
    AssetDefinition& b = AddPaint(*library, "B");
    const std::string longer(400, 'x');
    ASSERT_TRUE(SetText(a, "p_file", longer.c_str()));
    library->SavedBytes();
    const std::uint32_t was = (*library)->FindRecord("B")->instanceBlock;
    const std::uint32_t blocks = (*library)->InstanceStore()->BlockCount();
    ASSERT_EQ(blocks, 5U);
    ASSERT_TRUE(SetText(a, "p_file", ""));
    ASSERT_TRUE(SetText(b, "p_file", longer.c_str()));
    (*library)->FindRecord("A")->state = 1;
    (*library)->FindRecord("B")->state = 1;
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), blocks);
    EXPECT_NE((*library)->FindRecord("B")->instanceBlock, was);
    library.reset();
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("A", "p_file") == "");
    EXPECT_TRUE(again.Text("B", "p_file") == longer.c_str());
}

TEST(Saving, APartThatBecomesShorterKeepsNothingOfWhatStoodThere) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AddPaint(*library, "A");
    AddPaint(*library, "B").AddReference();
    library->SavedBytes();
    AssetDefinition& removed = library->Definition("B");
    ASSERT_TRUE((*library)->RemovePreset(removed));
    removed.Release();
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    EXPECT_EQ(library->Part("LIB/AssetData/AssetTableOfContents.bin").size(), 50U);
    library.reset();
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(again->RecordNames(), std::vector<nuo::string>{"A"});
}

TEST(Saving, ARemovedPresetsBlocksAreUsedByTheNextSave) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    AddPaint(*library, "A").AddReference();
    AddPaint(*library, "B");
    library->SavedBytes();
    AssetDefinition& removed = library->Definition("A");
    ASSERT_TRUE((*library)->RemovePreset(removed));
    removed.Release();
    AddPaint(*library, "C");
    library->SavedBytes();
    EXPECT_EQ((*library)->FindRecord("C")->instanceBlock, 0U);
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), 2U);
}

TEST(Saving, UnchangedRecordsKeepTheirBlocksAndBytes) {
    TestHost host;
    TestLibrary library(host, "aged.jpk", true);
    const std::string before = library.Part(Folder(library) + "/AssetData/InstanceProperties.bin");
    library.SavedBytes();
    EXPECT_EQ(library.Part(Folder(library) + "/AssetData/InstanceProperties.bin").substr(16),
              before.substr(16));
}

TEST(Saving, SavingTwiceWritesTheVersionTableOnce) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    EXPECT_TRUE((*library)->VersionTableDirty());
    library->SavedBytes();
    EXPECT_FALSE((*library)->VersionTableDirty());
    library->package->remove("LIB/AssetData/StreamVersionTable.inf");
    library->SavedBytes();
    EXPECT_EQ(library->Part("LIB/AssetData/StreamVersionTable.inf"), "");
}

TEST(Saving, ASetVersionIsWrittenAndReadBack) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    (*library)->SetVersion(12);
    TestLibrary again(host, library->SavedBytes(), false);
    EXPECT_EQ(again->Version().version, 12U);
}

TEST(Saving, AVersionTableWithoutTheLibraryVersionIsRewrittenByTheNextSave) {
    TestHost host;
    TestLibrary library(host, "no-lib-version.jpk", true);
    EXPECT_EQ(library->Version().version, 1U);
    EXPECT_TRUE(library->VersionTableDirty());
    library.SavedBytes();
    EXPECT_EQ(library.Part(Folder(library) + "/AssetData/StreamVersionTable.inf"), kVersionTable);
}

TEST(Saving, ATableOfContentsOfThreeDotZeroIsThreeDotOneAfterwards) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, "toc-3-0.jpk", true);
        EXPECT_TRUE(library->FindRecord("Bitmap-001")->baseSchema.empty());
        EXPECT_TRUE(library->VersionTableDirty());
        bytes = library.SavedBytes();
        EXPECT_EQ(library.Part(Folder(library) + "/AssetData/StreamVersionTable.inf").substr(0, 26),
                  "AssetTableOfContents:3.1,\n");
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again->FindRecord("Bitmap-001")->baseSchema == "UnifiedBitmapSchema");
}

TEST(Saving, RecordsOfAnOlderMinorVersionAreAllRewritten) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, "definitions-3-1.jpk", true);
        EXPECT_TRUE(library.Text("Bitmap-001", "VersionGUID").empty());
        bytes = library.SavedBytes();
        EXPECT_EQ(library->DefinitionVersion(), kDefinitionVersion);
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(again->DefinitionVersion(), kDefinitionVersion);
    EXPECT_TRUE(again.Text("Bitmap-001", "UIName") == "TEX_1");
    EXPECT_EQ(again.Definition("Bitmap-001").GetRevision(), 90);
}

// A save that gives false writes no part: not even into the package, which nobody commits then.
void ExpectNoPartWritten(TestLibrary& library) {
    const std::vector<std::string> parts = {
        "AssetData/AssetTableOfContents.bin", "AssetData/DefinitionIteratorProperties.bin",
        "AssetData/InstanceProperties.bin", "AssetData/StreamVersionTable.inf"};
    for (const std::string& part : parts)
        library.Write(Folder(library) + "/" + part, "as it was");
    EXPECT_FALSE(library->Save());
    for (const std::string& part : parts)
        EXPECT_EQ(library.Part(Folder(library) + "/" + part), "as it was") << part;
}

TEST(Saving, AStoreOfMajorVersionFourOpensAndIsNeverRewritten) {
    TestHost host;
    TestLibrary library(host, "instances-v4.jpk", true);
    ExpectNoPartWritten(library);
}

TEST(Saving, AListingStoreOfMajorVersionFourAloneOpensAndIsNeverRewritten) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        library->Write("LIB/AssetData/StreamVersionTable.inf",
                       "AssetTableOfContents:3.1,\nDefinitionIteratorProperties:4.0,\n"
                       "InstanceProperties:3.1,\nAssetLibVersion:1.0\n");
        bytes = library->CommittedBytes();
    }
    TestLibrary again(host, bytes, true);
    EXPECT_TRUE(again->Contains("Red"));
    ExpectNoPartWritten(again);
}

TEST(Saving, ATableOfContentsOfMajorVersionFourIsRefusedAsAnotherVersion) {
    TestHost host;
    EXPECT_THROW(TestLibrary(host, "bad-toc-v4.jpk", false), JpkVersionErr);
}

TEST(Saving, AReadOnlyLibraryIsNotSaved) {
    TestHost host;
    TestLibrary library(host, "starter-read-only.jpk", true);
    EXPECT_TRUE(library->ReadOnly());
    ExpectNoPartWritten(library);
}

TEST(Saving, TheReadOnlyMarkTakesEffectAfterTheSaveThatStoresIt) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    (*library)->SetReadOnlyOption();
    EXPECT_TRUE((*library)->IsReadOnlyOption());
    EXPECT_FALSE((*library)->ReadOnly());
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    EXPECT_TRUE((*library)->ReadOnly());
    EXPECT_FALSE((*library)->Save());
    library.reset();
    TestLibrary again(host, bytes, true);
    EXPECT_TRUE(again->ReadOnly());
}

TEST(Saving, OptionsOfTheCreationAreStoredInDecimal) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"LIB", 65});
    library.SavedBytes();
    EXPECT_EQ(Option(*library.package, kPackageOption, "LIB", "embed option"), "uint32:65");
}

TEST(Saving, TheIdentifierIsAnOptionOfTheFolderFromTheStart) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
    EXPECT_EQ(Option(*library.package, kPackageOption, "LIB", "identifier"), "uuid:LIB");
}

TEST(Saving, TheStoredOptionsAreReadBackAsTheNumberThatTheyBeginWith) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, GeneralLibrary::Creating{"LIB", 65});
        library.SavedBytes();
        SetOption(*library.package, kPackageOption, "LIB", "embed option", "uint32",
                  "66 and words");
        bytes = library.CommittedBytes();
    }
    TestLibrary again(host, bytes, true);
    again.SavedBytes();
    EXPECT_EQ(Option(*again.package, kPackageOption, "LIB", "embed option"), "uint32:66");
}

TEST(Saving, TheFirstFolderByNameIsTheLibraryWhateverStandsBesideIt) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, GeneralLibrary::Creating{"LIB", 0});
        library.SavedBytes();
        ASSERT_EQ(library.package->createDir("NEXT"), velmor::fs::er_ok);
        ASSERT_EQ(library.package->createDir("MORE"), velmor::fs::er_ok);
        library.Write("A file", "");
        bytes = library.CommittedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again->Identifier() == "LIB");
}

// Only the schemas of a file can be such: the shared set refuses them.
TEST(Saving, AListingRecordWithoutAnyPropertyIsOneZeroByte) {
    nuo::buffer<nuo::byte> bytes;
    {
        TestHost host;
        auto library = MakePaintLibrary(host);
        library->SavedBytes();
        const std::string mark = " definitionIteratorData=\"true\"";
        std::string common = kCommonSchemaXml;
        for (std::size_t at; (at = common.find(mark)) != std::string::npos;)
            common.erase(at, mark.size());
        library->Write("LIB/Schemas/CommonSchema.xml", common);
        library->Write("LIB/Schemas/PaintSchema.xml", kPaintSchemaXml);
        bytes = library->CommittedBytes();
    }
    TestHost host;
    {
        TestLibrary library(host, bytes, true);
        AddPaint(library, "Red");
        bytes = library.SavedBytes();
        const std::string store = library.Part("LIB/AssetData/DefinitionIteratorProperties.bin");
        ASSERT_EQ(store.size(), 16U + 136U);
        EXPECT_EQ(store.substr(16, 9), std::string("\xFF\xFF\xFF\xFF\1\0\1\0\0", 9));
    }
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("Red", "BaseSchema") == "PaintSchema");
}

TEST(Saving, ADefinitionOfAnUnknownSchemaStopsTheSaveWithItsName) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AddPaint(*library, "Red");
        library->SavedBytes();
        library->package->remove("LIB/Schemas/PaintSchema.xml");
        bytes = library->CommittedBytes();
    }
    TestHost other;
    TestLibrary again(other, bytes, true);
    EXPECT_THROW(again->LoadDefinition("Red"), SchemaNotFoundErr);
    try {
        again->Save();
        ADD_FAILURE();
    } catch (const SchemaNotFoundErr& failure) {
        EXPECT_TRUE(nuo::string_ref(failure.what()).ends_with(")Red"));
    }
}

TEST(Saving, ConnectionsAreStoredByIdentifierAndBoundAgain) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AssetDefinition& wall = AddPaint(*library, "Wall");
        wall.FindProperty(nuo::string_ref("p_map"))->AppendConnection(AddPaint(*library, "Spots"));
        bytes = library->SavedBytes();
        EXPECT_NE(library->Part("LIB/AssetData/InstanceProperties.bin")
                      .find(std::string("\x01\x01\x01\0\0\0\x15\0\0\0.slib.LIB.asset.Spots", 31)),
                  std::string::npos);
    }
    TestLibrary again(host, bytes, false);
    const PropertyBase& map = *again.Definition("Wall").FindProperty(nuo::string_ref("p_map"));
    ASSERT_EQ(map.GetConnectedAssetCount(), 1U);
    EXPECT_EQ(map.ConnectedTable(0), &again.Definition("Spots"));
    EXPECT_FALSE(again->HasOutstandingReferences());
}

TEST(Saving, DefinitionsThatAreConnectedInACircleAreStoredAndRead) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        AssetDefinition& a = AddPaint(*library, "A");
        AssetDefinition& b = AddPaint(*library, "B");
        a.FindProperty(nuo::string_ref("p_map"))->AppendConnection(b);
        b.FindProperty(nuo::string_ref("p_map"))->AppendConnection(a);
        bytes = library->SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(again.Definition("A").FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0),
              &again.Definition("B"));
    EXPECT_EQ(again.Definition("B").FindProperty(nuo::string_ref("p_map"))->ConnectedTable(0),
              &again.Definition("A"));
}

// Connects N + 1 definitions in a row.
void Chain(TestLibrary& library, int length) {
    AssetDefinition* before = nullptr;
    for (int index = 0; index <= length; ++index) {
        AssetDefinition& made = AddPaint(library, ("D" + std::to_string(1000 + index)).c_str());
        if (before != nullptr)
            before->FindProperty(nuo::string_ref("p_map"))->AppendConnection(made);
        before = &made;
    }
}

TEST(Saving,
     AChainOfSixtyFourConnectionsIsStoredAndReadAndALongerOneIsRefusedBeforeAnythingIsWritten) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        Chain(*library, 64);
        bytes = library->SavedBytes();
    }
    {
        TestLibrary again(host, bytes, false);
        EXPECT_NE(again->LoadDefinition("D1000"), nullptr);
    }
    auto library = MakePaintLibrary(host);
    Chain(*library, 65);
    EXPECT_THROW((*library)->Save(), JpkFsErr);
    EXPECT_EQ((*library)->InstanceStore()->BlockCount(), 0U);
}

TEST(Saving, APropertyThatTheSchemaGainsIsWrittenWithItsDefaultAndOldRecordsFollow) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetDepth(AddPaint(*library, "Red"), 7);
        bytes = library->SavedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        ASSERT_NE(library->Schemas()
                      .FindOwn("PaintSchema")
                      ->AddIntegerProperty(L"a_count", PropertyFlags::kPublic, L"", 42, nullptr),
                  nullptr);
        EXPECT_EQ(Depth(library.Definition("Red")), 7);
        bytes = library.SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    AssetDefinition& red = again.Definition("Red");
    EXPECT_EQ(Depth(red), 7);
    ASSERT_NE(red.FindProperty(nuo::string_ref("a_count")), nullptr);
    EXPECT_EQ(dynamic_cast<IIntegerValue*>(red.FindProperty(nuo::string_ref("a_count"))->GetValue())
                  ->GetValue(),
              42);
}

TEST(Saving, APropertyThatTheBaseGainsReachesTheRecordsOfDerivedSchemas) {
    TestHost host;
    nuo::buffer<nuo::byte> bytes;
    {
        auto library = MakePaintLibrary(host);
        SetDepth(AddPaint(*library, "Red"), 7);
        library->SavedBytes();
        ASSERT_NE((*library)
                      ->Schemas()
                      .FindOwn("CommonSchema")
                      ->AddStringProperty(L"Owner", PropertyFlags::kPublic, L"", L"nobody"),
                  nullptr);
        bytes = library->SavedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(Depth(again.Definition("Red")), 7);
    EXPECT_TRUE(again.Text("Red", "Owner") == "nobody");
}

TEST(Saving, AFailedSaveCanBeRepeated) {
    TestHost host;
    auto library = MakePaintLibrary(host);
    Chain(*library, 65);
    EXPECT_THROW((*library)->Save(), JpkFsErr);
    library->Definition("D1064").FindProperty(nuo::string_ref("p_map"))->ClearConnections();
    EXPECT_TRUE((*library)->Save());
}

TEST(Saving, TheOlderLayoutIsNotWrittenWithoutAWriter) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"LIB", GeneralLibrary::kLegacyOption});
    EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacy);
    EXPECT_EQ(library.package->state("qmx/LIB/resources").state, velmor::fs::state_directory);
    EXPECT_FALSE(library->Save());
}

}  // namespace
}  // namespace korvanet::platform::assets
