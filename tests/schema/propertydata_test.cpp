#include "assets/schema/propertydata.h"

#include "assets/property/urivalues.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

class PropertyDataTest : public SchemaTest {
protected:
    KRVTSchemaDefinition& schema = ReadElements(
        "<String id='one' val='x'/><URL id='list' val='a,b' allowmultiplevalues='true'/>"
        "<Integer id='number'/><Integer id='numbers' val='1' allowmultiplevalues='true'/>");
};

TEST_F(PropertyDataTest, CountsTexts) {
    EXPECT_EQ(TextCount(Find(schema, "one")), 1u);
    EXPECT_EQ(TextCount(Find(schema, "list")), 2u);
    EXPECT_EQ(TextCount(Find(schema, "number")), 0u);
    EXPECT_EQ(TextCount(Find(schema, "numbers")), 0u);
}

TEST_F(PropertyDataTest, GivesTheTextAtAnIndexOrNull) {
    EXPECT_EQ(Str(*TextAt(Find(schema, "one"), 0)), "x");
    EXPECT_EQ(Str(*TextAt(Find(schema, "list"), 1)), "b");
    EXPECT_EQ(TextAt(Find(schema, "one"), 1), nullptr);
    EXPECT_EQ(TextAt(Find(schema, "list"), 2), nullptr);
    EXPECT_EQ(TextAt(Find(schema, "number"), 0), nullptr);
    EXPECT_EQ(TextAt(Find(schema, "numbers"), 0), nullptr);
}

TEST_F(PropertyDataTest, SetsATextThatIsThere) {
    EXPECT_TRUE(SetTextAt(Find(schema, "one"), 0, "y"));
    EXPECT_TRUE(SetTextAt(Find(schema, "list"), 1, "z"));
    EXPECT_FALSE(SetTextAt(Find(schema, "list"), 2, "z"));
    EXPECT_FALSE(SetTextAt(Find(schema, "number"), 0, "1"));
    EXPECT_EQ(TextOf(Find(schema, "one")), "y");
    EXPECT_EQ(TextsOf(Find(schema, "list")), (Lines{"a", "z"}));
}

TEST_F(PropertyDataTest, OnlyListsOfTextsHaveATextList) {
    EXPECT_EQ(TextList(Find(schema, "one")), nullptr);
    EXPECT_NE(TextList(Find(schema, "list")), nullptr);
    EXPECT_EQ(TextList(Find(schema, "numbers")), nullptr);
}

TEST_F(PropertyDataTest, ATextureLooksAnewAtAListThatWasChanged) {
    PropertyBase& texture = Find(ReadElements("<TextureURI id='p' val='a'/>"), "p");
    const auto& value = As<ITextureURIValue>(texture);
    EXPECT_FALSE(value.IsResolutionSet());
    EXPECT_TRUE(SetTextAt(texture, 0, "/1/Mats/a"));
    EXPECT_TRUE(value.IsResolutionSet());
    TextList(texture)->resize(2);
    EXPECT_FALSE(value.IsResolutionSet());
}

TEST_F(PropertyDataTest, DataOfAnotherClassIsNull) {
    EXPECT_NE(DataAs<std::int32_t>(Find(schema, "number")), nullptr);
    EXPECT_EQ(DataAs<double>(Find(schema, "number")), nullptr);
}

}  // namespace korvanet::platform::assets
