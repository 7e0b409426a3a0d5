// Copies of the starter library, each damaged in one thing: the walk finds just this, with its part
// and place, and nothing else.

#include <gtest/gtest.h>

#include <functional>

#include "inspect/verifying.h"
#include "nuo/common/buffer_archive.h"
#include "tests/support/paths.h"
#include "velmor/vfs/in_memory_fs.h"
#include "velmor/vfs/zip.h"

namespace halvern::inspect {
namespace {

using namespace halvern_tests;

const char* const kToc = "AssetData/AssetTableOfContents.bin";
const char* const kVersions = "AssetData/StreamVersionTable.inf";
const char* const kListings = "AssetData/DefinitionIteratorProperties.bin";
const char* const kInstances = "AssetData/InstanceProperties.bin";

// A copy of the starter library whose parts a test changes.
class Damage : public testing::Test {
protected:
    std::string Path(const std::string& below) const { return sample_.Path(below); }
    std::string& Part(const std::string& below) { return sample_.Part(Path(below)); }
    void Replace(const std::string& path, const std::string& from, const std::string& to) {
        std::string& part = sample_.Part(path);
        part = Replaced(part, from, to);
    }
    TocRow Row(const std::string& identifier) {
        for (const TocRow& row : ReadToc(Part(kToc)))
            if (row.identifier == identifier) return row;
        throw std::runtime_error("no entry " + identifier);
    }
    StoreBytes Instances() { return StoreBytes(Part(kInstances)); }
    StoreBytes Listings() { return StoreBytes(Part(kListings)); }
    void ExpectOnly(const Finding& finding) {
        EXPECT_EQ(FindingsIn(sample_.Bytes()), Expected{finding});
    }
    static std::string At(std::uint32_t block) {
        return "block " + std::to_string(block) + ", offset " +
               std::to_string(StoreBytes::OffsetOf(block));
    }

