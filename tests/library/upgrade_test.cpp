#include <sys/stat.h>

#include "assets/library/ilegacycontent.h"
#include "assets/library/tabletext.h"
#include "nuo/common/archive/primitives.h"
#include "package/package_files.h"
#include "support.h"
#include "support/filesizelimit.h"
#include "support/raised.h"

namespace korvanet::platform::assets {
namespace {

namespace fs = velmor::fs;
using halvern_tests::Raised;
using package_tests::Option;
using package_tests::SetOption;

// Reads one paint "Old" from any file, and writes files that say nothing.
class PlainLegacy final : public ILegacyContent {
public:
    explicit PlainLegacy(TestHost& host) : host_(host) { host.legacy = this; }
    ~PlainLegacy() { host_.legacy = nullptr; }

    bool LoadObjects(GeneralLibrary& document, nuo::archive::iarchive&) override {
        LoadGlobal(host_, "CommonSchema", kCommonSchemaXml);
        KRVTSchemaDefinition& paint = *LoadGlobal(host_, "PaintSchema", kPaintSchemaXml);
        AssetDefinition& model =
            MakeDefinition(*document.EnsureSchema(paint), velmor::Namespace(), "model");
        model.AddReference();
        document.CreatePreset(model, "Old", {});
        model.Release();
        return is_material_library;
    }
    void WriteDirectory(const GeneralLibrary&, nuo::archive::iarchive& directory) override {
        Write(directory, "<directory/>");
    }
    void WriteObjects(const GeneralLibrary&, nuo::archive::iarchive& objects) override {
        Write(objects, "<objects/>");
    }

    bool is_material_library = true;

private:
    static void Write(nuo::archive::iarchive& part, nuo::string_ref text) {
        nuo::archive::write_all(*part.query_writer(), {text.data(), text.size()});
    }

    TestHost& host_;
};

nuo::buffer<nuo::byte> OldLibrary(TestHost& host, const char* identifier, bool read_only = false) {
    TestLibrary library(host, GeneralLibrary::Creating{identifier, GeneralLibrary::kLegacyOption});
    if (read_only) library->SetReadOnlyOption();
    return library.SavedBytes();
}

TEST(Upgrade, TheOlderLayoutIsWrittenAsTwoPartsWithTheirOptions) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    EXPECT_EQ(library.Part("qmx/OLD/directory.xml"), "<directory/>");
    EXPECT_EQ(library.Part("qmx/OLD/objects.xml"), "<objects/>");
    for (const auto& [part, title] : {std::pair{"qmx/OLD/directory.xml", ":QMX content directory"},
                                      {"qmx/OLD/objects.xml", ":QMX objects"}}) {
        EXPECT_EQ(Option(*library.package, kPartOption, part, ""), std::string("name") + title);
        EXPECT_EQ(Option(*library.package, kPartOption, part, "interop content"), "bool:1");
    }
}

TEST(Upgrade, AMaterialLibraryIsConvertedAndReadsBackInThePresentLayout) {
    TestHost host;
    const PlainLegacy legacy(host);
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary library(host, OldLibrary(host, "OLD"), true);
        EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
        EXPECT_TRUE(library->UpgradeLegacyContent());
        EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kCurrent);
        EXPECT_EQ(fs::recursiveRemove(*library.package, "qmx"), fs::er_ok);
        bytes = library.CommittedBytes();
    }
    TestLibrary again(host, bytes, false);
    EXPECT_EQ(again->GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_NE(again->LoadDefinition("Old"), nullptr);
}

TEST(Upgrade, TheConvertedFolderGetsTheIdentifierAsItsOption) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    ASSERT_TRUE(library->UpgradeLegacyContent());
    EXPECT_EQ(Option(*library.package, kPackageOption, "OLD", "identifier"), "uuid:OLD");
}

TEST(Upgrade, AFileOfTheOlderFolderComesToThePlaceOfThePropertyThatNamesIt) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    library.Write("qmx/OLD/resources/a.png", "one");
    ASSERT_TRUE(
        SetText(library.Definition("Old"), "p_file", "jpk:?asset=/qmx/OLD/resources/a.png"));
    ASSERT_TRUE(library->UpgradeLegacyContent());
    EXPECT_TRUE(library.Text("Old", "p_file") == "jpk:?asset=/OLD/Resources/Old/p_file/0/a.png");
    EXPECT_EQ(library.Part("OLD/Resources/Old/p_file/0/a.png"), "one");
}

TEST(Upgrade, AnEmptyLibraryOfTheOlderLayoutHasItsFoldersAndGeometryParts) {
    TestHost host;
    TestLibrary library(host, GeneralLibrary::Creating{"OLD", GeneralLibrary::kLegacyOption});
    EXPECT_EQ(library.package->state("qmx/OLD/resources").state, fs::state_directory);
    for (const char* part : {"attributes.bin", "vertices.bin", "triangles.bin"}) {
        const auto state = library.package->state(fs::joinPath("qmx/OLD", part));
        EXPECT_EQ(state.state, fs::state_file) << part;
        EXPECT_EQ(state.size, 0U) << part;
    }
}

