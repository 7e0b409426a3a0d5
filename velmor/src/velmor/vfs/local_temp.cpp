#include "velmor/vfs/temp_names.h"

#include <cstdlib>

#include "velmor/vfs/local_fs.h"

namespace velmor::fs::local {

namespace {

nuo::string_ref directoryOf(nuo::string_ref parentDir) {
    if (!parentDir.empty()) return parentDir;
    const char* directory = std::getenv("TMPDIR");
    return directory != nullptr ? directory : std::getenv("TMP");
}

}  // namespace

TempFile createTempFile(nuo::string_ref parentDir, nuo::string_ref prefix, unsigned mode,
                        unsigned flag) {
    const nuo::string_ref directory = directoryOf(parentDir);
    LocalFs fs{nuo::string(directory)};
    TempFile file = private_::createTempFile(fs, "", directory, prefix, mode, flag);
    return {std::move(file.archive), joinPath(directory, file.path)};
}

nuo::string createTempDir(nuo::string_ref parentDir, nuo::string_ref prefix) {
    const nuo::string_ref directory = directoryOf(parentDir);
    LocalFs fs{nuo::string(directory)};
    return joinPath(directory, private_::createTempDir(fs, "", directory, prefix));
}

}  // namespace velmor::fs::local
