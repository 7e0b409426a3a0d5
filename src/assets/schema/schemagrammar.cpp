#include "assets/schema/schemagrammar.h"

namespace korvanet::platform::assets::grammar {
namespace {

struct ElementKind {
    nuo::string_ref element;
    PropertyType kind;
};

constexpr ElementKind kElementKinds[] = {
    {element::kUid, PropertyType::kString},
    {element::kBase, PropertyType::kString},
    {element::kString, PropertyType::kString},
    {element::kType, PropertyType::kString},
    {element::kLocalType, PropertyType::kString},
    {element::kLocalName, PropertyType::kString},
    {element::kDateTime, PropertyType::kDateTime},
    {element::kBinary, PropertyType::kBinary},
    {element::kUuid, PropertyType::kUuid},
    {element::kUrl, PropertyType::kUri},
    {element::kTextureUri, PropertyType::kUri},
    {element::kBoolean, PropertyType::kBoolean},
    {element::kInteger, PropertyType::kInteger},
    {element::kFloat, PropertyType::kScalar},
    {element::kDistance, PropertyType::kScalar},
    {element::kChoice, PropertyType::kChoice},
    {element::kColor, PropertyType::kColor},
    // Known here without a builder behind it, on purpose: files of old use it and lose it.
    {element::kTexture, PropertyType::kTexture},
    {element::kReference, PropertyType::kReference},
    {element::kUi, PropertyType::kString},
    {element::kImplementation, PropertyType::kString},
    {element::kVector3, PropertyType::kScalar},
};

}  // namespace

PropertyType KindOfElement(nuo::string_ref element) {
    for (const ElementKind& row : kElementKinds) {
        if (row.element == element) return row.kind;
    }
    return PropertyType::kUnspecified;
}

}  // namespace korvanet::platform::assets::grammar
