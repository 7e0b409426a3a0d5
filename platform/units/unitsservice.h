#pragma once

#include <cstddef>
#include <string>

#include "platform/units/unitsabi.h"

namespace korvanet::platform::core {

/// The units service of the process. It is a shared library beside this one that is loaded when it
/// is first asked; a process without it gets failures, and the callers have a table of their own.
class UnitsService {
public:
    /// What the operations return: 0 for success, this when there is no service, and the service's
    /// own codes.
    static constexpr int kSuccess = 0;
    static constexpr int kNoService = -1;

    static UnitsService& Instance();

    UnitsService(const UnitsService&) = delete;
    UnitsService& operator=(const UnitsService&) = delete;

    /// Has the service loaded from `path` from now on; null takes the one beside this library
    /// again.
    void SetPath(const char* path);

    /// The code of the unit that a word names.
    int GetUnitType(const wchar_t* name, int& code);

    /// The characters of a unit's name, without the NUL.
    int GetGlobalNameLength(int code, std::size_t& length);

    /// Writes the name and a NUL to `buffer`, which holds `size` characters.
    int GetGlobalName(int code, wchar_t* buffer, std::size_t size);

private:
    UnitsService() = default;
    ~UnitsService() = default;

    bool Load();
    void Unload();

    std::string path_;  // empty: beside this library
    bool tried_ = false;
    void* library_ = nullptr;
    HalvernUnitsGetUnitTypeFunction get_unit_type_ = nullptr;
    HalvernUnitsGetGlobalNameLengthFunction get_global_name_length_ = nullptr;
    HalvernUnitsGetGlobalNameFunction get_global_name_ = nullptr;
};

}  // namespace korvanet::platform::core
