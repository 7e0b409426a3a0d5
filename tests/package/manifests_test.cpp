#include <unistd.h>

#include "assets/package/jpkfsimp.h"
#include "assets/package/xmlnodedata.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/file_archive.h"
#include "package/package_files.h"
#include "support/paths.h"
#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/zip.h"

namespace {

using namespace package_tests;
using korvanet::platform::assets::jpk_package_error;
using korvanet::platform::assets::JpkFsErr;
using korvanet::platform::assets::kPackageOption;
using korvanet::platform::assets::kPartOption;
using korvanet::platform::assets::xml_malformed_ex;
using korvanet::platform::assets::XmlNodeData;
using testing::ElementsAre;
using testing::IsEmpty;
using vfs_tests::Names;
using vfs_tests::RaisedText;
using vfs_tests::ReadFile;
using vfs_tests::WriteFile;

class ManifestsTest : public testing::Test {
protected:
    std::string Part(const std::string& path) { return Masked(ReadFile(inner, path)); }

    fs::InMemory inner{"inner"};
};

TEST_F(ManifestsTest, WritesAllFourPartsOfAPackageWithoutFiles) {
    JpkFs package(inner, "a.jpk");
    package.sync();
    EXPECT_THAT(Names(inner, ""), ElementsAre("[Content_Types].xml", "cnx.xml", "core.xml",
                                              "korvanet-design-package.xml"));
    EXPECT_EQ(Part("[Content_Types].xml"),
              kDeclaration +
                  "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                  "<Default Extension=\"xml\" ContentType=\"application/xml\"/></Types>");
    EXPECT_EQ(
        Part("korvanet-design-package.xml"),
        kDeclaration +
            "<formats><format>http://www.korvanet.com/design-package/2009</format></formats>");
    EXPECT_EQ(Part("cnx.xml"), kLinksHead + kLinksTail);
    EXPECT_EQ(Part("core.xml"), kCoreHead + kRootNode + kCoreTail);
}

TEST_F(ManifestsTest, WritesFilesAndFoldersByteForByte) {
    JpkFs package(inner, "a.jpk");
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    WriteFile(package, "R/a.jpg", "a");
    WriteFile(package, "b.bin", "b");
    package.sync();
    EXPECT_EQ(Part("cnx.xml"), kLinksHead + FolderLink("R") +
                                   FileLink("b.bin", "application/octet-stream") + kLinksTail);
    EXPECT_EQ(Part("R/cnx.xml"), kLinksHead + FileLink("a.jpg", "image/png") + kLinksTail);
    EXPECT_EQ(Part("R/core.xml"), kCoreHead + FolderNode("R") + kCoreTail);
}

TEST_F(ManifestsTest, ListsExtensionsAsTheWalkMeetsThem) {
    JpkFs package(inner, "a.jpk");
    ASSERT_EQ(package.createDir("B.dir"), fs::er_ok);
    WriteFile(package, "B.dir/inner.hdr", "");
    WriteFile(package, "a.zip", "");
    WriteFile(package, "c.xml", "");
    WriteFile(package, "d.bin", "");
    WriteFile(package, "e", "");
    package.sync();
    EXPECT_EQ(Part("[Content_Types].xml"),
              kDeclaration +
                  "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                  "<Default Extension=\"hdr\" ContentType=\"image/png\"/>"
                  "<Default Extension=\"zip\" ContentType=\"application/octet-stream\"/>"
                  "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
                  "<Default Extension=\"bin\" ContentType=\"application/octet-stream\"/></Types>");
}

TEST_F(ManifestsTest, LinksAFileWithAnAmpersandByItsEscapedName) {
    {
        JpkFs package(inner, "a.jpk");
        WriteFile(package, "a&b.png", "a");
        package.sync();
    }
    EXPECT_EQ(Part("cnx.xml"), kLinksHead + FileLink("a&amp;b.png", "image/png") + kLinksTail);
    JpkFs again(inner, "a.jpk");
    EXPECT_EQ(Option(again, kPartOption, "a&b.png", "name"), "string:a&b.png");
}

TEST_F(ManifestsTest, LeavesOutLinksThatWouldMakeThePackageUnreadable) {
    const char* const folders[] = {"a&b", "a<b", "a\"b", "a\x01", "\xff"};
    {
        JpkFs package(inner, "a.jpk");
        for (const char* name : folders) {
            ASSERT_EQ(package.createDir(name), fs::er_ok);
            WriteFile(package, std::string(name) + "/x.png", "x");
        }
        WriteFile(package, "b\x02.\x03", "b");
        ASSERT_EQ(package.createDir("it's > fine"), fs::er_ok);
        package.sync();
    }
    EXPECT_EQ(Part("cnx.xml"),
              kLinksHead + FolderLink("it's > fine", "it&apos;s &gt; fine") + kLinksTail);
    EXPECT_EQ(Part("[Content_Types].xml").find('\x03'), std::string::npos);
    JpkFs again(inner, "a.jpk");
    for (const char* name : folders) {
        const std::string file = std::string(name) + "/x.png";
        EXPECT_EQ(ReadFile(again, file), "x");
        EXPECT_EQ(Option(again, kPartOption, file.c_str(), "type"), "string:image/png");
    }
    EXPECT_EQ(Option(again, kPackageOption, "a&b", "name"), "string:a&b");
    EXPECT_EQ(Option(again, kPackageOption, "\xff", "name"), "none");
}

TEST_F(ManifestsTest, GivesTheTablesToTheFolderNamedQmxAlone) {
    JpkFs package(inner, "a.jpk");
    ASSERT_EQ(package.createDir("qmx"), fs::er_ok);
    ASSERT_EQ(package.createDir("qmx/id"), fs::er_ok);
    package.sync();
    EXPECT_NE(Part("qmx/core.xml").find("<table name=\"kqmxvector4\">"), std::string::npos);
    EXPECT_EQ(Part("qmx/id/core.xml"), kCoreHead + FolderNode("id") + kCoreTail);
    EXPECT_EQ(Part("core.xml").find("<table"), std::string::npos);
}

TEST_F(ManifestsTest, WritesAnUnnamedOptionWithALocale) {
    JpkFs package(inner, "a.jpk");
    ASSERT_EQ(package.createDir("qmx"), fs::er_ok);
    SetOption(package, kPartOption, "qmx/objects.xml", "", "", "QMX objects");
    SetOption(package, kPartOption, "qmx/objects.xml", "interop content", "bool", "1");
    WriteFile(package, "qmx/objects.xml", "<x/>");
    package.sync();
    EXPECT_EQ(Part("qmx/cnx.xml"),
              kLinksHead +
                  "<link name=\"objects.xml\" class=\"schema.korvanet.data.1.resource\">"
                  "<bool name=\"interop content\">1</bool>"
                  "<name locale=\"en-us\">QMX objects</name>"
                  "<string name=\"name\">objects.xml</string>"
                  "<string name=\"type\">application/xml</string>"
                  "<time name=\"created\">NOW</time></link>" +
                  kLinksTail);
    JpkFs again(inner, "a.jpk");
    EXPECT_EQ(Option(again, kPartOption, "qmx/objects.xml", ""), "name:QMX objects");
}

TEST_F(ManifestsTest, ReadsBackWhatItWrote) {
    std::string before;
    {
        JpkFs package(inner, "a.jpk");
        ASSERT_EQ(package.createDir("R"), fs::er_ok);
        SetOption(package, kPackageOption, "R", "identifier", "uuid", "MINE");
        SetOption(package, kPackageOption, "", "read only", "bool", "1");
        WriteFile(package, "R/a.png", "a");
        package.sync();
        before = ReadFile(inner, "R/core.xml") + ReadFile(inner, "R/cnx.xml") +
                 ReadFile(inner, "core.xml") + ReadFile(inner, "cnx.xml");
    }
    JpkFs again(inner, "a.jpk");
    EXPECT_EQ(Option(again, kPackageOption, "R", "identifier"), "uuid:MINE");
    EXPECT_EQ(Option(again, kPackageOption, "", "read only"), "bool:1");
    again.sync();
    EXPECT_EQ(ReadFile(inner, "R/core.xml") + ReadFile(inner, "R/cnx.xml") +
                  ReadFile(inner, "core.xml") + ReadFile(inner, "cnx.xml"),
              before);
}

TEST_F(ManifestsTest, KeepsElementsThatItDoesNotKnow) {
    WriteFile(inner, "core.xml",
              "<root><group name=\"content\"><node><odd name=\"o\" lang=\"x\">1 &lt; 2</odd>"
              "</node></group></root>");
    WriteFile(inner, "cnx.xml", "<root><group><link name=\"a\"><odd>v</odd></link></group></root>");
    WriteFile(inner, "a", "a");
    JpkFs package(inner, "a.jpk");
    package.sync();
    EXPECT_EQ(Part("core.xml"),
              kCoreHead +
                  "<uuid name=\"identifier\">UUID</uuid><bool name=\"read only\">0</bool>"
                  "<odd name=\"o\">1 &lt; 2</odd><string name=\"last saved\"></string>"
                  "<time name=\"created\">NOW</time><time name=\"updated\">NOW</time>"
                  "<uint32 name=\"updates\">1</uint32>" +
                  kCoreTail);
    EXPECT_NE(Part("cnx.xml").find("<odd locale=\"en-us\">v</odd>"), std::string::npos);
}

TEST_F(ManifestsTest, KeepsTheWhiteSpaceOfElementsAndTheLinkOfAFileWithATabInItsName) {
    const std::string core =
        "<root><group name=\"content\"><node><odd name=\"o&#10;\">1&#13;\t\n2</odd>"
        "</node></group></root>";
    WriteFile(inner, "core.xml", core);
    WriteFile(inner, "cnx.xml",
              "<root><group><link name=\"a&#9;b\"><odd>v</odd></link></group></root>");
    WriteFile(inner, "a\tb", "a");
    for (int round = 0; round < 3; ++round) {
        JpkFs package(inner, "a.jpk");
        package.sync();
    }
    EXPECT_NE(Part("core.xml").find("<odd name=\"o&#10;\">1&#13;\t\n2</odd>"), std::string::npos);
    EXPECT_NE(Part("cnx.xml").find("<odd locale=\"en-us\">v</odd>"), std::string::npos);
}

TEST_F(ManifestsTest, CompletesAForeignPackageAndKeepsTheResult) {
    ASSERT_EQ(inner.createDir("R"), fs::er_ok);
    WriteFile(inner, "R/a.png", "a");
    JpkFs package(inner, "a.jpk");
    EXPECT_EQ(Option(package, kPartOption, "R/a.png", "name"), "none");
    package.sync();
    EXPECT_EQ(Part("R/cnx.xml"), kLinksHead + FileLink("a.png", "image/png") + kLinksTail);
    EXPECT_EQ(Part("R/core.xml"), kCoreHead + FolderNode("R") + kCoreTail);
    EXPECT_EQ(Option(package, kPartOption, "R/a.png", "name"), "string:a.png");
    const std::string identifier = Option(package, kPackageOption, "R", "identifier");
    package.sync();
    EXPECT_EQ(Option(package, kPackageOption, "R", "identifier"), identifier);
}

TEST_F(ManifestsTest, LeavesOutLinksOfFilesThatAreGone) {
    WriteFile(inner, "cnx.xml", kLinksHead + FileLink("gone", "x/y") + kLinksTail);
    JpkFs package(inner, "a.jpk");
    EXPECT_EQ(Option(package, kPartOption, "gone", "type"), "string:x/y");
    package.sync();
    EXPECT_EQ(Part("cnx.xml"), kLinksHead + kLinksTail);
}

TEST_F(ManifestsTest, ReplacesALongerManifestWhole) {
    WriteFile(inner, "[Content_Types].xml", std::string(10000, 'x'));
    WriteFile(inner, "korvanet-design-package.xml", "");
    JpkFs package(inner, "a.jpk");
    package.sync();
    EXPECT_THAT(Part("[Content_Types].xml"), testing::EndsWith("</Types>"));
    EXPECT_THAT(Part("korvanet-design-package.xml"), testing::EndsWith("</formats>"));
}

TEST_F(ManifestsTest, MakesTheDefaultDescriptionOfAPackageWithoutAny) {
    JpkFs package(inner, "a.jpk");
    EXPECT_EQ(Masked(Option(package, kPackageOption, "", "identifier")), "uuid:UUID");
    EXPECT_EQ(Option(package, kPackageOption, "", "last saved"), "string:");
}

// Says that it is read-only, and can be told to refuse one path.
class Guarded : public fs::InMemory {
public:
    Guarded() : InMemory("guarded") {}

    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override {
        if ((mode & fs::mode_write) != 0) written.push_back(vfs_tests::Text(path));
        if (path == nuo::string_ref(refused.c_str())) return nullptr;
        return InMemory::create(path, mode, flag);
    }
    nuo::any getopt(unsigned id, const nuo::any& data) override {
        return id == fs::option_read_only ? read_only : InMemory::getopt(id, data);
    }
    void sync() override { ++syncs; }

