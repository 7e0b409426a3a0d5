#include "assets/manager/librarylocations.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include <korvanet/platform/core/widestring.h>

#include "assets/manager/base/path.h"
#include "assets/manager/base/text.h"
#include "velmor/vfs/local_fs.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

struct YearKey {
    int version;
    const wchar_t* key;
};
constexpr YearKey kYears[] = {
    {1, L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\2011"},
    {2, L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\2012"},
    {3, L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\2013"},
    {4, L"SOFTWARE\\Korvanet\\KRVTAssetLibrary\\2014"},
};

// By level.
constexpr const wchar_t* kTextureKeys[] = {
    L"SOFTWARE\\Korvanet\\KRVTTextureLibrary\\1",
    L"SOFTWARE\\Korvanet\\KRVTTextureLibrary\\2",
    L"SOFTWARE\\Korvanet\\KRVTTextureLibrary\\3",
};

constexpr const wchar_t* kPathsValue = L"LibraryPaths";
// Chosen: what follows in a longer text is not read.
constexpr std::size_t kLongestPath = 1024;

// The quotes belong to the name, and the year is this one whatever is installed.
constexpr nuo::string_ref kCacheBelowData{"Korvanet/AssetLibrary/\"2011\"/Cache/"};

std::optional<nuo::string> ReadPath(core::IRegistry& registry, const wchar_t* path) {
    const core::IRegistry::Key key = registry.OpenKey(path);
    if (key == 0) return std::nullopt;
    core::WideString text;
    const bool read = registry.ReadString(key, kPathsValue, text);
    registry.CloseKey(key);
    if (!read) return std::nullopt;
    std::wstring_view wide = text.AsWide();
    if (wide.size() > kLongestPath)
        text = core::WideString(std::wstring(wide.substr(0, kLongestPath)).c_str());
    return WithSlashes(ToUtf8(text));
}

// The folder for files of this user's programs; empty when the environment names none.
nuo::string UserDataFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && data[0] == '/') return data;
    const char* home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? AppendPath(home, ".local/share") : nuo::string();
}

bool MakeFolders(nuo::string_ref path) {
    fs::LocalFs disk("/");
    const fs::fs_error made = fs::recursiveCreateDir(disk, NormalizePath(path));
    return made == fs::er_ok || made == fs::er_exist;
}

}  // namespace

LibraryLocations::LibraryLocations(core::IRegistry& registry) {
    if (!registry.OpenHive()) return;
    ReadLibraries(registry);
    ReadTextures(registry);
    registry.CloseHive();
}

void LibraryLocations::ReadLibraries(core::IRegistry& registry) {
    for (const YearKey& year : kYears)
        if (std::optional<nuo::string> path = ReadPath(registry, year.key))
            libraries_.push_back({year.version, *std::move(path)});
}

void LibraryLocations::ReadTextures(core::IRegistry& registry) {
    int level = 0;
    for (const wchar_t* key : kTextureKeys) {
        const std::optional<nuo::string> path = ReadPath(registry, key);
        if (path && !path->empty()) {
            texture_path_ = *path;
            texture_levels_.push_back(level);
        }
        ++level;
    }
}

const nuo::string* LibraryLocations::LibraryPath(std::size_t index) const {
    return index < libraries_.size() ? &libraries_[index].path : nullptr;
}

int LibraryLocations::LibraryVersion(std::size_t index) const {
    return index < libraries_.size() ? libraries_[index].version : 0;
}

bool LibraryLocations::IsTextureLevelInstalled(int level) const {
    return std::find(texture_levels_.begin(), texture_levels_.end(), level) !=
           texture_levels_.end();
}

const nuo::string& LibraryLocations::CacheFolder() {
    if (!cache_folder_.empty()) return cache_folder_;
    const nuo::string data = UserDataFolder();
    if (data.empty()) return cache_folder_;
    const nuo::string folder = AppendPath(data, kCacheBelowData);
    if (MakeFolders(folder)) cache_folder_ = folder;
    return cache_folder_;
}

}  // namespace korvanet::platform::assets
