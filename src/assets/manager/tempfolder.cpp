#include "assets/manager/tempfolder.h"

#include <sys/stat.h>

#include <cstdlib>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "assets/manager/filestate.h"
#include "assets/manager/markers.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

namespace {

constexpr nuo::string_ref kSharedFolder{"/halvernrun"};
constexpr nuo::string_ref kPrivatePrefix{"mgr40_"};
constexpr mode_t kEverybodyInTheirOwn = 01777;
constexpr mode_t kOwnerAlone = 0700;

[[noreturn]] void RaiseNoTempFolder() {
    NUO_RAISE(halvern_temp_dir_error, "failed to create temp dir");
}

// The place of the temporary files of the environment. Without one it is the root of the disk.
nuo::string EnvironmentFolder() {
    for (const char* name : {"TMPDIR", "TMP"})
        if (const char* folder = std::getenv(name)) return WithSlashes(folder);
    return WithSlashes("\\");
}

// The folder that all processes share, made when it is missing; each of them makes a folder of its
// own in it, so it is open to all users as the place around it is. Empty when a file has that name.
nuo::string SharedFolder() {
    const nuo::string path(EnvironmentFolder(), kSharedFolder);
    if (!PathExists(path)) {
        // Another process may be making it at the same time.
        if (::mkdir(path.data(), kEverybodyInTheirOwn) == 0)
            ::chmod(path.data(), kEverybodyInTheirOwn);
        else if (!IsFolder(path))
            RaiseNoTempFolder();
    }
    return IsFolder(path) ? path : nuo::string();
}

nuo::string MakePrivateFolder(const nuo::string& parent) {
    nuo::string folder = Guarded(
        nuo::string(), [&parent] { return fs::local::createTempDir(parent, kPrivatePrefix); });
    if (folder.empty()) RaiseNoTempFolder();
    ::chmod(folder.data(), kOwnerAlone);
    return folder;
}

}  // namespace

fs::LocalFs& TempFolder::Fs() {
    if (fs_) return *fs_;
    fs_ = std::make_unique<fs::LocalFs>(MakePrivateFolder(SharedFolder()));
    if (fs_->createDir(kCopyFolder) != fs::er_ok) {
        Remove();
        RaiseNoTempFolder();
    }
    return *fs_;
}

void TempFolder::Remove() noexcept {
    if (!fs_) return;
    Guarded([this] {
        const nuo::string path = fs_->resource();
        fs_.reset();
        fs::LocalFs around{nuo::string(FolderOfPath(path))};
        fs::recursiveRemove(around, LeafOfPath(path));
    });
}

}  // namespace korvanet::platform::assets