    SampleFile sample_{"starter.jpk"};
};

TEST_F(Damage, OfNothingIsNotFound) {
    EXPECT_EQ(FindingsIn(sample_.Bytes()), Expected());
}

TEST_F(Damage, OfSchemasThatInheritFarTooMuchTogether) {
    std::string many;
    for (int i = 0; i < 16000; ++i)
        many += "<URL id=\"u" + std::to_string(i) + "\"/>";
    const auto add = [this](const std::string& id, const std::string& base,
                            const std::string& elements) {
        sample_.Add(Path("Schemas/" + id + ".xml"), "<AssetSchema><UID val=\"" + id +
                                                        "\"/><Base val=\"" + base + "\"/>" +
                                                        elements + "</AssetSchema>");
    };
    add("Base", "CommonSchema", many);
    for (char leaf = 'a'; leaf <= 'q'; ++leaf)
        add(std::string("Leaf_") + leaf, "Base", "");
    std::vector<Finding> none;
    for (const Finding& finding : FindingsIn(sample_.Bytes()))
        if (finding.rule == "schema.none") none.push_back(finding);
    EXPECT_EQ(none, Expected({{"schema.none", Path("Schemas/Leaf_q.xml"), "",
                               "the part holds no schema: it has no UID, names no base, or is too "
                               "large"}}));
}

// Manifests.

TEST_F(Damage, OfAFolderWithoutItsDescription) {
    sample_.Remove(Path("Resources/core.xml"));
    ExpectOnly({"package.missing", Path("Resources/core.xml"), "", "the part is missing"});
}

TEST_F(Damage, OfAFolderWithoutItsLinks) {
    sample_.Remove(Path("Resources/cnx.xml"));
    ExpectOnly({"package.missing", Path("Resources/cnx.xml"), "", "the part is missing"});
}

TEST_F(Damage, OfAPackageWithoutContentTypes) {
    sample_.Remove("[Content_Types].xml");
    ExpectOnly({"package.missing", "[Content_Types].xml", "", "the part is missing"});
}

TEST_F(Damage, OfAPackageWithoutItsMarker) {
    sample_.Remove("korvanet-design-package.xml");
    ExpectOnly({"package.missing", "korvanet-design-package.xml", "", "the part is missing"});
}

TEST_F(Damage, OfAMarkerOfAnotherFormat) {
    Replace("korvanet-design-package.xml", "design-package/2009", "design-package/2010");
    ExpectOnly({"package.marker", "korvanet-design-package.xml", "",
                "the part does not name the format http://www.korvanet.com/design-package/2009"});
}

TEST_F(Damage, OfAManifestThatIsNotXml) {
    Replace(Path("Resources/cnx.xml"), "</root>", "</toor>");
    const std::size_t at = Part("Resources/cnx.xml").find("</toor>");
    ExpectOnly({"package.xml", Path("Resources/cnx.xml"),
                "line 1, offset " + std::to_string(at + 2),
                "the part is not well-formed XML: mismatched tag"});
}

TEST_F(Damage, OfALinkThatNamesNothing) {
    Replace(Path("Resources/cnx.xml"), "</group>", "<link name=\"Ghost\"></link></group>");
    ExpectOnly({"package.links", Path("Resources/cnx.xml"), "link Ghost",
                "a link names a part that is not there"});
}

TEST_F(Damage, OfAPartWithoutALink) {
    sample_.Add(Path("AssetData/stray.bin"), "x");
    ExpectOnly({"package.links", Path("AssetData/cnx.xml"), "link stray.bin",
                "the link of a part is missing"});
}

TEST_F(Damage, OfAnExtensionWithoutAContentType) {
    Replace("[Content_Types].xml", "Extension=\"inf\"", "Extension=\"fni\"");
    ExpectOnly({"package.types", "[Content_Types].xml", "extension inf",
                "no content type is told for " + Path(kVersions)});
}

TEST_F(Damage, OfAContentType) {
    Replace("[Content_Types].xml", "\"image/png\"", "\"image/jpeg\"");
    ExpectOnly({"package.types", "[Content_Types].xml", "extension png",
                "the content type is told as image/jpeg in place of image/png"});
}

TEST_F(Damage, OfTheContentTypeOfALink) {
    Replace(Path("Schemas/cnx.xml"), "application/xml", "text/xml");
    ExpectOnly({"package.types", Path("Schemas/cnx.xml"), "link CommonSchema.xml",
                "the content type is told as text/xml in place of application/xml"});
}

TEST_F(Damage, OfTheNameOfALink) {
    Replace(Path("Schemas/cnx.xml"), "\"name\">CommonSchema.xml", "\"name\">Other.xml");
    ExpectOnly({"package.name", Path("Schemas/cnx.xml"), "link CommonSchema.xml",
                "the name is told as Other.xml in place of CommonSchema.xml"});
}

TEST_F(Damage, OfTheNameOfAFolder) {
    Replace(Path("Schemas/core.xml"), ">Schemas<", ">Schema<");
    ExpectOnly({"package.name", Path("Schemas/core.xml"), "element name",
                "the name is told as Schema in place of Schemas"});
}

TEST_F(Damage, OfTheIdentifierInTheDescription) {
    Replace(Path("core.xml"), "\"identifier\">F38B", "\"identifier\">A38B");
    ExpectOnly({"package.identifier", Path("core.xml"), "element identifier",
                "the identifier A38B2FFC-80A4-DF5A-51C9-BC701E7EA419 is not that of the library's "
                "folder"});
}

TEST_F(Damage, OfNamesThatMakeNoTree) {
    sample_.Add("x", "1");
    sample_.Add("x/y", "2");
    ExpectOnly(
        {"zip.names", "", "", "the names in the ZIP make no tree of folders: it cannot be read"});
}

TEST_F(Damage, OfAnEntryWithoutAName) {
    sample_.Add("/", "");
    const std::string bytes = sample_.Bytes();
    const std::size_t end = bytes.rfind("PK\x05\x06");
    EXPECT_EQ(FindingsIn(bytes),
              (Expected{{"zip.name", "", "offset " + std::to_string(end - 46 - 1),
                         "an entry of the ZIP has no name"}}));
}

// However its name is spelled, an entry that cannot be read is found once.
TEST_F(Damage, OfTheMethodOfAnEntryWithMoreSlashes) {
    const std::string path = Path("Schemas/GenericSchema.xml");
    const std::string text = sample_.Part(path);
    sample_.Remove(path);
    sample_.Add("/" + path, text);
    std::string bytes = sample_.Bytes();
    const std::size_t local = bytes.find("/" + path) - 30;
    const std::size_t central = bytes.rfind("/" + path) - 46;
    Put16(bytes, local + 8, 12);
    Put16(bytes, central + 10, 12);
    EXPECT_EQ(FindingsIn(bytes),
              (Expected{{"zip.method", "/" + path, "offset " + std::to_string(central + 8),
                         "the entry is compressed by the unknown method 12"}}));
}

TEST_F(Damage, OfTheObjectsOfAnOlderLibrary) {
    sample_.Add("qmx/LIB/objects.xml", "no xml");
    for (const Finding& finding : FindingsIn(sample_.Bytes())) {
        if (finding.rule != "contents.xml") continue;
        EXPECT_EQ(finding, (Finding{"contents.xml", "qmx/LIB/objects.xml", "line 1, offset 0",
                                    "the part is not well-formed XML: syntax error"}));
        EXPECT_TRUE(finding.closes);
        return;
    }
    FAIL() << "not found";
}

TEST_F(Damage, OfAnOlderLibraryWithoutItsObjects) {
    sample_.Add("qmx/LIB/other.xml", "");
    for (const Finding& finding : FindingsIn(sample_.Bytes()))
        if (finding.rule == "contents.missing") {
            EXPECT_EQ(finding.part, "qmx/LIB/objects.xml");
            EXPECT_EQ(finding.what, "the list of objects is missing");
            return;
        }
    FAIL() << "not found";
}

// Version table.

TEST_F(Damage, OfAVersionThatIsNone) {
    Replace(Path(kVersions), "3.2", "three");
    ExpectOnly({"version.entry", Path(kVersions), "offset 25",
                "the value \"three\" of DefinitionIteratorProperties is no version"});
}

TEST_F(Damage, OfAVersionThatDoesNotFit) {
    Replace(Path(kVersions), "InstanceProperties:3.1", "InstanceProperties:9999999999.1");
    ExpectOnly({"version.entry", Path(kVersions), "offset 59",
                "the value \"9999999999.1\" of InstanceProperties is no version"});
}

TEST_F(Damage, OfTextBehindAVersionIsNoneSinceReadersTakeIt) {
    Replace(Path(kVersions), "3.2,", "3.2 and more,");
    EXPECT_EQ(FindingsIn(sample_.Bytes()), Expected());
}

TEST_F(Damage, OfAnUnknownKey) {
    Replace(Path(kVersions), "InstanceProperties:", "InstancePropertys:");
    ExpectOnly({"version.entry", Path(kVersions), "offset 59",
                "the key \"InstancePropertys\" means nothing"});
}

TEST_F(Damage, OfAKeyTwice) {
    Part(kVersions) += ",AssetLibVersion:3.7";
    ExpectOnly(
        {"version.entry", Path(kVersions), "offset 105", "AssetLibVersion stands a second time"});
}

TEST_F(Damage, OfTextBehindTheVersions) {
    Part(kVersions) += ", and more";
    ExpectOnly(
        {"version.entry", Path(kVersions), "offset 105", "there is text that belongs to no entry"});
}

TEST_F(Damage, OfAStoreOfANewerVersion) {
    Replace(Path(kVersions), "DefinitionIteratorProperties:3.2",
            "DefinitionIteratorProperties:4.0");
    ExpectOnly({"version.newer", Path(kVersions), "key DefinitionIteratorProperties",
                "DefinitionIteratorProperties is of version 4.0: the library can be read and not "
                "be saved"});
}

// Schemas.

TEST_F(Damage, OfASchemaThatIsNotXml) {
    Part("Schemas/GenericSchema.xml") = "<AssetSchema>\n<UID";
    ExpectOnly({"schema.xml", Path("Schemas/GenericSchema.xml"), "line 2, offset 14",
                "the part is not well-formed XML: unclosed token"});
}

TEST_F(Damage, OfASchemaWithoutAName) {
    Replace(Path("Schemas/GenericSchema.xml"), "<UID val=\"GenericSchema\"/>", "");
    ExpectOnly({"schema.none", Path("Schemas/GenericSchema.xml"), "",
                "the part holds no schema: it has no UID, names no base, or is too large"});
}

TEST_F(Damage, OfASchemaWithoutItsBase) {
    Replace(Path("Schemas/GenericSchema.xml"), "<Base val=\"CommonSchema\"/>",
            "<Base val=\"Nowhere\"/>");
    ExpectOnly({"schema.base", Path("Schemas/GenericSchema.xml"), "",
                "the base Nowhere of the schema is not in the library"});
}

TEST_F(Damage, OfSchemasThatAreEachOthersBases) {
    Replace(Path("Schemas/GenericSchema.xml"), "<Base val=\"CommonSchema\"/>",
            "<Base val=\"UnifiedBitmapSchema\"/>");
    Replace(Path("Schemas/UnifiedBitmapSchema.xml"), "<Base val=\"CommonSchema\"/>",
            "<Base val=\"GenericSchema\"/>");
    const char* const words = "the bases of the schema run in a circle";
    EXPECT_EQ(FindingsIn(sample_.Bytes()),
              (Expected{{"schema.base", Path("Schemas/GenericSchema.xml"), "", words},
                        {"schema.base", Path("Schemas/UnifiedBitmapSchema.xml"), "", words}}));
}

// One that leads to the circle is no part of it.
TEST_F(Damage, OfASchemaAboveACircleOfBases) {
    const auto add = [this](const std::string& id, const std::string& base) {
        sample_.Add(
            Path("Schemas/" + id + ".xml"),
            "<AssetSchema><UID val=\"" + id + "\"/><Base val=\"" + base + "\"/></AssetSchema>");
    };
    add("A", "B");
    add("B", "C");
    add("C", "D");
    add("D", "B");
    std::vector<std::string> parts;
    for (const Finding& finding : FindingsIn(sample_.Bytes()))
        if (finding.rule == "schema.base") parts.push_back(finding.part);
    EXPECT_EQ(parts, (std::vector<std::string>{Path("Schemas/B.xml"), Path("Schemas/C.xml"),
                                               Path("Schemas/D.xml")}));
}

TEST_F(Damage, OfManifestsThatHoldFarTooMuch) {
    std::string& core = Part("Resources/core.xml");
    std::string many;
    const std::string element = "<a>" + std::string(1 << 20, 'x') + "</a>";
    for (int i = 0; i < 256; ++i)
        many += element;
    core = Replaced(core, "</node>", many + "</node>");
    ExpectOnly({"limit", Path("Resources/core.xml"), "",
                "the links and elements of the package take more memory than a reader gives them"});
}

TEST_F(Damage, OfALibraryInAFolderThatMeansAnother) {
    nuo::archive::mem_read_write_archive archive;
    velmor::fs::InMemory scratch("test");
    velmor::fs::ZipFs zip(archive, scratch, "test", false);
    ASSERT_EQ(zip.createDir(".."), velmor::fs::er_ok);
    zip.commit();
    const auto& bytes = archive.get_buffer();
    const Expected findings =
        FindingsIn({reinterpret_cast<const char*>(bytes.begin()), bytes.size()});
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.back(),
              (Finding{"package.identifier", "", "",
                       "the folder of the library is named .., which means another"}));
}

// No link can name it, so none is missed.
TEST_F(Damage, IsNotAPartOfANameThatXmlCannotHold) {
    sample_.Add(Path("Resources/odd\x01name.odd"), "x");
    EXPECT_EQ(FindingsIn(sample_.Bytes()), Expected());
}

TEST_F(Damage, OfASchemaUnderAnotherName) {
    sample_.Add(Path("Schemas/Other.xml"), Part("Schemas/UnifiedBitmapSchema.xml"));
    sample_.Remove(Path("Schemas/UnifiedBitmapSchema.xml"));
    Replace(Path("Schemas/cnx.xml"), "link name=\"UnifiedBitmapSchema.xml\"",
            "link name=\"Other.xml\"");
    Replace(Path("Schemas/cnx.xml"), ">UnifiedBitmapSchema.xml<", ">Other.xml<");
    ExpectOnly({"schema.name", Path("Schemas/Other.xml"), "",
                "the part holds the schema UnifiedBitmapSchema"});
}

TEST_F(Damage, OfAPropertyWithContradictingFlags) {
    Replace(Path("Schemas/GenericSchema.xml"), "</AssetSchema>",
            "<Boolean id=\"odd\" val=\"true\" allowmultiplevalues=\"true\"/></AssetSchema>");
    ExpectOnly({"schema.report", Path("Schemas/GenericSchema.xml"), "property odd",
                "Property flags conflict in Node: odd, ErrorCode: 4"});
}

TEST_F(Damage, OfAPropertyTwice) {
    Replace(Path("Schemas/GenericSchema.xml"), "</AssetSchema>",
            "<Float id=\"generic_glossiness\" val=\"0.9\"/></AssetSchema>");
    ExpectOnly({"schema.property", Path("Schemas/GenericSchema.xml"), "property generic_glossiness",
                "the property stands a second time, and is passed over"});
}

// Table of contents.

TEST_F(Damage, OfATableOfContentsThatIsMissing) {
    sample_.Remove(Path(kToc));
    Replace(Path("AssetData/cnx.xml"), "AssetTableOfContents.bin", "InstanceProperties.bin");
    Replace(Path("AssetData/cnx.xml"), "AssetTableOfContents.bin", "InstanceProperties.bin");
    ExpectOnly({"contents.missing", Path(kToc), "", "the table of contents is missing"});
}

TEST_F(Damage, OfAnEntryThatEndsEarly) {
    std::string& toc = Part(kToc);
    toc.resize(Row("Generic-008").blocks_offset + 2);
    ExpectOnly({"contents.entry", Path(kToc), "entry 12, offset " + std::to_string(toc.size() - 2),
                "the file ends within the definition block"});
}

TEST_F(Damage, OfALengthThatIsTooLong) {
    const TocRow row = Row("Generic-008");
    Put32(Part(kToc), row.type_offset, 0x7FFFFFFF);
    ExpectOnly({"contents.entry", Path(kToc), "entry 12, offset " + std::to_string(row.type_offset),
                "the length 2147483647 of the asset type reaches past the end"});
}

TEST_F(Damage, OfAnEntryWithoutADefinitionBlock) {
    const TocRow row = Row("Generic-002");
    Put32(Part(kToc), row.blocks_offset, 0xFFFFFFFF);
    ExpectOnly({"contents.block", Path(kToc),
                "entry 6 (Generic-002), offset " + std::to_string(row.offset),
                "an entry without a block of its definition properties is passed over"});
}

TEST_F(Damage, OfAnIdentifierTwice) {
    std::string& toc = Part(kToc);
    const TocRow row = Row("Generic-002");
    const std::size_t size = toc.size();
    toc += toc.substr(row.offset, row.end - row.offset);
    ExpectOnly({"contents.twice", Path(kToc),
                "entry 13 (Generic-002), offset " + std::to_string(size),
                "the identifier stands a second time, and the entry is passed over"});
}

TEST_F(Damage, OfAnAssetTypeThatIsNotTheRecords) {
    const TocRow row = Row("Generic-002");
    Part(kToc)[row.type_offset + 4] = 'M';
    ExpectOnly({"contents.type", Path(kToc),
                "entry 6 (Generic-002), offset " + std::to_string(row.offset),
                "the asset type is Materialappearance, and in the schema materialappearance"});
}

TEST_F(Damage, OfABaseSchemaThatIsNotTheRecords) {
    const TocRow row = Row("Generic-002");
    Part(kToc)[row.schema_offset + 4] = 'K';
    ExpectOnly({"contents.schema", Path(kToc),
                "entry 6 (Generic-002), offset " + std::to_string(row.offset),
                "the base schema is KenericSchema, and in the record GenericSchema"});
}

// Stores.

TEST_F(Damage, OfTheBlockSize) {
    Put32(Part(kInstances), 0, 128);
    ExpectOnly(
        {"store.header", Path(kInstances), "offset 0", "the block size is 128 in place of 136"});
}

TEST_F(Damage, OfTheVersionOfAStore) {
    Put32(Part(kListings), 12, 7);
    ExpectOnly({"store.header", Path(kListings), "offset 12",
                "the block store is of version 7, which cannot be read"});
}

TEST_F(Damage, OfAStoreThatEndsWithinItsHeader) {
    Part(kListings).resize(9);
    ExpectOnly(
        {"store.header", Path(kListings), "offset 0", "the block store ends within its header"});
}

TEST_F(Damage, OfOneFreeIdWithoutTheOther) {
    Put32(Part(kListings), 4, 0xFFFFFFFF);
    Put32(Part(kListings), 8, 0);
    ExpectOnly({"store.header", Path(kListings), "offset 4",
                "there is a last free block and no first one"});
}

TEST_F(Damage, OfAFirstFreeIdWithoutALastOne) {
    Put32(Part(kListings), 4, 0);
    Put32(Part(kListings), 8, 0xFFFFFFFF);
    ExpectOnly({"store.header", Path(kListings), "offset 4",
                "there is a first free block and no last one"});
}

// Readers take a last block that was cut, as long as what they need of it is there.
TEST_F(Damage, OfALastFreeBlockThatWasCut) {
    std::string& store = Part(kListings);
    const std::uint32_t block = Listings().Count();
    const std::size_t end = store.size();
    store += std::string("\xFF\xFF\xFF\xFF\0\0\0\0", 8);
    for (std::uint32_t last = Get32(store, 4);;) {
        if (last == 0xFFFFFFFF) {
            Put32(store, 4, block);
            break;
        }
        const std::uint32_t next = Listings().Next(last);
        if (next == 0xFFFFFFFF) {
            Listings().SetNext(last, block);
            break;
        }
        last = next;
    }
    Put32(store, 8, block);
    ExpectOnly({"store.size", Path(kListings), "offset " + std::to_string(end),
                "the last block has 8 of its 136 bytes"});
}

TEST_F(Damage, OfAFirstFreeBlockPastTheEnd) {
    Put32(Part(kListings), 4, 5000);
    Put32(Part(kListings), 8, 5000);
    ExpectOnly({"store.header", Path(kListings), "offset 4",
                "the first free block 5000 lies past the end"});
}

TEST_F(Damage, OfAFreeChainThatRunsInACircle) {
    std::string& store = Part(kListings);
    const std::uint32_t added = Listings().Count();
    store.resize(store.size() + 136);
    Put32(store, 4, added);
    Put32(store, 8, added);
    Listings().SetNext(added, added);
    ExpectOnly(
        {"store.free", Path(kListings), At(added), "the chain of free blocks runs in a circle"});
}

TEST_F(Damage, OfAFreeChainThatLeavesTheFile) {
    std::string& store = Part(kListings);
    const std::uint32_t added = Listings().Count();
    store.resize(store.size() + 136);
    Put32(store, 4, added);
    Put32(store, 8, added);
    Listings().SetNext(added, 7777);
    ExpectOnly(
        {"store.free", Path(kListings), At(added), "the chain of free blocks leaves the file"});
}

TEST_F(Damage, OfALastFreeBlockThatIsNotTheLast) {
    std::string& store = Part(kListings);
    const std::uint32_t added = Listings().Count();
    store.resize(store.size() + 136);
    Put32(store, 4, added);
    Put32(store, 8, 0);
    Listings().SetNext(added, 0xFFFFFFFF);
    ExpectOnly(
        {"store.free", Path(kListings), "offset 8",
         "the last free block is told to be 0, and the chain ends with " + std::to_string(added)});
}

TEST_F(Damage, OfAFreeBlockWithWordsOfARecord) {
    std::string& store = Part(kListings);
    const std::uint32_t added = Listings().Count();
    store.resize(store.size() + 136);
    Put32(store, 4, added);
    Put32(store, 8, added);
    Listings().SetNext(added, 0xFFFFFFFF);
    Listings().SetUsed(added, 12);
    ExpectOnly({"store.free", Path(kListings), At(added),
                "a free block says that it belongs to a record"});
}

TEST_F(Damage, OfABlockThatBelongsToNobody) {
    std::string& store = Part(kInstances);
    const std::uint32_t added = Instances().Count();
    store.resize(store.size() + 136);
    ExpectOnly(
        {"store.lost", Path(kInstances), At(added), "space that is neither in a record nor free"});
}

TEST_F(Damage, OfSeveralBlocksThatBelongToNobody) {
    std::string& store = Part(kInstances);
    const std::uint32_t added = Instances().Count();
    store.resize(store.size() + 136 * 3);
    ExpectOnly({"store.lost", Path(kInstances),
                "blocks " + std::to_string(added) + " to " + std::to_string(added + 2) +
                    ", offset " + std::to_string(StoreBytes::OffsetOf(added)),
                "space that is neither in a record nor free"});
}

TEST_F(Damage, OfAFileThatEndsInABlock) {
    const std::size_t size = Part(kInstances).size();
    Part(kInstances) += "0123456789";
    ExpectOnly({"store.size", Path(kInstances), "offset " + std::to_string(size),
                "the last block has 10 of its 136 bytes"});
}

TEST_F(Damage, OfARecordPastTheEnd) {
    Put32(Part(kToc), Row("Generic-004").blocks_offset + 4, 4000);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(4000),
                "the record would begin past the end"});
}

