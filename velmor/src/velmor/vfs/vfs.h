#pragma once

#include <cstdint>

#include "nuo/common/any.h"
#include "nuo/common/exception.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/iterator.h"
#include "nuo/common/string.h"

// One interface over the local disk, memory, ZIP files and design packages.
//
// Paths are UTF-8, use "/" and are relative to their file system: "a/b", "a//b/" and "/a/b" name
// the same place and "" the top folder. Only `copy` gives a leading "/" a meaning of its own. A
// file system and everything that it handed out belong to one thread at a time.

namespace velmor::fs {

class IVfs;
class RootFs;

/// Results of file system operations. The numbers are known to callers: do not change them.
enum fs_error : int {
    er_ok = 0,
    er_invalid = 1,       // the path is empty or invalid, or the state is
    er_busy_mounted = 2,  // a mount point lies on or under the path
    er_not_found = 3,     // the path does not exist, or a parent is missing
    er_exist = 4,
    er_not_mount_point = 6,     // the path cannot carry a mount
    er_data_error = 9,          // fewer bytes were written than read, or the target is not a file
    er_open_failed = 10,        // a file could not be opened
    er_not_a_file = 12,         // the path is a directory
    er_permission_denied = 14,  // the file system is read-only
    er_not_empty = 15,          // a directory still has entries
};

/// Bits of the `mode` of `create`.
inline constexpr unsigned mode_random = 2;
inline constexpr unsigned mode_read = 4;
inline constexpr unsigned mode_write = 8;
inline constexpr unsigned mode_all = mode_random | mode_read | mode_write;

/// Values of the `flag` of `create`; the numbers are those of nuo::archive::open_flag.
inline constexpr unsigned open_existing = 0;
inline constexpr unsigned create_new = 1;  // fails when the path exists
inline constexpr unsigned open_or_create = 2;

/// Values of `VfsNodeState::state`.
inline constexpr int state_invalid = 0;
inline constexpr int state_file = 1;
inline constexpr int state_directory = 2;
inline constexpr int state_mount_point = 6;  // lies above a mount and in no file system
inline constexpr int state_not_found = 7;

/// Options of `getopt` and `setopt` that more than one file system knows.
inline constexpr unsigned option_read_only = 1;        // get: bool
inline constexpr unsigned option_commit_on_close = 2;  // get: bool; set: `data` is the bool

/// Failures of the general functions that have no marker of their own.
NUO_DECLARE_EXCEPTION(vfs_runtime_error);

struct VfsNode {
    nuo::string path;       // a leaf name in a listing, a path in its file system elsewhere
    IVfs* owner = nullptr;  // not owned
};

struct VfsNodeState {
    VfsNode node;
    int state = state_not_found;
    std::uint64_t size = 0;  // bytes of a file, 0 for all else
};

/// A listing: its nodes are made as they are asked for, and handed out by value.
using VfsNodeRange = nuo::const_range<VfsNode, VfsNode>;

class IVfs {
public:
    /// Removes a file or an empty directory.
    virtual fs_error remove(nuo::string_ref path) = 0;

    /// Makes one directory; the parent must exist.
    virtual fs_error createDir(nuo::string_ref path) = 0;

    /// Opens or creates a file. The archive reads and writes as `mode` asks for and has random
    /// access always; its position is its own, and it belongs to the caller, who ends it before the
    /// file system. Null when the file cannot be had; an exception only when there is a file and
    /// its data is bad, or when the place that it is unpacked to fails.
    virtual nuo::archive::archive_ptr create(nuo::string_ref path, unsigned mode,
                                             unsigned flag) = 0;

    /// Copies a whole file. A `from` with a leading "/" is a path of the root that this file system
    /// is mounted in, and may lie in another file system.
    virtual fs_error copy(nuo::string_ref from, nuo::string_ref to) = 0;

    virtual fs_error truncate(nuo::string_ref path, std::uint64_t size) = 0;

    virtual void sync() = 0;

    /// What the file system stands on: a directory, a file name.
    virtual nuo::string resource() const = 0;

    virtual RootFs* root() const = 0;
    virtual bool mounted() const = 0;

    /// The place in the root; empty when not mounted.
    virtual nuo::string mountPoint() const = 0;

    /// The direct entries of a directory, by their leaf names; empty for all else. Entries may not
    /// be added or removed while the range is walked.
    virtual VfsNodeRange children(nuo::string_ref path) = 0;

    /// Never fails: what is not there has `state_not_found`.
    virtual VfsNodeState state(nuo::string_ref path) = 0;

    /// An option's value, or an empty any when the file system does not know it. `data` selects
    /// what is asked, where the option needs it.
    virtual nuo::any getopt(unsigned id, const nuo::any& data);

    /// Sets an option; an empty any when the file system does not know it or `data` does not fit.
    virtual nuo::any setopt(unsigned id, const nuo::any& data, const nuo::any& value);

    virtual ~IVfs() = default;

    /// Called by RootFs alone, on mount and unmount.
    virtual void setRoot(RootFs* root) = 0;

protected:
    IVfs() = default;
    IVfs(const IVfs&) = delete;
    IVfs& operator=(const IVfs&) = delete;
};

}  // namespace velmor::fs
