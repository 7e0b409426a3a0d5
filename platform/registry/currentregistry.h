#pragma once

#include <korvanet/platform/core/registry.h>

namespace korvanet::platform::core {

/// The registry that a host has set, or else one without a hive. The reference is good until the
/// next `SetRegistry`.
IRegistry& CurrentRegistry();

}  // namespace korvanet::platform::core