TEST_F(Damage, OfARecordThatLeavesTheFile) {
    const std::uint32_t last = Instances().LastOf(Row("Generic-004").instance_block);
    Instances().SetNext(last, 4000);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(4000),
                "the record leaves the file"});
}

TEST_F(Damage, OfARecordThatRunsInACircle) {
    const std::uint32_t first = Row("Generic-004").instance_block;
    Instances().SetNext(Instances().LastOf(first), first);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(first),
                "the record runs in a circle"});
}

TEST_F(Damage, OfABlockInTwoRecords) {
    const std::uint32_t other = Row("Generic-003").instance_block;
    Instances().SetNext(Instances().LastOf(Row("Generic-004").instance_block),
                        Instances().Next(other));
    ExpectOnly({"store.chain", Path(kInstances),
                "record Generic-004, " + At(Instances().Next(other)),
                "the block is also in the record of Generic-003"});
}

TEST_F(Damage, OfARecordThatDoesNotBegin) {
    const std::uint32_t first = Row("Generic-004").instance_block;
    Instances().SetHead(first, 0);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(first),
                "no record begins at the block"});
}

TEST_F(Damage, OfARecordThatBeginsWithinAnother) {
    const std::uint32_t second = Instances().Next(Row("Generic-004").instance_block);
    Instances().SetHead(second, 1);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(second),
                "another record begins at the block"});
}

