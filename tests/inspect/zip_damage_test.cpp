// The starter library as it is, with single bytes of the ZIP changed.

#include <gtest/gtest.h>

#include "inspect/verifying.h"
#include "tests/support/paths.h"

namespace halvern::inspect {
namespace {

using namespace halvern_tests;

const std::string kPart = "F38B2FFC-80A4-DF5A-51C9-BC701E7EA419/Resources/core.xml";

class ZipDamage : public testing::Test {
protected:
    ZipDamage() {
        end_ = bytes_.rfind("PK\5\6");
        for (std::size_t at = Get32(bytes_, end_ + 16); central_ == 0;) {
            const std::string name = bytes_.substr(at + 46, Get16(bytes_, at + 28));
            if (name == kPart) central_ = at;
            before_ = central_ == 0 ? at : before_;
            at += 46 + name.size() + Get16(bytes_, at + 30) + Get16(bytes_, at + 32);
        }
        local_ = Get32(bytes_, central_ + 42);
        data_ = local_ + 30 + kPart.size();
    }

    void ExpectOnly(const char* rule, std::size_t offset, const std::string& what) {
        EXPECT_EQ(FindingsIn(bytes_),
                  (Expected{{rule, kPart, "offset " + std::to_string(offset), what}}));
    }
    void ExpectOfFile(const char* rule, std::size_t offset, const std::string& what) {
        EXPECT_EQ(FindingsIn(bytes_),
                  (Expected{{rule, "", "offset " + std::to_string(offset), what}}));
    }