TEST(Upgrade, AnOptionThatAsksForTheOlderLayoutDoesNotEndInNone) {
    TestHost host;
    const PlainLegacy legacy(host);
    nuo::buffer<nuo::byte> bytes;
    {
        TestLibrary old(host, OldLibrary(host, "OLD"), true);
        ASSERT_EQ(old.package->createDir("OLD"), fs::er_ok);
        SetOption(*old.package, kPackageOption, "OLD", "embed option", "uint32", "8");
        bytes = old.CommittedBytes();
    }
    {
        TestLibrary library(host, bytes, true);
        EXPECT_TRUE(library->UpgradeLegacyContent());
        EXPECT_NE(library.Part("OLD/AssetData/AssetTableOfContents.bin"), "");
        EXPECT_NE(library->FindRecord("Old")->instanceBlock, HalvernAsset::kNoBlock);
        EXPECT_EQ(fs::recursiveRemove(*library.package, "qmx"), fs::er_ok);
        bytes = library.CommittedBytes();
    }
    TestLibrary again(host, bytes, true);
    EXPECT_TRUE(again->Save());
    EXPECT_EQ(again->GetLayout(), GeneralLibrary::Layout::kCurrent);
    EXPECT_EQ(again.package->state("qmx").state, fs::state_not_found);
}

TEST(Upgrade, OtherLibrariesAndTheSystemLibraryStayInTheOlderLayout) {
    TestHost host;
    PlainLegacy legacy(host);
    {
        const char* const system = "314DE259-5443-4621-BFBD-1730C6CC9AE9";
        TestLibrary library(host, OldLibrary(host, system), true);
        EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacy);
    }
    legacy.is_material_library = false;
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacy);
}

TEST(Upgrade, AReadOnlyLibraryIsNotConverted) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD", true), true);
    EXPECT_TRUE(library->ReadOnly());
    EXPECT_FALSE(library->UpgradeLegacyContent());
    EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_EQ(library.package->state("OLD/AssetData").state, fs::state_not_found);
}

TEST(Upgrade, OneThatCannotBeSavedChangesNothingAndCanBeTriedAgain) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    const std::string file = host.MakeFile("a.png", "one");
    ASSERT_TRUE(SetText(library.Definition("Old"), "p_file", file.c_str()));
    auto* const odd = library->Schemas().FindOwn("PaintSchema");
    ASSERT_NE(odd->AddStringProperty(L"z", PropertyFlags::kPublic, L"", L"\x01"), nullptr);
    EXPECT_FALSE(library->UpgradeLegacyContent());
    EXPECT_EQ(library->GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_EQ(library.package->state("OLD/AssetData").state, fs::state_not_found);
    EXPECT_EQ(library.package->state("OLD/Schemas").state, fs::state_not_found);
    EXPECT_EQ(library.package->state("OLD/Resources").state, fs::state_not_found);
    EXPECT_STREQ(library.Text("Old", "p_file").c_str(), file.c_str());
    auto* const text = odd->FindProperty(L"z")->GetValue();
    ASSERT_TRUE(dynamic_cast<IStringValue*>(text)->SetValue(L"fine"));
    EXPECT_TRUE(library->UpgradeLegacyContent());
    EXPECT_EQ(library->FindRecord("Old")->instanceBlock, 0U);
    EXPECT_STREQ(library.Text("Old", "p_file").c_str(),
                 "jpk:?asset=/OLD/Resources/Old/p_file/0/a.png");
}

TEST(Upgrade, AFileThatDoesNotFitChangesNothingAndTheConversionCanBeTriedAgain) {
    TestHost host;
    const PlainLegacy legacy(host);
    const std::string folder = host.Folder() + "/package";
    ASSERT_EQ(::mkdir(folder.c_str(), 0777), 0);
    fs::LocalFs disk(folder.c_str());
    JpkFs package(disk, "test");
    {
        GeneralLibrary old(host, package, host.Slib(),
                           GeneralLibrary::Creating{"OLD", GeneralLibrary::kLegacyOption});
        ASSERT_TRUE(old.Save());
    }
    GeneralLibrary library(host, package, host.Slib(), GeneralLibrary::Writing{});
    const std::string file = host.MakeFile("a.png", std::string(0x20000, 'a'));
    ASSERT_TRUE(SetText(*library.LoadDefinition("Old"), "p_file", file.c_str()));
    {
        const FileSizeLimit limit(0x18000);
        EXPECT_THROW(library.UpgradeLegacyContent(), nuo::exception);
    }
    EXPECT_EQ(library.GetLayout(), GeneralLibrary::Layout::kLegacyUpgrade);
    EXPECT_EQ(package.state("OLD/Resources").state, fs::state_not_found);
    EXPECT_STREQ(TextOf(*library.LoadDefinition("Old"), "p_file").c_str(), file.c_str());
    EXPECT_TRUE(library.UpgradeLegacyContent());
    EXPECT_STREQ(TextOf(*library.LoadDefinition("Old"), "p_file").c_str(),
                 "jpk:?asset=/OLD/Resources/Old/p_file/0/a.png");
}

TEST(Upgrade, FoldersThatStandThereAlreadyAreRefused) {
    TestHost host;
    const PlainLegacy legacy(host);
    TestLibrary library(host, OldLibrary(host, "OLD"), true);
    ASSERT_EQ(fs::recursiveCreateDir(*library.package, "OLD/Schemas"), fs::er_ok);
    EXPECT_EQ(Raised<JpkFsErr>([&] { library->UpgradeLegacyContent(); }), "");
}

}  // namespace
}  // namespace korvanet::platform::assets
