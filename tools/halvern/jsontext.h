#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace halvern {

// One line of UTF-8 with every number in the shortest form that reads back to the same double.
// Bytes that are no UTF-8 become U+FFFD, and numbers that JSON does not have become null.
std::string JsonText(const nlohmann::json& value);

// The shortest form of a number.
std::string NumberText(double value);

}  // namespace halvern
