#pragma once

#include "assets/property/property.h"

namespace korvanet::platform::assets {

/** For IsSameDefault: no kind is passed over. */
inline constexpr auto kNoKind = static_cast<PropertyType>(0xFFFFFFFF);

/**
 * Whether two properties have the same default: kinds, limits, choices, marks and values are equal.
 * Names, labels and flags do not count. Properties of the kind `ignoreKind` only need that kind.
 */
bool IsSameDefault(const PropertyBase& a, const PropertyBase& b, PropertyType ignoreKind = kNoKind);

}  // namespace korvanet::platform::assets