    std::string bytes_ = ReadFile(DataFile("starter.jpk"));
    std::size_t end_ = 0;
    std::size_t before_ = 0;  // the directory's header of the entry before the part
    std::size_t central_ = 0;
    std::size_t local_ = 0;
    std::size_t data_ = 0;
};

TEST_F(ZipDamage, OfTheChecksum) {
    Put32(bytes_, central_ + 16, 1);
    Put32(bytes_, local_ + 14, 1);
    ExpectOnly("zip.crc", data_, "the checksum of the data is not that of its header");
}

TEST_F(ZipDamage, OfTheSignatureOfALocalHeader) {
    bytes_[local_] = 'X';
    ExpectOnly("zip.local", local_, "there is no local header");
}

TEST_F(ZipDamage, OfTheChecksumInTheLocalHeaderAlone) {
    Put32(bytes_, local_ + 14, 1);
    ExpectOnly("zip.local", local_, "the local header has another checksum than the directory");
}

TEST_F(ZipDamage, OfTheMethodInTheLocalHeaderAlone) {
    Put16(bytes_, local_ + 8, 0);
    ExpectOnly("zip.local", local_, "the local header has another method than the directory");
}

TEST_F(ZipDamage, OfTheNameInTheLocalHeader) {
    bytes_[local_ + 31] = '!';
    ExpectOnly("zip.local", local_ + 26, "the local header has another name than the directory");
}

TEST_F(ZipDamage, OfTheExtraFieldInTheLocalHeader) {
    Put16(bytes_, local_ + 28, 4);
    ExpectOnly("zip.local", local_ + 28,
               "by the local header the data begins at offset " + std::to_string(data_ + 4) +
                   ", by the directory at " + std::to_string(data_));
}

TEST_F(ZipDamage, OfTheCompressedData) {
    bytes_[data_] = '\xFF';
    ExpectOnly("zip.data", data_, "the compressed data is damaged");
}

TEST_F(ZipDamage, OfTheSize) {
    const std::uint32_t size = Get32(bytes_, central_ + 24);
    Put32(bytes_, central_ + 24, size + 1);
    Put32(bytes_, local_ + 22, size + 1);
    ExpectOnly("zip.data", data_,
               "the entry has " + std::to_string(size) + " bytes, and its header tells of " +
                   std::to_string(size + 1));
}

TEST_F(ZipDamage, OfASizeThatIsTooSmall) {
    Put32(bytes_, central_ + 24, 10);
    Put32(bytes_, local_ + 22, 10);
    ExpectOnly("zip.data", data_,
               "the entry holds more than the 10 bytes that its header tells of");
}

TEST_F(ZipDamage, OfTheMethod) {
    Put16(bytes_, central_ + 10, 12);
    Put16(bytes_, local_ + 8, 12);
    ExpectOnly("zip.method", central_ + 8, "the entry is compressed by the unknown method 12");
}

TEST_F(ZipDamage, OfAnEntryThatIsEncrypted) {
    Put16(bytes_, central_ + 8, 0x801);
    Put16(bytes_, local_ + 6, 0x801);
    ExpectOnly("zip.method", central_ + 8, "the entry is encrypted");
}

TEST_F(ZipDamage, OfAnEntryPastTheEndOfTheFile) {
    Put32(bytes_, central_ + 20, 0x1000000);
    ExpectOnly("zip.data", local_, "the entry reaches past the end of the file");
}

TEST_F(ZipDamage, OfAnEntryOverTheOneBefore) {
    const std::uint32_t place = Get32(bytes_, before_ + 42);
    Put32(bytes_, central_ + 42, place);
    ExpectOnly("zip.overlap", place, "the entry lies over the one before it");
}

TEST_F(ZipDamage, OfAnEntryOverTheOneBeforeSaysNothingOfThoseBehind) {
    const std::uint32_t place = Get32(bytes_, before_ + 42);
    Put32(bytes_, central_ + 42, place);
    Put32(bytes_, central_ + 20, 0x1000000);
    ExpectOnly("zip.overlap", place, "the entry lies over the one before it");
}

TEST_F(ZipDamage, OfTheEndOfTheComment) {
    bytes_ += "more";
    ExpectOfFile("zip.end", end_ + 20, "the comment of the ZIP does not end where the file ends");
}

TEST_F(ZipDamage, OfTheCountOfDisks) {
    Put16(bytes_, end_ + 4, 1);
    ExpectOfFile("zip.end", end_ + 4, "the ZIP says that it is spread over several disks");
}

TEST_F(ZipDamage, OfTheCountOfEntries) {
    const std::uint16_t count = Get16(bytes_, end_ + 10);
    Put16(bytes_, end_ + 8, static_cast<std::uint16_t>(count + 1));
    Put16(bytes_, end_ + 10, static_cast<std::uint16_t>(count + 1));
    ExpectOfFile("zip.directory", end_,
                 "the directory ends within entry 172 of 172 of the directory of the ZIP");
}

TEST_F(ZipDamage, OfTheSizeOfTheDirectory) {
    const std::uint32_t size = Get32(bytes_, end_ + 12);
    Put32(bytes_, end_ + 12, size + 4);
    ExpectOfFile("zip.directory", end_,
                 "the directory of the ZIP has " + std::to_string(size + 4) +
                     " bytes, and its entries take " + std::to_string(size));
}

TEST_F(ZipDamage, OfAPlaceThatNoFileHas) {
    const std::uint32_t directory = Get32(bytes_, end_ + 16);
    Put32(bytes_, directory + 42, 0xFFFFFFF0);
    ExpectOfFile(
        "zip.directory", directory,
        "the data lies past the end of the file for entry 1 of 171 of the directory of the "
        "ZIP");
}

TEST_F(ZipDamage, OfAnEntryHeader) {
    bytes_[central_] = 'X';
    const std::vector<Finding> findings = FindingsIn(bytes_);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].rule, "zip.directory");
    EXPECT_EQ(findings[0].where, "offset " + std::to_string(central_));
    EXPECT_TRUE(findings[0].closes);
}

TEST(ZipSample, WithANameTwiceIsFoundAtTheSecond) {
    EXPECT_EQ(Verify(DataFile("bad-zip-duplicate.jpk")),
              (Expected{{"zip.duplicate", "korvanet-design-package.xml", "offset 64976",
                         "a second entry of the ZIP has this name"}}));
}

}  // namespace
}  // namespace halvern::inspect
