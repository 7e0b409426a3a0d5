#include "platform/units/unitsservice.h"

#include <dlfcn.h>

namespace korvanet::platform::core {

namespace {

// The folder of the library or program that holds this code, with its "/"; empty when it is
// unknown.
std::string OwnFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&OwnFolder), &info) == 0 || !info.dli_fname) return {};
    const std::string file = info.dli_fname;
    return file.substr(0, file.rfind('/') + 1);
}

void* Open(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

// Beside this code first. A program that was linked with this code itself may keep the service
// where the dynamic linker looks.
void* OpenDefault() {
    const std::string folder = OwnFolder();
    void* const beside = folder.empty() ? nullptr : Open(folder + units::kLibraryName);
    return beside != nullptr ? beside : Open(units::kLibraryName);
}

template <class Function>
bool Find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

}  // namespace

// Never destroyed: asking for a unit must work until the process ends.
UnitsService& UnitsService::Instance() {
    static UnitsService* const service = new UnitsService;
    return *service;
}

void UnitsService::SetPath(const char* path) {
    Unload();
    path_ = path != nullptr ? path : "";
    tried_ = false;
}

bool UnitsService::Load() {
    if (tried_) return library_ != nullptr;
    tried_ = true;
    library_ = path_.empty() ? OpenDefault() : Open(path_);
    if (library_ == nullptr) return false;
    const bool complete = Find(library_, units::kGetUnitType, get_unit_type_) &&
                          Find(library_, units::kGetGlobalNameLength, get_global_name_length_) &&
                          Find(library_, units::kGetGlobalName, get_global_name_);
    if (!complete) Unload();
    return complete;
}

void UnitsService::Unload() {
    if (library_ != nullptr) dlclose(library_);
    library_ = nullptr;
}

int UnitsService::GetUnitType(const wchar_t* name, int& code) {
    return Load() ? get_unit_type_(name, &code) : kNoService;
}

int UnitsService::GetGlobalNameLength(int code, std::size_t& length) {
    return Load() ? get_global_name_length_(code, &length) : kNoService;
}

int UnitsService::GetGlobalName(int code, wchar_t* buffer, std::size_t size) {
    return Load() ? get_global_name_(code, buffer, size) : kNoService;
}

}  // namespace korvanet::platform::core
