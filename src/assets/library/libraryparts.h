#pragma once

#include <array>
#include <cstdint>

#include "nuo/common/string_ref.h"

// Where a library keeps its own parts, below the folder of its identifier; see
// docs/formats/library_layout.md.

namespace korvanet::platform::assets {

inline constexpr nuo::string_ref kAssetDataFolder{"AssetData"};
inline constexpr nuo::string_ref kSchemasFolder{"Schemas"};
inline constexpr nuo::string_ref kContentsPart{"AssetData/AssetTableOfContents.bin"};
inline constexpr nuo::string_ref kVersionTablePart{"AssetData/StreamVersionTable.inf"};
inline constexpr nuo::string_ref kDefinitionStorePart{"AssetData/DefinitionIteratorProperties.bin"};
inline constexpr nuo::string_ref kInstanceStorePart{"AssetData/InstanceProperties.bin"};
inline constexpr nuo::string_ref kSchemaExtension{".xml"};
inline constexpr nuo::string_ref kCommonSchema{"CommonSchema"};

// The folder of the older layout, beside which there is no other.
inline constexpr nuo::string_ref kLegacyFolder{"qmx"};

// What a library of the older layout has for its geometry, empty at first.
inline constexpr std::array<nuo::string_ref, 3> kLegacyGeometryParts{
    "attributes.bin", "vertices.bin", "triangles.bin"};

// A ZIP tells the length of a path in 16 bits: identifiers of libraries and ids of schemas that are
// no longer than this leave room for all parts.
inline constexpr std::uint64_t kLongestName = 0x3FFF;

// The identifier of the system library, which stays in the older layout.
inline constexpr nuo::string_ref kSystemLibrary{"314DE259-5443-4621-BFBD-1730C6CC9AE9"};

}  // namespace korvanet::platform::assets
