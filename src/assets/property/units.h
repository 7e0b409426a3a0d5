#pragma once

#include <cstdint>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// Code of the unit that `word` names, such as 8193 for "m" and "metres". Words beyond those of
// lengths are the units service's; 0 when nobody knows the word.
std::uint32_t UnitFromWord(nuo::string_ref word);

// Whether `word` is one of those of lengths, which need no units service.
bool IsLengthWord(nuo::string_ref word);

// The name of a unit code by the units service, or, in a process without it, by our own table, such
// as "mm" for 8206. "NotSpecified" for a code without a name.
nuo::string WordFromUnit(std::uint32_t unit);

// Whether `unit` is one of the nine length units that a property with a unit may take.
bool IsLengthUnit(std::uint32_t unit);

}  // namespace korvanet::platform::assets
