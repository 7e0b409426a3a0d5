#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

#include "nuo/common/string_ref.h"

// The words of schema XML, shared by reader, builder and writer. The page
// docs/formats/schema_xml.md tells the grammar.

namespace korvanet::platform::assets::grammar {

/** Id of the schema that stands at the root of every chain of bases. */
inline constexpr nuo::string_ref kCommonSchema = "CommonSchema";

namespace element {
inline constexpr nuo::string_ref kRoot = "AssetSchema";
inline constexpr nuo::string_ref kUid = "UID";
inline constexpr nuo::string_ref kBase = "Base";
inline constexpr nuo::string_ref kString = "String";
inline constexpr nuo::string_ref kType = "type";
inline constexpr nuo::string_ref kLocalType = "localtype";
inline constexpr nuo::string_ref kLocalName = "localname";
inline constexpr nuo::string_ref kDateTime = "DateTime";
inline constexpr nuo::string_ref kBinary = "Binary";
inline constexpr nuo::string_ref kUuid = "Uuid";
inline constexpr nuo::string_ref kUrl = "URL";
inline constexpr nuo::string_ref kTextureUri = "TextureURI";
inline constexpr nuo::string_ref kBoolean = "Boolean";
inline constexpr nuo::string_ref kInteger = "Integer";
inline constexpr nuo::string_ref kFloat = "Float";
inline constexpr nuo::string_ref kDistance = "Distance";
inline constexpr nuo::string_ref kChoice = "Choice";
inline constexpr nuo::string_ref kColor = "Color";
inline constexpr nuo::string_ref kTexture = "texture";
inline constexpr nuo::string_ref kReference = "Reference";
inline constexpr nuo::string_ref kUi = "ui";
inline constexpr nuo::string_ref kImplementation = "implementation";
inline constexpr nuo::string_ref kVector3 = "Vector3";
inline constexpr nuo::string_ref kPropertyAlias = "PropertyAlias";
inline constexpr nuo::string_ref kChoiceValue = "ChoiceValue";
inline constexpr nuo::string_ref kBounds = "Bounds";
}  // namespace element

namespace attribute {
inline constexpr nuo::string_ref kVal = "val";
inline constexpr nuo::string_ref kType = "type";
inline constexpr nuo::string_ref kId = "id";
inline constexpr nuo::string_ref kLabel = "label";
inline constexpr nuo::string_ref kUnit = "unit";
inline constexpr nuo::string_ref kAlias = "alias";
inline constexpr nuo::string_ref kLocal = "local";
inline constexpr nuo::string_ref kPublic = "public";
inline constexpr nuo::string_ref kReadOnly = "readonly";
inline constexpr nuo::string_ref kIteratorData = "definitionIteratorData";
inline constexpr nuo::string_ref kMultipleValues = "allowmultiplevalues";
inline constexpr nuo::string_ref kMetadata = "metadata";
inline constexpr nuo::string_ref kConnectedAssets = "allowconnectedassets";
inline constexpr nuo::string_ref kValR = "valR";
inline constexpr nuo::string_ref kValG = "valG";
inline constexpr nuo::string_ref kValB = "valB";
inline constexpr nuo::string_ref kValA = "valA";
inline constexpr nuo::string_ref kValX = "valX";
inline constexpr nuo::string_ref kValY = "valY";
inline constexpr nuo::string_ref kValZ = "valZ";
inline constexpr nuo::string_ref kFile = "file";
inline constexpr nuo::string_ref kMinimum = "minimum";
inline constexpr nuo::string_ref kMaximum = "maximum";
inline constexpr nuo::string_ref kIncrementSize = "incrementsize";
inline constexpr nuo::string_ref kPercentage = "percentage";
inline constexpr nuo::string_ref kMinimumIsInclusive = "minimumisinclusive";
inline constexpr nuo::string_ref kMaximumIsInclusive = "maximumisinclusive";
}  // namespace attribute

inline constexpr nuo::string_ref kTrue = "true";
inline constexpr nuo::string_ref kFalse = "false";
inline constexpr nuo::string_ref kSingle = "single";
inline constexpr nuo::string_ref kMultiple = "multiple";
/** Value of `type` that makes a reference one to a texture. */
inline constexpr nuo::string_ref kTextureType = "texture";

/** The kind that the grammar gives an element; kUnspecified for other names. */
PropertyType KindOfElement(nuo::string_ref element);

}  // namespace korvanet::platform::assets::grammar