TEST_F(Damage, OfABlockWithTooManyBytes) {
    const std::uint32_t first = Row("Generic-004").instance_block;
    Instances().SetUsed(first, 129);
    ExpectOnly({"store.chain", Path(kInstances), "record Generic-004, " + At(first),
                "the block tells of 129 bytes"});
}

TEST_F(Damage, OfAStoreThatIsMissing) {
    sample_.Remove(Path(kInstances));
    Replace(Path("AssetData/cnx.xml"), "InstanceProperties.bin", "StreamVersionTable.inf");
    Replace(Path("AssetData/cnx.xml"), "InstanceProperties.bin", "StreamVersionTable.inf");
    ExpectOnly({"store.missing", Path(kInstances), "", "the block store is missing"});
}

// Records.

TEST_F(Damage, OfTheIdentifierOfARecord) {
    Replace(Path(kInstances), "Generic-003", "Generic-0X3");
    ExpectOnly({"record.identifier", Path(kInstances), "record Generic-003",
                "the record is that of Generic-0X3"});
}

TEST_F(Damage, OfTheSchemaOfARecord) {
    std::string& store = Part(kInstances);
    const std::size_t at = StoreBytes::OffsetOf(Row("Generic-003").instance_block) + 8 + 4;
    store[at] = 'K';
    ExpectOnly({"record.schema", Path(kInstances), "record Generic-003",
                "the schema KenericSchema is not in the library"});
}

