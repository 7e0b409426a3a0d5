#pragma once

#include <cstddef>

// What the units service, a shared library of its own, exports. It is loaded while the process runs
// and can be replaced by one that knows more units; so the functions are plain C ones, found by
// name. Each returns 0 for success and another number when it does not know what is asked; then it
// has written nothing.

extern "C" {

/// The code of the unit that a word names.
using HalvernUnitsGetUnitTypeFunction = int (*)(const wchar_t* name, int* code);

/// The characters of a unit's name, without the NUL.
using HalvernUnitsGetGlobalNameLengthFunction = int (*)(int code, std::size_t* length);

/// Writes a unit's name and a NUL to `buffer`, which holds `size` characters; fails when they do
/// not fit.
using HalvernUnitsGetGlobalNameFunction = int (*)(int code, wchar_t* buffer, std::size_t size);
}

namespace korvanet::platform::core::units {

inline constexpr char kLibraryName[] = "libhalvernunits.so";
inline constexpr char kGetUnitType[] = "HalvernUnitsGetUnitType";
inline constexpr char kGetGlobalNameLength[] = "HalvernUnitsGetGlobalNameLength";
inline constexpr char kGetGlobalName[] = "HalvernUnitsGetGlobalName";

}  // namespace korvanet::platform::core::units
