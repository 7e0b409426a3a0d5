#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <korvanet/platform/assets/ivalue.h>

namespace halvern {

// How values are typed on the command line:
//
//     VALUE   = "" | "true" | "false" | number | number unit | choice id | text | "@" file
//             | colour | vector | list
//     colour  = r "," g "," b [ "," a ]
//     vector  = x "," y "," z
//     list    = element { "," element }         colours in a list stand between "|"
//
// In a list a backslash stands before ",", "|" and backslash. An empty text is an empty value.

// Cuts at each `separator` that no backslash precedes, and takes the backslashes out. Empty for an
// empty text.
std::vector<std::string> SplitList(std::string_view text, char separator);

// Gives a property the value of a text. Raises a Failure that names the property, when the text is
// none of its values.
void SetFromText(korvanet::platform::assets::IProperty& property, const std::string& text);

// The code of a unit word, 0 when there is none.
std::uint32_t UnitCode(std::string_view word);
// The first word of a code, or the code in digits.
std::string UnitWord(std::uint32_t code);

}  // namespace halvern
