#pragma once

#include "velmor/vfs/vfs.h"

// What every file system needs alike, written once over IVfs.

namespace velmor::fs {

/// A file just created under a name that nothing else had.
struct TempFile {
    nuo::archive::archive_ptr archive;
    nuo::string path;
};

/// Paths with more components are refused wherever a file or directory would be made of them, so
/// that no walk over a tree goes deeper than this.
inline constexpr std::size_t max_path_components = 256;

/// Removes a file, or a directory with all that it holds. Returns the first failure and stops
/// there. A link to a directory is removed as a link: what it leads to stays. Of the top, "", all
/// that it holds is removed, and the result is er_invalid.
fs_error recursiveRemove(IVfs& fs, nuo::string_ref path);

/// Makes a directory and the parents that are missing. er_invalid when something on the way is not
/// a directory.
fs_error recursiveCreateDir(IVfs& fs, nuo::string_ref path);

/// Like `fs.create`, with the parents that are missing; null when they cannot be made.
nuo::archive::archive_ptr recursiveCreate(IVfs& fs, nuo::string_ref path, unsigned mode,
                                          unsigned flag);

/// Copies a whole file, within one file system or between two. A target that was longer is cut.
/// er_open_failed when either side cannot be opened, er_data_error when not all could be read or
/// written. What `create` raises of a damaged source passes through.
fs_error copyFile(const VfsNode& from, const VfsNode& to);

/// The body of IVfs::copy for every file system: resolves `from` and copies it to `to` of `fs`.
/// er_not_found for a path of the root that lies in no file system, or when `fs` has no root.
fs_error copyInto(IVfs& fs, nuo::string_ref from, nuo::string_ref to);

/// Creates a file of a unique name that begins with `prefix` in the directory `parentDir`, "" being
/// the top. The path is the one inside `fs`. Raises nuo::archive::create_failed when the directory
/// is not there or no name could be had.
TempFile createTempFile(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref prefix,
                        unsigned mode = mode_all, unsigned flag = create_new);

/// The same for a directory; returns its path inside `fs`.
nuo::string createTempDir(IVfs& fs, nuo::string_ref parentDir, nuo::string_ref prefix);

/// Drops empty parts: "/a//b/" gives "/a/b", "a/" gives "a". A leading "/" stays.
nuo::string normalizePath(nuo::string_ref path);

/// The two joined by exactly one "/"; an empty side adds none.
nuo::string joinPath(nuo::string_ref folder, nuo::string_ref path);

/// The parent of a path: "a/b/c" gives "a/b", "a" gives "", "/a" gives "/".
nuo::string_ref folderOf(nuo::string_ref path);

/// The checks that come first in every `remove`: er_busy_mounted, er_invalid, er_not_found or
/// er_ok.
fs_error checkRemovable(IVfs& fs, nuo::string_ref path);

/// The place of a file system in its root, as IVfs::mountPoint tells it.
nuo::string mountPointOf(const IVfs& fs);

}  // namespace velmor::fs
