#pragma once

#include "velmor/vfs/vfs.h"
#include "velmor/vfs/vfs_functions.h"

namespace velmor::fs {

/// A directory of the local disk. Every path is joined to it, and one that would lead out of it (a
/// component "..") or holds a NUL is invalid. Links are followed. Owns nothing on the disk.
class LocalFs : public IVfs {
public:
    /// The directory need not exist: then nothing is found.
    explicit LocalFs(nuo::string directory);

    /// er_invalid for "", er_not_empty for a directory with entries.
    fs_error remove(nuo::string_ref path) override;
    /// er_invalid for "" and too deep a path, er_exist, er_not_found without a parent,
    /// er_data_error when refused.
    fs_error createDir(nuo::string_ref path) override;
    nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode, unsigned flag) override;
    fs_error copy(nuo::string_ref from, nuo::string_ref to) override;
    /// er_data_error for whatever is not a file that can be written.
    fs_error truncate(nuo::string_ref path, std::uint64_t size) override;
    void sync() override {}
    nuo::string resource() const override { return resource_; }
    RootFs* root() const override { return root_; }
    bool mounted() const override { return root_ != nullptr; }
    nuo::string mountPoint() const override { return mountPointOf(*this); }
    /// In the order that the disk gives, which may change from call to call.
    VfsNodeRange children(nuo::string_ref path) override;
    VfsNodeState state(nuo::string_ref path) override;
    void setRoot(RootFs* root) override { root_ = root; }

private:
    RootFs* root_ = nullptr;
    nuo::string onDisk(nuo::string_ref path) const;

    nuo::string resource_;
};

namespace local {

/// As the functions of the same names over a file system, on the local disk: `parentDir` is a
/// directory of the disk, and the path that comes back is the full one. An empty `parentDir` stands
/// for the value of "TMPDIR", and when that is not set for that of "TMP".
TempFile createTempFile(nuo::string_ref parentDir, nuo::string_ref prefix, unsigned mode = mode_all,
                        unsigned flag = create_new);
nuo::string createTempDir(nuo::string_ref parentDir, nuo::string_ref prefix);

}  // namespace local

}  // namespace velmor::fs
