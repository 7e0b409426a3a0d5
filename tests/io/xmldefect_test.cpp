#include "assets/serialization/io/xmldefect.h"

#include <cstring>

#include <gtest/gtest.h>

#include "io/failing_expat.h"
#include "io/nested_entities.h"

namespace korvanet::platform::assets {
namespace {

std::optional<XmlDefect> DefectOf(const char* text) {
    const auto* first = reinterpret_cast<const nuo::byte*>(text);
    return FindXmlDefect(nuo::buffer<nuo::byte>(first, first + std::strlen(text)));
}

TEST(XmlDefect, IsNothingForAWellFormedDocument) {
    EXPECT_FALSE(DefectOf("<a>\n<b/></a>\n"));
}

TEST(XmlDefect, TellsLineOffsetAndReason) {
    const auto defect = DefectOf("<a>\n<b>\n</a>");
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->line, 3U);
    EXPECT_EQ(defect->offset, 10U);
    EXPECT_TRUE(defect->what == "mismatched tag");
}

TEST(XmlDefect, OfADocumentThatEndsEarlyIsAtItsEnd) {
    const auto defect = DefectOf("<a>\n<b>");
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->line, 2U);
    EXPECT_EQ(defect->offset, 7U);
    EXPECT_TRUE(defect->what == "no element found");
}

TEST(XmlDefect, IsNotToldWithoutMemoryForAParser) {
    const halvern_tests::NoParser broken;
    EXPECT_THROW(DefectOf("<a/>"), std::bad_alloc);
}

TEST(XmlDefect, OfElementsThatLieTooDeepIsBehindTheFirstTooMany) {
    std::string document;
    for (int i = 0; i < 65537; ++i)
        document += "<a>";
    const auto defect = DefectOf(document.c_str());
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->offset, 3U * 65537);
    EXPECT_TRUE(defect->what == "more than 65,536 elements lie one in the other");
}

TEST(XmlDefect, OfNothingSaysSo) {
    const auto defect = DefectOf("");
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->line, 1U);
    EXPECT_TRUE(defect->what == "there is nothing in it");
}

TEST(XmlDefect, OfEntitiesThatGrowByTheThousandNamesTheBound) {
    const auto defect = DefectOf(halvern_tests::NestedEntities(5).c_str());
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->line, 1U);
    EXPECT_TRUE(defect->what ==
                "limit on input amplification factor (from DTD and entities) breached");
}

}  // namespace
}  // namespace korvanet::platform::assets
