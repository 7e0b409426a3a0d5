#pragma once

#include <memory>

#include "velmor/vfs/vfs.h"

namespace velmor::fs {

class RootFsImp;

/// One element of the mount table.
struct MountInfo {
    nuo::string path;    // normalized, with a leading "/"
    IVfs* fs = nullptr;  // not owned
};

using MountRange = nuo::const_range<MountInfo>;

/// Mounts file systems at paths of one name space, so that a path can cross from one to another.
/// Paths here are absolute; "a//b/" is taken as "/a/b".
//
/// What is mounted is not owned: its owner unmounts it before either ends.
class RootFs {
public:
    explicit RootFs(nuo::string resource = {});
    ~RootFs();
    RootFs(const RootFs&) = delete;
    RootFs& operator=(const RootFs&) = delete;

    nuo::string resource() const;

    /// The first mount is at "/", every other on a directory of a mounted file system. Otherwise,
    /// and when the place is taken or `fs` is mounted already: er_not_mount_point.
    fs_error mount(nuo::string_ref path, IVfs& fs);

    /// er_busy_mounted when another mount lies under the path; a path without a mount is er_ok.
    fs_error unmount(nuo::string_ref path);

    /// Syncs every mounted file system, in the order of their paths.
    void sync();

    /// The path that `fs` is mounted at, or an empty string.
    nuo::string mountPoint(const IVfs& fs) const;

    /// The file system mounted at exactly this path, or null.
    IVfs* getFs(nuo::string_ref path) const;

    /// Whether a mount lies behind this path and begins with it. The path itself does not count.
    bool containMountPoint(nuo::string_ref path) const;

    /// The mounts in the order of their paths. The table may not change while they are walked.
    MountRange mounts() const;

    /// What lies at a path: the state that its file system tells, with that file system and the
    /// path inside it as `node`. A path above a mount has `state_mount_point`.
    VfsNodeState locate(nuo::string_ref path) const;

private:
    std::unique_ptr<RootFsImp> imp_;
};

}  // namespace velmor::fs