TEST_F(Damage, OfTheBaseSchemaOfAListing) {
    std::string& store = Part(kListings);
    const std::size_t at = StoreBytes::OffsetOf(Row("Generic-003").definition_block);
    const std::size_t schema = store.find("GenericSchema", at);
    ASSERT_LT(schema, at + 136);
    store[schema] = 'K';
    ExpectOnly({"record.schema", Path(kListings), "record Generic-003, property BaseSchema",
                "the schema is told as KenericSchema in place of GenericSchema"});
}

TEST_F(Damage, OfARecordThatEndsEarly) {
    const std::uint32_t last = Instances().LastOf(Row("Generic-003").instance_block);
    Instances().SetUsed(last, static_cast<std::uint16_t>(Instances().Used(last) - 1));
    ExpectOnly({"record.short", Path(kInstances), "record Generic-003, property version",
                "the record ends within the property"});
}

TEST_F(Damage, OfARecordWithBytesBehindItsEnd) {
    const std::uint32_t last = Listings().LastOf(Row("Generic-003").definition_block);
    ASSERT_LT(Listings().Used(last), 126);
    Listings().SetUsed(last, static_cast<std::uint16_t>(Listings().Used(last) + 2));
    ExpectOnly({"record.size", Path(kListings), "record Generic-003",
                "2 bytes stand behind the last property"});
}

