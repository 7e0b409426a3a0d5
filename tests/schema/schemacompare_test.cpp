#include "assets/schema/schemacompare.h"

#include "schema/support.h"

namespace korvanet::platform::assets {

class SchemaCompareTest : public SchemaTest {
protected:
    bool Same(const std::string& a, const std::string& b, PropertyType ignore = kNoKind) {
        return IsSameDefault(Find(ReadElements(a), "p"), Find(ReadElements(b), "p"), ignore);
    }
};

TEST_F(SchemaCompareTest, EqualValuesOfOneKindAreTheSame) {
    EXPECT_TRUE(Same("<Float id='p' val='1'/>", "<Float id='p' val='1.0'/>"));
    EXPECT_FALSE(Same("<Float id='p' val='1'/>", "<Float id='p' val='2'/>"));
    EXPECT_FALSE(Same("<Float id='p' val='1'/>", "<Integer id='p' val='1'/>"));
    EXPECT_FALSE(Same("<Float id='p'/>", "<Vector3 id='p'/>"));
}

TEST_F(SchemaCompareTest, LabelsAndFlagsDoNotCount) {
    EXPECT_TRUE(
        Same("<Float id='p' label='A' metadata='true'/>", "<Float id='p' readonly='true'/>"));
}

TEST_F(SchemaCompareTest, MarksCount) {
    PropertyBase& a = Find(ReadElements("<Float id='p'/>"), "p");
    PropertyBase& b = Find(ReadElements("<Float id='p'/>"), "p");
    a.SetMarked(false);
    EXPECT_FALSE(IsSameDefault(a, b));
}

TEST_F(SchemaCompareTest, BoundsOfNumbersCount) {
    const std::string bare = "<Integer id='p' val='1'/>";
    const std::string low = "<Integer id='p' val='1'><Bounds minimum='0'/></Integer>";
    const std::string high = "<Integer id='p' val='1'><Bounds minimum='1'/></Integer>";
    EXPECT_TRUE(Same(low, low));
    EXPECT_FALSE(Same(low, bare));
    EXPECT_FALSE(Same(bare, low));
    EXPECT_FALSE(Same(low, high));
}

TEST_F(SchemaCompareTest, ChoiceListsCountInBothDirections) {
    const std::string two =
        "<Choice id='p' val='a'><ChoiceValue id='a' val='1'/><ChoiceValue id='b' "
        "val='2'/></Choice>";
    const std::string one = "<Choice id='p' val='a'><ChoiceValue id='a' val='1'/></Choice>";
    EXPECT_TRUE(Same(two, two));
    EXPECT_FALSE(Same(two, one));
    // The entries behind the first list's do not count.
    EXPECT_TRUE(Same(one, two));
}

TEST_F(SchemaCompareTest, AnIgnoredKindOnlyNeedsToBeThatKind) {
    EXPECT_TRUE(Same("<URL id='p' val='a'/>", "<URL id='p' val='b'/>", PropertyType::kUri));
    EXPECT_FALSE(Same("<URL id='p' val='a'/>", "<String id='p' val='a'/>", PropertyType::kUri));
    EXPECT_FALSE(Same("<URL id='p' val='a'/>", "<URL id='p' val='b'/>"));
}

}  // namespace korvanet::platform::assets
