#pragma once

#include <string>
#include <vector>

#include "session.h"
#include "verbs.h"

namespace halvern {

// The changes that a command line asks for: "--set NAME=VALUE" and "--connect NAME=IDENTIFIER".
struct Edits {
    std::vector<std::string> sets;
    std::vector<std::string> connections;
};

void AddEdits(CLI::App& command, Edits& edits);

// Makes the changes, values first. Raises a Failure at the first that is refused. The instances
// that were connected live as long as `asset` does.
void Apply(const Edits& edits, assets::IAssetInstance& asset, assets::IAssetLibrary& library,
           const std::string& file);

}  // namespace halvern
