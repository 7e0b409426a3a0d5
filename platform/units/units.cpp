// The units service: the lengths that the asset layer works with, by code, and the words for them.
// The first word of a unit is its name.

#include <cstddef>
#include <cwchar>

#include "platform/units/unitsabi.h"

namespace {

struct Unit {
    int code;
    const wchar_t* words[5];  // null where there are fewer
};

constexpr Unit kUnits[] = {
    {8206, {L"mm", L"millimeter", L"millimetre", L"millimeters", L"millimetres"}},
    {8205, {L"cm", L"centimeter", L"centimetre", L"centimeters", L"centimetres"}},
    {8204, {L"dm", L"decimeter", L"decimetre", L"decimeters", L"decimetres"}},
    {8193, {L"m", L"meter", L"metre", L"meters", L"metres"}},
    {8201, {L"km", L"kilometer", L"kilometre", L"kilometers", L"kilometres"}},
    {8214, {L"in", L"inch", L"inches"}},
    {8215, {L"ft", L"foot", L"feet"}},
    {8221, {L"yd", L"yard", L"yards"}},
    {8225, {L"mi", L"mile", L"miles"}},
};

constexpr int kSuccess = 0;
constexpr int kUnknownUnit = 1;
constexpr int kBadArgument = 2;

const Unit* FindCode(int code) {
    for (const Unit& unit : kUnits) {
        if (unit.code == code) return &unit;
    }
    return nullptr;
}

const Unit* FindWord(const wchar_t* name) {
    for (const Unit& unit : kUnits) {
        for (const wchar_t* word : unit.words) {
            if (word != nullptr && std::wcscmp(word, name) == 0) return &unit;
        }
    }
    return nullptr;
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int HalvernUnitsGetUnitType(const wchar_t* name, int* code) {
    if (name == nullptr || code == nullptr) return kBadArgument;
    const Unit* const unit = FindWord(name);
    if (unit == nullptr) return kUnknownUnit;
    *code = unit->code;
    return kSuccess;
}

__attribute__((visibility("default"))) int HalvernUnitsGetGlobalNameLength(int code,
                                                                           std::size_t* length) {
    if (length == nullptr) return kBadArgument;
    const Unit* const unit = FindCode(code);
    if (unit == nullptr) return kUnknownUnit;
    *length = std::wcslen(unit->words[0]);
    return kSuccess;
}

__attribute__((visibility("default"))) int HalvernUnitsGetGlobalName(int code, wchar_t* buffer,
                                                                     std::size_t size) {
    const Unit* const unit = FindCode(code);
    if (unit == nullptr) return kUnknownUnit;
    const std::size_t needed = std::wcslen(unit->words[0]) + 1;
    if (buffer == nullptr || size < needed) return kBadArgument;
    std::wmemcpy(buffer, unit->words[0], needed);
    return kSuccess;
}
}
