#pragma once

#include "velmor/runtime.h"

namespace velmor {

/// Registers the primitive types and the generics `ref`, `dynamic_ref` and `array` in a new
/// namespace `sys`, with an alias for each in the root, so that "double" is found from anywhere.
/// To be called once on a new runtime.
void startRuntime(Runtime& runtime);

/// The array type of `element` in `target`, made from the generic `array` under the name of the
/// element type and "_array" unless it is there already.
/// REQUIRES: `target` hangs in the tree of a started runtime.
Type makeArrayType(Namespace target, Type element);

}  // namespace velmor
