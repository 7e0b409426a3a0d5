#pragma once

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets::fixed_property {

/** Names of the properties of all assets that the system reads; each stands in the group told. */
inline constexpr nuo::string_ref kAssetLibId{"AssetLibID"};    // read-write
inline constexpr nuo::string_ref kVersion{"version"};          // read-write
inline constexpr nuo::string_ref kRevision{"revision"};        // read-write
inline constexpr nuo::string_ref kSwatch{"swatch"};            // read-write
inline constexpr nuo::string_ref kUiName{"UIName"};            // iteration
inline constexpr nuo::string_ref kKeyword{"keyword"};          // iteration
inline constexpr nuo::string_ref kCategory{"category"};        // iteration
inline constexpr nuo::string_ref kThumbnail{"thumbnail"};      // iteration; a thumbnail's name too
inline constexpr nuo::string_ref kDescription{"description"};  // iteration
inline constexpr nuo::string_ref kHidden{"Hidden"};            // iteration
inline constexpr nuo::string_ref kVersionGuid{"VersionGUID"};  // iteration
inline constexpr nuo::string_ref kBaseSchema{"BaseSchema"};    // iteration
inline constexpr nuo::string_ref kSchemaVersion{"SchemaVersion"};                // read-only
inline constexpr nuo::string_ref kAssetType{"assettype"};                        // read-only
inline constexpr nuo::string_ref kLocalType{"localtype"};                        // read-only
inline constexpr nuo::string_ref kLocalName{"localname"};                        // read-only
inline constexpr nuo::string_ref kUiDefinition{"UIDefinition"};                  // read-only
inline constexpr nuo::string_ref kAdvancedUiDefinition{"AdvancedUIDefinition"};  // read-only

}  // namespace korvanet::platform::assets::fixed_property
