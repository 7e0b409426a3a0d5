#pragma once

#include <string>

namespace halvern_tests {

// A document of a few hundred bytes whose one text is ten characters times ten to the `nesting`.
inline std::string NestedEntities(int nesting) {
    std::string document = "<!DOCTYPE a [<!ENTITY e0 \"0123456789\">";
    for (int i = 1; i <= nesting; ++i) {
        document += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int n = 0; n < 10; ++n)
            document += "&e" + std::to_string(i - 1) + ";";
        document += "\">";
    }
    return document + "]><a>&e" + std::to_string(nesting) + ";</a>";
}

}  // namespace halvern_tests
