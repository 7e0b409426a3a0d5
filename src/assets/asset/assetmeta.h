#pragma once

#include <cstdint>

#include <korvanet/platform/core/istring.h>

#include "nuo/common/string.h"

// What an asset says of itself: the fixed properties behind the getters of definitions, instances
// and listings. A property that is missing reads as empty, 0 or false.

namespace korvanet::platform::assets {

class PropertyTableImp;
struct ModuleContext;

namespace asset_meta {

/** Elements of the texts of a property: 1 for a single one. */
std::uint64_t TextCount(const PropertyTableImp& table, std::size_t group, nuo::string_ref name);
std::int32_t Integer(const PropertyTableImp& table, std::size_t group, nuo::string_ref name);
bool Boolean(const PropertyTableImp& table, std::size_t group, nuo::string_ref name);

/** The message for `key`, looked for in `domain` first, or else the key itself. */
nuo::string Localized(const ModuleContext& context, const nuo::string& key,
                      const core::IString& locale, const nuo::string& domain);

/** The text of the iteration group at `index`, localized. */
nuo::string LocalizedAt(const PropertyTableImp& table, nuo::string_ref name, std::uint64_t index,
                        const core::IString& locale, const nuo::string& domain);

/** The name for people, localized, without blanks at the end. */
nuo::string UiName(const PropertyTableImp& table, const core::IString& locale,
                   const nuo::string& domain);

/** 1 when the first thumbnail is not empty, else 0, however many are stored. */
std::uint64_t ThumbnailCount(const PropertyTableImp& table);

/** "RPCGeometry" is stored for what hosts know as "proceduralgeometry". */
nuo::string AssetTypeForHosts(const nuo::string& stored);

/** False with the error "Index is out of bound." from `count` on. */
bool CheckIndex(std::uint64_t index, std::uint64_t count);

// The getters that give text to a host.

bool GetListText(const PropertyTableImp& table, nuo::string_ref name, std::uint64_t index,
                 core::IString& out, const core::IString& locale, const nuo::string& domain);
bool GetThumbnailName(const PropertyTableImp& table, std::uint64_t index, core::IString& out);
bool GetThumbnail(const PropertyTableImp& table, std::uint64_t index, core::IString& out);
/** Without a description it is an error, and `out` becomes empty. */
bool GetDescription(const PropertyTableImp& table, core::IString& out, const core::IString& locale,
                    const nuo::string& domain);

inline constexpr std::uint64_t kUiDefinitionCount = 2;
bool GetUiDefinitionName(std::uint64_t index, core::IString& out);
bool GetUiDefinition(const PropertyTableImp& table, std::uint64_t index, core::IString& out);

/** Implementations that the asset has, in the order of the fixed table of their names. */
std::uint64_t ImplementationCount(const PropertyTableImp& table);
bool GetImplementationIdentifier(const PropertyTableImp& table, std::uint64_t index,
                                 core::IString& out);
bool GetImplementationUri(const PropertyTableImp& table, std::uint64_t index, core::IString& out);

/** The stored GUID of the asset's state, or a fresh one that is not stored. */
nuo::string VersionGuid(const PropertyTableImp& table);

/** Whether the table's schema or one of its bases has that id. */
bool IsDerivedFromSchema(const PropertyTableImp& table, const nuo::string& id);

}  // namespace asset_meta
}  // namespace korvanet::platform::assets
