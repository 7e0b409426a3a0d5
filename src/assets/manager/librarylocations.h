#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvanet/platform/core/registry.h>

#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// What is installed on this machine, as the registry told when the object was made, and the cache
// folder.
//
//   SOFTWARE\Korvanet\KRVTAssetLibrary\<year>      "LibraryPaths"   2011 to 2014
//   SOFTWARE\Korvanet\KRVTTextureLibrary\<level>   "LibraryPaths"   1 to 3
class LibraryLocations {
public:
    explicit LibraryLocations(core::IRegistry& registry);

    // Asset libraries, by ascending year.
    std::size_t LibraryCount() const { return libraries_.size(); }
    // Null past the end.
    const nuo::string* LibraryPath(std::size_t index) const;
    // 1 for 2011, counting up; 0 past the end.
    int LibraryVersion(std::size_t index) const;

    // The texture library of the highest level that has a path; empty when there is none.
    const nuo::string& TexturePath() const { return texture_path_; }
    // Levels count from 0.
    bool IsTextureLevelInstalled(int level) const;

    void SetCacheFolder(nuo::string_ref path) { cache_folder_ = nuo::string(path); }
    // The folder that was set, or one below the user's data folder, which is made now; empty when
    // that fails.
    const nuo::string& CacheFolder();

private:
    struct Library {
        int version;
        nuo::string path;
    };

    void ReadLibraries(core::IRegistry& registry);
    void ReadTextures(core::IRegistry& registry);

    nuo::string cache_folder_;
    std::vector<Library> libraries_;
    std::vector<int> texture_levels_;
    nuo::string texture_path_;
};

}  // namespace korvanet::platform::assets
