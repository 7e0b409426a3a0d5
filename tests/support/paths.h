#pragma once

#include <string>

namespace halvern_tests {

// Absolute folders of this clone and of the build tree that the tests were built in, without a
// trailing slash.
std::string SourceFolder();
std::string BuildFolder();

// The absolute path of NAME in tests/data/.
std::string DataFile(const std::string& name);

}  // namespace halvern_tests
