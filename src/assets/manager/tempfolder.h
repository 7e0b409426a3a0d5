#pragma once

#include <memory>

#include "nuo/common/string.h"
#include "velmor/vfs/local_fs.h"

namespace korvanet::platform::assets {

// The folder of the private temporary folder that working copies of libraries lie in.
inline constexpr nuo::string_ref kCopyFolder{".copy"};

// The private temporary folder of the process:
//
//   <"TMPDIR", or else "TMP", or else "/">/halvernrun/mgr40_.../     made on first need
//     .copy/                                                         working copies of libraries
//     library.../                                                    scratch of each library
//
// It goes, with all that it holds, when this object goes.
class TempFolder {
public:
    TempFolder() = default;
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() { Remove(); }

    // Raises halvern_temp_dir_error when the folder cannot be made; the next call tries again.
    velmor::fs::LocalFs& Fs();

    // Removes the folder; the next `Fs` makes another.
    void Remove() noexcept;

private:
    std::unique_ptr<velmor::fs::LocalFs> fs_;
};

}  // namespace korvanet::platform::assets
