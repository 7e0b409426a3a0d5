#pragma once

#include <cstdint>
#include <string>

#include "bench/libraries.h"

namespace halvern_bench {

// What a listing came upon; both ways of listing must agree on it.
struct Listed {
    std::uint64_t definitions = 0;
    std::uint64_t characters = 0;  // of all texts

    friend bool operator==(const Listed&, const Listed&) = default;
};

// Asks for everything that a listing tells of every definition.
Listed ListAll(assets::IAssetLibrary& library);

// What a child process, which opens the library and lists it, has taken of memory at its highest,
// in KiB; 0 when that cannot be told.
std::uint64_t PeakOfListing(const std::string& path);

// Does the work of that child when the command line is its: the program then ends with the result.
bool IsListingChild(int argc, char** argv, int& result);

}  // namespace halvern_bench
