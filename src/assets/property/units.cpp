#include "assets/property/units.h"

#include <algorithm>
#include <array>

namespace korvanet::platform::assets {

namespace {

constexpr std::size_t kMaxWords = 5;

struct UnitRow {
    std::uint32_t code;
    // The first word is the one that is written; unused places are null.
    std::array<const char*, kMaxWords> words;
};

// The codes are those of the units library.
constexpr std::array<UnitRow, 9> kUnits{{
    {8206, {"mm", "millimeter", "millimetre", "millimeters", "millimetres"}},
    {8205, {"cm", "centimeter", "centimetre", "centimeters", "centimetres"}},
    {8204, {"dm", "decimeter", "decimetre", "decimeters", "decimetres"}},
    {8193, {"m", "meter", "metre", "meters", "metres"}},
    {8201, {"km", "kilometer", "kilometre", "kilometers", "kilometres"}},
    {8214, {"in", "inch", "inches", nullptr, nullptr}},
    {8215, {"ft", "foot", "feet", nullptr, nullptr}},
    {8221, {"yd", "yard", "yards", nullptr, nullptr}},
    {8225, {"mi", "mile", "miles", nullptr, nullptr}},
}};

constexpr const char* kNoUnitWord = "NotSpecified";

const UnitRow* FindRow(std::uint32_t unit) {
    const auto row = std::find_if(kUnits.begin(), kUnits.end(),
                                  [unit](const UnitRow& each) { return each.code == unit; });
    return row == kUnits.end() ? nullptr : row;
}

}  // namespace

std::uint32_t UnitFromWord(nuo::string_ref word) {
    for (const UnitRow& row : kUnits) {
        for (const char* each : row.words) {
            if (each != nullptr && word == nuo::string_ref(each)) {
                return row.code;
            }
        }
    }
    return 0;
}

nuo::string WordFromUnit(std::uint32_t unit) {
    const UnitRow* row = FindRow(unit);
    return nuo::string(row == nullptr ? kNoUnitWord : row->words.front());
}

bool IsLengthUnit(std::uint32_t unit) {
    return FindRow(unit) != nullptr;
}

}  // namespace korvanet::platform::assets
