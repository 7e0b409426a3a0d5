#pragma once

#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

/// A URI that begins so names a part of a package by its path; every other text names the outside
/// world.
inline constexpr nuo::string_ref kResourcePrefix = "jpk:?asset=/";

}  // namespace korvanet::platform::assets
