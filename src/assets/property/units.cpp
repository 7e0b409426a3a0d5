#include "assets/property/units.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <korvanet/platform/core/utf8string.h>

#include "assets/manager/base/text.h"
#include "platform/units/unitsservice.h"

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
// A longer name is none of a unit.
constexpr std::size_t kMaxNameLength = 255;

const UnitRow* FindRow(std::uint32_t unit) {
    const auto row = std::find_if(kUnits.begin(), kUnits.end(),
                                  [unit](const UnitRow& each) { return each.code == unit; });
    return row == kUnits.end() ? nullptr : row;
}

const UnitRow* FindRow(nuo::string_ref word) {
    for (const UnitRow& row : kUnits) {
        for (const char* each : row.words) {
            if (each != nullptr && word == nuo::string_ref(each)) {
                return &row;
            }
        }
    }
    return nullptr;
}

// The word of our own table, for a process without the units service.
nuo::string OwnWord(std::uint32_t unit) {
    const UnitRow* row = FindRow(unit);
    return nuo::string(row == nullptr ? kNoUnitWord : row->words.front());
}

}  // namespace

std::uint32_t UnitFromWord(nuo::string_ref word) {
    if (const UnitRow* row = FindRow(word)) {
        return row->code;
    }
    int code = 0;
    const core::UTF8String wide(nuo::string(word).c_str());
    return core::UnitsService::Instance().GetUnitType(wide.AsWide(), code) ==
                   core::UnitsService::kSuccess
               ? static_cast<std::uint32_t>(code)
               : 0;
}

nuo::string WordFromUnit(std::uint32_t unit) {
    std::size_t length = 0;
    auto& service = core::UnitsService::Instance();
    const int answer = service.GetGlobalNameLength(static_cast<int>(unit), length);
    if (answer == core::UnitsService::kNoService) {
        return OwnWord(unit);
    }
    if (answer == core::UnitsService::kSuccess && length != 0 && length <= kMaxNameLength) {
        std::array<wchar_t, kMaxNameLength + 1> name{};
        if (service.GetGlobalName(static_cast<int>(unit), name.data(), length + 1) ==
            core::UnitsService::kSuccess) {
            return FromWide(name.data());
        }
    }
    return nuo::string(kNoUnitWord);
}

bool IsLengthWord(nuo::string_ref word) {
    return FindRow(word) != nullptr;
}

bool IsLengthUnit(std::uint32_t unit) {
    return FindRow(unit) != nullptr;
}

}  // namespace korvanet::platform::assets
