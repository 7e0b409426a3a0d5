#pragma once

#include <cstdint>
#include <vector>

#include "assets/property/propertytable.h"
#include "nuo/common/string.h"

// The values of a table's meta properties, by name and without observers. A property that is
// missing or of another class reads as empty and is not set.

namespace korvanet::platform::assets {

// Single text, or the first of a list.
nuo::string TextOf(const PropertyTableImp& table, nuo::string_ref property);
// All texts of a list, or the single one.
std::vector<nuo::string> TextsOf(const PropertyTableImp& table, nuo::string_ref property);

bool SetText(PropertyTableImp& table, nuo::string_ref property, nuo::string_ref text);
bool SetNumber(PropertyTableImp& table, nuo::string_ref property, std::int32_t number);
bool SetTruth(PropertyTableImp& table, nuo::string_ref property, bool truth);

}  // namespace korvanet::platform::assets
