#pragma once

#include <cstdint>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Code of the unit that `word` names, such as 8193 for "m" and "metres"; 0 for other words.
std::uint32_t UnitFromWord(nuo::string_ref word);

// The short word of a unit code, such as "mm" for 8206; "NotSpecified" for other codes.
nuo::string WordFromUnit(std::uint32_t unit);

// Whether `unit` is one of the nine length units that a property with a unit may take.
bool IsLengthUnit(std::uint32_t unit);

}  // namespace korvanet::platform::assets
