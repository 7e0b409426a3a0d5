#pragma once

#include "velmor/vfs/vfs_functions.h"

namespace velmor::fs::private_ {

/// The temporary files of vfs_functions.h with `shownDirectory` for the messages, which differs
/// from `parentDir` where the file system stands for the directory itself.
TempFile createTempFile(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref shownDirectory,
                        nuo::string_ref prefix, unsigned mode, unsigned flag);
nuo::string createTempDir(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref shownDirectory,
                          nuo::string_ref prefix);

}  // namespace velmor::fs::private_