TEST_F(Damage, OfAValueOutOfItsBounds) {
    // The refraction of Generic-001, which may be 0.1 to 5.
    const double value = 0.30999385647958866;
    const double wrong = 1e9;
    Replace(Path(kInstances), std::string(reinterpret_cast<const char*>(&value), sizeof value),
            std::string(reinterpret_cast<const char*>(&wrong), sizeof wrong));
    ExpectOnly({"record.value", Path(kInstances),
                "record Generic-001, property generic_refraction_index",
                "the value is not one the schema allows"});
}

TEST_F(Damage, OfAConnectionToNothing) {
    Replace(Path(kInstances), ".asset.Bitmap-002", ".asset.Bitmap-0X2");
    const std::vector<Finding> findings = FindingsIn(sample_.Bytes());
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].rule, "connection");
    EXPECT_EQ(findings[0].part, Path(kInstances));
    EXPECT_EQ(findings[0].where, "record Generic-001, property generic_bump_map");
    EXPECT_EQ(findings[0].what,
              "a connection names the definition Bitmap-0X2, which is not in the library");
}

TEST_F(Damage, OfAResourceThatIsMissing) {
    sample_.Remove(Path("Resources/Generic-003/thumbnail/0/thumb.png"));
    Replace(Path("Resources/Generic-003/thumbnail/0/cnx.xml"), "<link name=\"thumb.png\"",
            "<notalink name=\"thumb.png\"");
    Replace(Path("Resources/Generic-003/thumbnail/0/cnx.xml"), "</link>", "</notalink>");
    ExpectOnly({"uri", Path(kListings), "record Generic-003, property thumbnail",
                "the URI names the part " + Path("Resources/Generic-003/thumbnail/0/thumb.png") +
                    ", which is not in the library"});
}

