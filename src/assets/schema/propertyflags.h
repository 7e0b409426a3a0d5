#pragma once

#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

class PropertyTableImp;

/** What can be wrong with a flag word; a sum of them is the error code of a report. */
namespace flag_conflict {
inline constexpr std::uint32_t kUnknownFlag = 1;
inline constexpr std::uint32_t kReadOnlyIteratorData = 2;
inline constexpr std::uint32_t kListOfOtherKind = 4;
inline constexpr std::uint32_t kUnitOfOtherKind = 8;
inline constexpr std::uint32_t kUriRoleOfOtherKind = 16;
inline constexpr std::uint32_t kConnections = 32;
}  // namespace flag_conflict

/** Sum of what is wrong with `flags` on a property of that kind; 0 when they fit. */
std::uint32_t CheckPropertyFlags(PropertyType kind, std::uint32_t flags);

/** Reports "Property flags conflict in Node: <id>, ErrorCode: <code>" as a warning. */
void WarnFlagConflict(nuo::string_ref id, std::uint32_t code);

/**
 * Whether the table has every property that the root schema must have, each in the place that its
 * flags must give it. Listings and records rely on these.
 */
bool HasRequiredProperties(const PropertyTableImp& table);

}  // namespace korvanet::platform::assets
