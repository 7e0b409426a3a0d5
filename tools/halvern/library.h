#pragma once

#include <string>

#include "session.h"

namespace halvern {

// The definition of that identifier. Raises a Failure: there is none (1), or its records cannot be
// read (3), with the place in `file`.
HeldDefinition FindDefinition(assets::IAssetLibrary& library, const std::string& identifier,
                              const std::string& file);

// A new instance of a definition; raises as above.
HeldInstance Instantiate(assets::IAssetDefinition& definition, const std::string& identifier,
                         const std::string& file);

bool HasDefinition(assets::IAssetLibrary& library, const std::string& identifier);

}  // namespace halvern
