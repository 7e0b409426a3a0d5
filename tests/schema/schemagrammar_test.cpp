#include "assets/schema/schemagrammar.h"

#include "schema/support.h"

namespace korvanet::platform::assets {

TEST(SchemaGrammarTest, EachElementHasItsKind) {
    const std::pair<const char*, PropertyType> kinds[] = {
        {"UID", PropertyType::kString},
        {"Base", PropertyType::kString},
        {"String", PropertyType::kString},
        {"type", PropertyType::kString},
        {"localtype", PropertyType::kString},
        {"localname", PropertyType::kString},
        {"DateTime", PropertyType::kDateTime},
        {"Binary", PropertyType::kBinary},
        {"Uuid", PropertyType::kUuid},
        {"URL", PropertyType::kUri},
        {"TextureURI", PropertyType::kUri},
        {"Boolean", PropertyType::kBoolean},
        {"Integer", PropertyType::kInteger},
        {"Float", PropertyType::kScalar},
        {"Distance", PropertyType::kScalar},
        {"Choice", PropertyType::kChoice},
        {"Color", PropertyType::kColor},
        {"texture", PropertyType::kTexture},
        {"Reference", PropertyType::kReference},
        {"ui", PropertyType::kString},
        {"implementation", PropertyType::kString},
        {"Vector3", PropertyType::kScalar},
        {"PropertyAlias", PropertyType::kUnspecified},
        {"string", PropertyType::kUnspecified},
        {"", PropertyType::kUnspecified}};
    for (const auto& [element, kind] : kinds) {
        EXPECT_EQ(grammar::KindOfElement(element), kind) << element;
    }
}

}  // namespace korvanet::platform::assets
