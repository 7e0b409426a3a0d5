#pragma once

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

/// A URI that begins so names a part of a package by its path; every other text names the outside
/// world.
inline constexpr nuo::string_ref kResourcePrefix = "jpk:?asset=/";

inline bool IsResourceUri(nuo::string_ref uri) {
    return uri.starts_with(kResourcePrefix);
}

}  // namespace korvanet::platform::assets
