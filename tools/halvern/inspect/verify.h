#pragma once

#include <string>
#include <vector>

#include "inspect/findings.h"

// What the public interface cannot tell: whether a library file is whole, and why one does not open
// or cannot be saved. The file is read and never changed.

namespace halvern::inspect {

// The rule of the one finding about a file that cannot be read at all.
inline constexpr const char* kFileRule = "file";

// Everything that is wrong with the file, in the order of the layers from the ZIP up to the values.
// Empty for a whole one.
std::vector<Finding> Verify(const std::string& path);

// In one line, what keeps the file from being opened: the finding that closes it, or else the first
// one. Empty when nothing is wrong with it.
std::string WhyNotOpened(const std::string& path);

// The same for a definition of a file that opens: the first finding about its records.
std::string WhyNotRead(const std::string& path, const std::string& identifier);

// The same for a file that opens and whose changes are refused.
std::string WhyNotSaved(const std::string& path);

// The same for a schema file: where it is no XML. Empty when it is.
std::string WhyNoSchema(const std::string& path);

}  // namespace halvern::inspect
