#include "assets/library/libraryresources.h"

#include <sys/resource.h>

#include "assets/library/resourceuri.h"
#include "assets/library/tabletext.h"
#include "support.h"

namespace korvanet::platform::assets {
namespace {

using core::UTF8String;

class Resources : public ::testing::Test {
protected:
    void SetUp() override { library = MakePaintLibrary(host); }
    LibraryResources& Of() { return (*library)->Resources(); }
    nuo::string Add(const std::string& file, const char* type = "") {
        return Of().Add(file.c_str(), type, Of().CommonFolder());
    }
    void SetFile(AssetDefinition& paint, const std::string& value) {
        auto* uri =
            dynamic_cast<IUriValue*>(paint.FindProperty(nuo::string_ref("p_file"))->GetValue());
        ASSERT_TRUE(uri->SetValue(UTF8String(value.c_str()).AsWide()));
    }

    TestHost host;
    std::unique_ptr<TestLibrary> library;
};

TEST_F(Resources, AFileOfTheHostLiesInTheCommonFolder) {
    EXPECT_TRUE(Add(host.MakeFile("a.png", "one")) == "LIB/Resources/a.png");
    EXPECT_EQ(library->Part("LIB/Resources/a.png"), "one");
}

TEST_F(Resources, TheSameFileTwiceGivesOnePath) {
    const std::string file = host.MakeFile("a.png", "one");
    EXPECT_TRUE(Add(file) == "LIB/Resources/a.png");
    EXPECT_TRUE(Add(file) == "LIB/Resources/a.png");
    EXPECT_EQ(library->Part("LIB/Resources/a(1).png"), "");
}

TEST_F(Resources, WithATypeTheSameFileIsStoredAgain) {
    const std::string file = host.MakeFile("a.png", "one");
    Add(file);
    EXPECT_TRUE(Add(file, "texture") == "LIB/Resources/a(1).png");
}

TEST_F(Resources, TwoFilesOfOneNameGetNumbers) {
    EXPECT_TRUE(Add(host.MakeFile("x/a.png", "1")) == "LIB/Resources/a.png");
    EXPECT_TRUE(Add(host.MakeFile("y/a.png", "2")) == "LIB/Resources/a(1).png");
    EXPECT_TRUE(Add(host.MakeFile("z/a.png", "3")) == "LIB/Resources/a(2).png");
    EXPECT_EQ(library->Part("LIB/Resources/a(1).png"), "2");
}

TEST_F(Resources, ATargetThatStandsThereSinceBeforeIsNotOverwritten) {
    Add(host.MakeFile("x/a.png", "old"));
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    library.reset();
    TestLibrary again(host, bytes, true);
    EXPECT_TRUE(again->Resources().Add(host.MakeFile("y/a.png", "new").c_str(), "",
                                       again->Resources().CommonFolder()) ==
                "LIB/Resources/a(1).png");
    EXPECT_EQ(again.Part("LIB/Resources/a.png"), "old");
}

TEST_F(Resources, AFileWithoutExtensionGetsItsNumberWithoutADot) {
    Add(host.MakeFile("x/readme", "1"));
    EXPECT_TRUE(Add(host.MakeFile("y/readme", "2")) == "LIB/Resources/readme(1)");
}

TEST_F(Resources, AfterAHundredTakenNamesAFileIsRefused) {
    for (int index = 0; index <= 100; ++index)
        ASSERT_FALSE(Add(host.MakeFile("f" + std::to_string(index) + "/a.png", "x")).empty());
    EXPECT_TRUE(library->Part("LIB/Resources/a(100).png") == "x");
    // The number is kept: each further file begins its search behind the last one.
    EXPECT_TRUE(Add(host.MakeFile("g/a.png", "x")) == "LIB/Resources/a(101).png");
    for (int index = 1; index <= 100; ++index)
        ASSERT_FALSE(Add(host.MakeFile("h/b(" + std::to_string(index) + ").png", "x")).empty());
    ASSERT_TRUE(Add(host.MakeFile("i/b.png", "x")) == "LIB/Resources/b.png");
    EXPECT_TRUE(Add(host.MakeFile("j/b.png", "x")).empty());
}

TEST_F(Resources, HashAndAmpersandInAFileNameAreEscaped) {
    EXPECT_TRUE(Add(host.MakeFile("a#b.png", "1")) == "LIB/Resources/a%23b.png");
    EXPECT_TRUE(Add(host.MakeFile("a&b.png", "1")) == "LIB/Resources/a%26b.png");
}

TEST_F(Resources, AMissingFileAndAFolderGiveNothing) {
    EXPECT_TRUE(Add(host.Folder() + "/none.png").empty());
    EXPECT_TRUE(Add(host.Folder()).empty());
    EXPECT_TRUE(Add("jpk:?asset=/LIB/none.png").empty());
    EXPECT_TRUE(Add("").empty());
    EXPECT_EQ(library->package->state("LIB/Resources").state, velmor::fs::state_not_found);
}

TEST_F(Resources, AFileUriNamesItsFile) {
    EXPECT_TRUE(Add("file://" + host.MakeFile("a.png", "one")) == "LIB/Resources/a.png");
}

TEST_F(Resources, AResourceOfThisLibraryIsCopiedUnderItsOwnName) {
    Add(host.MakeFile("a.png", "one"));
    EXPECT_TRUE(Add("jpk:?asset=/LIB/Resources/a.png") == "LIB/Resources/a(1).png");
    EXPECT_EQ(library->Part("LIB/Resources/a(1).png"), "one");
}

// Hosts are told the paths of resources with back slashes, and may make URIs of them.
TEST_F(Resources, BackSlashesInAResourceUriSeparateAsSlashesDo) {
    auto other = MakePaintLibrary(host, "OTHER");
    host.libraries["OTHER"] = &**other;
    (*other)->Resources().Add(host.MakeFile("a.png", "theirs").c_str(), "",
                              (*other)->Resources().CommonFolder());
    Add(host.MakeFile("b.png", "ours"));
    EXPECT_TRUE(Add("jpk:?asset=/LIB\\Resources\\b.png") == "LIB/Resources/b(1).png");
    AssetDefinition& red = AddPaint(*library, "Red");
    SetFile(red, "jpk:?asset=/OTHER\\Resources\\a.png");
    SetFile(AddPaint(*library, "Blue"), "jpk:?asset=/LIB\\Resources\\b.png");
    library->SavedBytes();
    EXPECT_STREQ(library->Text("Red", "p_file").c_str(),
                 "jpk:?asset=/LIB/Resources/Red/p_file/0/a.png");
    EXPECT_EQ(library->Part("LIB/Resources/Red/p_file/0/a.png"), "theirs");
    // It names a file of this library, and stays as it is.
    EXPECT_STREQ(library->Text("Blue", "p_file").c_str(), "jpk:?asset=/LIB\\Resources\\b.png");
    host.libraries.clear();
}

TEST_F(Resources, AnOpenedPartOutlivesTheLibrary) {
    Add(host.MakeFile("a.png", "one"));
    const auto part = Of().OpenPart("LIB/Resources/a.png");
    library.reset();
    char bytes[3] = {};
    EXPECT_EQ(part->query_reader()->read({bytes, 3}) - reinterpret_cast<nuo::byte*>(bytes), 3);
    EXPECT_EQ(std::string(bytes, 3), "one");
}

TEST_F(Resources, AValueThatIsSavedNamesTheFileInsideTheLibrary) {
    AssetDefinition& red = AddPaint(*library, "Red");
    SetFile(red, host.MakeFile("a.png", "one"));
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    EXPECT_TRUE(library->Text("Red", "p_file") == "jpk:?asset=/LIB/Resources/Red/p_file/0/a.png");
    library.reset();
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("Red", "p_file") == "jpk:?asset=/LIB/Resources/Red/p_file/0/a.png");
    EXPECT_EQ(again.Part("LIB/Resources/Red/p_file/0/a.png"), "one");
}

TEST_F(Resources, AFileThatIsStoredHasItsFolderAmongTheScratchFilesToo) {
    const auto scratch = [this] {
        std::string name;
        for (const velmor::fs::VfsNode& node : host.temp->children(""))
            name = node.path.data();
        return name;
    };
    const std::string folder = scratch() + "/LIB/Resources";
    EXPECT_EQ(host.temp->state(folder.c_str()).state, velmor::fs::state_not_found);
    Add(host.MakeFile("a.png", "one"));
    EXPECT_EQ(host.temp->state(folder.c_str()).state, velmor::fs::state_directory);
}

TEST_F(Resources, AFileUriCountsAtTheStartOfAValueAlone) {
    const std::string uri = "file://" + host.MakeFile("a.png", "one");
    SetFile(AddPaint(*library, "Red"), uri);
    SetFile(AddPaint(*library, "Blue"), "see " + uri);
    library->SavedBytes();
    EXPECT_TRUE(library->Text("Red", "p_file") == "jpk:?asset=/LIB/Resources/Red/p_file/0/a.png");
    EXPECT_EQ(library->Part("LIB/Resources/Red/p_file/0/a.png"), "one");
    EXPECT_TRUE(library->Text("Blue", "p_file") == ("see " + uri).c_str());
}

TEST_F(Resources, ARelativeNameIsFoundThroughTheSearchPaths) {
    host.MakeFile("textures/1/Mats/oak.png", "oak");
    host.search_path = host.Folder() + "/textures";
    SetFile(AddPaint(*library, "Red"), "1/Mats/oak.png");
    library->SavedBytes();
    EXPECT_TRUE(library->Text("Red", "p_file") == "jpk:?asset=/LIB/Resources/Red/p_file/0/oak.png");
}

TEST_F(Resources, ValuesThatNameNothingFoundStayAsTheyAre) {
    for (const std::string& value :
         {std::string("1/Mats/none.png"), std::string(), std::string("http://example.com/a.png"),
          host.Folder(), std::string("jpk:?asset=/OTHER/Resources/a.png"),
          std::string("jpk:?asset=/LIB/Resources/gone.png")}) {
        AssetDefinition& red = AddPaint(*library, "Red");
        SetFile(red, value);
        library->SavedBytes();
        EXPECT_TRUE(library->Text("Red", "p_file") == value.c_str()) << value;
    }
}

TEST_F(Resources, AResourceOfAnotherOpenLibraryIsCopiedIn) {
    auto other = MakePaintLibrary(host, "OTHER");
    host.libraries["OTHER"] = &**other;
    (*other)->Resources().Add(host.MakeFile("a.png", "theirs").c_str(), "",
                              (*other)->Resources().CommonFolder());
    SetFile(AddPaint(*library, "Red"), "jpk:?asset=/OTHER/Resources/a.png");
    library->SavedBytes();
    EXPECT_EQ(library->Part("LIB/Resources/Red/p_file/0/a.png"), "theirs");
    host.libraries.clear();
}

TEST_F(Resources, AnIdentifierWithSeparatorsStaysOneComponent) {
    SetFile(AddPaint(*library, "a/../b"), host.MakeFile("a.png", "one"));
    library->SavedBytes();
    EXPECT_TRUE(library->Text("a/../b", "p_file") ==
                "jpk:?asset=/LIB/Resources/a%2F..%2Fb/p_file/0/a.png");
}

TEST_F(Resources, APartThatCannotBeMadeFailsTheSave) {
    // No path in a ZIP is that long.
    SetFile(AddPaint(*library, std::string(65530, 'x').c_str()), host.MakeFile("a.png", "one"));
    EXPECT_THROW((*library)->Save(), JpkFsErr);
}

TEST_F(Resources, NamesThatAPackageKeepsForItselfAreStoredUnderOthers) {
    SetFile(AddPaint(*library, "core.xml"), host.MakeFile("cnx.xml", "<a/>"));
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    library.reset();
    TestLibrary again(host, bytes, false);
    EXPECT_TRUE(again.Text("core.xml", "p_file") ==
                "jpk:?asset=/LIB/Resources/core%2Exml/p_file/0/cnx%2Exml");
    EXPECT_EQ(again.Part("LIB/Resources/core%2Exml/p_file/0/cnx%2Exml"), "<a/>");
}

TEST_F(Resources, DefinitionsOfAnyNameAreSavedWithTheirFilesAndReadBack) {
    const std::vector<std::string> names{"..",
                                         ".",
                                         "a/b",
                                         "..\\c",
                                         "a&b<c>",
                                         "\"q\" 'a'",
                                         "line\nfeed",
                                         "bell\x07",
                                         "\xff\xfe",
                                         "\xef\xbf\xbe",
                                         std::string(300, 'x'),
                                         "",
                                         "LIB"};
    for (const std::string& name : names)
        SetFile(AddPaint(*library, name.c_str()), host.MakeFile("a.png", "one"));
    const nuo::buffer<nuo::byte> bytes = library->SavedBytes();
    library.reset();
    TestLibrary again(host, bytes, true);
    EXPECT_EQ(again->RecordNames().size(), names.size());
    for (const std::string& name : names) {
        const std::string uri(again.Text(name, "p_file").data());
        ASSERT_EQ(uri.substr(0, 12), "jpk:?asset=/") << name;
        EXPECT_EQ(again.Part(uri.substr(12)), "one") << name;
    }
    EXPECT_TRUE(again->Save());
}

TEST_F(Resources, InTheOlderLayoutAllFilesLieInOneFolder) {
    TestLibrary old(host, GeneralLibrary::Creating{"OLD", GeneralLibrary::kLegacyOption});
    LibraryResources& resources = old->Resources();
    EXPECT_TRUE(resources.CommonFolder() == "qmx/OLD/resources");
    EXPECT_TRUE(resources.FolderOf("Red", "p_file", 3) == "qmx/OLD/resources");
    EXPECT_TRUE(resources.Add(host.MakeFile("a.png", "one").c_str(), "",
                              resources.CommonFolder()) == "qmx/OLD/resources/a.png");
}

}  // namespace
}  // namespace korvanet::platform::assets
