#include "assets/manager/filestate.h"

#include <sys/stat.h>

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/path.h"
#include "nuo/common/fsutility.h"
#include "nuo/common/string.h"
#include "velmor/vfs/local_fs.h"

namespace korvanet::platform::assets {

namespace fs = velmor::fs;

bool PathExists(nuo::string_ref path) {
    return nuo::fsutility::stat_file(path).has_value();
}

bool IsFolder(nuo::string_ref path) {
    const auto status = nuo::fsutility::stat_file(path);
    return status && status->is_directory;
}

bool IsRegularFile(nuo::string_ref path) {
    const auto status = nuo::fsutility::stat_file(path);
    return status && status->is_regular;
}

bool IsReadOnlyFile(nuo::string_ref path) {
    struct stat status {};
    return ::stat(nuo::string(path).data(), &status) == 0 && (status.st_mode & S_IWUSR) == 0;
}

bool CanCreateFilesIn(nuo::string_ref folder) {
    return Guarded(false, [folder] {
        const fs::TempFile file = fs::local::createTempFile(folder, ".halvern");
        return fs::LocalFs(nuo::string(folder)).remove(LeafOfPath(file.path)) == fs::er_ok;
    });
}

}  // namespace korvanet::platform::assets
