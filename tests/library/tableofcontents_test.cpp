#include "assets/library/tableofcontents.h"

#include <gtest/gtest.h>

#include <string>

#include "nuo/common/buffer_archive.h"

namespace korvanet::platform::assets {
namespace {

using Bytes = nuo::buffer<nuo::byte>;

Bytes BytesOf(const std::string& text) {
    const auto* first = reinterpret_cast<const nuo::byte*>(text.data());
    return Bytes(first, first + text.size());
}

std::vector<TocEntry> Read(const std::string& text, StreamVersion version = kTocVersion) {
    const Bytes bytes = BytesOf(text);
    nuo::archive::buffer_in in(bytes);
    std::vector<TocEntry> entries;
    ReadTableOfContents(in, version, [&](const TocEntry& entry) { entries.push_back(entry); });
    return entries;
}

// The entry of a definition "Oak", block 0 and 258, schema "WoodSchema".
const std::string kOak(
    "\x03\0\0\0Oak\x12\0\0\0materialappearance\0\0\0\0\x02\x01\0\0\x0a\0\0\0WoodSchema", 51);
const std::string kOakWithoutSchema("\x03\0\0\0Oak\x12\0\0\0materialappearance\0\0\0\0\x02\x01\0\0",
                                    37);

TEST(TableOfContents, AnEmptyFileHoldsNoEntries) {
    EXPECT_TRUE(Read("").empty());
}

TEST(TableOfContents, AnEntryReadsFromItsBytes) {
    const auto entries = Read(kOak);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_TRUE(entries[0].identifier == "Oak");
    EXPECT_TRUE(entries[0].asset_type == "materialappearance");
    EXPECT_EQ(entries[0].definition_block, 0U);
    EXPECT_EQ(entries[0].instance_block, 258U);
    EXPECT_TRUE(entries[0].base_schema == "WoodSchema");
}

TEST(TableOfContents, AnEntryIsWrittenAsItsBytes) {
    nuo::archive::mem_write_archive out;
    WriteTocEntry(out, {"Oak", "materialappearance", 0, 258, "WoodSchema"});
    EXPECT_EQ(out.get_buffer(), BytesOf(kOak));
}

TEST(TableOfContents, VersionThreeDotZeroHasNoBaseSchemas) {
    const auto entries = Read(kOakWithoutSchema + kOakWithoutSchema, {3, 0});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_TRUE(entries[1].base_schema.empty());
}

TEST(TableOfContents, AnEntryWithoutABlockIsReadAndPassedOver) {
    std::string none = kOak;
    none.replace(33, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Read(none + kOak).size(), 1U);
    none = kOak;
    none.replace(29, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(Read(kOak + none).size(), 1U);
}

TEST(TableOfContents, EveryCutInsideAnEntryFails) {
    for (std::size_t length = 1; length < kOak.size(); ++length)
        EXPECT_THROW(Read(kOak.substr(0, length)), nuo::archive::read_failed) << length;
}

TEST(TableOfContents, ALengthPastTheEndFails) {
    EXPECT_THROW(Read(std::string("\xF0\xFF\xFF\xFFOak", 7)), nuo::archive::read_failed);
}

}  // namespace
}  // namespace korvanet::platform::assets
