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

// Raises a Failure when the text is no UTF-8: it would be stored as another one.
void RequireUtf8(const std::string& what, const std::string& text);

bool HasDefinition(assets::IAssetLibrary& library, const std::string& identifier);

}  // namespace halvern