// Such a table deflates to a thousandth.
TEST_F(Damage, OfManyEntriesIsListedUpToALimit) {
    std::string& toc = Part(kToc);
    const TocRow row = Row("Generic-002");
    const std::string entry = toc.substr(row.offset, row.end - row.offset);
    for (int count = 0; count < 3000; ++count)
        toc += entry;
    const std::vector<Finding> findings = FindingsIn(sample_.Bytes());
    ASSERT_EQ(findings.size(), Findings::kMost + 1);
    EXPECT_EQ(findings.back(), (Finding{"limit", "", "", "there is more, which is not listed"}));
}

// Sixty copies with bytes changed at random are walked to the end and never raise.
TEST_F(Damage, OfAnyByteIsWalkedToTheEnd) {
    const std::string sound = sample_.Bytes();
    std::uint32_t seed = 20090401;
    const auto next = [&seed] { return seed = seed * 1664525 + 1013904223; };
    for (int round = 0; round < 60; ++round) {
        std::string bytes = sound;
        for (int change = 0; change < 4; ++change)
            bytes[next() % bytes.size()] = static_cast<char>(next() >> 24);
        EXPECT_LE(FindingsIn(bytes).size(), Findings::kMost + 1);
    }
}

TEST_F(Damage, OfTheHeaderOfARecord) {
    const std::uint32_t block = Row("Generic-001").instance_block;
    Put32(Part(kInstances), StoreBytes::OffsetOf(block) + 8, 0x7FFFFFFF);
    ExpectOnly({"record.header", Path(kInstances), "record Generic-001",
                "the record ends within its header"});
}

// Where the first connection of the store is told: a mark, another, and the count.
std::size_t ConnectionIn(const std::string& store) {
    return store.find(std::string("\1\1\1\0\0\0\x3b\0\0\0.slib.", 16));
}

TEST_F(Damage, OfAMarkBeforeConnections) {
    std::string& store = Part(kInstances);
    store[ConnectionIn(store)] = 2;
    ExpectOnly({"record.value", Path(kInstances), "record Generic-001, property generic_bump_map",
                "a byte before the connections is 2 in place of 0 or 1"});
}

TEST_F(Damage, OfTheCountOfConnections) {
    std::string& store = Part(kInstances);
    Put32(store, ConnectionIn(store) + 2, 2);
    const std::vector<Finding> findings = FindingsIn(sample_.Bytes());
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].rule, "record.value");
    EXPECT_EQ(findings[0].what, "the property takes one connection and has 2");
}

}  // namespace
}  // namespace halvern::inspect