    nuo::any read_only;
    std::string refused;
    std::vector<std::string> written;
    int syncs = 0;
};

TEST(Manifests, AreNotWrittenOverAReadOnlyStore) {
    Guarded inner;
    inner.read_only = nuo::any(true);
    JpkFs package(inner, "a.jpk");
    package.sync();
    EXPECT_THAT(Names(inner, ""), IsEmpty());
    EXPECT_EQ(inner.syncs, 0);
}

TEST(Manifests, AreWrittenOverAStoreThatSaysItIsWritableOrSaysSomethingElse) {
    for (const nuo::any& answer : {nuo::any(), nuo::any(false), nuo::any(1)}) {
        Guarded inner;
        inner.read_only = answer;
        JpkFs package(inner, "a.jpk");
        package.sync();
        EXPECT_EQ(Names(inner, "").size(), 4U);
        EXPECT_EQ(inner.syncs, 1);
    }
}

// In a ZIP file this is the order of the entries.
TEST(Manifests, AreWrittenLinksFirstAndDescriptionsLast) {
    Guarded inner;
    JpkFs package(inner, "a.jpk");
    ASSERT_EQ(package.createDir("R"), fs::er_ok);
    ASSERT_EQ(package.createDir("R/S"), fs::er_ok);
    package.sync();
    EXPECT_THAT(inner.written, ElementsAre("R/S/cnx.xml", "R/cnx.xml", "cnx.xml",
                                           "[Content_Types].xml", "korvanet-design-package.xml",
                                           "core.xml", "R/core.xml", "R/S/core.xml"));
}

TEST(Manifests, AreLeftAloneWhereTheyHoldTheTextAlready) {
    Guarded inner;
    JpkFs package(inner, "a.jpk");
    package.sync();
    inner.written.clear();
    package.sync();
    EXPECT_THAT(inner.written, IsEmpty());
    WriteFile(package, "a.png", "");
    package.sync();
    EXPECT_THAT(inner.written, ElementsAre("a.png", "cnx.xml", "[Content_Types].xml"));
}

TEST(Manifests, NameThePathOfOneThatCannotBeWritten) {
    for (const char* path :
         {"cnx.xml", "R/core.xml", "[Content_Types].xml", "korvanet-design-package.xml"}) {
        Guarded inner;
        JpkFs package(inner, "a.jpk");
        ASSERT_EQ(package.createDir("R"), fs::er_ok);
        inner.refused = path;
        EXPECT_EQ(RaisedText<jpk_package_error>([&] { package.sync(); }), path);
        EXPECT_EQ(inner.syncs, 0);
    }
}

TEST_F(ManifestsTest, RefuseAPackageWhoseManifestIsNotXml) {
    ASSERT_EQ(inner.createDir("R"), fs::er_ok);
    WriteFile(inner, "R/core.xml", "<root>");
    EXPECT_EQ(RaisedText<xml_malformed_ex>([&] { JpkFs package(inner, "a.jpk"); }),
              "The xml input is bad.");
    WriteFile(inner, "R/core.xml", "");
    EXPECT_EQ(RaisedText<xml_malformed_ex>([&] { JpkFs package(inner, "a.jpk"); }),
              "The xml input is bad.");
}

TEST(Manifests, StopAtALinkThatLeadsBackUpTheTree) {
    vfs_tests::DiskFolder folder;
    ASSERT_EQ(symlink(".", folder.file("loop").c_str()), 0);
    fs::LocalFs inner(folder.path().c_str());
    // The system itself follows no more than forty links; either end is an end.
    JpkFs package(inner, "folder");
    EXPECT_THAT(Names(package, ""), ElementsAre("loop"));
}

// A folder that holds itself, without end.
class Endless : public fs::InMemory {
public:
    Endless() : InMemory("endless") { EXPECT_EQ(createDir("a"), fs::er_ok); }
    fs::VfsNodeRange children(nuo::string_ref) override { return InMemory::children(""); }
    fs::VfsNodeState state(nuo::string_ref) override { return InMemory::state("a"); }
};

TEST(Manifests, RefuseFoldersWithoutEnd) {
    Endless inner;
    EXPECT_EQ(RaisedText<JpkFsErr>([&] { JpkFs package(inner, "endless"); }), "");
}

TEST(Manifests, GoIntoAZipFileAndComeBack) {
    nuo::archive::mem_read_write_archive archive;
    {
        fs::InMemory cache("cache");
        fs::ZipFs zip(archive, cache, "a.jpk", false);
        JpkFs package(zip, "a.jpk");
        ASSERT_EQ(package.createDir("R"), fs::er_ok);
        WriteFile(package, "R/a.png", "bytes");
        SetOption(package, kPackageOption, "R", "identifier", "uuid", "MINE");
        package.sync();
        zip.commit();
    }
    fs::InMemory cache("cache");
    fs::ZipFs zip(archive, cache, "a.jpk", false);
    JpkFs package(zip, "a.jpk");
    EXPECT_EQ(Option(package, kPackageOption, "R", "identifier"), "uuid:MINE");
    EXPECT_EQ(ReadFile(package, "R/a.png"), "bytes");
}

TEST(Manifests, ComeBackFromTheSampleAsTheyWere) {
    const std::string path = halvern_tests::DataFile("starter.jpk");
    nuo::archive::file_read_archive archive(path.c_str());
    fs::InMemory cache("cache");
    fs::ZipFs zip(archive, cache, "starter.jpk", false);
    JpkFs package(zip, "starter.jpk");
    ASSERT_EQ(Names(package, "").size(), 1U);
    const std::string id = Names(package, "")[0];
    EXPECT_EQ(Option(package, kPackageOption, id.c_str(), "identifier"), "uuid:" + id);
    fs::InMemory copy("copy");
    const std::function<void(const std::string&)> copy_folder = [&](const std::string& folder) {
        for (const std::string& name : Names(zip, folder)) {
            const std::string at = folder.empty() ? name : folder + "/" + name;
            if (zip.state(at.c_str()).state == fs::state_directory) {
                ASSERT_EQ(copy.createDir(at.c_str()), fs::er_ok);
                copy_folder(at);
            } else {
                WriteFile(copy, at, ReadFile(zip, at));
            }
        }
    };
    copy_folder("");
    JpkFs again(copy, "copy");
    again.sync();
    const std::vector<std::string> parts = {
        "cnx.xml",       "core.xml",       "[Content_Types].xml",  "korvanet-design-package.xml",
        id + "/cnx.xml", id + "/core.xml", id + "/Schemas/cnx.xml"};
    for (const std::string& part : parts) {
        EXPECT_EQ(ReadFile(copy, part), ReadFile(zip, part)) << part;
    }
}

TEST(Manifests, OneThatIsTooLongIsNotOpened) {
    velmor::fs::InMemory inner("test");
    ASSERT_NE(inner.create("core.xml", velmor::fs::mode_all, velmor::fs::create_new), nullptr);
    ASSERT_EQ(inner.truncate("core.xml", XmlNodeData::kMostHeld + 1), velmor::fs::er_ok);
    EXPECT_EQ(RaisedText<JpkFsErr>([&] { JpkFs package(inner, "a.jpk"); }), "");
}

}  // namespace
